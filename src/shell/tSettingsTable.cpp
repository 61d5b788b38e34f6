// SPDX-License-Identifier: MIT
// The settings in the order of the file, what follows from a change of each, and their limits.
#include "shell/tSettingsTable.h"

#include "support/tIniFile.h"

#include <iterator>

// clang-format off
static const cSettingRow g_rows[] = {
    {nullptr, "IndependentWindows", &cSettings::IndependentWindows},
    {nullptr, "CreateDefaultWindows", &cSettings::CreateDefaultWindows},
    {nullptr, "NoPrecache", &cSettings::NoPrecache},
    {nullptr, "UseCullTree", &cSettings::UseCullTree, SE_VIEWS},
    {nullptr, "DrawCullTree", &cSettings::DrawCullTree, SE_VIEWS},
    {nullptr, "TransformAngles", &cSettings::TransformAngles},
    {nullptr, "DontSnapPrimitivePoints", &cSettings::DontSnapPrimitivePoints},
    {nullptr, "StretchArches", &cSettings::StretchArches},
    {nullptr, "RestoreCutObjects", &cSettings::RestoreCutObjects},
    {nullptr, "PreciseModelSelection", &cSettings::PreciseModelSelection},
    {nullptr, "ModelAltScale", &cSettings::ModelAltScale},
    {nullptr, "SmallToolIcons", &cSettings::SmallToolIcons, SE_TOOL_BAR},
    {nullptr, "SkipFitDialog", &cSettings::SkipFitDialog},
    {nullptr, "SkipDefaultRoomDialog", &cSettings::SkipDefaultRoomDialog},
    {nullptr, "HalfSizeTextures", &cSettings::HalfSizeTextures, SE_TEXTURES},
    {nullptr, "MinHalfSizeTextureDims", &cSettings::MinHalfSizeTextureDims, SE_TEXTURES},
    {nullptr, "TextureCompression", &cSettings::TextureCompression, SE_TEXTURES},
    {nullptr, "AutoMipmaps", &cSettings::AutoMipmaps, SE_TEXTURES},
    {nullptr, "AnisotropicFilter", &cSettings::AnisotropicFilter, SE_3D},
    {nullptr, "NoPolyOffset", &cSettings::NoPolyOffset, SE_VIEWS},
    {nullptr, "TextureQuality", &cSettings::TextureQuality, SE_RESTART},
    {nullptr, "UndoEnabled", &cSettings::UndoEnabled},
    {nullptr, "UndoLevels", &cSettings::UndoLevels, SE_HISTORY},
    {nullptr, "MaxWorldSize", &cSettings::MaxWorldSize, SE_VIEWS | SE_MEASURES | SE_WORLD},
    {nullptr, "SelectionBulletSize", &cSettings::SelectionBulletSize, SE_VIEWS},
    {nullptr, "VertexToolBulletSize", &cSettings::VertexToolBulletSize, SE_VIEWS},
    {nullptr, "DefaultTextureScale", &cSettings::DefaultTextureScale},
    {nullptr, "CurrentColorScheme", &cSettings::CurrentColorScheme, SE_VIEWS | SE_COLORS},
    {"RecentFiles", "RecentMapDirectory", &cSettings::RecentMapDirectory},
    {"View2D", "CrosshairCursor", &cSettings::CrosshairCursor, SE_2D | SE_CURSORS},
    {"View2D", "Default15DegreeRotation", &cSettings::Default15DegreeRotation},
    {"View2D", "EnableScrollbars", &cSettings::EnableScrollbars, SE_2D | SE_MEASURES},
    {"View2D", "DrawVertices", &cSettings::DrawVertices, SE_2D},
    {"View2D", "DrawModels", &cSettings::DrawModels, SE_2D},
    {"View2D", "DrawCamera", &cSettings::DrawCamera, SE_2D},
    {"View2D", "FastCamera", &cSettings::FastCamera, SE_2D},
    {"View2D", "DrawSizingInfo", &cSettings::DrawSizingInfo, SE_2D},
    {"View2D", "CenterOnCamera", &cSettings::CenterOnCamera},
    {"View2D", "UseVisgroupColors", &cSettings::UseVisgroupColors, SE_2D},
    {"View2D", "ReorientPrimitives", &cSettings::ReorientPrimitives},
    {"View2D", "SelectAuto", &cSettings::SelectAuto},
    {"View2D", "SelectByHandles", &cSettings::SelectByHandles, SE_VIEWS},
    {"View2D", "KeepCloneVisGroup", &cSettings::KeepCloneVisGroup},
    {"View2D", "GridDefaultSize", &cSettings::GridDefaultSize},
    {"View2D", "GridHighlightStep", &cSettings::GridHighlightStep, SE_VIEWS},
    {"View2D", "GridHighlight", &cSettings::GridHighlight, SE_VIEWS},
    {"View2D", "HideSmallGrid", &cSettings::HideSmallGrid, SE_VIEWS},
    {"View2D", "DottedGrid", &cSettings::DottedGrid, SE_VIEWS},
    {"View3D", "BackClip", &cSettings::BackClip, SE_3D | SE_MEASURES},
    {"View3D", "Sensitivity", &cSettings::Sensitivity},
    {"View3D", "TextureFilter", &cSettings::TextureFilter, SE_3D},
    {"View3D", "Antialiasing", &cSettings::Antialiasing, SE_VIEWS | SE_RESTART_ON},
    {"View3D", "Transparency", &cSettings::Transparency, SE_3D},
    {"View3D", "TransparentSort", &cSettings::TransparentSort, SE_3D},
    {"View3D", "AnimateModels", &cSettings::AnimateModels, SE_3D},
    {"View3D", "ModelRenderDistance", &cSettings::ModelRenderDistance, SE_3D},
    {"View3D", "EnergySavingMode", &cSettings::EnergySavingMode, SE_TIMERS},
    {"View3D", "Mouselook", &cSettings::Mouselook},
    {"View3D", "MouseReverseY", &cSettings::MouseReverseY},
    {"View3D", "ForwardSpeed", &cSettings::ForwardSpeed},
    {"View3D", "TimeToTopSpeed", &cSettings::TimeToTopSpeed},
    {"Map", "EnableGrid2D", &cSettings::EnableGrid2D, SE_2D},
    {"Map", "EnableGrid3D", &cSettings::EnableGrid3D, SE_3D},
    {"Map", "SnapToGrid", &cSettings::SnapToGrid},
    {"View", "ShowConnections", &cSettings::ShowConnections, SE_VIEWS},
    {"View", "DrawNoDraw", &cSettings::DrawNoDraw, SE_3D},
    {"View", "TextureTransparency", &cSettings::TextureTransparency, SE_3D | SE_TRANSPARENCY},
    {"View", "EntityTransparency", &cSettings::EntityTransparency, SE_3D},
    {"View", "HideMask", &cSettings::HideMask, SE_VIEWS | SE_HIDDEN},
    {"Compiler", "ExpertMode", &cSettings::ExpertMode},
    {"Compiler", "EnableCordon", &cSettings::EnableCordon, SE_VIEWS},
    {"Tools", "TextureLock", &cSettings::TextureLock},
    {"Tools", "TextureLockScale", &cSettings::TextureLockScale},
    {"Tools", "TextureFaceAlign", &cSettings::TextureFaceAlign},
    {"Tools", "IgnoreGroups", &cSettings::IgnoreGroups, SE_GROUPS},
    {"Tools", "VertexToolRestrict", &cSettings::VertexToolRestrict},
    {"Tools", "ClearSelectionOnEscape", &cSettings::ClearSelectionOnEscape},
    {"Tools", "KeepHideMask", &cSettings::KeepHideMask},
    {"Tools", "TextureBrowserScaleMode", &cSettings::TextureBrowserScaleMode},
};
// clang-format on

cSettingRows settingsTable() {
    return {g_rows, int(std::size(g_rows))};
}

// ---- Effects

static unsigned effectOf(const cSettingRow& row, const cSettings& after) {
    if (!(row.effects & SE_RESTART_ON))
        return row.effects;
    const auto* flag = std::get_if<bool cSettings::*>(&row.member);
    const bool on = flag && after.*(*flag);
    return (row.effects & ~unsigned(SE_RESTART_ON)) | (on ? unsigned(SE_RESTART) : 0u);
}

unsigned effectsOf(const cSettings& before, const cSettings& after) {
    unsigned effects = before.gridSize != after.gridSize ? unsigned(SE_VIEWS) : 0u;
    for (const cSettingRow& row : settingsTable()) {
        const auto differs = [&](auto member) { return before.*member != after.*member; };
        if (std::visit(differs, row.member))
            effects |= effectOf(row, after);
    }
    return effects;
}

// ---- The file

// Keys without a group stand under "General" in the file.
static QString groupOf(const cSettingRow& row) {
    return QString::fromLatin1(row.group ? row.group : "General");
}

static QString keyOf(const cSettingRow& row) {
    return QString::fromLatin1(row.key);
}

static void assign(bool& member, const QVariant& value) {
    member = value.toBool();
}

static void assign(int& member, const QVariant& value) {
    member = value.toInt();
}

static void assign(float& member, const QVariant& value) {
    member = float(value.toDouble());
}

static void assign(QString& member, const QVariant& value) {
    member = value.toString();
}

static QVariant toVariant(float value) {
    return double(value);
}

template<class T> static QVariant toVariant(const T& value) {
    return value;
}

void readSettings(const cIniFile& file, cSettings& settings) {
    for (const cSettingRow& row : settingsTable()) {
        if (!file.contains(groupOf(row), keyOf(row)))
            continue;
        const QVariant value = file.value(groupOf(row), keyOf(row));
        std::visit([&](auto member) { assign(settings.*member, value); }, row.member);
    }
    settings.gridSize = qBound(1, settings.GridDefaultSize, 512);
}

void writeSettings(cIniFile& file, const cSettings& settings) {
    for (const cSettingRow& row : settingsTable()) {
        const auto text = [&](auto member) { return toVariant(settings.*member).toString(); };
        file.setValue(groupOf(row), keyOf(row), std::visit(text, row.member));
    }
}

static int qualityForMemory(uint32_t megabytes) {
    struct {
        uint32_t below;
        int quality;
    } static const steps[] = {{128, 1}, {256, 2}, {512, 3}, {1024, 4}};
    for (const auto& step : steps)
        if (megabytes < step.below)
            return step.quality;
    return 5;
}

bool clampSettings(cSettings& settings, uint32_t physicalMegabytes) {
    constexpr float MIN_TEXTURE_SCALE = 0.1f;
    constexpr int MIN_UNDO_LEVELS = 5;
    constexpr int MIN_BULLET_SIZE = 4;

    const bool chooseQuality = settings.TextureQuality == 0;
    if (chooseQuality)
        settings.TextureQuality = physicalMegabytes ? qualityForMemory(physicalMegabytes) : 5;
    if (settings.DefaultTextureScale < MIN_TEXTURE_SCALE)
        settings.DefaultTextureScale = 1.0f;
    settings.UndoLevels = qMax(settings.UndoLevels, MIN_UNDO_LEVELS);
    settings.SelectionBulletSize = qMax(settings.SelectionBulletSize, MIN_BULLET_SIZE);
    settings.VertexToolBulletSize = qMax(settings.VertexToolBulletSize, MIN_BULLET_SIZE);
    return chooseQuality;
}
