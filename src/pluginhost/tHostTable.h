// SPDX-License-Identifier: MIT
// One function per subject that enters its services in the table.
#pragma once

#include "plugininterface/tPluginInterface.h"

void fillSystemServices(cHostServices& table);  // 1 to 13
void fillParserServices(cHostServices& table);  // 14 to 28
void fillMapServices(cHostServices& table);     // 29 to 48
void fillGroupServices(cHostServices& table);   // 49 to 62
void fillHistoryServices(cHostServices& table); // 63 to 80
void fillDialogServices(cHostServices& table);  // 81 to 98
void fillRenderServices(cHostServices& table);  // 99 to 113
