// SPDX-License-Identifier: MIT
#include "views/tCullTreeWalk.h"
#include "views/tDrawBatch.h"
#include "views/tGLState.h"

static void gatherNode(const cCullTree::cNode& node, uint32_t frame, cDrawBatch& batch) {
    static const uint8_t color[4] = {0, 255, 200, 255};
    if (node.visitFrame != frame)
        return;
    batch.boxLines(node.mins, node.maxs, color);
    if (node.children)
        for (const cCullTree::cNode& child : *node.children)
            gatherNode(child, frame, batch);
}

void drawCullTree(cCullTree& tree, const cViewInfo& view) {
    cDrawStats stats;
    const auto visit = [](const cCullTree::cObject&, bool) {};
    cCullTreeWalk<decltype(visit)>(tree, view, stats, visit).run(); // marks the nodes
    GL_State(0);                                                    // no depth writes
    cDrawBatch& batch = cDrawBatch::shared();
    gatherNode(tree.root(), view.frame, batch);
    batch.flush();
    GL_State(GLS_DEFAULT);
}
