// SPDX-License-Identifier: MIT
// Keeps the upper library from being empty until its first class arrives.
namespace {
[[maybe_unused]] constexpr int NOTHING = 0;
}
