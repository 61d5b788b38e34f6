// SPDX-License-Identifier: MIT
#include "views/tDrawSettings.h"

#include "support/tHost.h"

cDrawSettings cDrawSettings::current() {
    cDrawSettings s;
    for (int i = 0; i < COLOR_COUNT; ++i)
        memcpy(s.colors[i], g_host->schemeColor(i), sizeof s.colors[i]);
    s.gridSize = g_host->gridSize;
    s.gridHighlightStep = g_host->GridHighlightStep;
    s.backClip = g_host->BackClip;
    s.maxWorldSize = g_host->MaxWorldSize;
    s.modelRenderDistance = g_host->ModelRenderDistance;
    s.textureFilter = g_host->TextureFilter;
    s.gridHighlight = g_host->GridHighlight;
    s.hideSmallGrid = g_host->HideSmallGrid;
    s.dottedGrid = g_host->DottedGrid;
    s.enableGrid2D = g_host->EnableGrid2D;
    s.drawVertices = g_host->DrawVertices;
    s.useVisgroupColors = g_host->UseVisgroupColors;
    s.textureTransparency = g_host->TextureTransparency;
    s.entityTransparency = g_host->EntityTransparency;
    s.anisotropicFilter = g_host->AnisotropicFilter;
    s.antialiasing = g_host->Antialiasing;
    return s;
}
