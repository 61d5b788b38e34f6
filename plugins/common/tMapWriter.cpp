// SPDX-License-Identifier: MIT
#include "common/tMapWriter.h"

#include "common/tFaceProjection.h"
#include "common/tVector.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <strings.h>

// Three vertices stand for their plane if they give it back this well; else points are made up.
static constexpr double NORMAL_EPSILON = 2e-5;
static constexpr double DIST_EPSILON = 2e-3;
// Two components of a normal this near to each other, but not equal, decide by the last digits of
// a reader which base axes a classic line has.
static constexpr double TIE_EPSILON = 5e-7;
static constexpr double TIE_GRID = 1024; // steps a unit, on which sums are exact in floats
static constexpr float SEAL_THICKNESS = 16;
static constexpr size_t BUFFER_SIZE = 1 << 20;

cMapWriter::cMapWriter(const cHostServices* host, cMapData* map, eFaceLine kind,
                       const char* sealTexture)
    : m_host(host), m_map(map), m_kind(kind), m_sealTexture(sealTexture) {
    bool set = false;
    for (int i = 0; i < 3; ++i)
        set |= map->cordonMins[i] != 0 || map->cordonMaxs[i] != 0;
    m_cordon = set && (map->flags & MF_EXPORT_CORDON);
}

// ---- What is written

bool cMapWriter::insideCordon(const float* mins, const float* maxs) const {
    for (int i = 0; m_cordon && i < 3; ++i) {
        if (!(maxs[i] > m_map->cordonMins[i] && mins[i] < m_map->cordonMaxs[i]))
            return false;
    }
    return true;
}

bool cMapWriter::isWritten(const cBrushData* brush) const {
    if ((m_map->flags & MF_EXPORT_VISIBLE) && (brush->flags & BF_HIDDEN))
        return false;
    return insideCordon(brush->mins, brush->maxs);
}

bool cMapWriter::isWritten(const cEntityData* entity) const {
    if (entity->flags & EF_WORLD)
        return true;
    if ((m_map->flags & MF_EXPORT_VISIBLE) && (entity->flags & EF_HIDDEN))
        return false;
    if (!entity->brushes)
        return insideCordon(entity->origin, entity->origin);
    for (const cBrushData* brush = entity->brushes; brush; brush = brush->next) {
        if (isWritten(brush))
            return true;
    }
    return false;
}

bool cMapWriter::write(const char* path) {
    const cEntityData* world = m_map->entities;
    if (!world) {
        m_host->Sys_Error("can't write \"%s\" (the map is empty)", path);
        return false;
    }
    m_file = fopen(path, "wb");
    if (!m_file) {
        m_host->Sys_Error("can't write \"%s\" (%s)", path, strerror(errno));
        return false;
    }
    collectContainers();
    writeWorld(world);
    for (const cContainer& container : m_containers)
        writeContainer(container);
    for (const cEntityData* entity = world->next; entity; entity = entity->next) {
        if (isWritten(entity))
            writeEntity(entity);
    }
    flush(0);
    const bool closed = fclose(m_file) == 0;
    if (m_failed || !closed) {
        m_host->Sys_Error("can't write \"%s\" (%s)", path, strerror(errno));
        return false;
    }
    if (m_inexactFaces)
        m_host->Sys_Warning("%i face(s) have texture axes that this format can't hold exactly",
                            m_inexactFaces);
    if (m_quotesReplaced)
        m_host->Sys_Warning("%i double quote(s) in keys and values became single quotes",
                            m_quotesReplaced);
    if (m_lostMemberships)
        m_host->Sys_Warning("%i object(s) are in more visgroups than this format can hold",
                            m_lostMemberships);
    return true;
}

void cMapWriter::flush(size_t keep) {
    if (m_text.size() <= keep)
        return;
    m_failed |= fwrite(m_text.data(), 1, m_text.size(), m_file) != m_text.size();
    m_text.clear();
}

// ---- Groups and layers

int cMapWriter::freshId(const cKeyValues& stored) {
    const std::string* kept = findKey(stored, "_tb_id");
    int id = kept ? atoi(kept->c_str()) : 0;
    if (id < 1 || m_usedIds.count(id)) {
        id = 1;
        while (m_usedIds.count(id))
            ++id;
    }
    m_usedIds[id] = true;
    return id;
}

int cMapWriter::layerOf(uint32_t visGroup) {
    const auto known = m_containerOfLayer.find(visGroup);
    if (known != m_containerOfLayer.end())
        return known->second;
    char name[256] = "";
    uint32_t id = 0;
    uint8_t color[4];
    m_host->VisGroup_Get(m_map, m_host->VisGroup_IndexOf(m_map, visGroup), name, sizeof name, &id,
                         color);
    cContainer layer = {nullptr, visGroup, 0, storedLayerKeys(m_map->entities, name), {}};
    layer.id = freshId(layer.keys);
    eraseKey(&layer.keys, "_tb_id");
    eraseKey(&layer.keys, "_tb_name");
    layer.keys.insert(layer.keys.begin(), {"_tb_name", name});
    const int index = int(m_containers.size());
    m_containers.push_back(std::move(layer));
    m_containerOfLayer[visGroup] = index;
    return index;
}

// Where objects of that group, or else of that visgroup, are written; -1 for none.
int cMapWriter::homeOf(const cGroupData* group, uint32_t visGroup) {
    if (group)
        return containerOf(group, visGroup);
    return visGroup ? layerOf(visGroup) : -1;
}

int cMapWriter::containerOf(const cGroupData* group, uint32_t visGroup) {
    const auto known = m_containerOfGroup.find(group);
    if (known != m_containerOfGroup.end())
        return known->second;
    // Whatever holds the group has to have its number first.
    homeOf(group->parent, visGroup);
    cContainer container = {
        group, group->parent ? 0 : visGroup, 0, storedGroupKeys(m_map->entities, group->id), {}};
    container.id = freshId(container.keys);
    eraseKey(&container.keys, "_tb_id");
    if (!findKey(container.keys, "_tb_name"))
        container.keys.insert(container.keys.begin(),
                              {"_tb_name", "Group " + std::to_string(group->id)});
    const int index = int(m_containers.size());
    m_containers.push_back(std::move(container));
    m_containerOfGroup[group] = index;
    return index;
}

void cMapWriter::collectEntity(const cEntityData* entity) {
    cEntityData* record = const_cast<cEntityData*>(entity);
    const int count = m_host->Entity_GetVisGroupCount(record);
    homeOf(entity->group, count ? m_host->Entity_GetVisGroupId(record, 0) : 0);
    m_lostMemberships += count > 1 ? 1 : 0;
}

void cMapWriter::collectBrush(cBrushData* brush) {
    const int count = m_host->Brush_GetVisGroupCount(brush);
    const int home = homeOf(brush->group, count ? m_host->Brush_GetVisGroupId(brush, 0) : 0);
    m_lostMemberships += count > 1 ? 1 : 0;
    if (home < 0)
        m_worldBrushes.push_back(brush);
    else
        m_containers[size_t(home)].brushes.push_back(brush);
}

// In the order in which the world's brushes, then the entities, name them; empty layers last.
void cMapWriter::collectContainers() {
    for (cBrushData* brush = m_map->entities->brushes; brush; brush = brush->next) {
        if (isWritten(brush))
            collectBrush(brush);
    }
    for (const cEntityData* entity = m_map->entities->next; entity; entity = entity->next) {
        if (isWritten(entity))
            collectEntity(entity);
    }
    for (int i = 0; i < m_host->VisGroup_GetCount(m_map); ++i) {
        char name[2];
        uint32_t id = 0;
        uint8_t color[4];
        if (m_host->VisGroup_Get(m_map, i, name, sizeof name, &id, color))
            layerOf(id);
    }
}

void cMapWriter::writeContainer(const cContainer& container) {
    m_text += "{\n";
    writePair("classname", "func_group");
    writePair("_tb_type", container.group ? "_tb_group" : "_tb_layer");
    size_t next = 0;
    if (!container.keys.empty() && container.keys[0].first == "_tb_name")
        writePair("_tb_name", container.keys[next++].second);
    writePair("_tb_id", std::to_string(container.id));
    for (; next < container.keys.size(); ++next)
        writePair(container.keys[next].first, container.keys[next].second);
    if (container.group)
        writeMembership(container.group->parent, container.visGroup);
    for (const cBrushData* brush : container.brushes)
        writeBrush(brush);
    m_text += "}\n";
}

void cMapWriter::writeMembership(const cGroupData* group, uint32_t visGroup) {
    const int home = group      ? m_containerOfGroup[group]
                     : visGroup ? m_containerOfLayer[visGroup]
                                : -1;
    if (home >= 0)
        writePair(group ? "_tb_group" : "_tb_layer", std::to_string(m_containers[size_t(home)].id));
}

// ---- Entities

void cMapWriter::writePair(const std::string& key, const std::string& value) {
    const auto quoted = [this](const std::string& text) {
        m_text += '"';
        for (char c : text) {
            if (c == '"')
                ++m_quotesReplaced;
            m_text += c == '"' ? '\'' : c == '\n' || c == '\r' ? ' ' : c;
        }
        m_text += '"';
    };
    quoted(key);
    m_text += ' ';
    quoted(value);
    m_text += '\n';
}

void cMapWriter::writeWorld(const cEntityData* world) {
    m_text += "{\n";
    writePair("classname", world->classname ? world->classname : "worldspawn");
    for (const cEpair* pair = world->epairs; pair; pair = pair->next) {
        if (!isStoredKey(pair->key))
            writePair(pair->key, pair->value);
    }
    for (const cBrushData* brush : m_worldBrushes)
        writeBrush(brush);
    if (m_cordon)
        writeSeal();
    m_text += "}\n";
}

static std::string originText(const float* origin) {
    std::string text;
    for (int i = 0; i < 3; ++i) {
        char digits[64];
        const auto end =
            std::to_chars(digits, digits + sizeof digits, origin[i], std::chars_format::fixed);
        text += (i ? " " : "") + std::string(digits, end.ptr);
    }
    return text;
}

void cMapWriter::writeEntity(const cEntityData* entity) {
    m_text += "{\n";
    writePair("classname", entity->classname ? entity->classname : "");
    if (!entity->brushes)
        writePair("origin", originText(entity->origin));
    const char* flagsKey = entity->flagsKey ? entity->flagsKey : "spawnflags";
    bool flagsWritten = false;
    for (const cEpair* pair = entity->epairs; pair; pair = pair->next) {
        if (!entity->brushes && strcasecmp(pair->key, "origin") == 0)
            continue;
        if (strcasecmp(pair->key, flagsKey) != 0) {
            writePair(pair->key, pair->value);
            continue;
        }
        flagsWritten = true;
        const bool current = uint32_t(strtol(pair->value, nullptr, 10)) == entity->spawnFlags;
        writePair(pair->key, current ? pair->value : std::to_string(int32_t(entity->spawnFlags)));
    }
    if (!flagsWritten && entity->spawnFlags)
        writePair(flagsKey, std::to_string(int32_t(entity->spawnFlags)));
    cEntityData* record = const_cast<cEntityData*>(entity);
    const uint32_t visGroup =
        m_host->Entity_GetVisGroupCount(record) ? m_host->Entity_GetVisGroupId(record, 0) : 0;
    writeMembership(entity->group, visGroup);
    for (const cBrushData* brush = entity->brushes; brush; brush = brush->next) {
        if (isWritten(brush))
            writeBrush(brush);
    }
    m_text += "}\n";
}

// ---- Brushes

// Shortest, such that reading gives the same float; exactly: the same double, too.
static std::string digitsOf(double value, bool exactly) {
    char digits[64];
    char* const end = digits + sizeof digits;
    const float narrow = value == 0 ? 0.0f : float(value);
    const auto written = exactly
                             ? std::to_chars(digits, end, double(narrow), std::chars_format::fixed)
                             : std::to_chars(digits, end, narrow, std::chars_format::fixed);
    return std::string(digits, written.ptr);
}

void cMapWriter::number(double value) {
    m_text += digitsOf(value, false);
}

void cMapWriter::writeBrush(const cBrushData* brush) {
    m_text += "{\n";
    for (const cFaceData* face = brush->faces; face; face = face->next)
        writeFace(face);
    m_text += "}\n";
    flush(BUFFER_SIZE);
}

void cMapWriter::writeFace(const cFaceData* face) {
    float readNormal[3] = {face->normal[0], face->normal[1], face->normal[2]};
    writePoints(face, readNormal);
    const cFaceTexture& tex = face->tex;
    const bool bare = tex.name[0] && tex.name[0] != '"' && !strpbrk(tex.name, " \t\r\n");
    m_text += bare ? tex.name : "\"" + std::string(tex.name) + "\"";
    writeTexture(face, readNormal);
    if (tex.contentFlags || tex.surfaceFlags || tex.value) {
        for (uint32_t flags : {tex.contentFlags, tex.surfaceFlags, tex.value})
            m_text += ' ' + std::to_string(int32_t(flags));
    }
    m_text += '\n';
}

void cMapWriter::writeTexture(const cFaceData* face, const float* readNormal) {
    const cFaceTexture& tex = face->tex;
    const auto numbers = [this](std::initializer_list<double> values) {
        for (double value : values) {
            m_text += ' ';
            number(value);
        }
    };
    if (m_kind == eFaceLine::Axial) {
        const auto axis = [&](const float* a, float shift) {
            m_text += " [";
            numbers({double(a[0]), double(a[1]), double(a[2]), double(shift)});
            m_text += " ]";
        };
        axis(tex.uAxis, tex.uShift);
        axis(tex.vAxis, tex.vShift);
        numbers({double(tex.rotation), double(tex.uScale), double(tex.vScale)});
        return;
    }
    cClassicProjection projection;
    if (!classicProjectionOf(face, readNormal, &projection))
        ++m_inexactFaces;
    numbers({projection.shift[0], projection.shift[1], projection.rotation, projection.scale[0],
             projection.scale[1]});
}

// Three points of a face and how they are written.
struct cFacePoints {
    double points[3][3];
    bool exactly;
};

// The axes of the two largest components, and how far those are apart.
static double largestTwo(const double* normal, int* first, int* second) {
    int order[3] = {0, 1, 2};
    std::sort(order, order + 3,
              [&](int a, int b) { return std::fabs(normal[a]) > std::fabs(normal[b]); });
    *first = order[0];
    *second = order[1];
    return std::fabs(normal[order[0]]) - std::fabs(normal[order[1]]);
}

static bool hasDoubtfulAxes(const cMapPlane& plane) {
    int first, second;
    const double apart = largestTwo(plane.normal, &first, &second);
    return apart > 0 && apart < TIE_EPSILON;
}

// How far the plane of three points is from the face's own; above 1 is too far.
static double planeError(const cFaceData* face, const double points[3][3], eFaceLine kind) {
    static constexpr double DOUBTFUL = 2;
    cMapPlane plane;
    if (!planeFromPoints(points, &plane))
        return 1e9;
    double error = kind == eFaceLine::Classic && hasDoubtfulAxes(plane) ? DOUBTFUL : 0;
    for (int i = 0; i < 3; ++i)
        error = std::fmax(error, std::fabs(double(float(plane.normal[i]) - face->normal[i])) /
                                     NORMAL_EPSILON);
    return std::fmax(error, std::fabs(double(float(plane.dist) - face->dist)) / DIST_EPSILON);
}

// What a reader in doubles makes of the text.
static void pointsAsRead(const cFacePoints& written, double points[3][3]) {
    for (int i = 0; i < 3; ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            const double value = written.points[i][axis];
            points[i][axis] = value;
            if (!written.exactly && value != std::floor(value))
                points[i][axis] = strtod(digitsOf(value, false).c_str(), nullptr);
        }
    }
}

// Readers in floats and in doubles are to find the plane.
static double planeError(const cFaceData* face, const cFacePoints& written, eFaceLine kind) {
    const double inFloats = planeError(face, written.points, kind);
    if (written.exactly || inFloats > 1)
        return inFloats;
    double points[3][3];
    pointsAsRead(written, points);
    return std::fmax(inFloats, planeError(face, points, kind));
}

// The vertex triple spread widest about the first vertex, in the order that readers expect.
static bool vertexPoints(const cFaceData* face, double points[3][3]) {
    const int count = face->vertexCount;
    double largest = 0;
    for (int i = 1; i + 1 < count; ++i) {
        const cVec3 a = vec3(face->vertices[0].xyz);
        const cVec3 b = vec3(face->vertices[i].xyz);
        const cVec3 c = vec3(face->vertices[i + 1].xyz);
        const double size = length(cross(b - a, c - a));
        if (!(size > largest))
            continue;
        largest = size;
        // Vertices run counter-clockwise from outside, points clockwise.
        for (size_t axis = 0; axis < 3; ++axis) {
            points[0][axis] = b[axis];
            points[1][axis] = a[axis];
            points[2][axis] = c[axis];
        }
    }
    return largest > 0;
}

// A vector on the plane, about as long as a unit. Between two axes it is an exact diagonal, and the
// point moves to where the points beside it are exact, too, so that they give two equal components.
static cVec3 alongPlane(const cVec3& normal, cVec3* point) {
    int first, second;
    if (largestTwo(normal.data(), &first, &second) < 2 * TIE_EPSILON) {
        cVec3 diagonal = {0, 0, 0};
        for (const int axis : {first, second})
            (*point)[size_t(axis)] = std::round((*point)[size_t(axis)] * TIE_GRID) / TIE_GRID;
        diagonal[size_t(first)] = normal[size_t(second)] < 0 ? -1 : 1;
        diagonal[size_t(second)] = normal[size_t(first)] < 0 ? 1 : -1;
        return diagonal;
    }
    const bool upright = std::fabs(normal[2]) > 0.7;
    const cVec3 help = {upright ? 1.0 : 0.0, 0.0, upright ? 0.0 : 1.0};
    const cVec3 u = cross(help, normal);
    return u * (1 / length(u));
}

// Points far apart on the plane, near the face's middle.
static void planePoints(const cFaceData* face, double reach, double points[3][3]) {
    const cVec3 normal = vec3(face->normal);
    cVec3 middle = {0, 0, 0};
    for (int i = 0; i < face->vertexCount; ++i)
        middle = middle + vec3(face->vertices[i].xyz) * (1.0 / face->vertexCount);
    middle = middle + normal * ((double(face->dist) - dot(middle, normal)) / dot(normal, normal));
    const cVec3 u = alongPlane(normal, &middle) * reach;
    const cVec3 v = cross(normal, u);
    const cVec3 corners[3] = {middle + u, middle, middle + v};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t axis = 0; axis < 3; ++axis)
            points[i][axis] = double(float(corners[i][axis]));
    }
}

// The vertices, else made-up points ever farther apart; in short digits where those do.
static cFacePoints pointsOf(const cFaceData* face, eFaceLine kind) {
    cFacePoints best = {}, candidate = {};
    double error = 1e9;
    const auto consider = [&] {
        for (const bool exactly : {false, true}) {
            candidate.exactly = exactly;
            const double e = error > 1 ? planeError(face, candidate, kind) : error;
            if (!(e < error))
                continue;
            error = e;
            best = candidate;
        }
    };
    if (vertexPoints(face, candidate.points))
        consider();
    for (double reach = 64; error > 1 && reach <= 8192; reach *= 4) {
        planePoints(face, reach, candidate.points);
        consider();
    }
    return best;
}

void cMapWriter::writePoints(const cFaceData* face, float* readNormal) {
    const cFacePoints best = pointsOf(face, m_kind);
    double asRead[3][3];
    pointsAsRead(best, asRead);
    cMapPlane plane;
    for (int i = 0; planeFromPoints(asRead, &plane) && i < 3; ++i)
        readNormal[i] = float(plane.normal[i]);
    for (const auto& point : best.points) {
        m_text += "( ";
        for (double coordinate : point)
            m_text += digitsOf(coordinate, best.exactly) + ' ';
        m_text += ") ";
    }
}

// ---- The cordon

void cMapWriter::writeBox(const float* mins, const float* maxs) {
    m_text += "{\n";
    for (int side = 0; side < 6; ++side) {
        const int axis = side / 2;
        const bool upper = side % 2 == 0;
        double points[3][3];
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j)
                points[i][j] = double(mins[j]);
            points[i][axis] = double(upper ? maxs[axis] : mins[axis]);
        }
        // About the middle point, so that the product points out of the box.
        const int first = (axis + (upper ? 1 : 2)) % 3;
        const int second = (axis + (upper ? 2 : 1)) % 3;
        points[0][first] = double(maxs[first]);
        points[2][second] = double(maxs[second]);
        for (const auto& point : points) {
            m_text += "( ";
            for (double coordinate : point) {
                number(coordinate);
                m_text += ' ';
            }
            m_text += ") ";
        }
        m_text += m_sealTexture;
        static const char* const axial[3] = {" [ 0 1 0 0 ] [ 0 0 -1 0 ] 0 1 1\n",
                                             " [ 1 0 0 0 ] [ 0 0 -1 0 ] 0 1 1\n",
                                             " [ 1 0 0 0 ] [ 0 -1 0 0 ] 0 1 1\n"};
        m_text += m_kind == eFaceLine::Axial ? axial[axis] : " 0 0 0 1 1\n";
    }
    m_text += "}\n";
}

// Six slabs about the box, which overlap at its edges so that nothing leaks.
void cMapWriter::writeSeal() {
    for (int side = 0; side < 6; ++side) {
        const int axis = side / 2;
        float mins[3], maxs[3];
        for (int i = 0; i < 3; ++i) {
            mins[i] = m_map->cordonMins[i] - SEAL_THICKNESS;
            maxs[i] = m_map->cordonMaxs[i] + SEAL_THICKNESS;
        }
        if (side % 2)
            maxs[axis] = m_map->cordonMins[axis];
        else
            mins[axis] = m_map->cordonMaxs[axis];
        writeBox(mins, maxs);
    }
}
