// SPDX-License-Identifier: MIT
#include "views/tViewHost.h"

cViewHost* g_viewHost = nullptr;
