// SPDX-License-Identifier: MIT
// Headers that nearly every file of the core includes; never include this one by hand.
#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "plugininterface/tPluginInterface.h"
