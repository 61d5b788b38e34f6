// SPDX-License-Identifier: MIT
// The commands that change the selected objects' place and shape, and those on the box that the
// selection tool drew.
#include "dialogs/tTransformDialog.h"
#include "operations/tTransform.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "support/tVec.h"
#include "tools/tToolSelect.h"
#include "views/tCanvas.h"

#include <QMessageBox>
#include <algorithm>

// ---- Transforms

static bool hasObjects(const cMap& map) {
    return map.data.selectedEntities || map.data.selectedBrushes;
}

// The map whose selected objects a command is to change, once no morph is in its way; else null.
static cMap* mapToChange(cMainWindow& window) {
    cProject* project = window.activeProject();
    if (!project || !hasObjects(*project->map) || !window.confirmLeaveMorph())
        return nullptr;
    return hasObjects(*project->map) ? project->map.get() : nullptr;
}

static void flip(cMainWindow& window, int cCanvas::*axis) {
    const cCanvas* canvas = window.flatCanvas();
    cMap* map = canvas ? mapToChange(window) : nullptr;
    if (!map)
        return;
    flipSelection(*map, canvas->*axis);
}

static void align(cMainWindow& window, int cCanvas::*axis, int side) {
    const cCanvas* canvas = window.flatCanvas();
    cMap* map = canvas ? mapToChange(window) : nullptr;
    if (!map)
        return;
    alignSelection(*map, canvas->*axis, side);
}

static void snap(cMainWindow& window, bool each) {
    cMap* map = mapToChange(window);
    if (!map)
        return;
    snapSelection(*map, float(window.gridSize), each);
}

void cMainWindow::cmdToolsFlipHorz() {
    flip(*this, &cCanvas::axisH);
}

void cMainWindow::cmdToolsFlipVert() {
    flip(*this, &cCanvas::axisV);
}

void cMainWindow::cmdToolsAlignLeft() {
    align(*this, &cCanvas::axisH, 0);
}

void cMainWindow::cmdToolsAlignRight() {
    align(*this, &cCanvas::axisH, 1);
}

void cMainWindow::cmdToolsAlignTop() {
    align(*this, &cCanvas::axisV, 1);
}

void cMainWindow::cmdToolsAlignBottom() {
    align(*this, &cCanvas::axisV, 0);
}

void cMainWindow::cmdToolsSnapToGrid() {
    snap(*this, false);
}

void cMainWindow::cmdToolsSnapToGrid2() {
    snap(*this, true);
}

void cMainWindow::cmdToolsTransform() {
    const cProject* project = activeProject();
    if (!project)
        return;
    if (!hasObjects(*project->map)) {
        QMessageBox::warning(this, QStringLiteral("Karvex"),
                             tr("You must select some objects before you can\ntransform them."));
        return;
    }
    cMap* map = mapToChange(*this);
    cTransformDialog dialog(this);
    if (!map || dialog.exec() != QDialog::Accepted)
        return;
    float matrix[16];
    cTransformRecord record;
    dialog.matrix(matrix);
    record.matrix = matrix;
    transformSelection(*map, record);
}

// ---- The box

static void selectBySelectionBox(cMainWindow& window, int boxMode) {
    cCanvas* canvas = window.flatCanvas();
    if (canvas && selectWithBox(*canvas, boxMode))
        canvas->requestRedraw(false);
}

void cMainWindow::cmdEditSelectTouching() {
    selectBySelectionBox(*this, BOX_TOUCHING);
}

void cMainWindow::cmdEditSelectInside() {
    selectBySelectionBox(*this, BOX_CONTAINED);
}

void cMainWindow::cmdEditSelectHandles() {
    selectBySelectionBox(*this, BOX_BY_CENTER);
}

void cMainWindow::cmdViewCenterOnSelection() {
    cProject* project = activeProject();
    if (!project)
        return;
    const auto box = std::find_if(project->boxes.begin(), project->boxes.end(),
                                  [](const cSelectionBox& b) { return b.active; });
    if (box == project->boxes.end())
        return;
    float middle[3];
    vecAdd(box->mins, box->maxs, middle);
    vecScale(middle, 0.5f, middle);
    project->centerViews(middle);
}
