// SPDX-License-Identifier: MIT
// A generated city as map text: blocks of houses on streets, some with slanted roofs, and a lamp
// for every twentieth brush.
#pragma once

#include <string>

std::string cityText(int brushes);

// Kilobytes of resident memory now, from the system's own account.
long residentKilobytes();
