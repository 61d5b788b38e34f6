// SPDX-License-Identifier: MIT
// Camera views: filled and textured faces, or their edges.
#include "document/tBrush.h"
#include "document/tFace.h"
#include "document/tMapLists.h"
#include "document/tTexture.h"
#include "support/tSettings.h"
#include "support/tVec.h"
#include "views/tDrawScratch.h"
#include "views/tGLState.h"
#include "views/tLooseDraw.h"

#include <qopengl.h>

// In every OpenGL library since 1.4; the system's header declares it only on demand.
extern "C" void GLAPIENTRY glMultiDrawArrays(GLenum mode, const GLint* first, const GLsizei* count,
                                             GLsizei primitives);

void cMapPainter::drawSolid() {
    drawFaces();
    drawMarkedFaces();
    if (m_view.has(VF_GRID_3D))
        drawFaceGrids();
    drawFigures(UNSELECTED);
    drawArrows(UNSELECTED);
    m_batch.flush();
    drawSelectedFaces();
    drawFigures(SELECTED);
    if (!m_view.has(VF_MORPHING)) {
        drawOutlines();
        drawSelectedLines(m_view.settings.color(COLOR_SELECTED_LINE), true);
    }
    drawArrows(SELECTED);
    m_batch.flush();
    if (m_view.has(VF_TRANSPARENCY))
        drawTranslucent();
}

// ---- Faces

const cTextureImage* cMapPainter::imageOf(const cDrawKey& key) const {
    if (m_view.renderMode != RM_TEXTURED || !key.texture || !key.texture->image)
        return nullptr;
    return key.texture->image->glName ? key.texture->image : nullptr;
}

// null: what follows has no texture.
void cMapPainter::bindImage(const cTextureImage* image) {
    if (!image) {
        glDisable(GL_TEXTURE_2D);
        return;
    }
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, image->glName);
    applyTextureSampling(m_view.settings.textureFilter, true, m_view.settings.anisotropicFilter);
}

void cMapPainter::drawFaces() {
    if (m_view.renderMode == RM_TEXTURED)
        pointAtTextured();
    else
        pointAtColors(m_buffers.look(LOOK_FILLED));
    pointAtVertices();
    const cTextureImage* gathered = nullptr;
    const auto drawGathered = [&] {
        if (m_ranges.isEmpty())
            return; // none of its faces is in view
        bindImage(gathered);
        drawRanges(GL_TRIANGLES);
    };
    eachRow(KIND_FACES, [&](uint32_t number, const cDrawKey& key) {
        if (isPutOff(key) || isReplaced(key))
            return;
        const cTextureImage* image = imageOf(key);
        if (image != gathered)
            drawGathered();
        gathered = image;
        addRow(number, UNSELECTED);
    });
    drawGathered();
    bindImage(nullptr);
    noColors();
}

// ---- What is selected

// Faces along the axes have one shade each; others have theirs by corner.
void cMapPainter::setMarkedColor(const cDrawKey& key) {
    if (key.facing == FACING_OTHER) {
        pointAtColors(m_buffers.look(LOOK_MARKED));
        return;
    }
    float normal[3] = {0, 0, 0};
    normal[key.facing / 2] = key.facing & 1 ? -1.0f : 1.0f;
    uint8_t rgba[4];
    shadeColor(m_view.settings.color(COLOR_SELECTED_FILL), shadeForNormal(normal), rgba);
    glDisableClientState(GL_COLOR_ARRAY);
    glColor4ubv(rgba);
}

void cMapPainter::drawSelectedFaces() {
    if (m_view.renderMode == RM_TEXTURED)
        pointAtTextured();
    pointAtVertices();
    const auto draw = [&](const cDrawKey& key) {
        if (m_ranges.isEmpty())
            return;
        bindImage(imageOf(key));
        setMarkedColor(key);
        drawRanges(GL_TRIANGLES);
    };
    eachRow(KIND_FACES, [&](uint32_t number, const cDrawKey& key) {
        if (isPutOff(key) || isReplaced(key))
            return;
        addRow(number, SELECTED);
        draw(key);
    });
    eachSelectedCell([&](const cDrawKey& key, const cSelectedCell& cell) {
        if (key.kind != KIND_FACES || isPutOff(key) || isReplaced(key))
            return;
        m_ranges.add(cell.first, cell.count);
        draw(key);
    });
    bindImage(nullptr);
    noColors();
}

// The outline of a filled face: a polygon in line mode, moved towards the viewer.
void cMapPainter::drawOutlines() {
    // Pixels on both sides of an edge: what meets a selected face there may cover the outer ones.
    static constexpr float OUTLINE_WIDTH = 2.0f;
    const auto isDrawn = [this](const cOutlineRun& run) {
        if (run.row == cOutlineRun::MANY)
            return true;
        const cDrawKey& key = m_buffers.row(run.row).key;
        return !isHidden(key) && !isPutOff(key);
    };
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    if (!m_view.has(VF_NO_POLYGON_OFFSET))
        glEnable(GL_POLYGON_OFFSET_LINE);
    pointAtVertices();
    glColor4ubv(m_view.settings.color(COLOR_SELECTED_LINE));
    GL_LineWidth(OUTLINE_WIDTH);
    for (const bool quads : {true, false}) {
        std::vector<GLint>& firsts = m_scratch.firsts;
        std::vector<GLsizei>& counts = m_scratch.counts;
        firsts.clear();
        counts.clear();
        for (uint32_t leaf = 0; leaf < m_masks.size(); ++leaf) {
            if (!isLeafVisible(leaf))
                continue;
            for (const cOutlineRun& run : m_buffers.leaves()[leaf].outlines) {
                if ((run.row == cOutlineRun::MANY) != quads || !isDrawn(run))
                    continue;
                firsts.push_back(GLint(run.first));
                counts.push_back(GLsizei(run.count));
            }
        }
        if (firsts.empty())
            continue;
        ++g_drawTraffic.calls;
        g_drawTraffic.ranges += firsts.size();
        glMultiDrawArrays(quads ? GL_QUADS : GL_POLYGON, firsts.data(), counts.data(),
                          GLsizei(firsts.size()));
    }
    GL_LineWidth(1);
    glDisable(GL_POLYGON_OFFSET_LINE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

static bool isEdges(const cDrawKey& key) {
    return key.kind == KIND_FLAT_EDGES || key.kind == KIND_OTHER_EDGES;
}

// All edges of what is selected, or those of the boxes of point entities.
void cMapPainter::drawSelectedLines(const uint8_t* rgba, bool boxesAlone) {
    pointAtVertices();
    glColor4ubv(rgba);
    const auto isDrawn = [boxesAlone](const cDrawKey& key) {
        return !boxesAlone || (key.traits & TRAIT_BOX);
    };
    for (const eDrawKind kind : {KIND_FLAT_EDGES, KIND_OTHER_EDGES})
        eachRow(kind, [&](uint32_t number, const cDrawKey& key) {
            if (isDrawn(key))
                addRow(number, SELECTED);
        });
    drawRanges(GL_LINES);
    eachSelectedCell([&](const cDrawKey& key, const cSelectedCell& cell) {
        if (!isEdges(key) || !isDrawn(key))
            return;
        m_ranges.add(cell.first, cell.count);
        drawRanges(GL_LINES);
    });
}

// ---- Wireframe

void cMapPainter::drawWires() {
    pointAtColors(m_buffers.look(LOOK_LINES));
    pointAtVertices();
    for (const eDrawKind kind : {KIND_FLAT_EDGES, KIND_OTHER_EDGES})
        eachRow(kind, [&](uint32_t number, const cDrawKey& key) {
            if (!isReplaced(key))
                addRow(number, UNSELECTED);
        });
    drawRanges(GL_LINES);
    noColors();
    drawMarkedFaces();
    if (m_view.has(VF_GRID_3D))
        drawFaceGrids();
    drawFigures(UNSELECTED);
    drawArrows(UNSELECTED);
    m_batch.flush();
    drawSelectedLines(m_view.settings.color(COLOR_SELECTED_LINE), false);
    drawFigures(SELECTED);
    drawArrows(SELECTED);
    m_batch.flush();
}

// ---- Selected faces

// Over the face as its brush shows it; with the axes of its texture.
void cMapPainter::drawMarkedFace(const cFaceData* face) {
    const uint8_t* lineColor = m_view.settings.color(COLOR_SELECTED_LINE);
    const auto* texture = static_cast<const cTexture*>(face->texture);
    cDrawKey key;
    key.texture = texture;
    key.traits = m_buffers.slot(face->brush->brush->viewSlot).traits;
    // With the brush, or when all opaque faces are drawn.
    const bool covered = (face->brush->flags & BF_SELECTED) || isPutOff(key);
    if (m_view.isWireframe()) {
        m_batch.beginEdges();
        m_batch.loop(face, lineColor);
    } else if (!covered && !(m_view.hideMask & HM_FACE_MASK)) {
        uint8_t rgba[4];
        shadeColor(m_view.settings.color(COLOR_SELECTED_FILL), face->face->shade, rgba);
        if (const cTextureImage* image = imageOf(key))
            m_batch.texturedFan(face, image, rgba);
        else
            m_batch.fan(face, rgba);
    }
    drawTextureAxes(m_batch, face);
}

void cMapPainter::drawMarkedFaces() {
    if (!m_map.data.selectedFaces)
        return;
    cGLBuffer::unbind();
    for (const cFaceData* face : selectedFacesOf(m_map.data)) {
        const uint32_t number = face->brush->brush->viewSlot;
        const cDrawSlot& slot = m_buffers.slot(number);
        if (number == 0 || !slot.is(SLOT_SHOWN) || !isLeafVisible(slot.leaf) ||
            !isFaceVisible(face, m_view))
            continue;
        drawMarkedFace(face);
    }
    m_batch.flush();
    m_indices = m_buffers.indices().bind();
}
