// SPDX-License-Identifier: MIT
// The number of the build, a day count derived from the compile date.
#pragma once

int buildNumber(); // of this build, computed once
// Of a date as the compiler writes it, "Jan 23 2014".
int buildNumberOf(const char* date);
