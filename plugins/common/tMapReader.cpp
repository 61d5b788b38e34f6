// SPDX-License-Identifier: MIT
#include "common/tMapReader.h"

#include "common/tVector.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <strings.h>

static constexpr int MAX_REPORTS = 30;          // errors with a line of their own
static constexpr float MAX_COORDINATE = 262144; // a brush that reaches past it is not closed
static constexpr int MIN_FACES = 4;             // fewer enclose nothing
static constexpr float MIN_EXTENT = 0.001f;

cMapReader::cMapReader(const cHostServices* host, cMapData* map, const char* text, size_t size)
    : m_host(host), m_map(map), m_scan(text, size), m_containers(host, map) {}

bool cMapReader::mayReport() {
    return ++m_reported <= MAX_REPORTS;
}

bool cMapReader::read() {
    while (const char c = m_scan.peek()) {
        if (c == '{') {
            m_scan.take();
            readEntity();
            continue;
        }
        if (mayReport())
            m_host->Sys_Error("line %i: an entity should begin here", m_scan.line());
        m_scan.skipLine();
    }
    if (m_entities == 0) {
        m_host->Sys_Error("the file holds no entities");
        return false;
    }
    cEntityData* world = theWorld();
    m_made.swap(m_worldMade);
    m_containers.bind(world);
    m_host->Entity_Update(world, UM_REEVALUATE | UM_WINDINGS);
    checkBrushes(world);
    reportCounts();
    return true;
}

void cMapReader::reportCounts() {
    if (m_reported > MAX_REPORTS)
        m_host->Sys_Error("%i more error(s) of this kind", m_reported - MAX_REPORTS);
    if (m_brokenBrushes)
        m_host->Sys_Warning("%i brush(es) could not be built and were left out", m_brokenBrushes);
    if (m_extraNumbers)
        m_host->Sys_Warning("%i number(s) past the known ones were read over", m_extraNumbers);
    if (m_longNames)
        m_host->Sys_Warning("%i texture name(s) longer than 63 characters were cut", m_longNames);
    if (m_skippedBlocks)
        m_host->Sys_Warning("%i block(s) that are neither planes nor key/values were skipped, "
                            "the first one \"%s\" on line %i",
                            m_skippedBlocks, m_firstBlock.c_str(), m_firstBlockLine);
}

// ---- Entities

bool cMapReader::readPair(cKeyValues* keys) {
    const int line = m_scan.line();
    std::string key, value;
    if (m_scan.quoted(&key) && m_scan.peek() == '"' && m_scan.quoted(&value)) {
        keys->emplace_back(std::move(key), std::move(value));
        return true;
    }
    if (mayReport())
        m_host->Sys_Error("line %i: broken key/value", line);
    return false;
}

void cMapReader::readEntity() {
    const int line = m_scan.line();
    ++m_entities;
    cKeyValues keys;
    cEntityData* entity = nullptr;
    bool inContainer = false;
    m_made.clear();
    for (;;) {
        const char c = m_scan.peek();
        if (c == '"') {
            readPair(&keys);
        } else if (c == '{') {
            if (!entity) {
                if (!findKey(keys, "classname"))
                    keys.emplace_back("classname", lookAheadClassname());
                inContainer = isContainer(keys);
                entity = beginEntity(&keys, true);
            }
            m_scan.take();
            readBrush(entity);
        } else if (c == '}' || c == 0) {
            if (c == 0 && mayReport())
                m_host->Sys_Error("line %i: the entity's brace is not closed", line);
            if (c)
                m_scan.take();
            break;
        } else {
            if (mayReport())
                m_host->Sys_Error("line %i: unexpected text", m_scan.line());
            m_scan.skipLine();
        }
    }
    const bool solid = entity != nullptr;
    if (!entity)
        entity = beginEntity(&keys, false);
    if (inContainer)
        finishContainer();
    else if (entity)
        finishEntity(entity, &keys, solid);
}

// The class of an entity whose brushes come before its keys.
std::string cMapReader::lookAheadClassname() const {
    cMapScanner ahead = m_scan;
    int depth = 0;
    std::string text;
    while (const char c = ahead.peek()) {
        if (c == '(') {
            ahead.skipLine();
            continue;
        }
        if (c == '"' && depth == 0) {
            std::string value;
            if (ahead.quoted(&text) && ahead.quoted(&value) &&
                strcasecmp(text.c_str(), "classname") == 0)
                return value;
            continue;
        }
        depth += c == '{' ? 1 : c == '}' ? -1 : 0;
        if (depth < 0)
            break;
        ahead.take();
    }
    return std::string();
}

cEntityData* cMapReader::theWorld() {
    static const float origin[3] = {0, 0, 0};
    if (!m_world)
        m_world = m_host->Entity_Create(m_map, "worldspawn", origin, EF_WORLD);
    return m_world;
}

static void parseOrigin(const cKeyValues& keys, float* origin) {
    const std::string* text = findKey(keys, "origin");
    origin[0] = origin[1] = origin[2] = 0;
    if (text)
        sscanf(text->c_str(), "%f %f %f", &origin[0], &origin[1], &origin[2]);
    for (int i = 0; i < 3; ++i) {
        if (!std::isfinite(origin[i]))
            origin[i] = 0;
    }
}

// Null for a container without brushes, which is no object of its own.
cEntityData* cMapReader::beginEntity(cKeyValues* keys, bool solid) {
    if (isContainer(*keys)) {
        m_containers.begin(*keys);
        return solid ? theWorld() : nullptr;
    }
    const std::string* classname = findKey(*keys, "classname");
    const std::string name = classname ? *classname : std::string("unknown");
    if (name == "worldspawn")
        return theWorld();
    float origin[3];
    parseOrigin(*keys, origin);
    if (!m_world)
        theWorld();
    static const float zero[3] = {0, 0, 0};
    cEntityData* entity = m_host->Entity_Create(m_map, name.c_str(), solid ? zero : origin,
                                                solid ? 0u : uint32_t(EF_POINT));
    return entity;
}

void cMapReader::setEpairs(cEntityData* entity, const cKeyValues& keys) {
    cEpair** end = &entity->epairs;
    while (*end)
        end = &(*end)->next;
    for (const cKeyValue& pair : keys) {
        *end = makeEpair(m_host, pair.first, pair.second);
        end = &(*end)->next;
    }
}

static void readAngles(const cKeyValues& keys, float* angles) {
    for (const cKeyValue& pair : keys) {
        const char* value = pair.second.c_str();
        if (strcasecmp(pair.first.c_str(), "angles") == 0) {
            sscanf(value, "%f %f %f", &angles[0], &angles[1], &angles[2]);
            return;
        }
        if (strcasecmp(pair.first.c_str(), "angle") != 0)
            continue;
        const float angle = float(atof(value));
        angles[0] = angle == -1 ? -90.0f : angle == -2 ? 90.0f : 0.0f;
        angles[1] = angle == -1 || angle == -2 ? 0.0f : angle;
        angles[2] = 0;
        return;
    }
}

// The brushes of a group or a layer are the world's.
void cMapReader::finishContainer() {
    for (const cMade& made : m_made) {
        m_containers.addBrush(made.brush);
        m_worldMade.push_back(made);
    }
}

void cMapReader::finishEntity(cEntityData* entity, cKeyValues* keys, bool solid) {
    eraseKey(keys, "classname");
    if (!solid && entity != m_world)
        eraseKey(keys, "origin");
    if (entity != m_world)
        m_containers.addEntity(entity, keys);
    setEpairs(entity, *keys);
    readAngles(*keys, entity->angles);
    const std::string* flags = findKey(*keys, entity->flagsKey ? entity->flagsKey : "spawnflags");
    if (flags)
        entity->spawnFlags = uint32_t(strtol(flags->c_str(), nullptr, 10));
    if (entity == m_world) {
        m_worldMade.insert(m_worldMade.end(), m_made.begin(), m_made.end());
        return;
    }
    m_host->Entity_Update(entity, UM_REEVALUATE | UM_WINDINGS);
    checkBrushes(entity);
}

// ---- Brushes

void cMapReader::readBrush(cEntityData* owner) {
    const int line = m_scan.line();
    bool broken = false;
    bool other = false;
    m_faces.clear();
    for (;;) {
        const char c = m_scan.peek();
        if (c == '}') {
            m_scan.take();
            break;
        }
        if (c == 0) {
            if (mayReport())
                m_host->Sys_Error("line %i: the brush's brace is not closed", line);
            broken = true;
            break;
        }
        if (c == '(') {
            const int faceLine = m_scan.line();
            m_faces.emplace_back();
            if (readFace(&m_faces.back()))
                continue;
            if (mayReport())
                m_host->Sys_Error("line %i: broken face line", faceLine);
            m_faces.pop_back();
            broken = true;
            // What is left of the line means nothing; a line already left is not touched.
            if (m_scan.line() == faceLine)
                m_scan.skipLine();
            continue;
        }
        const std::string kind = m_scan.word();
        if (!kind.empty() && m_scan.peek() == '{') {
            skipBlock(kind, line);
            other = true;
            continue;
        }
        if (mayReport())
            m_host->Sys_Error("line %i: broken face line", m_scan.line());
        m_scan.skipLine();
        broken = true;
    }
    if (other && m_faces.empty() && !broken)
        return;
    if (broken)
        ++m_brokenBrushes;
    else
        makeBrush(owner, line);
}

// A block in braces of a kind that is no plane, as a curved patch.
void cMapReader::skipBlock(const std::string& kind, int line) {
    if (m_skippedBlocks++ == 0) {
        m_firstBlock = kind;
        m_firstBlockLine = line;
    }
    int depth = 0;
    while (const char c = m_scan.peek()) {
        m_scan.take();
        if (c == '{')
            ++depth;
        else if (c == '}' && --depth == 0)
            return;
        else if (c != '(' && c != ')')
            continue;
    }
}

bool cMapReader::readPoint(double* point) {
    return m_scan.takeIf('(') && m_scan.number(&point[0]) && m_scan.number(&point[1]) &&
           m_scan.number(&point[2]) && m_scan.takeIf(')');
}

bool cMapReader::readFace(cFace* face) {
    for (auto& point : face->points) {
        if (!readPoint(point))
            return false;
    }
    std::string name;
    if (!m_scan.name(&name) || !planeFromPoints(face->points, &face->plane))
        return false;
    memset(&face->tex, 0, sizeof face->tex);
    if (name.size() >= sizeof face->tex.name)
        ++m_longNames;
    memcpy(face->tex.name, name.data(), std::min(name.size(), sizeof face->tex.name - 1));
    if (!readTexture(face))
        return false;
    readFlags(&face->tex);
    return true;
}

bool cMapReader::readAxis(float* axis, float* shift) {
    double numbers[4];
    if (!m_scan.takeIf('['))
        return false;
    for (double& number : numbers) {
        if (!m_scan.number(&number))
            return false;
    }
    for (int i = 0; i < 3; ++i)
        axis[i] = float(numbers[i]);
    *shift = float(numbers[3]);
    return m_scan.takeIf(']');
}

bool cMapReader::readTexture(cFace* face) {
    cFaceTexture& tex = face->tex;
    if (m_scan.peek() == '[') {
        double numbers[3];
        if (!readAxis(tex.uAxis, &tex.uShift) || !readAxis(tex.vAxis, &tex.vShift))
            return false;
        for (double& number : numbers) {
            if (!m_scan.number(&number))
                return false;
        }
        tex.rotation = float(numbers[0]);
        tex.uScale = numbers[1] != 0 ? float(numbers[1]) : 1.0f;
        tex.vScale = numbers[2] != 0 ? float(numbers[2]) : 1.0f;
        return true;
    }
    cClassicProjection projection;
    if (!m_scan.number(&projection.shift[0]) || !m_scan.number(&projection.shift[1]) ||
        !m_scan.number(&projection.rotation) || !m_scan.number(&projection.scale[0]) ||
        !m_scan.number(&projection.scale[1]))
        return false;
    const float normal[3] = {float(face->plane.normal[0]), float(face->plane.normal[1]),
                             float(face->plane.normal[2])};
    applyClassicProjection(projection, normal, &tex);
    return true;
}

// Flags are written as signed or unsigned 32-bit numbers.
static uint32_t flagBits(double number) {
    if (!(number > -4294967296.0 && number < 4294967296.0))
        return 0;
    return uint32_t(int64_t(number));
}

void cMapReader::readFlags(cFaceTexture* tex) {
    uint32_t* const fields[3] = {&tex->contentFlags, &tex->surfaceFlags, &tex->value};
    double number;
    for (int i = 0; m_scan.number(&number); ++i) {
        if (i < 3)
            *fields[i] = flagBits(number);
        else
            ++m_extraNumbers;
    }
}

void cMapReader::makeBrush(cEntityData* owner, int line) {
    cBrushData* brush = m_host->Brush_Create(m_map, owner);
    for (const cFace& source : m_faces) {
        cFaceData* face = m_host->Face_Create(m_map, brush, &source.tex, 0);
        face->planeType = 3;
        for (int i = 0; i < 3; ++i) {
            face->normal[i] = float(source.plane.normal[i]);
            if (std::fabs(face->normal[i]) == 1.0f)
                face->planeType = i;
        }
        face->dist = float(source.plane.dist);
    }
    m_made.push_back({brush, line});
}

// ---- What came of them

static bool isClosed(const cBrushData* brush) {
    int faces = 0;
    for (const cFaceData* face = brush->faces; face; face = face->next)
        ++faces;
    if (faces < MIN_FACES)
        return false;
    for (int i = 0; i < 3; ++i) {
        if (!(brush->mins[i] > -MAX_COORDINATE && brush->maxs[i] < MAX_COORDINATE &&
              brush->maxs[i] - brush->mins[i] > MIN_EXTENT))
            return false;
    }
    return true;
}

void cMapReader::checkBrushes(cEntityData* owner) {
    bool removed = false;
    for (const cMade& made : m_made) {
        cBrushData* brush = made.brush;
        // A second plane in the same place, or one that only touches, has no polygon.
        for (cFaceData *face = brush->faces, *next; face; face = next) {
            next = face->next;
            if (face->vertexCount < 3)
                m_host->Face_Delete(m_map, face);
        }
        if (isClosed(brush))
            continue;
        if (mayReport())
            m_host->Sys_Error("line %i: the brush has no volume", made.line);
        ++m_brokenBrushes;
        m_host->Brush_Delete(m_map, brush);
        removed = true;
    }
    if (removed)
        m_host->Entity_Update(owner, 0);
}
