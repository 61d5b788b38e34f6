// SPDX-License-Identifier: MIT
// Gathers what is to be drawn into vertex arrays, in the order it comes, and draws them with few
// calls. A full array is drawn at once, so memory stays bounded. Nothing here sets blending or
// depth state; line width, stipple and texturing are put back after each use.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QHash>
#include <vector>

struct cBatchVertex {
    float xyz[3];
    uint8_t rgba[4];
};

struct cBatchTexVertex {
    float xyz[3];
    float st[2];
    uint8_t rgba[4];
};

class cDrawBatch {
public:
    // The arrays are kept from draw to draw. GUI thread only.
    static cDrawBatch& shared();

    void line(const float* a, const float* b, const uint8_t* rgba);
    void wideLine(const float* a, const float* b, const uint8_t* rgba); // 4 pixels
    void stippledLine(const float* a, const float* b, const uint8_t* rgba);
    void point(const float* p, const uint8_t* rgba);
    void triangle(const float* a, const float* b, const float* c, const uint8_t* rgba);
    void boxLines(const float* mins, const float* maxs, const uint8_t* rgba);

    // Between beginEdges calls an edge of one colour is kept once, whichever way it runs. With
    // a depth axis edges that cover each other on the screen count as one.
    void beginEdges(int depthAxis = -1);
    void loop(const cFaceData* face, const uint8_t* rgba);
    void stippledLoop(const cFaceData* face, const uint8_t* rgba);
    void vertices(const cFaceData* face, const uint8_t* rgba); // as points, each place once

    void fan(const cFaceData* face, const uint8_t* rgba);
    void texturedFan(const cFaceData* face, const cTextureImage* image, const uint8_t* rgba);
    // The outline of a filled face: a polygon in line mode, moved towards the viewer.
    void outline(const cFaceData* face, const uint8_t* rgba);
    // A line just in front of what is drawn at the same depth.
    void raisedLine(const float* a, const float* b, const uint8_t* rgba);

    // Draws all that is pending: fills, outlines, lines, points.
    void flush();

    bool polygonOffset = true; // for the outlines
    float pointSize = 1;
    float lineWidth = 1;
    int textureFilter = 0; // of textured faces, as applyTextureSampling takes them
    bool anisotropy = false;

private:
    static constexpr size_t LIMIT = 1 << 15; // vertices pending in one array
    static constexpr int EDGE_SLOTS = 1024;  // power of two

    struct cEdgeSlot {
        uint32_t stamp = 0;
        uint32_t color = 0;
        float ends[6];
    };
    using cVertices = std::vector<cBatchVertex>;

    void flattened(const float* p, float* out) const;
    bool isNewEdge(const float* from, const float* to, const uint8_t* rgba);
    void put(cVertices& vertices, const float* p, const uint8_t* rgba);
    void drawVertices(cVertices& vertices, unsigned primitive);
    void drawTriangles();
    void drawTextured(uint32_t glName, std::vector<cBatchTexVertex>& vertices);
    void drawAllTextured();
    void drawOutlines();
    void drawLines();
    void drawWideLines();
    void drawStippled();
    void drawRaised();
    void drawPoints();

    cVertices m_lines;
    cVertices m_wideLines;
    cVertices m_stippled;
    cVertices m_raised;
    cVertices m_points;
    cVertices m_triangles;
    cVertices m_outlines;
    std::vector<int> m_outlineFirsts;
    std::vector<int> m_outlineCounts;
    QHash<uint32_t, std::vector<cBatchTexVertex>> m_textured; // by texture name
    std::vector<cEdgeSlot> m_edges = std::vector<cEdgeSlot>(EDGE_SLOTS);
    uint32_t m_edgeStamp = 0;
    int m_edgeCount = 0;
    int m_depthAxis = -1;
};
