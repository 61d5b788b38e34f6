// SPDX-License-Identifier: MIT
// Mouse and keyboard of a view: what the view itself answers, and what goes to the tools.
#include "views/tCanvas.h"

#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tChildWindow.h"
#include "views/tDocumentViews.h"
#include "views/tTool.h"
#include "views/tViewHost.h"

#include <QCursor>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <iterator>

static constexpr float ZOOM_IN = 1.2f;
static constexpr float ZOOM_OUT = 0.8333333f;
static constexpr float KEY_PAN = 64; // pixels an arrow key

// A letter, or the letter on the same key of a Russian layout.
struct cLetterKey {
    int latin;
    int cyrillic;
    bool operator==(int key) const { return key == latin || key == cyrillic; }
};

static const cLetterKey KEY_D = {Qt::Key_D, 1042};
static const cLetterKey KEY_C = {Qt::Key_C, 1057};
static const cLetterKey KEY_W = {Qt::Key_W, 1062};
static const cLetterKey KEY_A = {Qt::Key_A, 1060};
static const cLetterKey KEY_S = {Qt::Key_S, 1067};
static const cLetterKey KEY_Z = {Qt::Key_Z, 1071};
static const cLetterKey KEY_O = {Qt::Key_O, 1065};

static bool isArrow(int key) {
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

// Shift, Ctrl, Alt and Meta only: the arrows may come from the keypad.
static Qt::KeyboardModifiers plainModifiers(Qt::KeyboardModifiers modifiers) {
    return modifiers &
           (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

// The number of a mouse button for the tools; 0 for those they do not get.
static int toolButton(Qt::MouseButton button) {
    if (button == Qt::LeftButton)
        return TB_LEFT;
    return button == Qt::RightButton ? TB_RIGHT : 0;
}

// ---- Use

static bool isModifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
           key == Qt::Key_Meta || key == Qt::Key_AltGr;
}

// A key that is a command's shortcut comes as an override first, and then no more.
void cCanvas::noteUse(const QEvent& event) {
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
        if (isModifier(static_cast<const QKeyEvent&>(event).key()))
            return;
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
        break;
    default:
        return;
    }
    childWindow->noteUse(this);
}

bool cCanvas::event(QEvent* event) {
    noteUse(*event);
    return cGLWidget::event(event);
}

// ---- Mouse buttons

void cCanvas::updateCaptionHover(int x, int y) {
    const bool inside = captionRect.contains(x, y);
    if (inside == captionHover)
        return;
    captionHover = inside;
    updateCursor();
    requestRedraw(false);
}

void cCanvas::openCaptionMenu() {
    if (QMenu* menu = g_viewHost->popupMenu("Canvas"))
        menu->popup(mapToGlobal(QPoint(captionRect.left(), captionRect.bottom() + 1)));
}

bool cCanvas::toolMousePress(QMouseEvent* event) {
    cTool* tool = g_viewHost->currentTool;
    const int button = toolButton(event->button());
    m_pressTool = tool;
    return tool && button && !spaceLook &&
           tool->mousePress(this, event->x(), event->y(), button, event->modifiers());
}

void cCanvas::openContextMenu(QMouseEvent* event) {
    cTool* tool = g_viewHost->currentTool;
    if (tool && tool->contextMenu(this, event->x(), event->y(), event->globalPos()))
        return;
    if (isCamera())
        return;
    if (QMenu* menu = g_viewHost->popupMenu("Operations"))
        menu->popup(event->globalPos());
}

void cCanvas::mousePressEvent(QMouseEvent* event) {
    mouseX = event->x();
    mouseY = event->y();
    activate();
    updateCaptionHover(mouseX, mouseY);
    if (event->button() == Qt::LeftButton && captionHover) {
        openCaptionMenu();
        return;
    }
    const bool taken = toolMousePress(event);
    event->setAccepted(taken);
    // With the space bar held the right button flies; a menu would end that before it began.
    if (event->button() == Qt::RightButton && !captionHover && !taken && !spaceLook)
        openContextMenu(event);
}

void cCanvas::releaseButton(bool& down, Qt::MouseButton button, QMouseEvent* event) {
    if (event->button() != button || !down)
        return;
    down = false;
    if (event->buttons() == Qt::NoButton)
        cameraMoved = true;
    updateCursor();
}

void cCanvas::mouseReleaseEvent(QMouseEvent* event) {
    mouseX = event->x();
    mouseY = event->y();
    releaseButton(leftDown, Qt::LeftButton, event);
    releaseButton(rightDown, Qt::RightButton, event);
    releaseButton(middleDown, Qt::MiddleButton, event);
    cTool* tool = toolOfPress(event->buttons() | event->button());
    const int button = toolButton(event->button());
    if (tool && button && !spaceLook)
        event->setAccepted(tool->mouseRelease(this, mouseX, mouseY, button, event->modifiers()));
    requestRedraw(true);
}

void cCanvas::mouseDoubleClickEvent(QMouseEvent* event) {
    cTool* tool = g_viewHost->currentTool;
    const int button = toolButton(event->button());
    if (tool && button && !spaceLook)
        tool->mouseDoubleClick(this, event->x(), event->y(), button, event->modifiers());
}

// ---- Mouse moves

// False for a move that only passes over a window which is not the active one.
bool cCanvas::followsMouse(QMouseEvent* event) {
    const bool idle = event->buttons() == Qt::NoButton;
    if (idle && !g_viewHost->isActiveWindow(childWindow))
        return false;
    if (idle && !isActive())
        becomeActive();
    return true;
}

void cCanvas::showMousePosition(int x, int y) {
    if (isCamera() || captionHover)
        return;
    float point[2];
    screenToWorld2D(float(x), float(y), true, point);
    g_host->setStatusPane(QStringLiteral("@%1, %2").arg(int(point[0])).arg(int(point[1])), 3);
}

// A press belongs to the tool that got it: one that takes its place gets nothing of the rest.
cTool* cCanvas::toolOfPress(Qt::MouseButtons buttons) {
    if (!buttons)
        m_pressTool = nullptr;
    cTool* tool = g_viewHost->currentTool;
    return !m_pressTool || m_pressTool == tool ? tool : nullptr;
}

bool cCanvas::toolsMouseMove(QMouseEvent* event) {
    cTool* tool = toolOfPress(event->buttons());
    cTool* camera = g_viewHost->cameraTool();
    const int x = event->x(), y = event->y();
    if (isFreeLook() && camera &&
        camera->mouseMove(this, x, y, event->buttons(), event->modifiers()))
        return true;
    return tool && tool->mouseMove(this, x, y, event->buttons(), event->modifiers());
}

void cCanvas::panWithMiddleButton(QMouseEvent* event) {
    if (isCamera() || !(event->buttons() & Qt::MiddleButton))
        return;
    if (!middleDown) {
        middleDown = true;
        warpCursorToCenter();
        updateCursor();
        requestRedraw(false);
        return;
    }
    const QPoint moved = movedSinceWarp();
    if (moved.isNull())
        return;
    pan(float(2 * moved.x()), float(2 * moved.y()));
    warpCursorToCenter();
    updateScrollBars();
    requestRedraw(false);
}

void cCanvas::mouseMoveEvent(QMouseEvent* event) {
    if (!followsMouse(event))
        return;
    mouseX = event->x();
    mouseY = event->y();
    m_mouseGlobal = event->globalPos();
    updateCaptionHover(mouseX, mouseY);
    showMousePosition(mouseX, mouseY);
    if (!toolsMouseMove(event))
        panWithMiddleButton(event);
}

void cCanvas::wheelEvent(QWheelEvent* event) {
    const int delta = event->angleDelta().y();
    event->accept();
    if (delta == 0)
        return;
    if (isCamera()) {
        vecMA(origin, float(delta) * 0.5f, forward, origin);
        cameraMoved = true;
        cameraChanged();
        requestRedraw(false);
        return;
    }
    const QPoint at = event->position().toPoint();
    zoomAt(zoom * (delta > 0 ? ZOOM_IN : ZOOM_OUT), at.x(), at.y());
    shareZoom((event->modifiers() & Qt::ControlModifier) != 0);
}

void cCanvas::shareZoom(bool withAll) {
    updateScrollBars();
    if (withAll && project())
        project()->setZoomAll(zoom);
    requestRedraw(false);
}

void cCanvas::shareOffset(bool withAll) {
    updateScrollBars();
    if (withAll && project())
        project()->setOffsetAll(offsetX, offsetY);
    requestRedraw(false);
}

// ---- Keys

// Zoom by number key, from 0 to 9.
static const float s_keyZooms[] = {16, 0.025f, 0.05f, 0.125f, 0.25f, 0.5f, 1, 2, 4, 8};

bool cCanvas::zoomKey(int key, Qt::KeyboardModifiers modifiers) {
    const int middleX = width() / 2, middleY = height() / 2;
    const bool withAll = (modifiers & Qt::ControlModifier) != 0;
    if (key >= Qt::Key_0 && key <= Qt::Key_9)
        zoomAt(s_keyZooms[key - Qt::Key_0], middleX, middleY);
    else if (KEY_D == key && modifiers == Qt::NoModifier)
        zoomAt(zoom * ZOOM_IN, middleX, middleY);
    else if (KEY_C == key && modifiers == Qt::NoModifier)
        zoomAt(zoom * ZOOM_OUT, middleX, middleY);
    else
        return false;
    shareZoom(withAll);
    return true;
}

void cCanvas::panKey(int key, Qt::KeyboardModifiers modifiers) {
    const float dx = key == Qt::Key_Left ? KEY_PAN : (key == Qt::Key_Right ? -KEY_PAN : 0);
    const float dy = key == Qt::Key_Up ? KEY_PAN : (key == Qt::Key_Down ? -KEY_PAN : 0);
    pan(dx, dy);
    shareOffset((modifiers & Qt::ControlModifier) != 0);
}

void cCanvas::key2D(int key, Qt::KeyboardModifiers modifiers) {
    if (key == Qt::Key_Tab) {
        setViewType(viewType == VIEW_TOP ? VIEW_FRONT : viewType + 1);
        requestRedraw(true);
    } else if (isArrow(key)) {
        panKey(key, modifiers);
    } else {
        zoomKey(key, modifiers);
    }
}

void cCanvas::viewKey(int key, Qt::KeyboardModifiers modifiers) {
    const bool isReturn = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (isReturn && modifiers == Qt::AltModifier)
        g_viewHost->openObjectProperties();
    if (!isCamera())
        key2D(key, modifiers);
    if (KEY_O == key && modifiers == Qt::NoModifier) {
        showStats = !showStats;
        requestRedraw(false);
    } else if (KEY_Z == key && modifiers == Qt::ShiftModifier) {
        childWindow->toggleMaximized(this);
    } else if (KEY_Z == key && modifiers == Qt::NoModifier && isCamera() && g_host->Mouselook) {
        warpCursorToCenter();
        mouselook = !mouselook;
        updateCursor();
        requestRedraw(false);
    } else if (key == Qt::Key_Space && isCamera()) {
        spaceLook = true;
        updateCursor();
        requestRedraw(false);
    }
}

void cCanvas::energySavingMotion() {
    static constexpr float LONGEST_STEP = 0.1f; // seconds; the first key after a pause is no jump
    if (!g_host->EnergySavingMode || !isCamera())
        return;
    const float dt = std::min(float(m_lastFrameTime.restart()) * 0.001f, LONGEST_STEP);
    if (runMotion(dt))
        requestRedraw(false);
}

void cCanvas::keyPressEvent(QKeyEvent* event) {
    energySavingMotion();
    const int key = event->key();
    if (event->isAutoRepeat() && !isArrow(key)) {
        event->ignore();
        return;
    }
    viewKey(key, plainModifiers(event->modifiers()));
    cTool* tool = g_viewHost->currentTool;
    if (tool && !event->isAutoRepeat())
        tool->keyPress(this, key, event->modifiers());
}

// Releasing this key ends a motion of the camera.
bool cCanvas::endsMotion(int key) const {
    if (isArrow(key))
        return true;
    if (g_host->Mouselook)
        return KEY_W == key || KEY_A == key || KEY_S == key || KEY_D == key;
    return KEY_C == key || KEY_D == key;
}

void cCanvas::keyReleaseEvent(QKeyEvent* event) {
    if (event->isAutoRepeat()) {
        event->ignore();
        return;
    }
    if (!isCamera())
        return;
    const bool always = g_host->EnergySavingMode;
    if (always || endsMotion(event->key()))
        cameraMoved = true;
    if (event->key() == Qt::Key_Space) {
        spaceLook = false;
        updateCursor();
    }
    if (always || event->key() == Qt::Key_Space)
        requestRedraw(false);
}

// ---- Focus and cursor

void cCanvas::showZoom() {
    g_host->setStatusPane(
        isCamera() ? QString() : QStringLiteral("Zoom: %1").arg(double(zoom), 0, 'f', 2), 5);
}

void cCanvas::enterEvent(QEvent* event) {
    cGLWidget::enterEvent(event);
    if (g_viewHost->isActiveWindow(childWindow))
        becomeActive();
    showZoom();
}

// Another document comes to the front: the focus falls from the view that is hidden to the next.
static bool isLeft(const cCanvas* active, const cChildWindow* window) {
    return active && active->childWindow == window && !active->isVisible();
}

void cCanvas::focusInEvent(QFocusEvent* event) {
    cGLWidget::focusInEvent(event);
    if (!isActive() && g_viewHost->isActiveWindow(childWindow) &&
        !isLeft(g_viewHost->activeCanvas, childWindow))
        becomeActive();
    showZoom();
}

// The release of the space bar will not be seen.
void cCanvas::focusOutEvent(QFocusEvent* event) {
    cGLWidget::focusOutEvent(event);
    if (!spaceLook)
        return;
    spaceLook = false;
    updateCursor();
    requestRedraw(false);
}

void cCanvas::leaveEvent(QEvent* event) {
    cGLWidget::leaveEvent(event);
    const QMenu* menu = g_viewHost->popupMenu("Canvas");
    if (menu && menu->isVisible())
        return;
    resetInputState(true);
    g_host->setStatusPane(QString(), 3);
}

void cCanvas::updateCursor() {
    if (!isCamera() && middleDown) {
        setCursor(Qt::BlankCursor);
        return;
    }
    cTool* tool = g_viewHost->currentTool;
    if (isCamera() && isFreeLook())
        tool = g_viewHost->cameraTool();
    else if (!isCamera() && captionHover)
        tool = nullptr;
    if (!tool || !tool->setCursor(this))
        setCursor(Qt::ArrowCursor);
}

void cCanvas::warpCursorToCenter() {
    QCursor::setPos(mapToGlobal(QPoint(centerX, centerY)));
    m_warpedTo = QCursor::pos();
}
