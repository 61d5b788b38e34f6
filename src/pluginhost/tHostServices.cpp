// SPDX-License-Identifier: MIT
#include "pluginhost/tHostServices.h"

#include "pluginhost/tHostTable.h"

static cHostServiceContext& context() {
    static cHostServiceContext instance;
    return instance;
}

void setHostServiceContext(const cHostServiceContext& newContext) {
    context() = newContext;
}

const cHostServiceContext& hostServiceContext() {
    return context();
}

const cHostServices* hostServices() {
    static const cHostServices table = [] {
        cHostServices services = {};
        services.size = sizeof services;
        for (const auto fill :
             {fillSystemServices, fillParserServices, fillMapServices, fillGroupServices,
              fillHistoryServices, fillDialogServices, fillRenderServices})
            fill(services);
        return services;
    }();
    return &table;
}
