/* SPDX-License-Identifier: MIT */
/* A library that is no plug-in: it has no tpMain. */
int tpNothing(void) {
    return 1;
}
