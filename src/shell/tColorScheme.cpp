// SPDX-License-Identifier: MIT
// The colour table itself, its lookups, and the text form of a colour.
#include "shell/tColorScheme.h"

#include "support/tIniFile.h"

#include <QListWidget>
#include <cstring>

// clang-format off
static const cColorScheme::cEntry g_defaults[COLOR_COUNT] = {
    {COLOR_APPLICATION, "COLOR_APPLICATION", "Application Global", QColor(0, 0, 0)},
    {COLOR_2D_BACKGROUND, "COLOR_2D_BACKGROUND", "2D Background", QColor(0, 0, 0)},
    {COLOR_2D_GRID_MAJOR, "COLOR_2D_GRID_MAJOR", "2D Major Grid Line", QColor(100, 100, 100)},
    {COLOR_2D_GRID_MINOR, "COLOR_2D_GRID_MINOR", "2D Minor Grid Line", QColor(50, 50, 50)},
    {COLOR_2D_GRID_AXIS, "COLOR_2D_GRID_AXIS", "2D Axial Line", QColor(50, 100, 100)},
    {COLOR_2D_SELECTION, "COLOR_2D_SELECTION", "2D Selection Line", QColor(0, 255, 255)},
    {COLOR_2D_VERTEX, "COLOR_2D_VERTEX", "2D Vertex", QColor(255, 255, 255)},
    {COLOR_2D_CAMERA, "COLOR_2D_CAMERA", "2D Camera", QColor(0, 50, 255)},
    {COLOR_3D_BACKGROUND, "COLOR_3D_BACKGROUND", "3D Background", QColor(100, 100, 100)},
    {COLOR_3D_GRID_MAJOR, "COLOR_3D_GRID_MAJOR", "3D Major Grid Line", QColor(200, 200, 200)},
    {COLOR_3D_GRID_MINOR, "COLOR_3D_GRID_MINOR", "3D Minor Grid Line", QColor(150, 150, 150)},
    {COLOR_3D_GRID_AXIS, "COLOR_3D_GRID_AXIS", "3D Axial Line", QColor(255, 255, 255)},
    {COLOR_3D_SELECTION, "COLOR_3D_SELECTION", "3D Selection Line", QColor(255, 255, 255)},
    {COLOR_ACTIVE_SELECTION, "COLOR_ACTIVE_SELECTION", "Active Selection Line", QColor(255, 255, 0)},
    {COLOR_ENTITY_CREATION, "COLOR_ENTITY_CREATION", "Entity Creation Tool", QColor(0, 255, 0)},
    {COLOR_BRUSH_CREATION, "COLOR_BRUSH_CREATION", "Brush Creation Tool", QColor(255, 255, 255)},
    {COLOR_BRUSH_HANDLE, "COLOR_BRUSH_HANDLE", "Brush Handle", QColor(150, 150, 150)},
    {COLOR_SELECTED_FILL, "COLOR_SELECTED_FILL", "Selected Object Fill Color", QColor(255, 0, 0)},
    {COLOR_SELECTED_LINE, "COLOR_SELECTED_LINE", "Selected Object Line Color", QColor(255, 255, 0)},
    {COLOR_CAPTION, "COLOR_CAPTION", "Caption", QColor(0, 0, 0)},
    {COLOR_TEXT, "COLOR_TEXT", "Normal Text", QColor(255, 255, 255)},
    {COLOR_ACTIVE_TEXT, "COLOR_ACTIVE_TEXT", "Active Text", QColor(255, 255, 100)},
    {COLOR_TEXBROWSER_BACKGROUND, "COLOR_TEXBROWSER_BACKGROUND", "Texture Browser Background", QColor(0, 0, 0)},
    {COLOR_TEXBROWSER_LINE, "COLOR_TEXBROWSER_LINE", "Texture Browser Line Color", QColor(255, 255, 255)},
    {COLOR_TEXBROWSER_TEXT_BGCOLOR, "COLOR_TEXBROWSER_TEXT_BGCOLOR", "Texture Browser Text Background", QColor(0, 0, 220)},
    {COLOR_TEXBROWSER_TEXT_FGCOLOR, "COLOR_TEXBROWSER_TEXT_FGCOLOR", "Texture Browser Normal Text", QColor(255, 255, 255)},
    {COLOR_TEXBROWSER_TEXT_SELECTED, "COLOR_TEXBROWSER_TEXT_SELECTED", "Texture Browser Active Text", QColor(255, 255, 100)},
    {COLOR_BULLET_VERTEX, "COLOR_BULLET_VERTEX", "Vertex Bullet", QColor(255, 255, 255)},
    {COLOR_BULLET_EDGE, "COLOR_BULLET_EDGE", "Edge Bullet", QColor(255, 255, 0)},
    {COLOR_BULLET_SELECTED, "COLOR_BULLET_SELECTED", "Selected Bullet", QColor(255, 0, 0)},
    {COLOR_BULLET_BORDER, "COLOR_BULLET_BORDER", "Bullet Border", QColor(0, 0, 0)},
    {COLOR_CLIP_POINT, "COLOR_CLIP_POINT", "Clip Tool Point", QColor(255, 255, 255)},
    {COLOR_CLIP_LINE, "COLOR_CLIP_LINE", "Clip Tool Line", QColor(100, 255, 255)},
    {COLOR_CLIP_LINE_INVALID, "COLOR_CLIP_LINE_INVALID", "Clip Tool Line (Invalid)", QColor(200, 75, 75)},
    {COLOR_CLIP_RESULT, "COLOR_CLIP_RESULT", "Clip Tool Result", QColor(255, 255, 255)},
    {COLOR_CORDON_POINT, "COLOR_CORDON_POINT", "Cordon Bounds Bullet", QColor(150, 255, 255)},
    {COLOR_CORDON_LINE, "COLOR_CORDON_LINE", "Cordon Bounds Line", QColor(255, 0, 0)},
    {COLOR_BRUSH_DEFAULT, "COLOR_BRUSH_DEFAULT", "Default Brush Color", QColor(255, 255, 255)},
    {COLOR_BRUSH_RANDOM_MIN, "COLOR_BRUSH_RANDOM_MIN", "Random Brush Color (Min)", QColor(0, 100, 100)},
    {COLOR_BRUSH_RANDOM_MAX, "COLOR_BRUSH_RANDOM_MAX", "Random Brush Color (Max)", QColor(0, 255, 255)},
    {COLOR_GROUP_RANDOM_MIN, "COLOR_GROUP_RANDOM_MIN", "Random Group Color (Min)", QColor(80, 80, 80)},
    {COLOR_GROUP_RANDOM_MAX, "COLOR_GROUP_RANDOM_MAX", "Random Group Color (Max)", QColor(255, 255, 255)},
};
// clang-format on

// The one colour in which the custom copy starts out differently.
static const QColor CUSTOM_BROWSER_SELECTED(255, 255, 0);

static constexpr std::array<uint8_t, 4> OPAQUE_BLACK = {0, 0, 0, 255};

cColorScheme::cColorScheme() {
    for (const cEntry& entry : g_defaults)
        m_current[size_t(entry.index)] = entry.color;
    m_custom = m_current;
    m_custom[COLOR_TEXBROWSER_TEXT_SELECTED] = CUSTOM_BROWSER_SELECTED;
    updateBytes();
}

QString cColorScheme::colorKey(int index) {
    return isValid(index) ? QString::fromLatin1(g_defaults[index].key) : QString();
}

QString cColorScheme::colorName(int index) {
    return isValid(index) ? QString::fromLatin1(g_defaults[index].displayName) : QString();
}

int cColorScheme::indexOf(const char* key) {
    for (const cEntry& entry : g_defaults)
        if (!strcmp(entry.key, key))
            return entry.index;
    return -1;
}

std::array<float, 4> cColorScheme::colorF(int index) const {
    if (!isValid(index))
        return {0, 0, 0, 0};
    const QColor& c = color(index);
    return {float(c.redF()), float(c.greenF()), float(c.blueF()), float(c.alphaF())};
}

std::array<float, 4> cColorScheme::colorF(const char* key) const {
    return colorF(indexOf(key));
}

std::array<uint8_t, 4> cColorScheme::colorRgba(int index) const {
    return isValid(index) ? m_bytes[size_t(index)] : OPAQUE_BLACK;
}

std::array<uint8_t, 4> cColorScheme::colorRgba(const char* key) const {
    return colorRgba(indexOf(key));
}

QColor cColorScheme::colorDark(int index, double factor) const {
    return color(index).darker(int(100 / factor));
}

const uint8_t* cColorScheme::bytes(int index) const {
    return isValid(index) ? m_bytes[size_t(index)].data() : OPAQUE_BLACK.data();
}

QColor cColorScheme::customColor(int index) const {
    return isValid(index) ? m_custom[size_t(index)] : QColor();
}

bool cColorScheme::setCustomColor(const char* key, int red, int green, int blue) {
    const int index = indexOf(key);
    if (index < 0)
        return false;
    m_custom[size_t(index)] = QColor(red, green, blue);
    return true;
}

void cColorScheme::useCustom() {
    m_current = m_custom;
    updateBytes();
}

static QColor colorFromText(const QString& text) {
    const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const auto part = [&](int i, int missing) {
        return i < parts.size() ? qBound(0, parts[i].toInt(), 255) : missing;
    };
    return QColor(part(0, 0), part(1, 0), part(2, 0), part(3, 255));
}

static QString colorToText(const QColor& color) {
    const QString rgb =
        QStringLiteral("%1 %2 %3").arg(color.red()).arg(color.green()).arg(color.blue());
    return color.alpha() == 255 ? rgb : QStringLiteral("%1 %2").arg(rgb).arg(color.alpha());
}

void cColorScheme::readColors(const cIniFile& file, const QString& group, cColors& colors) {
    for (int i = 0; i < COLOR_COUNT; ++i)
        colors[size_t(i)] = colorFromText(file.value(group, colorKey(i)));
}

void cColorScheme::readScheme(const cIniFile& file, const QString& group) {
    readColors(file, group, m_current);
    updateBytes();
}

void cColorScheme::readCustom(const cIniFile& file, const QString& group) {
    readColors(file, group, m_custom);
}

void cColorScheme::writeCustom(cIniFile& file, const QString& group) const {
    file.setValue(group, QStringLiteral("Title"), QStringLiteral("Custom"));
    for (int i = 0; i < COLOR_COUNT; ++i)
        file.setValue(group, colorKey(i), colorToText(m_custom[size_t(i)]));
}

void cColorScheme::fillList(QListWidget* list) {
    for (int i = 0; i < COLOR_COUNT; ++i) {
        auto* item = new QListWidgetItem(colorName(i), list);
        item->setData(Qt::UserRole, i);
    }
}

void cColorScheme::updateBytes() {
    for (int i = 0; i < COLOR_COUNT; ++i) {
        const QColor& c = m_current[size_t(i)];
        m_bytes[size_t(i)] = {uint8_t(c.red()), uint8_t(c.green()), uint8_t(c.blue()),
                              uint8_t(c.alpha())};
    }
}
