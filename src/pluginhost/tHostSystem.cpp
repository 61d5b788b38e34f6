// SPDX-License-Identifier: MIT
// Services 1 to 28: console, memory, time, files and the shared tokenizer.
#include "pluginhost/tHostTable.h"

#include "gamedata/tParser.h"
#include "support/tBuildNumber.h"
#include "support/tConsole.h"
#include "support/tSystem.h"

#include <QString>

static int32_t findFile(const char* name, char* out, int32_t outSize) {
    return name && out && outSize > 0 && File_Find(name, out, outSize);
}

static void* loadFile(const char* path, int32_t* sizeOut) {
    return path ? File_Load(path, sizeOut) : nullptr;
}

static const char* version() {
    static const QByteArray text = QString::asprintf("Karvex 1.0.%i", buildNumber()).toLatin1();
    return text.constData();
}

void fillSystemServices(cHostServices& table) {
    table.Sys_Print = Print;
    table.Sys_DPrint = DPrint;
    table.Sys_Warning = Warning;
    table.Sys_Error = Error;
    table.Sys_Alloc = Mem_Alloc;
    table.Sys_Free = Mem_Free;
    table.Sys_StrDup = Mem_StrDup;
    table.TempBuffer_GetSpace = TempBuffer_GetSpace;
    table.Sys_Time = Sys_Time;
    table.File_Find = findFile;
    table.File_Load = loadFile;
    table.Sys_Version = version;
    table.Sys_TextureBrightness = Sys_TextureBrightness;
}

// ---- Tokenizer. A bool is a 32-bit int on the border.

static int32_t parserLoadFile(const char* path) {
    return cParser::loadFile(path);
}

static int32_t parserLoadMemory(const char* buffer, int32_t size) {
    return cParser::loadMemory(buffer, size);
}

static int32_t parserHasFailed() {
    return cParser::hasFailed();
}

static int32_t parserGetToken(int32_t crossLine) {
    return cParser::getToken(crossLine != 0);
}

static int32_t parserTokenAvailable() {
    return cParser::tokenAvailable();
}

static void parserMatchToken(const char* expected) {
    if (expected)
        cParser::matchToken(expected);
}

static void parserParseVector(int32_t count, float* out) {
    if (out)
        cParser::parseVector(count, out);
}

static void parserParseMatrix(int32_t rows, int32_t columns, float* out) {
    if (out)
        cParser::parseMatrix(rows, columns, out);
}

static void parserParseCube(int32_t planes, int32_t rows, int32_t columns, float* out) {
    if (out)
        cParser::parseCube(planes, rows, columns, out);
}

void fillParserServices(cHostServices& table) {
    table.Parser_LoadFile = parserLoadFile;
    table.Parser_LoadMemory = parserLoadMemory;
    table.Parser_Token = cParser::token;
    table.Parser_CurrentLine = cParser::currentLine;
    table.Parser_ParseError = cParser::parseError;
    table.Parser_HasFailed = parserHasFailed;
    table.Parser_ClearFailure = cParser::clearFailure;
    table.Parser_GetToken = parserGetToken;
    table.Parser_UngetToken = cParser::ungetToken;
    table.Parser_TokenAvailable = parserTokenAvailable;
    table.Parser_MatchToken = parserMatchToken;
    table.Parser_ParseVector = parserParseVector;
    table.Parser_ParseMatrix = parserParseMatrix;
    table.Parser_ParseCube = parserParseCube;
    table.Parser_Close = cParser::close;
}
