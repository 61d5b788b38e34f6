// SPDX-License-Identifier: MIT
#include "common/tMapReader.h"

#include "common/tVector.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <strings.h>

static constexpr int MAX_REPORTS = 30;          // of a kind, with a line of their own
static constexpr float MAX_COORDINATE = 262144; // a brush that reaches past it is not closed
static constexpr size_t MIN_FACES = 4;          // fewer enclose nothing
static constexpr float MIN_EXTENT = 0.001f;
// Building a brush takes the square of the number of its faces.
static constexpr size_t MAX_FACES = 1024;

const char* const cMapReader::COMPLAINTS[COMPLAINT_COUNT] = {
    "an entity should begin here",      "broken key/value",
    "the entity's brace is not closed", "unexpected text",
    "the brush's brace is not closed",  "broken face line",
    "the brush has too many faces",     "the brush has no volume",
};

cMapReader::cMapReader(const cHostServices* host, cMapData* map, const char* text, size_t size)
    : m_host(host), m_map(map), m_scan(text, size), m_containers(host, map) {}

void cMapReader::complain(eComplaint complaint, int line) {
    if (++m_complaints[complaint] <= MAX_REPORTS)
        m_host->Sys_Error("line %i: %s", line, COMPLAINTS[complaint]);
}

bool cMapReader::read() {
    while (const char c = m_scan.peek()) {
        if (c == '{') {
            readEntity();
            continue;
        }
        complain(NO_ENTITY, m_scan.line());
        m_scan.skipLine();
    }
    if (m_entities > 0)
        finishWorld();
    else
        m_host->Sys_Error("the file holds no entities");
    reportCounts();
    return m_entities > 0;
}

void cMapReader::finishWorld() {
    cEntityData* world = theWorld();
    m_containers.bind(*m_worldKeys);
    m_host->Entity_Update(world, UM_REEVALUATE | UM_WINDINGS);
    checkBrushes(world, m_worldMade);
}

void cMapReader::reportCounts() {
    for (int i = 0; i < COMPLAINT_COUNT; ++i) {
        if (m_complaints[size_t(i)] > MAX_REPORTS)
            m_host->Sys_Error("%i more error(s) of this kind: %s",
                              m_complaints[size_t(i)] - MAX_REPORTS, COMPLAINTS[i]);
    }
    if (m_brokenBrushes)
        m_host->Sys_Warning("%i brush(es) could not be built and were left out", m_brokenBrushes);
    if (m_cutBrushes)
        m_host->Sys_Warning("%i brush(es) with faces of more than %i corners were cut into pieces",
                            m_cutBrushes, int(MAX_CORNERS));
    if (m_extraNumbers)
        m_host->Sys_Warning("%i number(s) past the known ones were read over", m_extraNumbers);
    if (m_cutNumbers)
        m_host->Sys_Warning("%i flag(s) or value(s) of a face were no 32-bit numbers and were cut",
                            m_cutNumbers);
    if (m_cutOrigins)
        m_host->Sys_Warning("%i origin(s) were not three numbers; what is none became 0",
                            m_cutOrigins);
    if (m_repeatedKeys)
        m_host->Sys_Warning("%i repeated class name(s) and origin(s) were left out",
                            m_repeatedKeys);
    if (m_longNames)
        m_host->Sys_Warning("%i texture name(s) longer than 63 characters were cut", m_longNames);
    if (m_skippedBlocks)
        m_host->Sys_Warning("%i block(s) that are neither planes nor key/values were skipped, "
                            "the first one \"%s\" on line %i",
                            m_skippedBlocks, m_firstBlock.c_str(), m_firstBlockLine);
}

// ---- Entities

void cMapReader::readPair(cKeyValues* keys) {
    const int line = m_scan.line();
    std::string key, value;
    if (m_scan.quoted(&key) && m_scan.peek() == '"' && m_scan.quoted(&value))
        keys->emplace_back(std::move(key), std::move(value));
    else
        complain(BROKEN_PAIR, line);
}

void cMapReader::readEntity() {
    const int line = m_scan.line();
    ++m_entities;
    m_scan.take();
    cKeyValues keys;
    cSolids solids;
    while (const char c = m_scan.peek()) {
        if (c == '"') {
            readPair(&keys);
        } else if (c == '{') {
            readBrush(&solids);
        } else if (c == '}') {
            m_scan.take();
            makeEntity(&keys, solids);
            return;
        } else {
            complain(UNEXPECTED, m_scan.line());
            m_scan.skipLine();
        }
    }
    complain(OPEN_ENTITY, line);
    makeEntity(&keys, solids);
}

cEntityData* cMapReader::theWorld() {
    static const float origin[3] = {0, 0, 0};
    if (!m_world) {
        m_world = m_host->Entity_Create(m_map, "worldspawn", origin, EF_WORLD);
        m_worldKeys.emplace(m_host, m_world);
    }
    return m_world;
}

// What is missing, or no number, is 0. False unless there are three.
static bool readNumbers(const std::string& text, float* out) {
    out[0] = out[1] = out[2] = 0;
    bool whole = sscanf(text.c_str(), "%f %f %f", &out[0], &out[1], &out[2]) == 3;
    for (int i = 0; i < 3; ++i) {
        if (std::isfinite(out[i]))
            continue;
        out[i] = 0;
        whole = false;
    }
    return whole;
}

static void readAngles(const cKeyValues& keys, float* angles) {
    for (const cKeyValue& pair : keys) {
        if (strcasecmp(pair.first.c_str(), "angles") == 0) {
            readNumbers(pair.second, angles);
            return;
        }
        if (strcasecmp(pair.first.c_str(), "angle") != 0)
            continue;
        float turn[3];
        readNumbers(pair.second, turn);
        const float angle = turn[0];
        angles[0] = angle == -1 ? -90.0f : angle == -2 ? 90.0f : 0.0f;
        angles[1] = angle == -1 || angle == -2 ? 0.0f : angle;
        angles[2] = 0;
        return;
    }
}

// All keys, as they stand, and the fields that follow from them.
static void setKeys(cEntityData* entity, const cKeyValues& keys, cEpairAppender* epairs) {
    for (const cKeyValue& pair : keys)
        epairs->append(pair.first, pair.second);
    readAngles(keys, entity->angles);
    const std::string* flags = findKey(keys, entity->flagsKey ? entity->flagsKey : "spawnflags");
    if (flags)
        entity->spawnFlags = uint32_t(strtol(flags->c_str(), nullptr, 10));
}

void cMapReader::makeEntity(cKeyValues* keys, const cSolids& solids) {
    const std::string* classname = findKey(*keys, "classname");
    if (isContainer(*keys))
        makeContainer(*keys, solids);
    else if (classname && strcasecmp(classname->c_str(), "worldspawn") == 0)
        addToWorld(keys, solids);
    else
        makeObject(keys, solids);
}

cEntityData* cMapReader::createEntity(const cKeyValues& keys, uint32_t flags) {
    static const float origin[3] = {0, 0, 0};
    const std::string* classname = findKey(keys, "classname");
    cEntityData* entity =
        m_host->Entity_Create(m_map, classname ? classname->c_str() : "", origin, flags);
    // No class name at all is not an empty one.
    if (!classname) {
        m_host->Sys_Free(entity->classname);
        entity->classname = nullptr;
    }
    return entity;
}

void cMapReader::makeObject(cKeyValues* keys, const cSolids& solids) {
    theWorld();
    cEntityData* entity = createEntity(*keys, solids.empty() ? EF_POINT : 0);
    const cMadeList made = makeBrushes(entity, solids);
    m_host->Entity_Update(entity, UM_WINDINGS);
    checkBrushes(entity, made);
    dropKey(keys, "classname");
    m_containers.addEntity(entity, *keys);
    // Without brushes an entity stands at its origin, whatever became of those in the text.
    if (!entity->brushes)
        takeOrigin(entity, keys);
    cEpairAppender epairs(m_host, entity);
    setKeys(entity, *keys, &epairs);
    m_host->Entity_Update(entity, UM_REEVALUATE | UM_WINDINGS);
}

// A key that becomes a field; the first of several does.
void cMapReader::dropKey(cKeyValues* keys, const char* key) {
    m_repeatedKeys += std::max(0, eraseKey(keys, key) - 1);
}

void cMapReader::takeOrigin(cEntityData* entity, cKeyValues* keys) {
    const std::string* origin = findKey(*keys, "origin");
    if (!origin) {
        keys->emplace_back(NO_ORIGIN_KEY, "1");
        return;
    }
    m_cutOrigins += readNumbers(*origin, entity->origin) ? 0 : 1;
    dropKey(keys, "origin");
}

void cMapReader::addToWorld(cKeyValues* keys, const cSolids& solids) {
    cEntityData* world = theWorld();
    dropKey(keys, "classname");
    setKeys(world, *keys, &*m_worldKeys);
    const cMadeList made = makeBrushes(world, solids);
    m_worldMade.insert(m_worldMade.end(), made.begin(), made.end());
}

// The brushes of a group or a layer are the world's.
void cMapReader::makeContainer(const cKeyValues& keys, const cSolids& solids) {
    m_containers.begin(keys);
    if (solids.empty())
        return;
    const cMadeList made = makeBrushes(theWorld(), solids);
    for (const cMade& item : made)
        m_containers.addBrush(item.brush);
    m_worldMade.insert(m_worldMade.end(), made.begin(), made.end());
}

// ---- Brushes

// One face line, or a block of another kind. False for what is neither.
bool cMapReader::readPart(cSolid* solid, bool* isOther) {
    const int line = m_scan.line();
    if (m_scan.peek() == '(') {
        solid->faces.emplace_back();
        if (readFace(&solid->faces.back()))
            return true;
        solid->faces.pop_back();
    } else {
        const std::string kind = m_scan.word();
        if (!kind.empty() && m_scan.peek() == '{') {
            skipBlock(kind, solid->line);
            *isOther = true;
            return true;
        }
    }
    complain(BROKEN_FACE, line);
    // What is left of the line means nothing; a line already left is not touched.
    if (m_scan.line() == line)
        m_scan.skipLine();
    return false;
}

void cMapReader::readBrush(cSolids* solids) {
    cSolid solid = {{}, m_scan.line()};
    bool broken = false, isOther = false;
    m_scan.take();
    char c;
    while ((c = m_scan.peek()) && c != '}')
        broken |= !readPart(&solid, &isOther);
    if (c)
        m_scan.take();
    else
        complain(OPEN_BRUSH, solid.line);
    if (solid.faces.size() > MAX_FACES)
        complain(TOO_MANY_FACES, solid.line);
    broken |= !c || solid.faces.size() > MAX_FACES;
    const bool isPlanes = !isOther || !solid.faces.empty();
    if (!broken && isPlanes && solid.faces.size() < MIN_FACES) {
        complain(NO_VOLUME, solid.line);
        broken = true;
    }
    if (broken)
        ++m_brokenBrushes;
    else if (isPlanes)
        solids->push_back(std::move(solid));
}

// A block in braces of a kind that is no plane, as a curved patch.
void cMapReader::skipBlock(const std::string& kind, int line) {
    if (m_skippedBlocks++ == 0) {
        m_firstBlock = kind;
        m_firstBlockLine = line;
    }
    m_scan.skipBraces();
}

bool cMapReader::readPoint(double* point) {
    return m_scan.takeIf('(') && m_scan.number(&point[0]) && m_scan.number(&point[1]) &&
           m_scan.number(&point[2]) && m_scan.takeIf(')');
}

bool cMapReader::readFace(cMapFace* face) {
    double points[3][3];
    for (auto& point : points) {
        if (!readPoint(point))
            return false;
    }
    std::string name;
    if (!m_scan.name(&name) || !planeFromPoints(points, &face->plane))
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

bool cMapReader::readTexture(cMapFace* face) {
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
        tex.uScale = scaleOf(numbers[1]);
        tex.vScale = scaleOf(numbers[2]);
        return true;
    }
    cClassicProjection projection;
    if (!m_scan.number(&projection.shift[0]) || !m_scan.number(&projection.shift[1]) ||
        !m_scan.number(&projection.rotation) || !m_scan.number(&projection.scale[0]) ||
        !m_scan.number(&projection.scale[1]))
        return false;
    applyClassicProjection(projection, face->plane.normal, &tex);
    return true;
}

// Flags are written as signed or unsigned 32-bit numbers.
static bool isInRange(double number) {
    return number > -4294967296.0 && number < 4294967296.0;
}

static bool isFlagBits(double number) {
    return isInRange(number) && number == std::trunc(number);
}

static uint32_t flagBits(double number) {
    return isInRange(number) ? uint32_t(int64_t(number)) : 0;
}

void cMapReader::readFlags(cFaceTexture* tex) {
    uint32_t* const fields[3] = {&tex->contentFlags, &tex->surfaceFlags, &tex->value};
    double number;
    for (int i = 0; m_scan.number(&number); ++i) {
        if (i >= 3) {
            ++m_extraNumbers;
            continue;
        }
        *fields[i] = flagBits(number);
        m_cutNumbers += isFlagBits(number) ? 0 : 1;
    }
}

cBrushData* cMapReader::makeBrush(cEntityData* owner, const cMapFaces& faces) {
    cBrushData* brush = m_host->Brush_Create(m_map, owner);
    for (const cMapFace& source : faces) {
        cFaceData* face = m_host->Face_Create(m_map, brush, &source.tex, 0);
        face->planeType = 3;
        for (int i = 0; i < 3; ++i) {
            face->normal[i] = float(source.plane.normal[i]);
            if (std::fabs(face->normal[i]) == 1.0f)
                face->planeType = i;
        }
        face->dist = float(source.plane.dist);
    }
    return brush;
}

cMapReader::cMadeList cMapReader::makeBrushes(cEntityData* owner, const cSolids& solids) {
    cMadeList made;
    for (const cSolid& solid : solids) {
        const std::vector<cMapFaces> pieces = cutBigBrush(solid.faces);
        m_cutBrushes += pieces.size() > 1 ? 1 : 0;
        for (const cMapFaces& piece : pieces)
            made.push_back({makeBrush(owner, piece), solid.line});
    }
    return made;
}

// ---- What came of them

static bool isClosed(const cBrushData* brush) {
    size_t faces = 0;
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

void cMapReader::checkBrushes(cEntityData* owner, const cMadeList& made) {
    bool removed = false;
    for (const auto& [brush, line] : made) {
        // A second plane in the same place, or one that only touches, has no polygon.
        for (cFaceData *face = brush->faces, *next; face; face = next) {
            next = face->next;
            if (face->vertexCount < 3)
                m_host->Face_Delete(m_map, face);
        }
        if (isClosed(brush))
            continue;
        complain(NO_VOLUME, line);
        ++m_brokenBrushes;
        m_host->Brush_Delete(m_map, brush);
        removed = true;
    }
    if (removed)
        m_host->Entity_Update(owner, 0);
}
