// SPDX-License-Identifier: MIT
// Rebuilding faces and brushes from planes or vertices, validity tests, splitting.
#include "document/tBrushGeometry.h"

#include "document/tBrush.h"
#include "document/tCullTree.h"
#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "document/tWinding.h"
#include "support/tVec.h"

// GL primitives for 3, 4 and more vertices.
static constexpr int MODE_TRIANGLES = 4, MODE_QUADS = 7, MODE_POLYGON = 9;
// An edge or a normal shorter than this says nothing about the plane.
static constexpr float DEGENERATE_LENGTH = 0.001f;
// Two planes of a brush this alike are one plane.
static constexpr float SAME_PLANE_DOT = 0.999f;
static constexpr float SAME_PLANE_DIST = 0.001f;
// How far a vertex may stand out of another face's plane; much coarser than a clip, so that a
// brush slightly out of true after vertex editing is not reported.
static constexpr float CONVEX_EPSILON = 0.5f;
static constexpr float PLANAR_SQUARED_LENGTH = 0.001f;
static constexpr float PLANAR_DOT = 0.9995f;
static constexpr float BOX_EPSILON = 0.001f;
static constexpr float OVERLAP_EPSILON = 0.01f;

static cMap* mapOf(const cBrushData* brush) {
    return brush && brush->owner && brush->owner->owner ? brush->owner->owner->map : nullptr;
}

cPlane planeOf(const cFaceData* face) {
    cPlane plane = {
        {face->normal[0], face->normal[1], face->normal[2]}, face->dist, face->planeType, 0};
    T_SetPlaneSignbits(&plane);
    return plane;
}

int planeTypeForNormal(const float* normal) {
    for (int i = 0; i < 3; ++i) {
        if (std::fabs(normal[i]) == 1.0f)
            return i;
    }
    return 3;
}

// ---- Faces

// The unit vector from one vertex to another; false for an edge too short.
static bool edgeDirection(const cFaceVertex& from, const cFaceVertex& to, float* out) {
    vecSubtract(to.xyz, from.xyz, out);
    return T_VectorNormalize(out) > DEGENERATE_LENGTH;
}

// The first corner that is none too flat, seen from the end of the list, gives the plane.
static void planeFromVertices(cFaceData* face) {
    vecSet(face->normal, 0.0f, 0.0f, 0.0f);
    face->dist = 0;
    const int count = face->vertexCount;
    for (int i = count - 1; i >= 0 && count > 2; --i) {
        const cFaceVertex& corner = face->vertices[(i + count - 1) % count];
        const cFaceVertex& before = face->vertices[(i + count - 2) % count];
        float e1[3], e2[3], normal[3];
        if (!edgeDirection(corner, face->vertices[i], e1) || !edgeDirection(corner, before, e2))
            continue;
        vecCross(e1, e2, normal);
        if (T_VectorNormalize(normal) < DEGENERATE_LENGTH)
            continue;
        vecCopy(normal, face->normal);
        face->dist = vecDot(normal, corner.xyz);
        break;
    }
    face->planeType = planeTypeForNormal(face->normal);
}

static void storeWinding(cFaceData* face, const cWindingD* w) {
    if (face->vertexCount != w->count) {
        Mem_Free(face->vertices);
        face->vertices =
            static_cast<cFaceVertex*>(Mem_Alloc(size_t(w->count) * sizeof(cFaceVertex)));
        face->vertexCount = face->vertices ? w->count : 0;
    }
    for (int i = 0; i < face->vertexCount; ++i) {
        cFaceVertex& vertex = face->vertices[i];
        vertex = {};
        for (int axis = 0; axis < 3; ++axis)
            vertex.xyz[axis] = float(w->points[i][axis]);
        snapCoordinates(vertex.xyz);
    }
}

// Two planes under a small angle have the same distance where they meet beside the origin.
static bool samePlane(const cFaceData* a, const cFaceData* b) {
    return vecDot(a->normal, b->normal) > SAME_PLANE_DOT &&
           std::fabs(a->dist - b->dist) < SAME_PLANE_DIST &&
           planesEqual(planeOf(a), planeOf(b), false);
}

// False when nothing of the face is left. Of several equal planes only the last one is built.
static bool windingFromPlanes(cFaceData* face) {
    const double normal[3] = {double(face->normal[0]), double(face->normal[1]),
                              double(face->normal[2])};
    cWindingD* w = windingAlloc<double>();
    windingInitFromPlane(w, normal, double(face->dist));
    bool passed = false;
    for (const cFaceData* other : facesOf(face->brush)) {
        if (other == face) {
            passed = true;
            continue;
        }
        if (samePlane(face, other)) {
            if (!passed)
                continue;
            windingFree(w);
            return true;
        }
        const double inward[3] = {-double(other->normal[0]), -double(other->normal[1]),
                                  -double(other->normal[2])};
        w = windingClip(w, inward, -double(other->dist), false);
        if (!w)
            return false;
    }
    if (w->count > 2)
        storeWinding(face, w);
    windingFree(w);
    return true;
}

static void updateFaceBounds(cFaceData* face) {
    T_ClearBounds(face->mins, face->maxs);
    for (int i = 0; i < face->vertexCount; ++i)
        T_AddPointToBounds(face->vertices[i].xyz, face->mins, face->maxs);
    if (face->vertexCount == 0) {
        vecSet(face->mins, 0.0f, 0.0f, 0.0f);
        vecSet(face->maxs, 0.0f, 0.0f, 0.0f);
    }
    for (int axis = 0; axis < 3; ++axis)
        face->face->center[axis] = (face->mins[axis] + face->maxs[axis]) * 0.5f;
}

static int modeForCount(int vertexCount) {
    return vertexCount == 3 ? MODE_TRIANGLES : vertexCount == 4 ? MODE_QUADS : MODE_POLYGON;
}

bool rebuildFace(cFaceData* face, uint32_t mode) {
    if (face->flags & FF_RESET_AXES) {
        face->flags &= ~uint32_t(FF_RESET_AXES);
        mode |= UM_RESET_AXES;
    }
    if (mode & UM_PLANES)
        planeFromVertices(face);
    if ((mode & UM_WINDINGS) && face->brush && !windingFromPlanes(face)) {
        mapOf(face->brush)->freeFace(face);
        return false;
    }
    if (mode & UM_RESET_AXES)
        resetAxes(face);
    updateFaceBounds(face);
    face->face->shade = shadeForNormal(face->normal);
    computeAlignFlags(face);
    computeTexCoords(face);
    face->face->glMode = modeForCount(face->vertexCount);
    face->flags &= ~uint32_t(FF_DIRTY);
    return true;
}

void reverseFace(cFaceData* face) {
    std::reverse(face->vertices, face->vertices + face->vertexCount);
}

void insertFaceVertex(cFaceData* face, int index, const float* point, bool tag) {
    auto* grown =
        static_cast<cFaceVertex*>(Mem_Alloc(size_t(face->vertexCount + 1) * sizeof(cFaceVertex)));
    if (!grown)
        return;
    const int place = index + 1;
    std::copy(face->vertices, face->vertices + place, grown);
    std::copy(face->vertices + place, face->vertices + face->vertexCount, grown + place + 1);
    vecCopy(point, grown[place].xyz);
    grown[place].tag = tag ? 1 : 0;
    Mem_Free(face->vertices);
    face->vertices = grown;
    ++face->vertexCount;
    face->flags |= FF_DIRTY;
}

// ---- Brushes

void sortFaces(cBrushData* brush) {
    // Full ties turn round at every sort: the reversed list goes through a stable one.
    cFaceData* inOrder[64];
    std::vector<cFaceData*> many;
    int count = 0;
    for (cFaceData* face = brush->faces; face; face = face->next)
        ++count;
    cFaceData** faces = inOrder;
    if (count > 64) {
        many.resize(size_t(count));
        faces = many.data();
    }
    int place = 0;
    for (cFaceData* face = brush->facesTail; face; face = face->prev)
        faces[place++] = face;
    const auto before = [](const cFaceData* a, const cFaceData* b) {
        return a->planeType != b->planeType ? a->planeType < b->planeType
                                            : a->vertexCount > b->vertexCount;
    };
    // An insertion sort is stable and takes no memory; long lists go to the library's.
    if (count > 64) {
        std::stable_sort(faces, faces + count, before);
    } else {
        for (int i = 1; i < count; ++i) {
            cFaceData* face = faces[i];
            int j = i;
            for (; j > 0 && before(face, faces[j - 1]); --j)
                faces[j] = faces[j - 1];
            faces[j] = face;
        }
    }
    brush->faces = brush->facesTail = nullptr;
    for (int i = 0; i < count; ++i)
        listPushTail(brush->faces, brush->facesTail, faces[i]);
}

static void giveRandomColor(cBrush* brush) {
    const uint8_t* base = brush->baseColor;
    if (base[0] || base[1] || base[2] || base[3] != 255)
        return;
    const uint8_t color[4] = {uint8_t(T_RandomLong(0, 255)), uint8_t(T_RandomLong(0, 255)),
                              uint8_t(T_RandomLong(0, 255)), 255};
    brush->setBaseColor(color);
}

void rebuildBrush(cBrushData* brush, uint32_t mode) {
    giveRandomColor(brush->brush);
    T_ClearBounds(brush->mins, brush->maxs);
    bool any = false;
    for (cFaceData* face : facesOf(brush)) {
        memcpy(face->face->color, brush->brush->drawColor, 4);
        if ((face->flags & FF_DIRTY) && !rebuildFace(face, mode))
            continue;
        for (int i = 0; i < face->vertexCount; ++i)
            T_AddPointToBounds(face->vertices[i].xyz, brush->mins, brush->maxs);
        any |= face->vertexCount > 0;
    }
    if (!any) {
        vecSet(brush->mins, 0.0f, 0.0f, 0.0f);
        vecSet(brush->maxs, 0.0f, 0.0f, 0.0f);
    }
    for (int axis = 0; axis < 3; ++axis)
        brush->brush->center[axis] = (brush->mins[axis] + brush->maxs[axis]) * 0.5f;
    brush->flags &= ~uint32_t(BF_DIRTY);
    noteChange(brush);
    cMap* map = mapOf(brush);
    if (!(mode & UM_NO_SORT)) {
        sortFaces(brush);
        if (map && map->cullTree)
            map->cullTree->updateBrush(brush);
    }
    if (map)
        map->markChanged();
}

static bool setError(QString* errorText, const char* text) {
    if (errorText)
        *errorText = QString::fromLatin1(text);
    return false;
}

// The unit normal of the corner at vertex 0; false where it is too short or too straight.
static bool cornerNormal(const cFaceData* face, int i, float* normal) {
    float a[3], b[3];
    vecSubtract(face->vertices[i - 1].xyz, face->vertices[0].xyz, a);
    vecSubtract(face->vertices[i].xyz, face->vertices[0].xyz, b);
    if (vecDot(a, a) < PLANAR_SQUARED_LENGTH || vecDot(b, b) < PLANAR_SQUARED_LENGTH)
        return false;
    T_VectorNormalize(a);
    T_VectorNormalize(b);
    if (vecDot(a, b) > PLANAR_DOT)
        return false;
    vecCross(a, b, normal);
    T_VectorNormalize(normal);
    return true;
}

bool checkFacePlanar(const cFaceData* face, QString* errorText) {
    bool known = false;
    float previous[3];
    for (int i = 2; i < face->vertexCount; ++i) {
        float normal[3];
        if (!cornerNormal(face, i, normal))
            continue;
        if (known && vecDot(normal, previous) < PLANAR_DOT)
            return setError(errorText, "face is not planar");
        vecCopy(normal, previous);
        known = true;
    }
    return true;
}

static bool allBehind(const cFaceData* face, const cFaceData* other) {
    for (int i = 0; i < other->vertexCount; ++i) {
        if (vecDot(face->normal, other->vertices[i].xyz) - face->dist > CONVEX_EPSILON)
            return false;
    }
    return true;
}

bool checkBrush(const cBrushData* brush, bool allowCoplanar, QString* errorText) {
    for (const cFaceData* f = brush->faces; f; f = f->next) {
        if (!checkFacePlanar(f, errorText))
            return false;
        for (const cFaceData* g = f->next; g; g = g->next) {
            if (!allowCoplanar && samePlane(f, g))
                return setError(errorText, "brush has coplanar planes");
            if (!allBehind(f, g))
                return setError(errorText, "brush is not convex");
        }
    }
    return true;
}

// ---- Splitting

// A face of a piece: the texture and the plane of the face it was cut from.
static void addPiece(cMap* map, const cFaceData* source, cWindingD* w, cBrushData** brushInOut) {
    if (!*brushInOut)
        *brushInOut = map->addBrush(source->brush->owner);
    cFaceData* face = map->addFace(*brushInOut, source->tex, w->count);
    vecCopy(source->normal, face->normal);
    face->dist = source->dist;
    face->planeType = source->planeType;
    for (int i = 0; i < w->count; ++i) {
        for (int axis = 0; axis < 3; ++axis)
            face->vertices[i].xyz[axis] = float(w->points[i][axis]);
    }
}

static void addCap(cMap* map, cBrushData* brush, const cFaceTexture& tex, const cPlane& plane,
                   float sign) {
    cFaceData* cap = map->addFace(brush, tex, 0);
    vecScale(plane.normal, sign, cap->normal);
    cap->dist = sign * plane.dist;
    cap->planeType = planeTypeForNormal(cap->normal);
    cap->flags |= FF_RESET_AXES;
    rebuildBrush(brush, UM_WINDINGS);
}

static cWindingD* windingOf(const cFaceData* face) {
    cWindingD* w = windingAlloc<double>();
    w->count = std::min(face->vertexCount, cWindingD::CAPACITY);
    for (int i = 0; i < w->count; ++i) {
        for (int axis = 0; axis < 3; ++axis)
            w->points[i][axis] = double(face->vertices[i].xyz[axis]);
    }
    return w;
}

// How flat the texture of a face lies on the plane, 0 to 1.
static float flatnessOn(const cFaceData* face, const cPlane& plane) {
    float c[3];
    vecCross(face->tex.uAxis, face->tex.vAxis, c);
    T_VectorNormalize(c);
    return std::fabs(vecDot(plane.normal, c));
}

void splitBrush(cBrushData* brush, const cPlane& plane, cBrushData** frontOut,
                cBrushData** backOut) {
    cMap* map = mapOf(brush);
    cBrushData* front = nullptr;
    cBrushData* back = nullptr;
    const cFaceTexture* capTexture = nullptr;
    float flattest = -1.0f;
    const double normal[3] = {double(plane.normal[0]), double(plane.normal[1]),
                              double(plane.normal[2])};
    for (cFaceData* face : facesOf(brush)) {
        if (face->vertexCount == 0)
            continue;
        const float flatness = flatnessOn(face, plane);
        if (flatness > flattest) {
            flattest = flatness;
            capTexture = &face->tex;
        }
        cWindingD *frontPiece, *backPiece;
        windingSplit(windingOf(face), normal, double(plane.dist), &frontPiece, &backPiece);
        if (frontPiece && frontOut)
            addPiece(map, face, frontPiece, &front);
        if (backPiece && backOut)
            addPiece(map, face, backPiece, &back);
        windingFree(frontPiece);
        windingFree(backPiece);
    }
    if (front)
        addCap(map, front, *capTexture, plane, -1.0f);
    if (back)
        addCap(map, back, *capTexture, plane, 1.0f);
    if (frontOut)
        *frontOut = front;
    if (backOut)
        *backOut = back;
}

int classifyBrush(const cBrushData* brush, const float* normal, float dist) {
    bool front = false;
    bool back = false;
    for (const cFaceData* face : facesOf(brush)) {
        for (int i = 0; i < face->vertexCount; ++i) {
            const float d = vecDot(face->vertices[i].xyz, normal) - dist;
            front |= d > 0;
            back |= d < 0;
        }
    }
    if (front && back)
        return 0;
    return front ? 1 : -1;
}

static bool separates(const cBrushData* a, const cBrushData* b) {
    for (const cFaceData* face : facesOf(a)) {
        if (classifyBrush(b, face->normal, face->dist) > 0)
            return true;
    }
    return false;
}

bool brushesIntersect(const cBrushData* a, const cBrushData* b) {
    return !separates(a, b) && !separates(b, a);
}

int removeDuplicatePlanes(cBrushData* brush) {
    int removed = 0;
    for (cFaceData* face = brush->faces; face; face = face->next) {
        for (cFaceData* later : cFaceRange(face->next)) {
            if (!planesEqual(planeOf(face), planeOf(later), false))
                continue;
            mapOf(brush)->freeFace(later);
            brush->flags |= BF_DIRTY;
            ++removed;
        }
    }
    return removed;
}

int mergeCoplanarFaces(cBrushData* brush) {
    int removed = 0;
    for (cFaceData* face : facesOf(brush)) {
        if (!isZeroVector(face->normal))
            continue;
        mapOf(brush)->freeFace(face);
        ++removed;
    }
    return removed + removeDuplicatePlanes(brush);
}

void offsetBrushPlanes(cBrushData* brush, float offset) {
    for (cFaceData* face : facesOf(brush)) {
        Mem_Free(face->vertices);
        face->vertices = nullptr;
        face->vertexCount = 0;
        face->flags |= FF_DIRTY;
        face->dist += offset;
    }
    rebuildBrush(brush, UM_WINDINGS);
}

// ---- Boxes

static bool boxesTouch(const float* aMins, const float* aMaxs, const float* bMins,
                       const float* bMaxs, float margin) {
    for (int i = 0; i < 3; ++i) {
        if (aMaxs[i] + margin < bMins[i] || aMins[i] - margin > bMaxs[i])
            return false;
    }
    return true;
}

bool boxTouches(const float* mins, const float* maxs, const float* objectMins,
                const float* objectMaxs) {
    return boxesTouch(mins, maxs, objectMins, objectMaxs, BOX_EPSILON);
}

bool boxHolds(const float* mins, const float* maxs, const float* objectMins,
              const float* objectMaxs) {
    for (int i = 0; i < 3; ++i) {
        if (!(mins[i] - BOX_EPSILON < objectMins[i] && maxs[i] + BOX_EPSILON > objectMaxs[i]))
            return false;
    }
    return true;
}

bool brushTouchesBox(const cBrushData* brush, const float* mins, const float* maxs) {
    return boxTouches(mins, maxs, brush->mins, brush->maxs);
}

bool brushInsideBox(const cBrushData* brush, const float* mins, const float* maxs) {
    return boxHolds(mins, maxs, brush->mins, brush->maxs);
}

bool brushCenterInBox(const cBrushData* brush, const float* mins, const float* maxs) {
    return boxHolds(mins, maxs, brush->brush->center, brush->brush->center);
}

bool boxesOverlap(const float* aMins, const float* aMaxs, const float* bMins, const float* bMaxs) {
    return boxesTouch(aMins, aMaxs, bMins, bMaxs, -OVERLAP_EPSILON);
}
