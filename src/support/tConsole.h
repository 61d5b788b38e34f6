// SPDX-License-Identifier: MIT
// The program's one voice: printf-style messages for the message console and standard output.
// None of them stops anything; without a host, or with a null format, all are silent. Text is
// 8-bit in the locale codec, cut at 8191 bytes. GUI thread only: the buffers are static.
#pragma once

#if defined(__GNUC__)
#define KVX_PRINTF(text, args) __attribute__((format(printf, text, args)))
#else
#define KVX_PRINTF(text, args)
#endif

void Print(const char* format, ...) KVX_PRINTF(1, 2);
void DPrint(const char* format, ...)
    KVX_PRINTF(1, 2); // dropped while a splash or wait window is up
void Warning(const char* format, ...) KVX_PRINTF(1, 2);
void Error(const char* format, ...) KVX_PRINTF(1, 2);

// How many warnings were given so far: who calls a plug-in sees whether it said what went wrong.
int warningCount();
