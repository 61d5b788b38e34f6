// SPDX-License-Identifier: MIT
// The user's choices as plain members. The main window derives from this struct, so every part
// of the program reads them as g_mainWindow->Name; the core reads the same members through
// g_host. Which key of TDKSettings.ini a member is, and when it is stored, stands in the table
// of src/shell/tSettingsTable.cpp.
#pragma once

#include <QString>

struct cSettings {
    bool IndependentWindows = false;
    bool CreateDefaultWindows = true;
    bool NoPrecache = true;
    bool UseCullTree = true;
    bool DrawCullTree = false;
    bool TransformAngles = true;
    bool DontSnapPrimitivePoints = false;
    bool StretchArches = true;
    bool RestoreCutObjects = true;
    bool PreciseModelSelection = true;
    bool ModelAltScale = true;
    bool SmallToolIcons = false;
    bool SkipFitDialog = false;
    bool SkipDefaultRoomDialog = false;
    bool HalfSizeTextures = false;
    int MinHalfSizeTextureDims = 128;
    bool TextureCompression = false;
    bool AutoMipmaps = true;
    bool AnisotropicFilter = false;
    bool NoPolyOffset = false;
    int TextureQuality = 0; // 1 to 5; 0 chooses by physical memory
    bool UndoEnabled = true;
    int UndoLevels = 50;
    int MaxWorldSize = 8192;      // world units from edge to edge
    int SelectionBulletSize = 8;  // pixels
    int VertexToolBulletSize = 8; // pixels
    float DefaultTextureScale = 1.0f;
    int CurrentColorScheme = 0; // -1: the custom scheme

    QString RecentMapDirectory;

    // 2D views
    bool CrosshairCursor = true;
    bool Default15DegreeRotation = false;
    bool EnableScrollbars = true;
    bool DrawVertices = true;
    bool DrawModels = true;
    bool DrawCamera = true;
    bool FastCamera = true;
    bool DrawSizingInfo = false;
    bool CenterOnCamera = false;
    bool UseVisgroupColors = true;
    bool ReorientPrimitives = false;
    bool SelectAuto = false;
    bool SelectByHandles = false;
    bool KeepCloneVisGroup = false;
    int GridDefaultSize = 32;
    int GridHighlightStep = 8;
    bool GridHighlight = true;
    bool HideSmallGrid = true;
    bool DottedGrid = false;

    // Camera views
    int BackClip = 5000;
    int Sensitivity = 10;
    int TextureFilter = 1; // 0 nearest, 1 linear
    bool Antialiasing = false;
    bool Transparency = true;
    bool TransparentSort = true;
    bool AnimateModels = true;
    int ModelRenderDistance = 500;
    bool EnergySavingMode = false;
    bool Mouselook = true;
    bool MouseReverseY = false;
    int ForwardSpeed = 1000;  // units per second
    int TimeToTopSpeed = 500; // milliseconds

    bool EnableGrid2D = true;
    bool EnableGrid3D = false;
    bool SnapToGrid = true;

    bool ShowConnections = false;
    bool DrawNoDraw = true;
    bool TextureTransparency = true;
    bool EntityTransparency = true;
    int HideMask = 0; // HM_ bits

    bool ExpertMode = false;
    bool EnableCordon = false;

    bool TextureLock = true;
    bool TextureLockScale = false;
    bool TextureFaceAlign = false;
    bool IgnoreGroups = false;
    bool VertexToolRestrict = false;
    bool ClearSelectionOnEscape = false;
    bool KeepHideMask = true;
    int TextureBrowserScaleMode = 1;

    // Not stored: the grid size in use, in world units, a power of two from 1 to 512.
    int gridSize = 32;
};

// Bits of HideMask.
enum { HM_ITEMS = 1, HM_PATHS = 2, HM_DETAIL = 4, HM_FACE_MASK = 8 };
