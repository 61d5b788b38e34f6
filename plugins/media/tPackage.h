// SPDX-License-Identifier: MIT
// Packages of textures, read a texture at a time: a whole package is never in memory.
#pragma once

#include "media/tBytes.h"
#include "media/tImage.h"

#include <memory>
#include <string>
#include <vector>

class cPackage {
public:
    virtual ~cPackage() = default;

    virtual int count() const = 0; // of textures
    virtual std::string name(int index) const = 0;
    virtual std::string id(int index) const = 0; // what tells a texture from the others
    virtual cProblem read(int index, const cPalette* palette, cImageBudget& budget,
                          cImage& image) = 0;
};

// Null, with the problem, when the file is none. A palette is for pictures without one of their
// own; without either they are painted in greys.
using cPackageOpener = std::unique_ptr<cPackage> (*)(const char* path, cProblem& problem);
std::unique_ptr<cPackage> openWad(const char* path, cProblem& problem);
std::unique_ptr<cPackage> openZip(const char* path, cProblem& problem);

// The same of bytes in memory, which have to outlive the package.
std::unique_ptr<cPackage> openWad(cBytes file, cProblem& problem);
std::unique_ptr<cPackage> openZip(cBytes file, cProblem& problem);

// The largest entry of a package, unpacked.
static constexpr uint64_t MAX_ENTRY_BYTES = uint64_t(256) << 20;
