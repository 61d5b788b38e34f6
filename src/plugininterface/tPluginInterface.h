/* SPDX-License-Identifier: MIT */
/*
 * The border between Karvex and its plug-ins: the map records, the records a plug-in hands over,
 * and the table of host services it gets. C compatible, includes nothing of ours.
 *
 * Records keep their field order under natural alignment. Sizes, counts and indices are 32-bit
 * ints, a bool is a 32-bit int with the values 0 and 1, text is zero-terminated and 8-bit in the
 * editor's locale codec. Lengths are world units, z is up; angles are degrees.
 */
#ifndef KARVEX_PLUGIN_INTERFACE_H
#define KARVEX_PLUGIN_INTERFACE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define TP_CLASS(name) class name
extern "C" {
#else
#define TP_CLASS(name) typedef struct name name
#endif

/* The run-time halves of the records. A plug-in only passes them through. */
TP_CLASS(cMap);
TP_CLASS(cEntity);
TP_CLASS(cBrush);
TP_CLASS(cFace);
TP_CLASS(cGroup);

typedef struct cMapData cMapData;
typedef struct cEntityData cEntityData;
typedef struct cBrushData cBrushData;
typedef struct cFaceData cFaceData;
typedef struct cGroupData cGroupData;
typedef struct cEpair cEpair;
typedef struct cTexture cTexture;
typedef struct cTextureImage cTextureImage;
typedef struct cSpriteRecord cSpriteRecord;
typedef struct cModelRecord cModelRecord;

/* ---- Map records ------------------------------------------------------------------------- */

/* One key/value pair of an entity. Keys compare without regard to case, values exactly. */
struct cEpair {
    cEpair* next;
    char* key;
    char* value;
};

/* Texture mapping of a face; also a record of the project file, byte for byte. */
typedef struct cFaceTexture {
    float uAxis[3]; /* S axis, unit length as a rule */
    float uShift;   /* texels */
    float vAxis[3]; /* T axis */
    float vShift;
    float uScale; /* world units per texel */
    float vScale;
    float rotation;      /* degrees; the axes already contain it */
    uint32_t alignFlags; /* FT_ALIGN_ bits, recomputed at every face rebuild */
    uint32_t value;      /* light value of the surface */
    uint32_t surfaceFlags;
    uint32_t contentFlags;
    char name[64]; /* zero-terminated, case kept */
} cFaceTexture;

enum { FT_ALIGN_WORLD = 1, FT_ALIGN_FACE = 2 };

typedef struct cFaceVertex {
    float xyz[3];
    float st[2];
    int32_t tag; /* 1 on a vertex inserted on an edge by the vertex tool */
} cFaceVertex;

/* Bits that entities, brushes, faces and groups share. */
enum { OF_SELECTED = 0x02, OF_DIRTY = 0x04, OF_HIDDEN = 0x08 };

enum {
    EF_POINT = 0x01,
    EF_SELECTED = 0x02,
    EF_DIRTY = 0x04,
    EF_HIDDEN = 0x08,
    EF_TRANSPARENT = 0x10,
    EF_WORLD = 0x20,
    EF_ITEM = 0x40,
    EF_PATH = 0x80,
    EF_MOVING = 0x100,
    EF_RECOMPUTE_ATTACHMENT = 0x800
};

enum {
    BF_SELECTED = 0x02,
    BF_DIRTY = 0x04,
    BF_HIDDEN = 0x08,
    BF_MOVING = 0x100,
    BF_MARK = 0x200,
    BF_MORPHED = 0x400
};

enum {
    FF_SELECTED = 0x02,
    FF_DIRTY = 0x04,
    FF_TRANSPARENT = 0x10,
    FF_MOVING = 0x100,
    FF_RESET_AXES = 0x1000
};

enum { GF_SELECTED = 0x02, GF_HIDDEN = 0x08, GF_WRITTEN = 0x200 };

/* cMapData::flags */
enum { MF_EXPORT_VISIBLE = 0x100000, MF_EXPORT_CORDON = 0x200000, MF_CLEARING = 0x400000 };

struct cFaceData {
    cFace* face;
    cFaceData* next;
    cFaceData* prev;
    cFaceData* nextSelected;
    cFaceData* prevSelected;
    cBrushData* brush;
    cTexture* texture;
    uint32_t flags;
    uint32_t id;
    float normal[3]; /* points out of the solid */
    float dist;
    int32_t planeType; /* 0, 1, 2 for an axial normal, else 3 */
    cFaceTexture tex;
    float mins[3];
    float maxs[3];
    int32_t vertexCount;
    cFaceVertex* vertices; /* counter-clockwise seen from outside */
};

struct cBrushData {
    cBrush* brush;
    cBrushData* next;
    cBrushData* prev;
    cBrushData* nextSelected;
    cBrushData* prevSelected;
    cGroupData* group;
    cGroupData* rootGroup;
    cFaceData* faces;
    cFaceData* facesTail;
    cEntityData* owner;
    void* decals;
    uint32_t lastFrame;
    uint32_t flags;
    uint32_t id;
    uint32_t reserved;
    float mins[3];
    float maxs[3];
};

struct cEntityData {
    cEntity* entity;
    cEntityData* next;
    cEntityData* prev;
    cEntityData* nextSelected;
    cEntityData* prevSelected;
    cGroupData* group;
    cGroupData* rootGroup;
    cBrushData* brushes;
    cBrushData* brushesTail;
    cMapData* owner;
    cEpair* epairs;
    char* classname;
    char* flagsKey;
    uint32_t lastFrame;
    uint32_t drawCount;
    uint32_t spawnFlags;
    uint32_t flags;
    uint32_t id;
    int32_t attachKind; /* 0 none, 1 sprite, 2 decal texture, 3 model */
    float origin[3];
    float angles[3]; /* pitch, yaw, roll */
    float mins[3];
    float maxs[3];
    uint32_t renderFlags; /* GL state word */
    uint8_t renderColor[4];
    int32_t renderMode;
    int32_t renderFx;
    uint16_t body;
    uint16_t skin;
    int32_t sequence;
    float frameRate;
    float scale;
    void* attachment;
};

/* What cEntityData::attachment of a sprite or model begins with. */
typedef struct cAttachmentHead {
    void* record; /* cSpriteRecord or cModelRecord */
    float frame;  /* position in the animation, in frames from the start of the sequence */
} cAttachmentHead;

struct cGroupData {
    cGroup* group;
    cGroupData* next;
    cGroupData* prev;
    cGroupData* nextSelected;
    cGroupData* prevSelected;
    cGroupData* parent;
    cMapData* owner;
    uint32_t flags;
    uint32_t id;
    int32_t memberCount; /* direct members, objects and child groups alike */
};

struct cMapData {
    cMap* map;
    cGroupData* groups;
    cEntityData* entities; /* the first one is the world */
    cEntityData* entitiesTail;
    cGroupData* selectedGroups;
    cEntityData* selectedEntities;
    cBrushData* selectedBrushes;
    cFaceData* selectedFaces;
    void* drawItems;
    uint32_t flags;
    float cordonMins[3]; /* both corners zero: no cordon */
    float cordonMaxs[3];
};

/* ---- Records of a plug-in ---------------------------------------------------------------- */

/* cMapProfile::flags */
enum {
    PF_NEEDS_PALETTE = 0x02,
    PF_SURFACE_FLAGS = 0x04,
    PF_CONTENT_FLAGS = 0x08,
    PF_LIGHT_VALUE = 0x10,
    PF_DECAL_ENTITIES = 0x20,
    PF_DECALS_WITHOUT_CLASS = 0x40,
    PF_RENDER_KEYS = 0x80,
    PF_ALPHA_KEY = 0x100
};

/* How one game's maps look. The host copies the record. */
typedef struct cMapProfile {
    uint32_t library; /* written by the host: the plug-in's number, from 1 */
    uint32_t flags;   /* PF_ bits */
    char name[64];
    char title[64];
    char compiledMapExtension[160];
    char textureExtensions[128];
    char packageExtensions[128];
    char spriteExtensions[128];
    char modelExtensions[128];
    char soundExtensions[128];
    char spriteFolder[64];
    char modelFolder[64];
    char soundFolder[64];
    char textureFolder[64];
    char csgOnlyEntsSwitch[32];
    char bspOnlyEntsSwitch[32];
    char visFastSwitch[32];
    char lightExtraSwitch[32];
    char gameMapArgument[32];
    char startEntityClass[64];
    char roomEntityClass[64];
    char decalEntityClass[64];
    char defaultTexture[64];
    char roomWallTexture[64];
    char roomFloorTexture[64];
    char roomCeilingTexture[64];
    char targetPrefixCharacters[64];
    uint32_t detailContentMask;
} cMapProfile;

/* cAction::flags */
enum { AF_HIDE_WITHOUT_PROJECT = 1, AF_DISABLE_WITHOUT_PROJECT = 2 };

/* A menu entry. The host copies the words; the texts must stay valid. */
typedef struct cAction {
    const char* title;
    const char* description; /* null falls back to the title */
    const char* category;    /* sub-menu; null or empty: none */
    const char* shortcut;    /* or null */
    uint32_t flags;          /* AF_ bits */
    uintptr_t user;
    void (*dispatch)(uintptr_t user);
} cAction;

/* cPrimitiveParams::flags, by number of bit */
enum { PP_REORIENT_BIT = 0, PP_SNAP_POINTS_BIT = 1, PP_STRETCH_ARCHES_BIT = 2 };

typedef struct cPrimitiveParams {
    cMapData* map;
    cFaceTexture face; /* template for new faces */
    int32_t sides;
    uint32_t flags;
    int32_t axes[3];
    float mins[3];
    float maxs[3];
} cPrimitiveParams;

typedef struct cPrimitive {
    const char* name;
    const char* category; /* null shows as "(unknown)" */
    int32_t sides;
    int32_t minSides;
    int32_t maxSides;
    int32_t (*dispatch)(cPrimitiveParams* parameters); /* non-zero: the map changed */
} cPrimitive;

typedef struct cTextureExtras {
    uint32_t renderState; /* GL state word, non-zero marks the texture translucent */
    uint32_t surfaceFlags;
    uint32_t contentFlags;
    uint32_t extraFlags; /* TX_ bits */
    uint32_t value;
    float opacity;
    float reserved;
} cTextureExtras;

/* cTextureExtras::extraFlags */
enum { TX_NODRAW = 1, TX_NO_CARVE = 2, TX_NO_DECALS = 4 };

struct cTextureImage {
    int32_t refCount;
    int32_t width;
    int32_t height;
    int32_t dataSize;
    uint32_t glFormat;
    uint32_t compressedFormat;
    uint32_t glName;
    cTextureImage* next; /* next frame or skin */
};

struct cSpriteRecord {
    uint32_t loaded;
    int32_t refCount;
    uint32_t formatId;
    int32_t orientation;
    int32_t width;
    int32_t height;
    int32_t frameCount;
    cTextureImage* frames;
    cTextureImage* lastFrame;
    uint32_t ownsData;
    void (*unload)(uint32_t formatId, cSpriteRecord* sprite);
};

struct cModelRecord {
    uint32_t loaded;
    int32_t refCount;
    uint32_t formatId;
    uint32_t transparent;
    float mins[3];
    float maxs[3];
    cTextureImage* skins;
    cTextureImage* lastSkin;
    uint32_t ownsData;
    void (*render)(uint32_t formatId, int32_t mode, float frameTime, cModelRecord* model,
                   cEntityData* entity);
    int32_t (*getBounds)(uint32_t formatId, float* mins, float* maxs, cModelRecord* model,
                         cEntityData* entity);
    void (*unload)(uint32_t formatId, cModelRecord* model);
};

/* Texture given by addTexture with this value in its flags is an image only. */
enum { TT_IMAGE_ONLY = 1 };

/* ---- Host services ----------------------------------------------------------------------- */

/* Entity update bits of Entity_Update. */
enum {
    UM_REEVALUATE = 1,
    UM_PLANES = 2,
    UM_WINDINGS = 4,
    UM_RESET_AXES = 8,
    UM_RENDER_KEYS = 16,
    UM_MODEL_KEYS = 32,
    UM_ATTACH = 64,
    UM_NO_SORT = 128
};

/* Codes of Render_Primitive. */
enum { RP_LINES = 1, RP_TRIANGLES = 2, RP_POLYGON = 3, RP_TRIANGLE_STRIP = 4, RP_TRIANGLE_FAN = 5 };

/* Flags of the Dialog_Add services. */
enum { DF_REQUIRED = 1, DF_EXISTING_FILE = 2 };

#if defined(__GNUC__)
#define TP_PRINTF __attribute__((format(printf, 1, 2)))
#else
#define TP_PRINTF
#endif

/* Filled once by the host; valid for the whole life of the process. */
typedef struct cHostServices {
    uint32_t size; /* sizeof(cHostServices) */

    /* 1 to 4: console; none of them stops the program */
    void (*Sys_Print)(const char* format, ...) TP_PRINTF;
    void (*Sys_DPrint)(const char* format, ...) TP_PRINTF;
    void (*Sys_Warning)(const char* format, ...) TP_PRINTF;
    void (*Sys_Error)(const char* format, ...) TP_PRINTF;
    /* 5 to 7: zero-filled memory */
    void* (*Sys_Alloc)(size_t size);
    void (*Sys_Free)(void* block);
    char* (*Sys_StrDup)(const char* text);
    /* 8 to 13 */
    void* (*TempBuffer_GetSpace)(int32_t index, int32_t size);
    double (*Sys_Time)(void);
    int32_t (*File_Find)(const char* name, char* out, int32_t outSize);
    void* (*File_Load)(const char* path, int32_t* sizeOut);
    const char* (*Sys_Version)(void);
    double (*Sys_TextureBrightness)(void);
    /* 14 to 28: the shared tokenizer */
    int32_t (*Parser_LoadFile)(const char* path);
    int32_t (*Parser_LoadMemory)(const char* buffer, int32_t size);
    char* (*Parser_Token)(void);
    int32_t (*Parser_CurrentLine)(void);
    void (*Parser_ParseError)(const char* format, ...) TP_PRINTF;
    int32_t (*Parser_HasFailed)(void);
    void (*Parser_ClearFailure)(void);
    int32_t (*Parser_GetToken)(int32_t crossLine);
    void (*Parser_UngetToken)(void);
    int32_t (*Parser_TokenAvailable)(void);
    void (*Parser_MatchToken)(const char* expected);
    void (*Parser_ParseVector)(int32_t count, float* out);
    void (*Parser_ParseMatrix)(int32_t rows, int32_t columns, float* out);
    void (*Parser_ParseCube)(int32_t planes, int32_t rows, int32_t columns, float* out);
    void (*Parser_Close)(void);
    /* 29: the package files of the project's configuration, joined by the separator */
    int32_t (*Map_GetPackagePaths)(cMapData* map, char** out, char separator);
    /* 30 to 38 */
    cEntityData* (*Entity_Create)(cMapData* map, const char* classname, const float* origin,
                                  uint32_t flags);
    void (*Entity_Update)(cEntityData* entity, uint32_t mode);
    void (*Entity_SetColor)(cEntityData* entity, const uint8_t* color);
    uint8_t* (*Entity_GetColor)(cEntityData* entity, uint8_t* out);
    void (*Entity_AddToVisGroup)(cMapData* map, cEntityData* entity, uint32_t id);
    void (*Entity_RemoveFromVisGroup)(cMapData* map, cEntityData* entity, uint32_t id);
    int32_t (*Entity_GetVisGroupCount)(cEntityData* entity);
    uint32_t (*Entity_GetVisGroupId)(cEntityData* entity, int32_t index);
    cEntityData* (*Entity_Find)(cMapData* map, const char* key, const char* value);
    /* 39 to 46 */
    cBrushData* (*Brush_Create)(cMapData* map, cEntityData* owner);
    void (*Brush_Delete)(cMapData* map, cBrushData* brush);
    void (*Brush_SetColor)(cBrushData* brush, const uint8_t* color);
    uint8_t* (*Brush_GetColor)(cBrushData* brush, uint8_t* out);
    void (*Brush_AddToVisGroup)(cMapData* map, cBrushData* brush, uint32_t id);
    void (*Brush_RemoveFromVisGroup)(cMapData* map, cBrushData* brush, uint32_t id);
    int32_t (*Brush_GetVisGroupCount)(cBrushData* brush);
    uint32_t (*Brush_GetVisGroupId)(cBrushData* brush, int32_t index);
    /* 47, 48 */
    cFaceData* (*Face_Create)(cMapData* map, cBrushData* brush, const cFaceTexture* tex,
                              int32_t vertexCount);
    void (*Face_Delete)(cMapData* map, cFaceData* face);
    /* 49 to 55 */
    cGroupData* (*Group_Create)(cMapData* map);
    void (*Group_Delete)(cMapData* map, cGroupData* group);
    void (*Group_AddGroup)(cGroupData* group, cGroupData* child);
    void (*Group_AddBrush)(cGroupData* group, cBrushData* brush);
    void (*Group_AddEntity)(cGroupData* group, cEntityData* entity);
    void (*Group_SetColor)(cGroupData* group, const uint8_t* color);
    uint8_t* (*Group_GetColor)(cGroupData* group, uint8_t* out);
    /* 56 to 62 */
    uint32_t (*VisGroup_Create)(cMapData* map);
    void (*VisGroup_Delete)(cMapData* map, uint32_t id);
    void (*VisGroup_Set)(cMapData* map, uint32_t id, const char* name, uint32_t newId,
                         const uint8_t* color);
    int32_t (*VisGroup_GetCount)(cMapData* map);
    int32_t (*VisGroup_IndexOf)(cMapData* map, uint32_t id);
    int32_t (*VisGroup_Get)(cMapData* map, int32_t index, char* nameOut, int32_t nameSize,
                            uint32_t* idOut, uint8_t* colorOut);
    void (*VisGroup_Clear)(cMapData* map);
    /* 63 to 80: undo; captures do nothing while no step is open */
    void (*History_Begin)(cMapData* map, const char* name);
    void (*History_End)(cMapData* map);
    void (*History_EntityCreated)(cEntityData* entity);
    void (*History_BrushCreated)(cBrushData* brush);
    void (*History_GroupCreated)(cGroupData* group);
    void (*History_EntityDeleted)(cEntityData* entity);
    void (*History_BrushDeleted)(cBrushData* brush);
    void (*History_GroupDeleted)(cGroupData* group);
    void (*History_EntityChanged)(cEntityData* entity);
    void (*History_BrushChanged)(cBrushData* brush, int32_t withGeometry);
    void (*History_FaceChanged)(cFaceData* face);
    void (*History_SelectedBrushesCreated)(cMapData* map);
    void (*History_SelectedEntitiesCreated)(cMapData* map);
    void (*History_SelectedBrushesDeleted)(cMapData* map);
    void (*History_SelectedEntitiesDeleted)(cMapData* map);
    void (*History_SelectedBrushesChanged)(cMapData* map, int32_t withGeometry);
    void (*History_SelectedEntitiesChanged)(cMapData* map);
    void (*History_SelectedFacesChanged)(cMapData* map);
    /* 81 to 98: a form built at run time; without an active one each call is an error */
    void (*Dialog_Begin)(const char* title);
    void (*Dialog_InitExternalCommand)(const char* buttonText, const char* program);
    void (*Dialog_InitInternalCommand)(const char* buttonText, void (*function)(void));
    void (*Dialog_SetProgress)(int32_t value, int32_t maximum);
    void (*Dialog_AddTextEdit)(const char* option, const char* label, const char* value,
                               uint32_t flags);
    void (*Dialog_AddCheckBox)(const char* option, const char* label, int32_t checked,
                               uint32_t flags);
    void (*Dialog_AddRadioBox)(const char* option, const char* label, int32_t yes, uint32_t flags);
    void (*Dialog_AddSpinBox)(const char* option, const char* label, int32_t value, int32_t minimum,
                              int32_t maximum, int32_t step, uint32_t flags);
    void (*Dialog_AddSpinBoxFloat)(const char* option, const char* label, float value,
                                   float minimum, float maximum, float step, uint32_t flags);
    void (*Dialog_AddComboBox)(const char* option, const char* label, int32_t index,
                               const char* items, uint32_t flags);
    void (*Dialog_AddFileEdit)(const char* option, const char* label, const char* value,
                               const char* filter, uint32_t flags);
    void (*Dialog_AddFileList)(const char* option, const char* label, const char* value,
                               const char* filter, uint32_t flags);
    void (*Dialog_AddDirectoryEdit)(const char* option, const char* label, const char* value,
                                    uint32_t flags);
    void (*Dialog_QueryArgument)(const char* option, char* out, int32_t size);
    int32_t (*Dialog_QueryArgumentInt)(const char* option);
    float (*Dialog_QueryArgumentFloat)(const char* option);
    void (*Dialog_End)(void);
    void (*Dialog_Print)(const char* format, ...) TP_PRINTF;
    /* 99 to 113: the model stream, meaningful only inside tpRenderModel */
    void (*Render_PointSize)(float size);
    void (*Render_LineWidth)(float width);
    void (*Render_Texture)(const cTextureImage* image); /* null disables texturing */
    void (*Render_Primitive)(int32_t code);             /* RP_ codes */
    void (*Render_Flush)(void);
    void (*Render_Color)(uint8_t r, uint8_t g, uint8_t b, uint8_t a);
    void (*Render_ColorV)(const uint8_t* rgba); /* null disables the colour array */
    void (*Render_TexCoord)(float s, float t);
    void (*Render_TexCoordV)(const float* st);
    void (*Render_Vertex)(const float* xyz);
    uint32_t (*Render_GetState)(void);
    void (*Render_SetState)(uint32_t state);
    void (*Render_GetView)(float* out); /* origin, forward, right, up */
    float (*Render_ShadeFloor)(void);
    float (*Render_Shade)(const float* normal); /* null gives 1.0 */
} cHostServices;

/* ---- Exports of a plug-in and the callbacks they get -------------------------------------- */

typedef void (*tpProfileCallback)(const cMapProfile* profile, void* library);
typedef int32_t (*tpFormatCallback)(uint32_t cookie, const char* extension, const char* description,
                                    void* library);
typedef void (*tpActionCallback)(const cAction* action, void* manager);
typedef void (*tpPrimitiveCallback)(const cPrimitive* primitive, void* library);
typedef void (*tpCaptionCallback)(const char* profileName, const char* caption, int32_t index,
                                  void* library);

typedef void (*tpAddTexture)(const char* sourceId, const char* name, uint32_t glFormat,
                             uint32_t compressedFormat, int32_t dataSize, int32_t width,
                             int32_t height, uint32_t flags, const cTextureExtras* extras,
                             const void* pixels, void* context);
typedef void (*tpAddFrame)(cSpriteRecord* sprite, uint32_t glFormat, uint32_t compressedFormat,
                           int32_t dataSize, int32_t width, int32_t height, const void* pixels);
typedef void (*tpAddSkin)(cModelRecord* model, uint32_t glFormat, uint32_t compressedFormat,
                          int32_t dataSize, int32_t width, int32_t height, const void* pixels);

/* What tpGetPackageInfo fills; zeroed by the host. */
typedef struct tpPackageInfo {
    int32_t textureCount;
    int32_t reserved[15];
} tpPackageInfo;

typedef int32_t (*tpMainFunction)(const cHostServices* host);
typedef void (*tpEnumProfilesFunction)(tpProfileCallback callback, void* library);
typedef int32_t (*tpEnumFormatsFunction)(tpFormatCallback callback, void* library);
typedef void (*tpEnumActionsFunction)(tpActionCallback callback, void* manager);
typedef int32_t (*tpEnumPrimitivesFunction)(tpPrimitiveCallback callback, void* library);
typedef void (*tpEnumCaptionsFunction)(tpCaptionCallback callback, void* library);
typedef int32_t (*tpMapFunction)(uint32_t cookie, const char* path, cMapData* map);
typedef void (*tpSetPaletteFunction)(const uint8_t* palette);
typedef int32_t (*tpFilterTextureNameFunction)(uint32_t formatId, const char* path);
typedef int32_t (*tpGetPackageInfoFunction)(uint32_t formatId, const char* path,
                                            tpPackageInfo* info);
typedef int32_t (*tpLoadPackageFunction)(uint32_t formatId, const char* path, tpAddTexture add,
                                         void* context);
typedef int32_t (*tpLoadTextureFunction)(uint32_t formatId, const char* path, const void* data,
                                         int32_t size, tpAddTexture add, void* context);
/* The block handed to a sprite or model loader is the plug-in's from then on, also when the load
   fails: it goes back by Sys_Free. Where several formats have one extension, each try is handed a
   block of its own. */
typedef int32_t (*tpLoadSpriteFunction)(uint32_t formatId, const char* path, void* data,
                                        int32_t size, cSpriteRecord* sprite, tpAddFrame add,
                                        void* unused);
typedef void (*tpUnloadSpriteFunction)(uint32_t formatId, cSpriteRecord* sprite);
typedef int32_t (*tpLoadModelFunction)(uint32_t formatId, const char* path, void* data,
                                       int32_t size, cModelRecord* model, tpAddSkin add,
                                       void* unused);
typedef void (*tpUnloadModelFunction)(uint32_t formatId, cModelRecord* model);
typedef int32_t (*tpGetModelBoundsFunction)(uint32_t formatId, float* mins, float* maxs,
                                            cModelRecord* model, cEntityData* entity);
/* Sends the model through the Render_ services, placed, turned and, but for bit 4 of the mode,
   scaled as the entity tells; triangles come clockwise seen from outside. With bit 1 it is drawn in
   the colour that is set, without colours and textures of its own. The host keeps what was sent and
   shows it again, at any origin and scale, for every entity of the same angles, frame, sequence,
   body, skin and colours. A plug-in that goes by more than these asks Render_GetView in the call:
   then it is called for each entity and draw. */
typedef void (*tpRenderModelFunction)(uint32_t formatId, int32_t mode, float frameTime,
                                      cModelRecord* model, cEntityData* entity);

/* ---- Layout, for both widths of a pointer -------------------------------------------------- */

#ifdef __cplusplus
#define TP_ASSERT(condition) static_assert(condition, #condition)
#else
#define TP_ASSERT(condition) _Static_assert(condition, #condition)
#endif
/* n pointers and b bytes in all, as the size on this machine */
#define TP_SIZE(size32, size64) (sizeof(void*) == 8 ? size64##u : size32##u)

TP_ASSERT(sizeof(cFaceTexture) == 124);
TP_ASSERT(sizeof(tpPackageInfo) == 64);
TP_ASSERT(sizeof(cFaceVertex) == 24);
TP_ASSERT(sizeof(cMapProfile) == 1868);
TP_ASSERT(offsetof(cMapProfile, compiledMapExtension) == 136);
TP_ASSERT(offsetof(cMapProfile, spriteFolder) == 936);
TP_ASSERT(offsetof(cMapProfile, csgOnlyEntsSwitch) == 1192);
TP_ASSERT(offsetof(cMapProfile, startEntityClass) == 1352);
TP_ASSERT(offsetof(cMapProfile, defaultTexture) == 1544);
TP_ASSERT(offsetof(cMapProfile, detailContentMask) == 1864);
TP_ASSERT(sizeof(cAction) == TP_SIZE(28, 56));
TP_ASSERT(offsetof(cAction, user) == TP_SIZE(20, 40));
TP_ASSERT(offsetof(cAction, dispatch) == TP_SIZE(24, 48));
TP_ASSERT(sizeof(cPrimitive) == TP_SIZE(24, 40));
TP_ASSERT(offsetof(cPrimitive, dispatch) == TP_SIZE(20, 32));
TP_ASSERT(sizeof(cPrimitiveParams) == TP_SIZE(172, 176));
TP_ASSERT(sizeof(cTextureExtras) == 28);
TP_ASSERT(sizeof(cTextureImage) == TP_SIZE(32, 40));
TP_ASSERT(offsetof(cTextureImage, next) == TP_SIZE(28, 32));
TP_ASSERT(sizeof(cSpriteRecord) == TP_SIZE(44, 64));
TP_ASSERT(offsetof(cSpriteRecord, frames) == TP_SIZE(28, 32));
TP_ASSERT(offsetof(cSpriteRecord, ownsData) == TP_SIZE(36, 48));
TP_ASSERT(offsetof(cSpriteRecord, unload) == TP_SIZE(40, 56));
TP_ASSERT(sizeof(cModelRecord) == TP_SIZE(64, 88));
TP_ASSERT(offsetof(cModelRecord, skins) == 40);
TP_ASSERT(offsetof(cModelRecord, ownsData) == TP_SIZE(48, 56));
TP_ASSERT(offsetof(cModelRecord, render) == TP_SIZE(52, 64));
TP_ASSERT(offsetof(cModelRecord, unload) == TP_SIZE(60, 80));
TP_ASSERT(sizeof(cHostServices) == TP_SIZE(456, 912));
TP_ASSERT(offsetof(cHostServices, Sys_Print) == sizeof(void*));
TP_ASSERT(sizeof(cMapData) == TP_SIZE(64, 104));
TP_ASSERT(offsetof(cMapData, flags) == TP_SIZE(36, 72));
TP_ASSERT(sizeof(cGroupData) == TP_SIZE(40, 72));
TP_ASSERT(sizeof(cBrushData) == TP_SIZE(84, 128));
TP_ASSERT(sizeof(cFaceData) == TP_SIZE(212, 248));
TP_ASSERT(offsetof(cFaceData, tex) == TP_SIZE(56, 84));
TP_ASSERT(offsetof(cEntityData, origin) == TP_SIZE(76, 128));

#ifdef __cplusplus
}
#endif

#endif
