// SPDX-License-Identifier: MIT
// The one tokenizer for line-oriented text: game data files, key/value text, and whatever a
// plug-in reads through the host services. One state in the process: loading a script abandons
// the one before. An error sets a sticky flag that makes every later request return false until
// the caller clears it. Of messages of one kind a parse tells the first and then their number. Text
// is bytes in the locale codec. GUI thread only.
#pragma once

class cParser {
public:
    static constexpr int MAX_INCLUDES = 32; // slots of the script stack; the first is never used
    static constexpr int TOKEN_SIZE = 1024; // with the zero

    // Starts a new parse. False, with a message and the flags untouched, if it cannot be read.
    static bool loadFile(const char* path);
    // Starts a new parse on the caller's block, which must live until the end of the parse.
    static bool loadMemory(const char* buffer, int size);
    static void close(); // gives up what is open

    // The next token; with crossLine false it must stand on the current line. False at the end of
    // the script or on an error.
    static bool getToken(bool crossLine);
    // The same where the text may not end: the end of the script is an incomplete line.
    static bool requireToken(bool crossLine);
    static void ungetToken(); // the next getToken returns the same token again
    // Something other than blanks, a comment included, stands on the rest of the line.
    static bool tokenAvailable();
    static void matchToken(const char* expected); // a different token is an error
    // "( a b c )" and nests of it.
    static void parseVector(int count, float* out);
    static void parseMatrix(int rows, int columns, float* out);
    static void parseCube(int planes, int rows, int columns, float* out);

    static char* token(); // valid until the next token is read
    static int currentLine();
    static bool hasFailed();
    static void clearFailure(); // lets the caller resynchronise and go on
    static void parseError(const char* format, ...) __attribute__((format(printf, 1, 2)));
    static void warn(const char* format, ...) __attribute__((format(printf, 1, 2)));
};
