// SPDX-License-Identifier: MIT
// Makes the tools by number.
#pragma once

#include <memory>

class cTool;

// With its number set. A number without a class of its own gives a tool without effect.
std::unique_ptr<cTool> makeTool(int id);
