// SPDX-License-Identifier: MIT
// Walks of the cull tree that skip what lies outside the view.
#pragma once

#include "document/tCullTree.h"
#include "views/tViewInfo.h"

// visit(object, inside) for each link of a node the view may show, and for each object outside the
// tree's root box; an object of several leaves comes several times. inside: no more culling needed.
template<class Visit> class cCullTreeWalk {
public:
    cCullTreeWalk(cCullTree& tree, const cViewInfo& view, cDrawStats& stats, Visit visit)
        : m_tree(tree), m_view(view), m_stats(stats), m_visit(visit) {}

    void run() {
        node(m_tree.root(), cFrustum::ALL_PLANES, false);
        for (const uint32_t index : m_tree.outside())
            m_visit(m_tree.object(index), false);
    }

private:
    void node(cCullTree::cNode& node, uint32_t planes, bool inside) {
        if (!inside) {
            ++m_stats.culls;
            const eBoxSide side = m_view.frustum->classifyBox(node.mins, node.maxs, &planes);
            if (side == BOX_OUTSIDE)
                return;
            inside = side == BOX_INSIDE;
        }
        node.visitFrame = m_view.frame;
        if (node.children)
            for (cCullTree::cNode& child : *node.children)
                if (!child.isEmpty())
                    this->node(child, planes, inside);
        for (const uint32_t index : node.objects)
            m_visit(m_tree.object(index), inside);
    }

    cCullTree& m_tree;
    const cViewInfo& m_view;
    cDrawStats& m_stats;
    Visit m_visit;
};

// The boxes of the nodes that the view may show.
void drawCullTree(cCullTree& tree, const cViewInfo& view);
