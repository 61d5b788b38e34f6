// SPDX-License-Identifier: MIT
// The primitives that the program brings itself; plug-ins add theirs to the same list.
#pragma once

class cPrimitiveList;

void registerBuiltInPrimitives(cPrimitiveList& list);
