// SPDX-License-Identifier: MIT
// The state of the tokenizer, its stack of open scripts and the scanner.
#include "gamedata/tParser.h"

#include "support/tConsole.h"
#include "support/tMath.h"
#include "support/tMessageCap.h"
#include "support/tSystem.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

static constexpr int PATH_SIZE = 260;
static constexpr int ERROR_SIZE = 1280;
// Files that include each other would be read 2^30 times over; these end it.
static constexpr int MAX_INCLUDED_FILES = 1024;
static constexpr long long MAX_INCLUDED_BYTES = 256LL << 20;

static const char MEMORY_NAME[] = "memory buffer";

struct cParserScript {
    char* buffer;
    const char* cursor;
    const char* end;
    int line;
    char fileName[PATH_SIZE];
};

struct cParserState {
    cParserScript* current;
    cParserScript stack[cParser::MAX_INCLUDES];
    bool endOfScript;
    bool tokenReady;
    bool failed;
    char basePath[PATH_SIZE];
    char token[cParser::TOKEN_SIZE];
    char errorText[ERROR_SIZE];
    int filesTried; // of this parse
    long long bytesRead;
};

static cParserState g_parser = {};
static cMessageCap g_messages; // of this parse

enum eCharClass : uint8_t { CC_WORD, CC_BLANK, CC_BREAK };

static constexpr std::array<eCharClass, 256> makeClasses() {
    std::array<eCharClass, 256> classes = {};
    for (unsigned c = 0; c <= 0x20; ++c)
        classes[c] = CC_BLANK;
    for (const char* c = "{}()'=[]:@,;"; *c; ++c)
        classes[static_cast<unsigned char>(*c)] = CC_BREAK;
    return classes;
}

static constexpr std::array<eCharClass, 256> CHAR_CLASSES = makeClasses();

static eCharClass classOf(char c) {
    return CHAR_CLASSES[static_cast<unsigned char>(c)];
}

// ---- Scripts

static cParserScript* current() {
    if (!g_parser.current)
        g_parser.current = g_parser.stack;
    return g_parser.current;
}

static bool isTopScript() {
    return current() <= g_parser.stack + 1;
}

static bool isMemory(const cParserScript& script) {
    return memcmp(script.fileName, MEMORY_NAME, sizeof MEMORY_NAME) == 0;
}

static void freeScript(cParserScript& script) {
    if (!isMemory(script))
        Mem_Free(script.buffer);
    script.buffer = nullptr;
    script.cursor = script.end = nullptr;
}

static void tell(eMessage level, const char* format, ...) __attribute__((format(printf, 2, 3)));

static void tell(eMessage level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    g_messages.tell(level, format, args);
    va_end(args);
}

static void startParse() {
    g_messages.tellRest();
    for (cParserScript* script = current(); script > g_parser.stack; --script)
        freeScript(*script);
    g_parser.current = g_parser.stack;
    g_parser.filesTried = 0;
    g_parser.bytesRead = 0;
}

static void clearFlags() {
    g_parser.endOfScript = g_parser.tokenReady = g_parser.failed = false;
}

static bool readScript(cParserScript& script, const char* path) {
    if (strlen(path) >= PATH_SIZE) {
        Error("can't open \"%s\" (%.255s)", path, strerror(ENAMETOOLONG));
        return false;
    }
    int size = 0;
    script.buffer = static_cast<char*>(File_Load(path, &size));
    if (!script.buffer)
        return false;
    T_Sprintf(script.fileName, PATH_SIZE, "%s", path);
    g_parser.bytesRead += size;
    script.cursor = script.buffer;
    script.end = script.buffer + size;
    script.line = 1;
    return true;
}

// Whether one more file may be opened; falls silent when the parse has had its share.
static bool mayInclude() {
    if (g_parser.filesTried > MAX_INCLUDED_FILES)
        return false;
    ++g_parser.filesTried;
    if (g_parser.bytesRead > MAX_INCLUDED_BYTES)
        g_parser.filesTried = MAX_INCLUDED_FILES + 1;
    const bool full = current() + 1 >= g_parser.stack + cParser::MAX_INCLUDES;
    if (!full && g_parser.filesTried <= MAX_INCLUDED_FILES)
        return true;
    tell(eMessage::Error, "script file exceeded MAX_INCLUDES");
    return false;
}

static bool pushScript(const char* name) {
    if (!mayInclude())
        return false;
    char path[PATH_SIZE + cParser::TOKEN_SIZE];
    if (name[0] == '/') {
        T_ExtractFilePath(name, g_parser.basePath, PATH_SIZE);
        T_Sprintf(path, sizeof path, "%s", name);
    } else {
        T_Sprintf(path, sizeof path, "%s%s", g_parser.basePath, name);
    }
    cParserScript& script = current()[1];
    if (!readScript(script, path))
        return false;
    ++g_parser.current;
    Print("Entering: \"%s\"\n", script.fileName);
    return true;
}

bool cParser::loadFile(const char* path) {
    startParse();
    if (!path || !pushScript(path))
        return false;
    clearFlags();
    return true;
}

bool cParser::loadMemory(const char* buffer, int size) {
    startParse();
    cParserScript& script = g_parser.stack[1];
    g_parser.current = &script;
    memcpy(script.fileName, MEMORY_NAME, sizeof MEMORY_NAME);
    script.buffer = const_cast<char*>(buffer);
    script.cursor = buffer;
    script.end = buffer ? buffer + std::max(size, 0) : buffer;
    script.line = 1;
    clearFlags();
    return true;
}

void cParser::close() {
    while (current() > g_parser.stack && !isMemory(*current())) {
        freeScript(*g_parser.current);
        --g_parser.current;
    }
    g_parser.endOfScript = true;
    g_parser.tokenReady = false;
    g_messages.tellRest();
}

// ---- Scanning

static bool incompleteLine() {
    tell(eMessage::Error, "line %i is incomplete", current()->line);
    g_parser.failed = true;
    return false;
}

enum eSkip { SKIP_TOKEN, SKIP_END, SKIP_FAILED };

static bool startsWith(const cParserScript& script, char first, char second) {
    return script.end - script.cursor >= 2 && script.cursor[0] == first &&
           script.cursor[1] == second;
}

// False if the text ended first.
static bool skipLineComment(cParserScript& script) {
    const size_t left = size_t(script.end - script.cursor);
    const void* feed = memchr(script.cursor, '\n', left);
    if (!feed) {
        script.cursor = script.end;
        return false;
    }
    script.cursor = static_cast<const char*>(feed) + 1;
    ++script.line;
    return true;
}

static bool skipBlockComment(cParserScript& script) {
    for (script.cursor += 2; script.cursor < script.end; ++script.cursor) {
        if (startsWith(script, '*', '/')) {
            script.cursor += 2;
            return true;
        }
        if (*script.cursor == '\n')
            ++script.line;
    }
    return false;
}

// Up to the next byte of a token. A text that ends in a comment ends as if lines may be crossed.
static eSkip skipBlanks(cParserScript& script, bool& crossLine) {
    for (;;) {
        if (script.cursor >= script.end)
            return SKIP_END;
        const bool lineComment = startsWith(script, '/', '/');
        const bool blockComment = startsWith(script, '/', '*');
        const bool feed = *script.cursor == '\n';
        if (!lineComment && !blockComment && classOf(*script.cursor) != CC_BLANK)
            return SKIP_TOKEN;
        if (!crossLine && (lineComment || blockComment || feed)) {
            incompleteLine();
            return SKIP_FAILED;
        }
        if (lineComment || blockComment) {
            if (!(lineComment ? skipLineComment(script) : skipBlockComment(script)))
                return SKIP_END;
            continue;
        }
        script.line += feed;
        ++script.cursor;
    }
}

static bool storeToken(const char* text, size_t length) {
    if (length >= size_t(cParser::TOKEN_SIZE)) {
        tell(eMessage::Error, "token too large on line %i", current()->line);
        g_parser.failed = true;
        return false;
    }
    memcpy(g_parser.token, text, length);
    g_parser.token[length] = 0;
    return true;
}

static bool readQuoted(cParserScript& script) {
    const char* start = ++script.cursor;
    const void* quote = memchr(start, '"', size_t(script.end - start));
    const char* stop = quote ? static_cast<const char*>(quote) : script.end;
    script.cursor = quote ? stop + 1 : stop;
    return storeToken(start, size_t(stop - start));
}

static bool readWord(cParserScript& script) {
    const char* start = script.cursor;
    while (script.cursor < script.end && classOf(*script.cursor) == CC_WORD)
        ++script.cursor;
    return storeToken(start, size_t(script.cursor - start));
}

// False when the whole parse has ended.
static bool leaveScript() {
    cParserScript& script = *current();
    const bool last = isMemory(script) || isTopScript();
    freeScript(script);
    if (last) {
        g_parser.endOfScript = true;
        g_messages.tellRest();
        return false;
    }
    --g_parser.current;
    Print("Returning to \"%s\"\n", g_parser.current->fileName);
    return true;
}

enum eScan { SCAN_FAILED, SCAN_BREAK, SCAN_TEXT };

// One token, out of as many scripts as end before it comes.
static eScan scanToken(bool crossLine) {
    for (;;) {
        cParserScript& script = *current();
        const eSkip skip = skipBlanks(script, crossLine);
        if (skip == SKIP_FAILED)
            return SCAN_FAILED;
        if (skip == SKIP_TOKEN)
            break;
        if (!crossLine) {
            incompleteLine();
            return SCAN_FAILED;
        }
        if (!leaveScript())
            return SCAN_FAILED;
    }
    cParserScript& script = *current();
    if (classOf(*script.cursor) == CC_BREAK)
        return storeToken(script.cursor++, 1) ? SCAN_BREAK : SCAN_FAILED;
    const bool done = *script.cursor == '"' ? readQuoted(script) : readWord(script);
    return done ? SCAN_TEXT : SCAN_FAILED;
}

bool cParser::getToken(bool crossLine) {
    if (g_parser.endOfScript || g_parser.failed)
        return false;
    if (g_parser.tokenReady) {
        g_parser.tokenReady = false;
        return true;
    }
    // An include wants a name on its line, and that name may be an include again: the tokens
    // asked for wait here, outermost first, instead of in calls of this function.
    bool waiting[MAX_INCLUDES];
    int depth = 0;
    for (;;) {
        const eScan scan = scanToken(crossLine);
        if (scan == SCAN_FAILED)
            return false;
        const bool directive = scan == SCAN_TEXT && strcmp(g_parser.token, "include") == 0;
        if (directive && depth < MAX_INCLUDES) {
            waiting[depth++] = crossLine;
            crossLine = false;
            continue;
        }
        if (depth == 0)
            return true;
        crossLine = waiting[--depth];
        pushScript(g_parser.token);
    }
}

bool cParser::requireToken(bool crossLine) {
    if (getToken(crossLine))
        return true;
    return g_parser.failed ? false : incompleteLine();
}

void cParser::ungetToken() {
    g_parser.tokenReady = true;
}

bool cParser::tokenAvailable() {
    cParserScript& script = *current();
    // The blanks are passed for good, so that asking again costs nothing.
    while (script.cursor < script.end && *script.cursor != '\n' &&
           classOf(*script.cursor) == CC_BLANK)
        ++script.cursor;
    return script.cursor < script.end && *script.cursor != '\n';
}

void cParser::matchToken(const char* expected) {
    if (!requireToken(true) || strcmp(g_parser.token, expected) == 0)
        return;
    tell(eMessage::Error, "bad token `%s' at line %i (expected `%s')", g_parser.token,
         currentLine(), expected);
    g_parser.failed = true;
}

void cParser::parseVector(int count, float* out) {
    matchToken("(");
    for (int i = 0; i < count && requireToken(false); ++i)
        out[i] = float(strtod(g_parser.token, nullptr));
    matchToken(")");
}

void cParser::parseMatrix(int rows, int columns, float* out) {
    matchToken("(");
    for (int i = 0; i < rows && !g_parser.failed; ++i)
        parseVector(columns, out + ptrdiff_t(i) * columns);
    matchToken(")");
}

void cParser::parseCube(int planes, int rows, int columns, float* out) {
    matchToken("(");
    for (int i = 0; i < planes && !g_parser.failed; ++i)
        parseMatrix(rows, columns, out + ptrdiff_t(i) * rows * columns);
    matchToken(")");
}

char* cParser::token() {
    return g_parser.token;
}

int cParser::currentLine() {
    return current()->line;
}

bool cParser::hasFailed() {
    return g_parser.failed;
}

void cParser::clearFailure() {
    g_parser.failed = false;
}

void cParser::parseError(const char* format, ...) {
    va_list args;
    va_start(args, format);
    vsnprintf(g_parser.errorText, sizeof g_parser.errorText, format, args);
    va_end(args);
    tell(eMessage::Error, "parse error at line %i: %s", currentLine(), g_parser.errorText);
    g_parser.failed = true;
}

void cParser::warn(const char* format, ...) {
    va_list args;
    va_start(args, format);
    g_messages.tell(eMessage::Warning, format, args);
    va_end(args);
}
