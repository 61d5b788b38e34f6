// SPDX-License-Identifier: MIT
// A host for tests without a window: keeps the messages, hands out 64 by 64 textures, knows the
// classes and the profile a test gives it.
#pragma once

#include "document/tEntityClass.h"
#include "document/tTexture.h"
#include "support/tHost.h"

#include <QStringList>
#include <map>
#include <memory>
#include <string>
#include <vector>

class cTestHost : public cHost {
public:
    cTestHost();
    ~cTestHost() override;

    void consoleMessage(eMessage level, const char* text) override;
    void setStatusPane(const QString& text, int pane) override { panes[pane] = text; }
    void projectDirty(cProject*) override { ++dirtyCount; }
    int currentToolId() const override { return toolId; }
    cTexture* findTexture(const char* name) override;
    cTexture* addMissingTexture(const char* name) override;
    void releaseTexture(cTexture* texture) override;
    cEntityClass* findClass(const char* name, eClassFilter filter) override;
    const cMapProfile& profile() const override { return mapProfile; }
    const uint8_t* schemeColor(int index) const override;

    // A texture that findTexture knows, of that size.
    cTexture* addTexture(const char* name, int width, int height);
    cEntityClass* addClass(const QString& name, int kind);
    // Messages of that level that hold the text.
    int count(eMessage level, const QString& text) const;

    struct cMessage {
        eMessage level;
        QString text;
    };
    std::vector<cMessage> messages;
    std::map<int, QString> panes;
    int dirtyCount = 0;
    int toolId = 0;
    cMapProfile mapProfile = {};
    std::map<std::string, cTexture> textures; // by upper-case name; known and missing ones
    std::vector<std::unique_ptr<cEntityClass>> classes;

private:
    cTexture* makeTexture(const char* name, int width, int height, uint32_t flags);
    cHost* m_before;
};
