// SPDX-License-Identifier: MIT
// What a map asks of the game it belongs to: textures, classes, profile and palette by name. Every
// map is made with the context of its own game, so that maps of two games may be open at once.
// cGameContext is that of the running program; a test brings its own.
#pragma once

#include <cstdint>

struct cEntityClass;
struct cMapProfile;
struct cTexture;

// How findClass looks a class up.
enum eClassFilter { CF_SOLID = 0, CF_POINT = 1, CF_WORLD = 2, CF_ANY = 3 };

// What an entity may show in place of its box; the value of cEntityData::attachKind.
enum eAttachKind { AK_NONE = 0, AK_SPRITE = 1, AK_DECAL = 2, AK_MODEL = 3 };

class cMapContext {
public:
    virtual ~cMapContext() = default;

    // The texture of that name, or null. No reference is taken.
    virtual cTexture* findTexture(const char* name) = 0;
    // A placeholder of that name; an existing one is returned again. No reference is taken.
    virtual cTexture* addMissingTexture(const char* name) = 0;
    // Lowers refCount and frees the texture at 0.
    virtual void releaseTexture(cTexture* texture) = 0;

    virtual cEntityClass* findClass(const char* name, eClassFilter filter) = 0; // or null
    virtual const cMapProfile& profile() const = 0;            // all zero when there is none
    virtual const uint8_t* palette() const { return nullptr; } // 768 bytes, or null

    // The sprite or model record of that name, with a reference taken, or null.
    virtual void* acquireAttachment(eAttachKind /*kind*/, const char* /*name*/) { return nullptr; }
    virtual void releaseAttachment(eAttachKind /*kind*/, void* /*record*/) {}
};
