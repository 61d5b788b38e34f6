// SPDX-License-Identifier: MIT
// The table of the 42 named colours from which all views, tools and the texture browser draw, in
// two copies: the current colours and the custom ones that the user edits. Reads and writes the
// scheme groups of the settings file.
#pragma once

#include "support/tColors.h"

#include <QColor>
#include <QString>
#include <array>
#include <cstdint>

class QListWidget;
class cIniFile;

class cColorScheme {
public:
    struct cEntry {
        int index;
        const char* key; // as in the settings file
        const char* displayName;
        QColor color;
    };

    cColorScheme();

    static int colorCount() { return COLOR_COUNT; }
    static QString colorKey(int index);  // empty for an unknown index
    static QString colorName(int index); // likewise

    // ---- Current colours. The reference wants a valid index; the others answer zeros and opaque
    // black for what they do not know.
    const QColor& color(int index) const { return m_current[size_t(index)]; }
    std::array<float, 4> colorF(int index) const;
    std::array<float, 4> colorF(const char* key) const;
    std::array<uint8_t, 4> colorRgba(int index) const;
    std::array<uint8_t, 4> colorRgba(const char* key) const;
    QColor colorDark(int index, double factor) const;
    const uint8_t* bytes(int index) const; // 4 bytes, kept up to date

    // ---- Custom colours
    QColor customColor(int index) const;
    bool setCustomColor(const char* key, int red, int green, int blue); // false: unknown key
    void useCustom(); // the custom colours become the current ones

    // ---- A group of a settings file. Every key is overwritten; one that is missing becomes black.
    void readScheme(const cIniFile& file, const QString& group);
    void readCustom(const cIniFile& file, const QString& group);
    void writeCustom(cIniFile& file, const QString& group) const;

    // The display names, with the index as each item's user data.
    static void fillList(QListWidget* list);

private:
    using cColors = std::array<QColor, COLOR_COUNT>;

    static int indexOf(const char* key); // -1 when unknown
    static bool isValid(int index) { return index >= 0 && index < COLOR_COUNT; }
    static void readColors(const cIniFile& file, const QString& group, cColors& colors);
    void updateBytes();

    cColors m_current;
    cColors m_custom;
    std::array<std::array<uint8_t, 4>, COLOR_COUNT> m_bytes;
};
