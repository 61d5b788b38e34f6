// SPDX-License-Identifier: MIT
#include "tools/tToolFactory.h"

#include "tools/tToolBlock.h"
#include "tools/tToolCamera.h"
#include "tools/tToolEntity.h"
#include "tools/tToolMagnify.h"
#include "tools/tToolSelect.h"

static std::unique_ptr<cTool> makeUnnumbered(int id) {
    switch (id) {
    case TOOL_SELECT:
        return std::make_unique<cToolSelect>();
    case TOOL_MAGNIFY:
        return std::make_unique<cToolMagnify>();
    case TOOL_CAMERA:
        return std::make_unique<cToolCamera>();
    case TOOL_ENTITY:
        return std::make_unique<cToolEntity>();
    case TOOL_BLOCK:
        return std::make_unique<cToolBlock>();
    default:
        return std::make_unique<cTool>();
    }
}

std::unique_ptr<cTool> makeTool(int id) {
    std::unique_ptr<cTool> tool = makeUnnumbered(id);
    tool->setId(id);
    return tool;
}
