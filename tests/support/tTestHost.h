// SPDX-License-Identifier: MIT
// A host for tests without a window, which keeps the messages, and a game that knows the textures,
// classes and profile a test gives it. The host is one such game for the maps of most tests.
#pragma once

#include "document/tEntityClass.h"
#include "document/tMapContext.h"
#include "document/tTexture.h"
#include "support/tHost.h"

#include <QStringList>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class cTestGame : public cMapContext {
public:
    cTexture* findTexture(const char* name) override;
    cTexture* addMissingTexture(const char* name) override;
    void releaseTexture(cTexture* texture) override;
    cEntityClass* findClass(const char* name, eClassFilter filter) override;
    const cMapProfile& profile() const override { return mapProfile; }
    void* acquireAttachment(eAttachKind kind, const char* name) override;
    void releaseAttachment(eAttachKind kind, void* record) override;

    // A texture that findTexture knows, of that size.
    cTexture* addTexture(const char* name, int width, int height);
    cEntityClass* addClass(const QString& name, int kind);

    cMapProfile mapProfile = {};
    std::map<std::string, cTexture> textures; // by upper-case name; known and missing ones
    std::vector<std::unique_ptr<cEntityClass>> classes;
    // In place of that one sprite and model.
    std::function<void*(eAttachKind, const char*)> acquire;
    std::function<void(eAttachKind, void*)> giveBack;
    cSpriteRecord sprite = {}; // the one sprite and model that entities may show
    cModelRecord model = {};
    std::string asked; // the name of the last of them
    int references = 0;

private:
    cTexture* makeTexture(const char* name, int width, int height, uint32_t flags);
};

class cTestHost : public cHost, public cTestGame {
public:
    cTestHost();
    ~cTestHost() override;

    void consoleMessage(eMessage level, const char* text) override;
    void setStatusPane(const QString& text, int pane) override { panes[pane] = text; }
    void mapChanged(cMap& map, unsigned what) override;
    bool picksFaces() const override { return pickingFaces; }
    const uint8_t* schemeColor(int index) const override;

    // Messages of that level that hold the text.
    int count(eMessage level, const QString& text) const;

    struct cMessage {
        eMessage level;
        QString text;
    };
    std::vector<cMessage> messages;
    std::map<int, QString> panes;
    int dirtyCount = 0;
    bool pickingFaces = false;

private:
    cHost* m_before;
};
