// SPDX-License-Identifier: MIT
// A host that hears nothing, and a game without textures and classes.
#pragma once

#include "document/tMapContext.h"
#include "plugininterface/tPluginInterface.h"
#include "support/tHost.h"

class cFuzzHost : public cHost, public cMapContext {
public:
    cFuzzHost() { setHost(this); }
    ~cFuzzHost() override { setHost(nullptr); }

    void consoleMessage(eMessage, const char*) override {}
    cTexture* findTexture(const char*) override { return nullptr; }
    cTexture* addMissingTexture(const char*) override { return nullptr; }
    void releaseTexture(cTexture*) override {}
    cEntityClass* findClass(const char*, eClassFilter) override { return nullptr; }
    const cMapProfile& profile() const override {
        static const cMapProfile none = {};
        return none;
    }
    const uint8_t* schemeColor(int) const override {
        static const uint8_t white[4] = {255, 255, 255, 255};
        return white;
    }
};
