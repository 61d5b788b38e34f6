// SPDX-License-Identifier: MIT
// Formats the messages and hands them to the host; echoes them on standard output.
#include "support/tConsole.h"

#include "support/tHost.h"

#include <cstdarg>
#include <cstdio>

static constexpr size_t MESSAGE_SIZE = 8192;

// One buffer a level, so that a message may be built from the text of another level.
static char g_printText[MESSAGE_SIZE];
static char g_debugText[MESSAGE_SIZE];
static char g_warningText[MESSAGE_SIZE];
static char g_errorText[MESSAGE_SIZE];
static int g_warnings = 0;

void Print(const char* format, ...) {
    if (!format || !isHeard())
        return;
    va_list args;
    va_start(args, format);
    vsnprintf(g_printText, MESSAGE_SIZE, format, args);
    va_end(args);
    puts(g_printText);
    g_host->consoleMessage(eMessage::Print, g_printText);
}

void DPrint(const char* format, ...) {
    if (!format || !isHeard() || g_host->isPrecaching())
        return;
    va_list args;
    va_start(args, format);
    vsnprintf(g_debugText, MESSAGE_SIZE, format, args);
    va_end(args);
    puts(g_debugText);
    g_host->consoleMessage(eMessage::Debug, g_debugText);
}

void Warning(const char* format, ...) {
    if (!format || !isHeard())
        return;
    va_list args;
    va_start(args, format);
    vsnprintf(g_warningText, MESSAGE_SIZE, format, args);
    va_end(args);
    printf("WARNING: %s\n", g_warningText);
    ++g_warnings;
    g_host->consoleMessage(eMessage::Warning, g_warningText);
}

int warningCount() {
    return g_warnings;
}

void Error(const char* format, ...) {
    if (!format || !isHeard())
        return;
    va_list args;
    va_start(args, format);
    vsnprintf(g_errorText, MESSAGE_SIZE, format, args);
    va_end(args);
    printf("ERROR: %s\n", g_errorText);
    g_host->consoleMessage(eMessage::Error, g_errorText);
}
