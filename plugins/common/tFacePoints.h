// SPDX-License-Identifier: MIT
// The three points that a face line gives its plane by: which they are, and with how many digits
// they are written, so that any reader finds the plane again and, from a classic line, the same
// texture axes.
#pragma once

#include "tPluginInterface.h"

#include <string>

enum class eFaceLine { Classic, Axial };

// Shortest, such that reading gives the same float; exactly that float as a double; any double.
enum class eDigits { Short, Exact, Double };

// In fixed notation. What no float can hold is 0.
std::string digitsOf(double value, eDigits digits);

struct cFacePoints {
    double points[3][3];
    eDigits digits;
    double readNormal[3]; // of the plane that a reader in doubles finds
};

cFacePoints pointsOf(const cFaceData* face, eFaceLine kind);
