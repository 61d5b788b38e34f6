// SPDX-License-Identifier: MIT
// The functions a plug-in calls while it is enumerated, one per thing it may offer. The opaque
// word that the plug-in passes through is a cPluginContext.
#pragma once

#include "plugininterface/tPluginInterface.h"

class QLibrary;
class cPluginManager;

// What is known of the plug-in that is being loaded.
struct cPluginContext {
    cPluginManager* manager;
    QLibrary* library;
    uint32_t number; // its place among the loaded libraries, from 1
};

struct cPluginCallbacks {
    static void profile(const cMapProfile* record, void* context);
    static int32_t exportFormat(uint32_t cookie, const char* extension, const char* description,
                                void* context);
    static int32_t importFormat(uint32_t cookie, const char* extension, const char* description,
                                void* context);
    static int32_t textureFormat(uint32_t cookie, const char* extension, const char* description,
                                 void* context);
    static int32_t packageFormat(uint32_t cookie, const char* extension, const char* description,
                                 void* context);
    static int32_t spriteFormat(uint32_t cookie, const char* extension, const char* description,
                                void* context);
    static int32_t modelFormat(uint32_t cookie, const char* extension, const char* description,
                               void* context);
    static void action(const cAction* record, void* manager); // manager: the cPluginManager
    static void primitive(const cPrimitive* record, void* context);
    static void surfaceCaption(const char* profileName, const char* caption, int32_t index,
                               void* context);
    static void contentCaption(const char* profileName, const char* caption, int32_t index,
                               void* context);
};
