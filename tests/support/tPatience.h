// SPDX-License-Identifier: MIT
// How long a test lets the window system take, on a machine that is busy with other work too.
#pragma once

constexpr int PATIENCE = 30000; // ms
