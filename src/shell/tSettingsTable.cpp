// SPDX-License-Identifier: MIT
// The settings in the order of the file, and their limits.
#include "shell/tSettingsTable.h"

#include "support/tIniFile.h"

#include <iterator>

// clang-format off
static const cSettingRow g_rows[] = {
    {nullptr, "IndependentWindows", &cSettings::IndependentWindows},
    {nullptr, "CreateDefaultWindows", &cSettings::CreateDefaultWindows},
    {nullptr, "NoPrecache", &cSettings::NoPrecache},
    {nullptr, "UseCullTree", &cSettings::UseCullTree},
    {nullptr, "DrawCullTree", &cSettings::DrawCullTree},
    {nullptr, "TransformAngles", &cSettings::TransformAngles},
    {nullptr, "DontSnapPrimitivePoints", &cSettings::DontSnapPrimitivePoints},
    {nullptr, "StretchArches", &cSettings::StretchArches},
    {nullptr, "RestoreCutObjects", &cSettings::RestoreCutObjects},
    {nullptr, "PreciseModelSelection", &cSettings::PreciseModelSelection},
    {nullptr, "ModelAltScale", &cSettings::ModelAltScale},
    {nullptr, "SmallToolIcons", &cSettings::SmallToolIcons},
    {nullptr, "SkipFitDialog", &cSettings::SkipFitDialog},
    {nullptr, "SkipDefaultRoomDialog", &cSettings::SkipDefaultRoomDialog},
    {nullptr, "HalfSizeTextures", &cSettings::HalfSizeTextures},
    {nullptr, "MinHalfSizeTextureDims", &cSettings::MinHalfSizeTextureDims},
    {nullptr, "TextureCompression", &cSettings::TextureCompression},
    {nullptr, "AutoMipmaps", &cSettings::AutoMipmaps},
    {nullptr, "AnisotropicFilter", &cSettings::AnisotropicFilter},
    {nullptr, "NoPolyOffset", &cSettings::NoPolyOffset},
    {nullptr, "TextureQuality", &cSettings::TextureQuality},
    {nullptr, "UndoEnabled", &cSettings::UndoEnabled},
    {nullptr, "UndoLevels", &cSettings::UndoLevels},
    {nullptr, "MaxWorldSize", &cSettings::MaxWorldSize},
    {nullptr, "SelectionBulletSize", &cSettings::SelectionBulletSize},
    {nullptr, "VertexToolBulletSize", &cSettings::VertexToolBulletSize},
    {nullptr, "DefaultTextureScale", &cSettings::DefaultTextureScale},
    {nullptr, "CurrentColorScheme", &cSettings::CurrentColorScheme},
    {"RecentFiles", "RecentMapDirectory", &cSettings::RecentMapDirectory},
    {"View2D", "CrosshairCursor", &cSettings::CrosshairCursor},
    {"View2D", "Default15DegreeRotation", &cSettings::Default15DegreeRotation},
    {"View2D", "EnableScrollbars", &cSettings::EnableScrollbars},
    {"View2D", "DrawVertices", &cSettings::DrawVertices},
    {"View2D", "DrawModels", &cSettings::DrawModels},
    {"View2D", "DrawCamera", &cSettings::DrawCamera},
    {"View2D", "FastCamera", &cSettings::FastCamera},
    {"View2D", "DrawSizingInfo", &cSettings::DrawSizingInfo},
    {"View2D", "CenterOnCamera", &cSettings::CenterOnCamera},
    {"View2D", "UseVisgroupColors", &cSettings::UseVisgroupColors},
    {"View2D", "ReorientPrimitives", &cSettings::ReorientPrimitives},
    {"View2D", "SelectAuto", &cSettings::SelectAuto},
    {"View2D", "SelectByHandles", &cSettings::SelectByHandles},
    {"View2D", "KeepCloneVisGroup", &cSettings::KeepCloneVisGroup},
    {"View2D", "GridDefaultSize", &cSettings::GridDefaultSize},
    {"View2D", "GridHighlightStep", &cSettings::GridHighlightStep},
    {"View2D", "GridHighlight", &cSettings::GridHighlight},
    {"View2D", "HideSmallGrid", &cSettings::HideSmallGrid},
    {"View2D", "DottedGrid", &cSettings::DottedGrid},
    {"View3D", "BackClip", &cSettings::BackClip},
    {"View3D", "Sensitivity", &cSettings::Sensitivity},
    {"View3D", "TextureFilter", &cSettings::TextureFilter},
    {"View3D", "Antialiasing", &cSettings::Antialiasing},
    {"View3D", "Transparency", &cSettings::Transparency},
    {"View3D", "TransparentSort", &cSettings::TransparentSort},
    {"View3D", "AnimateModels", &cSettings::AnimateModels},
    {"View3D", "ModelRenderDistance", &cSettings::ModelRenderDistance},
    {"View3D", "EnergySavingMode", &cSettings::EnergySavingMode},
    {"View3D", "Mouselook", &cSettings::Mouselook},
    {"View3D", "MouseReverseY", &cSettings::MouseReverseY},
    {"View3D", "ForwardSpeed", &cSettings::ForwardSpeed},
    {"View3D", "TimeToTopSpeed", &cSettings::TimeToTopSpeed},
    {"Map", "EnableGrid2D", &cSettings::EnableGrid2D},
    {"Map", "EnableGrid3D", &cSettings::EnableGrid3D},
    {"Map", "SnapToGrid", &cSettings::SnapToGrid},
    {"View", "ShowConnections", &cSettings::ShowConnections},
    {"View", "DrawNoDraw", &cSettings::DrawNoDraw},
    {"View", "TextureTransparency", &cSettings::TextureTransparency},
    {"View", "EntityTransparency", &cSettings::EntityTransparency},
    {"View", "HideMask", &cSettings::HideMask},
    {"Compiler", "ExpertMode", &cSettings::ExpertMode},
    {"Compiler", "EnableCordon", &cSettings::EnableCordon},
    {"Tools", "TextureLock", &cSettings::TextureLock},
    {"Tools", "TextureLockScale", &cSettings::TextureLockScale},
    {"Tools", "TextureFaceAlign", &cSettings::TextureFaceAlign},
    {"Tools", "IgnoreGroups", &cSettings::IgnoreGroups},
    {"Tools", "VertexToolRestrict", &cSettings::VertexToolRestrict},
    {"Tools", "ClearSelectionOnEscape", &cSettings::ClearSelectionOnEscape},
    {"Tools", "KeepHideMask", &cSettings::KeepHideMask},
    {"Tools", "TextureBrowserScaleMode", &cSettings::TextureBrowserScaleMode},
};
// clang-format on

cSettingRows settingsTable() {
    return {g_rows, int(std::size(g_rows))};
}

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
