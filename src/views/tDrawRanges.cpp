// SPDX-License-Identifier: MIT
#include "views/tDrawRanges.h"

#include <qopengl.h>

// In every OpenGL library since 1.4; the system's header declares it only on demand.
extern "C" void GLAPIENTRY glMultiDrawElements(GLenum mode, const GLsizei* count, GLenum type,
                                               const void* const* indices, GLsizei primitives);

cDrawTraffic g_drawTraffic;

void cDrawRanges::add(uint32_t first, uint32_t count) {
    if (count == 0)
        return;
    if (!m_counts.empty() && m_firsts.back() + uint32_t(m_counts.back()) == first) {
        m_counts.back() += int32_t(count);
        return;
    }
    m_firsts.push_back(first);
    m_counts.push_back(int32_t(count));
}

void cDrawRanges::draw(unsigned primitive, const uint8_t* indices) {
    if (m_counts.empty())
        return;
    m_places.clear();
    for (const uint32_t first : m_firsts)
        m_places.push_back(indices + first * sizeof(uint32_t));
    ++g_drawTraffic.calls;
    g_drawTraffic.ranges += m_counts.size();
    glMultiDrawElements(primitive, m_counts.data(), GL_UNSIGNED_INT, m_places.data(),
                        GLsizei(m_counts.size()));
    m_firsts.clear();
    m_counts.clear();
}
