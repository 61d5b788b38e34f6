// SPDX-License-Identifier: MIT
// The axial plug-in: profile "axial", maps whose face lines are of the axial kind.
#include "common/tMapProfiles.h"

static const cMapPlugin PLUGIN = {"axial", "Axial map text", "Axial Maps", eFaceLine::Axial};

#include "common/tMapPluginExports.h"
