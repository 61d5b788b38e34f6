// SPDX-License-Identifier: MIT
#include "common/tMapWriter.h"

#include "common/tFaceProjection.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <strings.h>

static constexpr float SEAL_THICKNESS = 16;
static constexpr size_t BUFFER_SIZE = 1 << 20;

cMapWriter::cMapWriter(const cHostServices* host, cMapData* map, eFaceLine kind,
                       const char* sealTexture)
    : m_host(host), m_map(map), m_kind(kind), m_sealTexture(sealTexture), m_containers(host, map) {
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

static bool sayFailure(const cHostServices* host, const char* path) {
    host->Sys_Error("can't write \"%s\" (%s)", path, strerror(errno));
    return false;
}

bool cMapWriter::write(const char* path) {
    if (!m_map->entities) {
        m_host->Sys_Error("can't write \"%s\" (the map is empty)", path);
        return false;
    }
    m_file.emplace(path);
    if (!m_file->isOpen())
        return sayFailure(m_host, path);
    collectContainers();
    writeMap();
    flush(0);
    if (!m_file->finish())
        return sayFailure(m_host, path);
    warnOfLosses();
    return true;
}

void cMapWriter::writeMap() {
    const cEntityData* world = m_map->entities;
    writeWorld(world);
    for (const cTextContainer& container : m_containers.containers())
        writeContainer(container);
    for (const cEntityData* entity = world->next; entity; entity = entity->next) {
        if (isWritten(entity))
            writeEntity(entity);
    }
}

void cMapWriter::warnOfLosses() const {
    if (m_inexactFaces)
        m_host->Sys_Warning("%i face(s) have texture axes that this format can't hold exactly",
                            m_inexactFaces);
    if (m_replacedCharacters)
        m_host->Sys_Warning("%i double quote(s) and line end(s) in keys, values and texture names "
                            "became single quotes and blanks",
                            m_replacedCharacters);
    m_containers.warnOfLosses();
}

void cMapWriter::flush(size_t keep) {
    if (m_text.size() <= keep)
        return;
    m_file->write(m_text);
    m_text.clear();
}

// ---- Groups and layers

void cMapWriter::collectContainers() {
    for (cBrushData* brush = m_map->entities->brushes; brush; brush = brush->next) {
        if (isWritten(brush))
            m_containers.addBrush(brush);
    }
    for (cEntityData* entity = m_map->entities->next; entity; entity = entity->next) {
        if (isWritten(entity))
            m_containers.addEntity(entity);
    }
    m_containers.finish();
}

void cMapWriter::writeContainer(const cTextContainer& container) {
    m_text += "{\n";
    writePair("classname", "func_group");
    writePair("_tb_type", container.group ? "_tb_group" : "_tb_layer");
    writePairs(container.keys);
    for (const cBrushData* brush : container.brushes)
        writeBrush(brush);
    m_text += "}\n";
}

// ---- Entities

void cMapWriter::writeText(const std::string& text) {
    m_text += '"';
    for (const char c : text) {
        const char written = c == '"' ? '\'' : c == '\n' || c == '\r' ? ' ' : c;
        m_replacedCharacters += written != c ? 1 : 0;
        m_text += written;
    }
    m_text += '"';
}

void cMapWriter::writePair(const std::string& key, const std::string& value) {
    writeText(key);
    m_text += ' ';
    writeText(value);
    m_text += '\n';
}

void cMapWriter::writePairs(const cKeyValues& pairs) {
    for (const cKeyValue& pair : pairs)
        writePair(pair.first, pair.second);
}

void cMapWriter::writeWorld(const cEntityData* world) {
    m_text += "{\n";
    writePair("classname", world->classname ? world->classname : "worldspawn");
    for (const cEpair* pair = world->epairs; pair; pair = pair->next) {
        if (!cKeptContainers::isKept(pair->key))
            writePair(pair->key, pair->value);
    }
    for (const cBrushData* brush : m_containers.worldBrushes())
        writeBrush(brush);
    if (m_cordon)
        writeSeal();
    m_text += "}\n";
}

static bool hasKey(const cEntityData* entity, const char* key) {
    for (const cEpair* pair = entity->epairs; pair; pair = pair->next) {
        if (strcmp(pair->key, key) == 0)
            return true;
    }
    return false;
}

static bool hasOrigin(const cEntityData* entity) {
    const float* origin = entity->origin;
    return origin[0] != 0 || origin[1] != 0 || origin[2] != 0 || !hasKey(entity, NO_ORIGIN_KEY);
}

static std::string originText(const float* origin) {
    std::string text;
    for (int i = 0; i < 3; ++i) {
        const bool isNegativeZero = origin[i] == 0 && std::signbit(origin[i]);
        text +=
            (i ? " " : "") + (isNegativeZero ? "-0" : digitsOf(double(origin[i]), eDigits::Short));
    }
    return text;
}

void cMapWriter::writeKeys(const cEntityData* entity) {
    if (entity->classname)
        writePair("classname", entity->classname);
    if (!entity->brushes && hasOrigin(entity))
        writePair("origin", originText(entity->origin));
    const char* flagsKey = entity->flagsKey ? entity->flagsKey : "spawnflags";
    bool flagsWritten = false;
    for (const cEpair* pair = entity->epairs; pair; pair = pair->next) {
        if (strcmp(pair->key, NO_ORIGIN_KEY) == 0 ||
            (!entity->brushes && strcasecmp(pair->key, "origin") == 0))
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
}

void cMapWriter::writeEntity(const cEntityData* entity) {
    m_text += "{\n";
    writeKeys(entity);
    writePairs(m_containers.membershipOf(entity));
    for (const cBrushData* brush = entity->brushes; brush; brush = brush->next) {
        if (isWritten(brush))
            writeBrush(brush);
    }
    m_text += "}\n";
    flush(BUFFER_SIZE);
}

// ---- Brushes

void cMapWriter::numbers(std::initializer_list<double> values) {
    for (const double value : values)
        m_text += ' ' + digitsOf(value, eDigits::Short);
}

void cMapWriter::writeBrush(const cBrushData* brush) {
    m_text += "{\n";
    for (const cFaceData* face = brush->faces; face; face = face->next)
        writeFace(face);
    m_text += "}\n";
    flush(BUFFER_SIZE);
}

// A reader takes all up to a blank for the name.
static bool isBareName(const char* name) {
    const auto isBlank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
    return *name && *name != '"' && strncmp(name, "//", 2) != 0 &&
           std::none_of(name, name + strlen(name), isBlank);
}

void cMapWriter::writeFace(const cFaceData* face) {
    const cFacePoints points = pointsOf(face, m_kind);
    for (const auto& point : points.points) {
        m_text += "( ";
        for (const double coordinate : point)
            m_text += digitsOf(coordinate, points.digits) + ' ';
        m_text += ") ";
    }
    const cFaceTexture& tex = face->tex;
    if (isBareName(tex.name))
        m_text += tex.name;
    else
        writeText(tex.name);
    writeTexture(face, points.readNormal);
    if (tex.contentFlags || tex.surfaceFlags || tex.value) {
        for (const uint32_t flags : {tex.contentFlags, tex.surfaceFlags, tex.value})
            m_text += ' ' + std::to_string(int32_t(flags));
    }
    m_text += '\n';
}

void cMapWriter::writeTexture(const cFaceData* face, const double* readNormal) {
    const cFaceTexture& tex = face->tex;
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
            m_text += "(";
            numbers({point[0], point[1], point[2]});
            m_text += " ) ";
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
