// SPDX-License-Identifier: MIT
#include "shell/tToolSwitch.h"

#include "tools/tToolFactory.h"
#include "views/tViewHost.h"

// The block tool exists before the entity tool, which falls back on it.
cToolSwitch::cToolSwitch(cViewHost& host) : m_host(host) {
    static constexpr int order[TOOL_COUNT] = {TOOL_SELECT, TOOL_MAGNIFY, TOOL_CAMERA, TOOL_BLOCK,
                                              TOOL_ENTITY, TOOL_TEXTURE, TOOL_DECAL,  TOOL_CLIP,
                                              TOOL_VERTEX, TOOL_CORDON,  TOOL_PATH};
    for (int id : order)
        tools[size_t(id)] = makeTool(id);
    m_host.currentTool = tools[TOOL_SELECT].get();
    m_host.suspendedTool = nullptr;
}

cToolSwitch::~cToolSwitch() {
    m_host.currentTool = m_host.suspendedTool = nullptr;
}

int cToolSwitch::currentId() const {
    return m_host.currentTool ? m_host.currentTool->getId() : -1;
}

bool cToolSwitch::isInUse(int id) const {
    return currentId() == id || (m_host.suspendedTool && m_host.suspendedTool->getId() == id);
}

// What happens when the button of the current tool is pressed again.
static bool reselects(int id) {
    return id == TOOL_CLIP || id == TOOL_VERTEX;
}

void cToolSwitch::endSuspended(int next) {
    if (m_host.suspendedTool && m_host.suspendedTool->getId() != next)
        m_host.suspendedTool->deactivate();
    m_host.suspendedTool = nullptr;
}

void cToolSwitch::switchTo(int id) {
    endSuspended(id);
    cTool* next = tools[size_t(id)].get();
    if (m_host.currentTool == next) {
        if (reselects(id))
            next->reselect();
    } else {
        if (m_host.currentTool)
            m_host.currentTool->deactivate();
        m_host.currentTool = next;
    }
    emit changed();
}

void cToolSwitch::switchForAWhile(int id) {
    const int current = currentId();
    if (current != TOOL_SELECT && current != TOOL_MAGNIFY && current != TOOL_CAMERA)
        m_host.suspendedTool = m_host.currentTool;
    if (m_host.currentTool)
        m_host.currentTool->breakOff();
    m_host.currentTool = tools[size_t(id)].get();
    emit changed();
}
