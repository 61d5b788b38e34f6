// SPDX-License-Identifier: MIT
#include "support/tTestHost.h"

#include "document/tMap.h"
#include "support/tColors.h"
#include "support/tMapText.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

static std::string upper(const char* text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return char(std::toupper(c)); });
    return result;
}

cTestHost::cTestHost() : m_before(g_host) {
    setHost(this);
}

cTestHost::~cTestHost() {
    setHost(m_before);
}

void cTestHost::consoleMessage(eMessage level, const char* text) {
    messages.push_back({level, fromMapText(text)});
}

void cTestHost::mapChanged(cMap& map, unsigned what) {
    dirtyCount += what & MC_EDITED ? 1 : 0;
    if (what & MC_SELECTION)
        panes[2] = map.selectionSentence();
}

int cTestHost::count(eMessage level, const QString& text) const {
    return int(std::count_if(messages.begin(), messages.end(), [&](const cMessage& m) {
        return m.level == level && m.text.contains(text);
    }));
}

cTexture* cTestGame::makeTexture(const char* name, int width, int height, uint32_t flags) {
    cTexture& texture = textures[upper(name)];
    texture = {};
    strncpy(texture.name, name, sizeof texture.name - 1);
    texture.width = width;
    texture.height = height;
    texture.flags = flags;
    texture.opacity = 1.0f;
    return &texture;
}

cTexture* cTestGame::addTexture(const char* name, int width, int height) {
    return makeTexture(name, width, height, 0);
}

cTexture* cTestGame::findTexture(const char* name) {
    const auto found = textures.find(upper(name));
    return found == textures.end() ? nullptr : &found->second;
}

cTexture* cTestGame::addMissingTexture(const char* name) {
    if (cTexture* texture = findTexture(name))
        return texture;
    return makeTexture(name, 64, 64, TF_PLACEHOLDER);
}

void cTestGame::releaseTexture(cTexture* texture) {
    --texture->refCount;
}

void* cTestGame::acquireAttachment(eAttachKind kind, const char* name) {
    asked = name;
    ++references;
    if (acquire)
        return acquire(kind, name);
    return kind == AK_MODEL ? static_cast<void*>(&model) : &sprite;
}

void cTestGame::releaseAttachment(eAttachKind kind, void* record) {
    --references;
    if (giveBack)
        giveBack(kind, record);
}

cEntityClass* cTestGame::addClass(const QString& name, int kind) {
    classes.push_back(std::make_unique<cEntityClass>());
    classes.back()->name = name;
    classes.back()->kind = kind;
    return classes.back().get();
}

cEntityClass* cTestGame::findClass(const char* name, eClassFilter filter) {
    for (const auto& c : classes) {
        const bool fits = filter == CF_ANY || (filter == CF_POINT && c->kind == CK_POINT) ||
                          (filter == CF_WORLD && c->kind == CK_WORLD) ||
                          (filter == CF_SOLID && (c->kind == CK_SOLID || c->kind == CK_WORLD));
        if (fits && c->name == fromMapText(name))
            return c.get();
    }
    return nullptr;
}

const uint8_t* cTestHost::schemeColor(int index) const {
    static const std::map<int, std::array<uint8_t, 4>> colors = {
        {COLOR_BRUSH_RANDOM_MIN, {0, 100, 100, 255}},
        {COLOR_BRUSH_RANDOM_MAX, {0, 255, 255, 255}},
        {COLOR_GROUP_RANDOM_MIN, {80, 80, 80, 255}}};
    static const uint8_t white[4] = {255, 255, 255, 255};
    const auto found = colors.find(index);
    return found == colors.end() ? white : found->second.data();
}
