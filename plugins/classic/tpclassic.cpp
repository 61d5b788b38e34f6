// SPDX-License-Identifier: MIT
// The classic plug-in: profile "classic", maps whose face lines are of the classic kind.
#include "common/tMapProfiles.h"

static const cMapPlugin PLUGIN = {"classic", "Classic map text", "Classic Maps",
                                  eFaceLine::Classic};

#include "common/tMapPluginExports.h"
