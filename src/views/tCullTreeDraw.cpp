// SPDX-License-Identifier: MIT
// The drawing half of the cull tree: a walk from the root that skips what lies outside the view.
#include "document/tCullTree.h"

#include "views/tDrawBatch.h"
#include "views/tGLState.h"
#include "views/tMapPainter.h"

namespace {

class cTreeWalk {
public:
    cTreeWalk(cCullTree& tree, cViewInfo& view, cDrawStats& stats)
        : m_tree(tree), m_view(view), m_stats(stats) {}

    void node(cCullTree::cNode& node, uint32_t passFlags, uint32_t planeMask) {
        if (!isVisible(node, &passFlags, &planeMask))
            return;
        node.visitFrame = m_view.frame;
        if (node.children)
            for (cCullTree::cNode& child : *node.children)
                if (!child.isEmpty())
                    this->node(child, passFlags, planeMask);
        for (const uint32_t index : node.objects)
            object(index, passFlags);
    }

    void object(uint32_t index, uint32_t passFlags) {
        const cCullTree::cObject& object = m_tree.object(index);
        if (object.isBrush)
            m_view.painter->drawBrush(static_cast<cBrushData*>(object.record), passFlags);
        else
            m_view.painter->drawEntity(static_cast<cEntityData*>(object.record), passFlags);
    }

private:
    // Adds PASS_INSIDE for a node that lies wholly in the view.
    bool isVisible(const cCullTree::cNode& node, uint32_t* passFlags, uint32_t* planeMask) {
        if (*passFlags & PASS_WALKED)
            return node.visitFrame == m_view.frame;
        if (*passFlags & PASS_INSIDE)
            return true;
        ++m_stats.culls;
        const eBoxSide side = m_view.frustum->classifyBox(node.mins, node.maxs, planeMask);
        if (side == BOX_INSIDE)
            *passFlags |= PASS_INSIDE;
        return side != BOX_OUTSIDE;
    }

    cCullTree& m_tree;
    cViewInfo& m_view;
    cDrawStats& m_stats;
};

} // namespace

void cCullTree::draw(cViewInfo& view, cDrawStats& stats, uint32_t passFlags) {
    cTreeWalk walk(*this, view, stats);
    walk.node(m_root, passFlags, cFrustum::ALL_PLANES);
    for (const uint32_t index : m_outside)
        walk.object(index, passFlags);
}

static void drawNodeBox(const cCullTree::cNode& node, uint32_t frame, cDrawBatch& batch) {
    static const uint8_t color[4] = {0, 255, 200, 255};
    if (node.visitFrame != frame)
        return;
    batch.boxLines(node.mins, node.maxs, color);
    if (node.children)
        for (const cCullTree::cNode& child : *node.children)
            drawNodeBox(child, frame, batch);
}

void cCullTree::drawDebug(const cViewInfo& view) {
    GL_State(0); // no depth writes
    cDrawBatch& batch = cDrawBatch::shared();
    drawNodeBox(m_root, view.frame, batch);
    batch.flush();
    GL_State(GLS_DEFAULT);
}
