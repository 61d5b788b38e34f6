// SPDX-License-Identifier: MIT
// What drawing code and tools know of the view they draw into, and the counters they keep.
// A canvas fills the record before every draw; nobody else writes to it.
#pragma once

#include "views/tDrawSettings.h"
#include "views/tFrustum.h"

#include <limits>

struct cTexture;

enum eViewType { VIEW_FRONT = 0, VIEW_SIDE = 1, VIEW_TOP = 2, VIEW_CAMERA = 3 };

enum eRenderMode { RM_WIREFRAME = 0, RM_FILLED = 1, RM_TEXTURED = 2 };

// cViewInfo::pickMode
enum ePickMode { PICK_NONE = 0, PICK_GROUPS = 1, PICK_OBJECTS = 2, PICK_FACES = 3 };

// cViewInfo::pickFlags; -1 picks everything.
enum { PICK_BRUSHES = 1, PICK_ENTITIES = 2, PICK_ALL = -1 };

// cViewInfo::flags
enum eViewFlag : uint32_t {
    VF_CAMERA = 0x1,
    VF_CONNECTIONS = 0x2,
    VF_GRID_3D = 0x4,
    VF_BY_HANDLES = 0x8,
    VF_MORPHING = 0x10,
    VF_TRANSPARENCY = 0x20,
    VF_TRANSPARENT_SORT = 0x40,
    VF_CULL_TREE = 0x80,
    VF_DRAW_CULL_TREE = 0x100,
    VF_NODRAW = 0x200,
    VF_MODELS = 0x400,
    VF_ANIMATE = 0x800,
    VF_NO_POLYGON_OFFSET = 0x1000
};

struct cDrawStats {
    int entities = 0;
    int brushes = 0;
    int faces = 0;
    int culls = 0;
    // What the map's picture cost, from OpenGL's point of view.
    int calls = 0;
    int ranges = 0;
    int bytes = 0; // sent
    // When something animated in view looks different, on the clock of animations.
    double changesAt = std::numeric_limits<double>::infinity();
};

struct cViewInfo {
    bool is3D = false;
    uint32_t frame = 0; // program-wide, grows at each view set-up; stamps what was drawn
    uint32_t flags = 0; // VF_ bits
    int renderMode = RM_WIREFRAME;
    int pickMode = PICK_NONE;
    int pickFlags = PICK_ALL;
    const cTexture* texture = nullptr; // the texture last bound, or null
    uint32_t hideMask = 0;             // HM_ bits
    int axisH = -1;                    // world axes of the screen; -1 in the camera view
    int axisV = -1;
    int axisDepth = -1;
    int axisSign = 1;
    uint32_t detailContentMask = 0;
    float frameTime = 0; // seconds since the last frame
    double seconds = 0;  // on the clock of animations; 2D views show where they begin
    float invZoom = 4;   // world units per pixel, 2D
    float gridSize = 32;
    float gridDepth = 512; // how near the camera must be for the grid on a face
    float modelRenderDistance = 0;
    float selectionBulletSize = 8; // pixels
    float vertexBulletSize = 8;    // pixels
    float origin[3] = {0, 0, 0};
    float forward[3] = {1, 0, 0};
    float right[3] = {0, -1, 0};
    float up[3] = {0, 0, 1};
    const cFrustum* frustum = nullptr;
    cDrawSettings settings;

    bool has(eViewFlag flag) const { return (flags & flag) != 0; }
    bool isPicking() const { return pickMode != PICK_NONE; }
    bool isWireframe() const { return renderMode == RM_WIREFRAME; }
};
