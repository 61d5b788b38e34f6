// SPDX-License-Identifier: MIT
#include "shell/tBuiltInPrimitives.h"

#include "dialogs/tArchDialog.h"
#include "operations/tPrimitives.h"
#include "pluginhost/tPrimitiveList.h"
#include "shell/tMainWindow.h"

#include <QPointer>
#include <algorithm>

template<bool (*create)(const cPrimitiveParams&)> static int32_t dispatch(cPrimitiveParams* p) {
    return create(*p);
}

// One dialog for the window's life: it keeps its values.
static int32_t dispatchArch(cPrimitiveParams* p) {
    static QPointer<cArchDialog> dialog;
    if (!dialog)
        dialog = new cArchDialog(g_mainWindow);
    const int a = p->axes[0], b = p->axes[1];
    if (!dialog->ask(std::min(p->maxs[a] - p->mins[a], p->maxs[b] - p->mins[b])))
        return 0;
    return createArch(*p, dialog->shape());
}

void registerBuiltInPrimitives(cPrimitiveList& list) {
    static constexpr char CATEGORY[] = "(primitives)";
    static const cPrimitive builtIn[] = {
        {"block", CATEGORY, 0, 0, 0, dispatch<createBlock>},
        {"wedge", CATEGORY, 0, 0, 0, dispatch<createWedge>},
        {"cylinder", CATEGORY, 8, 3, 128, dispatch<createCylinder>},
        {"spike", CATEGORY, 4, 3, 128, dispatch<createSpike>},
        {"arch", CATEGORY, 0, 0, 0, dispatchArch},
    };
    for (const cPrimitive& primitive : builtIn)
        list.registerPrimitive(&primitive);
}
