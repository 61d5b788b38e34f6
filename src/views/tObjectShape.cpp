// SPDX-License-Identifier: MIT
#include "views/tObjectShape.h"

#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tEntityClass.h"
#include "document/tFace.h"
#include "document/tGroup.h"
#include "document/tMapLists.h"
#include "document/tTexture.h"
#include "document/tVisGroup.h"
#include "support/tVec.h"
#include "views/tLooseDraw.h"

#include <algorithm>
#include <cstring>

bool cDrawKey::operator==(const cDrawKey& other) const {
    return texture == other.texture && color == other.color && kind == other.kind &&
           facing == other.facing && traits == other.traits;
}

// ---- Colours

const uint8_t* brushColor(const cBrushData* brush) {
    const cEntityData* owner = brush->owner;
    if (!brush->brush->visGroups.isEmpty())
        return brush->brush->visGroups.constFirst()->color;
    if (brush->group)
        return brush->group->group->drawColor;
    if (owner->group)
        return owner->group->group->drawColor;
    return owner->flags & EF_WORLD ? brush->brush->drawColor : owner->entity->color;
}

void entityColor(const cEntityData* entity, uint8_t* rgba) {
    const cEntityClass* entityClass = entity->entity->entityClass;
    const uint8_t* own = entity->renderColor;
    const bool isLight = entityClass && (entityClass->flags & ECF_LIGHT);
    memcpy(rgba, isLight && (own[0] | own[1] | own[2]) ? own : entity->entity->color, 3);
    rgba[3] = 255;
}

void shadeColor(const uint8_t* rgba, float shade, uint8_t* out) {
    for (int i = 0; i < 3; ++i)
        out[i] = uint8_t(int(float(rgba[i]) * shade));
    out[3] = rgba[3];
}

float transparentAlpha(const cFaceData* face) {
    static constexpr float MIN_ALPHA = 0.2f;
    const cEntityData* owner = face->brush->owner;
    float alpha = face->texture ? face->texture->opacity : 1.0f;
    if (!(owner->flags & EF_WORLD))
        alpha *= float(owner->renderColor[3]) / 255.0f;
    return std::clamp(alpha, MIN_ALPHA, 1.0f);
}

static uint32_t wordOf(const uint8_t* rgba) {
    uint32_t word;
    memcpy(&word, rgba, sizeof word);
    return word;
}

// ---- What decides where it is drawn

static uint16_t entityTraits(const cEntityData* entity) {
    return uint16_t((entity->flags & EF_ITEM ? TRAIT_ITEM : 0) |
                    (entity->flags & EF_PATH ? TRAIT_PATH : 0));
}

static uint16_t brushTraits(const cBrushData* brush, uint32_t detailMask) {
    const cEntityData* owner = brush->owner;
    uint16_t traits = owner->flags & EF_WORLD ? 0 : entityTraits(owner);
    if (brush->faces && (brush->faces->tex.contentFlags & detailMask))
        traits |= TRAIT_DETAIL;
    if (owner->flags & EF_TRANSPARENT)
        traits |= TRAIT_TRANSPARENT;
    return traits;
}

// What an entity without brushes shows in place of its box.
static uint16_t figureTraits(const cEntityData* entity) {
    return entity->attachKind == AK_SPRITE  ? TRAIT_SPRITE
           : entity->attachKind == AK_MODEL ? TRAIT_MODEL
                                            : 0;
}

static bool isBrushShown(const cBrushData* brush) {
    static constexpr uint32_t UNSEEN = OF_DIRTY | OF_HIDDEN;
    const uint32_t ownerFlags = brush->owner->flags;
    return !(brush->flags & UNSEEN) && ((ownerFlags & EF_WORLD) || !(ownerFlags & UNSEEN));
}

static uint8_t facingOf(const float* normal) {
    for (uint8_t axis = 0; axis < 3; ++axis)
        if (std::fabs(normal[axis]) == 1.0f)
            return uint8_t(axis * 2 + (normal[axis] < 0 ? 1 : 0));
    return FACING_OTHER;
}

static uint32_t mixed(uint32_t hash, uint32_t value) {
    hash = (hash ^ value) * 0x9e3779b1u;
    return hash ^ hash >> 15;
}

static uint32_t mixed(uint32_t hash, const cDrawKey& key) {
    const auto texture = reinterpret_cast<uintptr_t>(key.texture);
    hash = mixed(mixed(hash, uint32_t(texture)), uint32_t(uint64_t(texture) >> 32));
    return mixed(mixed(hash, key.color),
                 uint32_t(key.kind | uint32_t(key.facing) << 8 | uint32_t(key.traits) << 16));
}

void cObjectShape::sign() {
    uint32_t hash = uint32_t(isShown) | uint32_t(isMoving) << 1 | uint32_t(hasArrow) << 2;
    for (const cShapeFace& face : faces)
        hash = mixed(mixed(hash, face.count), face.key);
    for (const cShapeEdges& list : edges) {
        hash = mixed(hash, list.key);
        for (const uint32_t end : list.ends)
            hash = mixed(hash, end);
    }
    for (const uint32_t corner : flatCorners)
        hash = mixed(hash, corner);
    signature = mixed(hash, markKey);
}

// ---- Making

void cObjectShape::clear() {
    vertices.clear();
    for (std::vector<uint32_t>& look : looks)
        look.clear();
    faces.clear();
    for (cShapeEdges& list : edges)
        list.ends.clear();
    flatCorners.clear();
    cornerKey = markKey = {};
    isTranslucent = hasArrow = false;
    isQuads = true;
}

// The colours of the last face's corners; alpha is that of a face that is seen through.
void cObjectShape::addColors(const uint8_t* color, float shade, float alpha) {
    const auto shaded = [&](const uint8_t* rgba) {
        uint8_t out[4];
        shadeColor(rgba, shade, out);
        out[3] = uint8_t(float(out[3]) * alpha);
        return wordOf(out);
    };
    const uint32_t words[LOOK_COUNT] = {shaded(color), wordOf(color), shaded(m_markColor)};
    for (int look = 0; look < LOOK_COUNT; ++look)
        if (m_looks & 1u << look)
            looks[look].insert(looks[look].end(), faces.back().count, words[look]);
}

void cObjectShape::addFace(const cBrushData* brush, const cFaceData* face, const uint8_t* color) {
    static const uint8_t white[4] = {255, 255, 255, 255};
    cShapeFace made;
    made.key.texture = static_cast<const cTexture*>(face->texture);
    made.key.facing = facingOf(face->normal);
    made.key.traits = traits;
    made.first = uint32_t(vertices.size());
    made.count = uint32_t(face->vertexCount);
    made.face = face;
    made.isTranslucent = (brush->owner->flags & EF_TRANSPARENT) ||
                         (made.key.texture && ::isTranslucent(*made.key.texture));
    const float alpha = made.isTranslucent ? transparentAlpha(face) : 1.0f;
    cShapeVertex vertex;
    shadeColor(face->texture ? white : color, face->face->shade, vertex.rgba);
    vertex.rgba[3] = uint8_t(float(vertex.rgba[3]) * alpha);
    for (const cFaceVertex* from = face->vertices; from != face->vertices + made.count; ++from) {
        vecCopy(from->xyz, vertex.xyz);
        vertex.st[0] = from->st[0];
        vertex.st[1] = from->st[1];
        vertices.push_back(vertex);
    }
    isTranslucent |= made.isTranslucent;
    isQuads &= made.count == 4 && !(made.key.texture && isNodraw(*made.key.texture));
    faces.push_back(made);
    addColors(color, face->face->shade, alpha);
}

// Their order in the brush turns with every sort; here it is by their numbers.
void cObjectShape::addFaces(const cBrushData* brush, const uint8_t* color) {
    m_inOrder.clear();
    for (const cFaceData* face : facesOf(brush)) {
        if ((face->flags & FF_DIRTY) || face->vertexCount < 3)
            continue;
        m_inOrder.push_back(face);
        for (size_t i = m_inOrder.size() - 1; i > 0 && m_inOrder[i - 1]->id > face->id; --i)
            std::swap(m_inOrder[i - 1], m_inOrder[i]);
    }
    for (const cFaceData* face : m_inOrder)
        addFace(brush, face, color);
}

void cObjectShape::make(const cBrushData* brush, const cShapeWish& wish) {
    clear();
    m_markColor = wish.markColor;
    m_looks = wish.looks;
    traits = brushTraits(brush, wish.detailMask);
    const uint8_t* color = brushColor(brush);
    const bool ofWorld = (brush->owner->flags & EF_WORLD) != 0;
    isShown = isBrushShown(brush);
    isMoving = (brush->flags & BF_MOVING) != 0;
    vecCopy(brush->brush->center, center);
    addFaces(brush, color);
    makeEdges(ofWorld ? 0 : wordOf(brush->owner->entity->color));
    cornerKey.kind = KIND_CORNERS;
    cornerKey.traits = traits;
    markKey.kind = KIND_MARKS;
    markKey.traits = lineTraits();
    sign();
}

// Six sides, counter-clockwise seen from outside.
void cObjectShape::make(const cEntityData* entity, const cShapeWish& wish) {
    clear();
    m_markColor = wish.markColor;
    m_looks = wish.looks;
    uint8_t color[4];
    entityColor(entity, color);
    traits = uint16_t(entityTraits(entity) | figureTraits(entity) | TRAIT_BOX);
    isShown = !(entity->flags & (EF_DIRTY | EF_HIDDEN));
    isMoving = (entity->flags & EF_MOVING) != 0;
    hasArrow = ::hasArrow(entity);
    for (int axis = 0; axis < 3; ++axis) {
        center[axis] = (entity->mins[axis] + entity->maxs[axis]) * 0.5f;
        const int u = (axis + 1) % 3, v = (axis + 2) % 3;
        for (const bool upper : {true, false}) {
            float normal[3] = {0, 0, 0};
            normal[axis] = upper ? 1.0f : -1.0f;
            const float shade = shadeForNormal(normal);
            cShapeVertex vertex = {};
            shadeColor(color, shade, vertex.rgba);
            cShapeFace face = {{}, uint32_t(vertices.size()), 4, false, nullptr};
            face.key.facing = facingOf(normal);
            face.key.traits = traits;
            for (int i = 0; i < 4; ++i) {
                const int turn = upper ? i : 3 - i;
                float* corner = vertex.xyz;
                corner[axis] = upper ? entity->maxs[axis] : entity->mins[axis];
                corner[u] = (turn == 1 || turn == 2) ? entity->maxs[u] : entity->mins[u];
                corner[v] = turn >= 2 ? entity->maxs[v] : entity->mins[v];
                vertices.push_back(vertex);
            }
            faces.push_back(face);
            addColors(color, shade, 1);
        }
    }
    makeEdges(wordOf(color));
    sign();
}
