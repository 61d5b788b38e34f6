// SPDX-License-Identifier: MIT
// A map text as a compiler sees it, read by the grammar alone and in doubles. Nothing of the
// program is in it, so that what the plug-ins write is judged by other eyes.
#pragma once

#include <array>
#include <set>
#include <string>
#include <utility>
#include <vector>

using cTextPoint = std::array<double, 3>;

struct cTextFace {
    std::array<cTextPoint, 3> points;
    std::string texture;
    bool axial = false;             // the line gives the axes; else they follow from the normal
    std::array<cTextPoint, 2> axes; // turned by the rotation
    std::array<double, 2> shifts;
    double rotation = 0;
    std::array<double, 2> scales;
    std::vector<double> flags; // contents, surface, value; none or three
    cTextPoint normal;         // out of the solid; zero when the points lie on one line
    double dist = 0;

    double above(const cTextPoint& p) const; // the distance off the plane
    bool holds(const cTextPoint& p) const;   // it lies on the plane
    double texel(size_t axis, const cTextPoint& p) const;
};

struct cTextBrush {
    std::vector<cTextFace> faces;
    bool isOther = false; // there is a block in it that is no face
    // Where three planes meet and no other cuts it off, each corner once.
    std::vector<cTextPoint> corners() const;
};

struct cTextEntity {
    std::vector<std::pair<std::string, std::string>> keys; // in order
    std::vector<cTextBrush> brushes;

    std::string value(const std::string& key) const; // empty without it
};

class cMapTextReader {
public:
    explicit cMapTextReader(const std::string& text);

    std::vector<cTextEntity> entities;
    std::string error; // with the line; empty when all was read

private:
    char next();             // the character after white space and comments, 0 at the end
    bool expect(char token); // takes it
    void fail(const std::string& what);
    std::string quoted();
    std::string word(); // up to white space
    double number();
    bool endOfLine();
    cTextEntity entity();
    cTextBrush brush();
    void skipBlock();
    cTextFace face();
    void axisOf(cTextFace& face, size_t axis);

    const std::string m_text;
    size_t m_at = 0;
};

struct cTextComparison {
    int brushes = 0;
    int inexact = 0; // faces whose texels differ
    std::set<std::string> inexactTextures;
};
// Two texts of one map. Whatever differs, but for texels, fails the test.
cTextComparison compareTexts(const std::string& a, const std::string& b);
// A text as it came from elsewhere and as the program wrote it: entities and keys may stand in
// another order, origins with other digits, and a face that the others cut to nothing may be gone.
cTextComparison compareWithSource(const std::string& source, const std::string& written);
