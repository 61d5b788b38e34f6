// SPDX-License-Identifier: MIT
#include "shell/tServices.h"

#include "document/tMap.h"
#include "pluginhost/tHostServices.h"
#include "shell/tBuiltInPrimitives.h"
#include "shell/tProject.h"

static cPluginTargets targetsOf(cServices& services) {
    cPluginTargets targets;
    targets.configs = &services.configs;
    targets.textures = &services.textures;
    targets.models = &services.models;
    targets.captions = &services.captions;
    targets.registerPrimitive = [&services](const cPrimitive* record) {
        services.primitives.registerPrimitive(record);
    };
    return targets;
}

cServices::cServices() : configs(gameData, textures, &models), plugins(targetsOf(*this)) {
    registerBuiltInPrimitives(primitives);
    cHostServiceContext context;
    context.textures = &textures;
    context.configOf = [](const cMapData* map) -> const cGameConfig* {
        const cProject* project = map ? cMap::of(const_cast<cMapData*>(map))->project : nullptr;
        return project ? project->game.config : nullptr;
    };
    setHostServiceContext(context);
}

cServices::~cServices() {
    setHostServiceContext({});
}
