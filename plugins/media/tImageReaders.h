// SPDX-License-Identifier: MIT
// Readers of picture files: pure functions from bytes to a picture. Which one reads a file is told
// by the suffix of its name, never by its content.
#pragma once

#include "media/tBytes.h"
#include "media/tImage.h"

#include <string>
#include <vector>

using cImageReader = cProblem (*)(cBytes file, cImageBudget& budget, cImage& image);

struct cImageFormat {
    const char* extension; // with its leading point
    const char* description;
    cImageReader read;
};

// The order is that in which pictures of one name are looked for.
const std::vector<cImageFormat>& imageFormats();
const cImageFormat* imageFormatOf(const std::string& path); // or null

cProblem readTga(cBytes file, cImageBudget& budget, cImage& image);
cProblem readPcx(cBytes file, cImageBudget& budget, cImage& image);
