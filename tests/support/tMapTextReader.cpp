// SPDX-License-Identifier: MIT
#include "support/tMapTextReader.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>

static constexpr double RADIANS = 3.14159265358979323846 / 180;
static constexpr double PARALLEL = 1e-9;   // of a product of unit vectors
static constexpr double ON_PLANE = 0.02;   // world units; more than floats leave, less than an edge
static constexpr double SAME_POINT = 0.05; // world units
static constexpr double SAME_NORMAL = 0.0001;
static constexpr double SAME_DIST = 0.01;
static constexpr double SAME_TEXEL = 0.011; // no difference to the eye, and what digits leave

// ---- Vectors

static double dot(const cTextPoint& a, const cTextPoint& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

static cTextPoint cross(const cTextPoint& a, const cTextPoint& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

static cTextPoint minus(const cTextPoint& a, const cTextPoint& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

// ---- Faces

double cTextFace::above(const cTextPoint& p) const {
    return dot(normal, p) - dist;
}

bool cTextFace::holds(const cTextPoint& p) const {
    return std::fabs(above(p)) < ON_PLANE;
}

double cTextFace::texel(size_t axis, const cTextPoint& p) const {
    return dot(axes[axis], p) / scales[axis] + shifts[axis];
}

// The points run clockwise as seen from outside.
static void setPlane(cTextFace& face) {
    const auto& p = face.points;
    face.normal = cross(minus(p[0], p[1]), minus(p[2], p[1]));
    const double length = std::sqrt(dot(face.normal, face.normal));
    for (double& component : face.normal)
        component = length > PARALLEL ? component / length : 0;
    face.dist = dot(face.normal, face.points[1]);
}

// Without axes of its own a face takes the two of the side of a box that it looks like most; of
// equal ones top and bottom come first, then the sides along x.
static void setAxesFromNormal(cTextFace& face) {
    size_t away = 2;
    for (const size_t axis : {size_t(0), size_t(1)})
        if (std::fabs(face.normal[axis]) > std::fabs(face.normal[away]))
            away = axis;
    const size_t across = away == 0 ? 1 : 0, down = away == 2 ? 1 : 2;
    const double sine = std::sin(face.rotation * RADIANS),
                 cosine = std::cos(face.rotation * RADIANS);
    face.axes = {};
    face.axes[0][across] = cosine;
    face.axes[0][down] = sine;
    face.axes[1][across] = sine;
    face.axes[1][down] = -cosine;
}

// ---- Brushes

static bool meet(const cTextFace& a, const cTextFace& b, const cTextFace& c, cTextPoint& out) {
    const cTextPoint bc = cross(b.normal, c.normal);
    const double product = dot(a.normal, bc);
    if (!(std::fabs(product) > PARALLEL))
        return false;
    const cTextPoint ca = cross(c.normal, a.normal), ab = cross(a.normal, b.normal);
    for (size_t i = 0; i < 3; ++i)
        out[i] = (a.dist * bc[i] + b.dist * ca[i] + c.dist * ab[i]) / product;
    return true;
}

static bool near(const cTextPoint& a, const cTextPoint& b) {
    const cTextPoint away = minus(a, b);
    return dot(away, away) < SAME_POINT * SAME_POINT;
}

std::vector<cTextPoint> cTextBrush::corners() const {
    std::vector<cTextPoint> found;
    const auto take = [&](const cTextPoint& p) {
        const auto cutsOff = [&](const cTextFace& face) { return face.above(p) > ON_PLANE; };
        const auto isSame = [&](const cTextPoint& other) { return near(p, other); };
        if (std::none_of(faces.begin(), faces.end(), cutsOff) &&
            std::none_of(found.begin(), found.end(), isSame))
            found.push_back(p);
    };
    cTextPoint p;
    for (size_t i = 0; i < faces.size(); ++i)
        for (size_t j = i + 1; j < faces.size(); ++j)
            for (size_t k = j + 1; k < faces.size(); ++k)
                if (meet(faces[i], faces[j], faces[k], p))
                    take(p);
    return found;
}

std::string cTextEntity::value(const std::string& key) const {
    for (const auto& pair : keys)
        if (pair.first == key)
            return pair.second;
    return std::string();
}

// ---- The text

cMapTextReader::cMapTextReader(const std::string& text) : m_text(text) {
    while (error.empty() && next())
        entities.push_back(entity());
}

void cMapTextReader::fail(const std::string& what) {
    if (error.empty())
        error = what + " expected in line " +
                std::to_string(1 + std::count(m_text.begin(), m_text.begin() + long(m_at), '\n'));
}

char cMapTextReader::next() {
    for (; m_at < m_text.size(); ++m_at) {
        if (m_text.compare(m_at, 2, "//") == 0)
            m_at = std::min(m_text.find('\n', m_at), m_text.size() - 1);
        else if (!strchr(" \t\r\n", m_text[m_at]))
            return m_text[m_at];
    }
    return 0;
}

bool cMapTextReader::expect(char token) {
    if (next() == token) {
        ++m_at;
        return true;
    }
    fail(std::string("'") + token + "'");
    return false;
}

std::string cMapTextReader::quoted() {
    expect('"');
    const size_t from = m_at;
    m_at = std::min(m_text.find('"', from), m_text.size());
    const std::string inside = m_text.substr(from, m_at - from);
    expect('"');
    return inside;
}

std::string cMapTextReader::word() {
    next();
    const size_t from = m_at;
    m_at = std::min(m_text.find_first_of(" \t\r\n", from), m_text.size());
    return m_text.substr(from, m_at - from);
}

double cMapTextReader::number() {
    const std::string text = word();
    char* end = nullptr;
    const double value = strtod(text.c_str(), &end);
    if (text.empty() || *end || !std::isfinite(value))
        fail("a number");
    return value;
}

bool cMapTextReader::endOfLine() {
    while (m_at < m_text.size() && strchr(" \t\r", m_text[m_at]))
        ++m_at;
    return m_at >= m_text.size() || m_text[m_at] == '\n' || m_text[m_at] == '}' ||
           m_text.compare(m_at, 2, "//") == 0;
}

cTextEntity cMapTextReader::entity() {
    cTextEntity result;
    expect('{');
    while (error.empty() && next() != '}') {
        if (next() == '{') {
            cTextBrush read = brush();
            if (!read.faces.empty() || !read.isOther)
                result.brushes.push_back(std::move(read));
            continue;
        }
        const std::string key = quoted();
        result.keys.emplace_back(key, quoted());
    }
    expect('}');
    return result;
}

cTextBrush cMapTextReader::brush() {
    cTextBrush result;
    expect('{');
    while (error.empty() && next() != '}') {
        result.isOther |= next() != '(';
        if (next() == '(')
            result.faces.push_back(face());
        else
            skipBlock();
    }
    expect('}');
    return result;
}

// Its kind, and all between braces that stand alone.
void cMapTextReader::skipBlock() {
    word();
    int depth = 0;
    do {
        const std::string part = next() == '"' ? quoted() : word();
        depth += part == "{" ? 1 : part == "}" ? -1 : 0;
    } while (depth > 0 && error.empty() && next());
}

void cMapTextReader::axisOf(cTextFace& face, size_t axis) {
    expect('[');
    for (double& component : face.axes[axis])
        component = number();
    face.shifts[axis] = number();
    expect(']');
}

cTextFace cMapTextReader::face() {
    cTextFace result;
    for (cTextPoint& point : result.points) {
        expect('(');
        for (double& coordinate : point)
            coordinate = number();
        expect(')');
    }
    result.texture = next() == '"' ? quoted() : word();
    result.axial = next() == '[';
    for (const size_t axis : {size_t(0), size_t(1)}) {
        if (result.axial)
            axisOf(result, axis);
        else
            result.shifts[axis] = number();
    }
    result.rotation = number();
    for (double& scale : result.scales)
        scale = number();
    while (error.empty() && !endOfLine())
        result.flags.push_back(number());
    // More than contents, surface and value has no meaning, nor have fractions, nor three that are
    // 0.
    result.flags.resize(std::min(result.flags.size(), size_t(3)));
    for (double& flag : result.flags)
        flag = std::trunc(flag);
    if (std::all_of(result.flags.begin(), result.flags.end(), [](double f) { return f == 0; }))
        result.flags.clear();
    setPlane(result);
    if (!result.axial)
        setAxesFromNormal(result);
    return result;
}

// ---- Comparing

static bool isOnPlane(const cTextFace& a, const cTextFace& b) {
    double off = std::fabs(a.dist - b.dist) / SAME_DIST;
    for (size_t i = 0; i < 3; ++i)
        off = std::max(off, std::fabs(a.normal[i] - b.normal[i]) / SAME_NORMAL);
    return off < 1;
}

static bool givesSameTexels(const cTextFace& a, const cTextFace& b) {
    for (const cTextPoint& p : a.points)
        for (const size_t axis : {size_t(0), size_t(1)})
            if (std::fabs(a.texel(axis, p) - b.texel(axis, p)) > SAME_TEXEL)
                return false;
    return true;
}

// Cut to nothing by the others, as one that stands for a plane twice.
static bool hasNoCorners(const cTextFace& face, const cTextBrush& brush) {
    const std::vector<cTextPoint> corners = brush.corners();
    const auto isOnFace = [&](const cTextPoint& p) { return face.holds(p); };
    return std::count_if(corners.begin(), corners.end(), isOnFace) < 3;
}

// Tied faces of a brush may stand in another order.
static void compareBrushes(const cTextBrush& a, const cTextBrush& b, cTextComparison* result) {
    ++result->brushes;
    for (const cTextFace& face : a.faces) {
        const auto other = std::find_if(b.faces.begin(), b.faces.end(),
                                        [&](const cTextFace& f) { return isOnPlane(face, f); });
        if (other == b.faces.end()) {
            EXPECT_TRUE(hasNoCorners(face, a)) << "brush " << result->brushes;
            continue;
        }
        EXPECT_EQ(face.texture, other->texture);
        EXPECT_EQ(face.flags, other->flags);
        if (face.axial && other->axial) {
            EXPECT_EQ(face.rotation, other->rotation);
        }
        if (givesSameTexels(face, *other))
            continue;
        ++result->inexact;
        result->inexactTextures.insert(face.texture);
    }
    EXPECT_LE(b.faces.size(), a.faces.size()) << "brush " << result->brushes;
}

static void compareEntities(const cTextEntity& a, const cTextEntity& b, cTextComparison* result) {
    EXPECT_EQ(a.keys, b.keys);
    EXPECT_EQ(a.brushes.size(), b.brushes.size()) << a.value("classname");
    for (size_t i = 0; i < std::min(a.brushes.size(), b.brushes.size()); ++i)
        compareBrushes(a.brushes[i], b.brushes[i], result);
}

static cTextComparison compareLists(const std::vector<cTextEntity>& a,
                                    const std::vector<cTextEntity>& b) {
    cTextComparison result;
    EXPECT_EQ(a.size(), b.size());
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        compareEntities(a[i], b[i], &result);
    return result;
}

cTextComparison compareTexts(const std::string& a, const std::string& b) {
    const cMapTextReader first(a), second(b);
    EXPECT_EQ(first.error + second.error, "");
    return compareLists(first.entities, second.entities);
}

// ---- A source and what became of it

static std::string plainNumbers(const std::string& text) {
    double p[3] = {};
    sscanf(text.c_str(), "%lf %lf %lf", p, p + 1, p + 2);
    char plain[100];
    snprintf(plain, sizeof plain, "%.6g %.6g %.6g", p[0], p[1], p[2]);
    return plain;
}

// Entities by their keys, keys by name.
static std::vector<cTextEntity> inOneOrder(std::vector<cTextEntity> entities) {
    for (cTextEntity& entity : entities) {
        for (auto& pair : entity.keys)
            if (pair.first == "origin")
                pair.second = plainNumbers(pair.second);
        std::sort(entity.keys.begin(), entity.keys.end());
    }
    std::stable_sort(entities.begin(), entities.end(),
                     [](const cTextEntity& a, const cTextEntity& b) { return a.keys < b.keys; });
    return entities;
}

cTextComparison compareWithSource(const std::string& source, const std::string& written) {
    const cMapTextReader first(source), second(written);
    EXPECT_EQ(first.error + second.error, "");
    return compareLists(inOneOrder(first.entities), inOneOrder(second.entities));
}
