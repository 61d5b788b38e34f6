// SPDX-License-Identifier: MIT
#include "views/tChildWindow.h"

#include "support/tHost.h"
#include "views/tCanvas.h"
#include "views/tDocumentViews.h"
#include "views/tViewHost.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QScrollBar>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

static constexpr int FOUR_VIEWS = 4;
static constexpr int SCROLL_STEP = 1;
static constexpr int SCROLL_PAGE = 50;
static const char* const BOTTOM_SPLITTER = "s1";
static const char* const TOP_SPLITTER = "s2";

cChildWindow::cChildWindow(cDocumentViews* document, QWidget* parent)
    : QWidget(parent), project(document) {
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    document->windows.append(this);
}

cChildWindow::~cChildWindow() {
    if (project)
        project->windows.removeAll(this);
    // The canvases go while this is still a document window to them.
    for (cCanvas* canvas : canvases)
        delete canvas;
}

// ---- Size

// Two thirds of the area that the document windows share.
QSize cChildWindow::sizeHint() const {
    const QWidget* frame = parentWidget();
    const QWidget* area = frame ? frame->parentWidget() : nullptr;
    return area ? (area->size() * 2 / 3).expandedTo(minimumSizeHint()) : QWidget::sizeHint();
}

QSize cChildWindow::minimumSizeHint() const {
    constexpr int SMALLEST_WIDTH = 240, SMALLEST_HEIGHT = 180;
    return QSize(SMALLEST_WIDTH, SMALLEST_HEIGHT);
}

// ---- Building

static QScrollBar* createScrollBar(Qt::Orientation orientation, QWidget* cell) {
    auto* bar = new QScrollBar(orientation, cell);
    bar->setSingleStep(SCROLL_STEP);
    bar->setPageStep(SCROLL_PAGE);
    bar->setMaximum(0);
    return bar;
}

QWidget* cChildWindow::createCell(int type, QWidget* parent) {
    auto* cell = new QWidget(parent);
    auto* grid = new QGridLayout(cell);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    auto* canvas = new cCanvas(cell, this);
    QScrollBar* horizontal = createScrollBar(Qt::Horizontal, cell);
    QScrollBar* vertical = createScrollBar(Qt::Vertical, cell);
    grid->addWidget(canvas, 0, 0);
    grid->addWidget(horizontal, 1, 0);
    grid->addWidget(vertical, 0, 1);
    canvas->setScrollBars(horizontal, vertical);
    canvases.push_back(canvas);
    canvas->setViewType(type);
    return cell;
}

QSplitter* cChildWindow::createRow(int leftType, int rightType, const char* name) {
    auto* row = new QSplitter(Qt::Horizontal, splitterVertical);
    row->setObjectName(QString::fromLatin1(name));
    row->setChildrenCollapsible(true);
    row->addWidget(createCell(leftType, row));
    row->addWidget(createCell(rightType, row));
    connect(row, &QSplitter::splitterMoved, this, &cChildWindow::splitterMovedH);
    splitterVertical->addWidget(row);
    return row;
}

void cChildWindow::createFourViews() {
    splitterVertical = new QSplitter(Qt::Vertical, this);
    splitterVertical->setChildrenCollapsible(true);
    layout()->addWidget(splitterVertical);
    splitterTop = createRow(VIEW_CAMERA, VIEW_TOP, TOP_SPLITTER);
    splitterBottom = createRow(VIEW_SIDE, VIEW_FRONT, BOTTOM_SPLITTER);
    connect(splitterVertical, &QSplitter::splitterMoved, this, &cChildWindow::splitterMovedV);
}

void cChildWindow::createViews(int type) {
    if (type >= 0)
        layout()->addWidget(createCell(type, this));
    else
        createFourViews();
    applyScrollbarSetting();
    autosize();
}

// ---- Layout

void cChildWindow::splitterMovedH() {
    if (!splitterTop || !splitterBottom || !sender())
        return;
    if (sender()->objectName() == QLatin1String(BOTTOM_SPLITTER))
        splitterTop->setSizes(splitterBottom->sizes());
    else if (sender()->objectName() == QLatin1String(TOP_SPLITTER))
        splitterBottom->setSizes(splitterTop->sizes());
    redrawAllNow();
}

void cChildWindow::splitterMovedV() {
    redrawAllNow();
}

void cChildWindow::autosize() {
    if (maximizedCanvas) {
        maximizedCanvas->viewDirty = true;
        maximizedCanvas = nullptr;
        applyScrollbarSetting(); // the other views get theirs back
    }
    if (splitterTop && splitterBottom && splitterVertical)
        layOutCells();
}

// Column and row sizes from the window and from which canvas fills it, if any.
void cChildWindow::layOutCells() {
    const int w = width() - splitterTop->handleWidth();
    const int h = height() - splitterVertical->handleWidth();
    QList<int> columns = {w >> 1, w >> 1};
    QList<int> rows = {h >> 1, h >> 1};
    if (maximizedCanvas) {
        const auto found = std::find(canvases.begin(), canvases.end(), maximizedCanvas);
        const int index = int(found - canvases.begin());
        columns = (index % 2 == 0) ? QList<int>{w, 0} : QList<int>{0, w};
        rows = index < 2 ? QList<int>{h, 0} : QList<int>{0, h};
    }
    splitterTop->setSizes(columns);
    splitterBottom->setSizes(columns);
    splitterVertical->setSizes(rows);
}

void cChildWindow::toggleMaximized(cCanvas* canvas) {
    if (canvases.size() != FOUR_VIEWS)
        return;
    if (canvas == maximizedCanvas) {
        autosize();
        return;
    }
    canvas->viewDirty = true;
    maximizedCanvas = canvas;
    applyScrollbarSetting();
    layOutCells();
}

bool cChildWindow::showsScrollBars(const cCanvas* c) const {
    return g_host->EnableScrollbars && !c->isCamera() && (!maximizedCanvas || maximizedCanvas == c);
}

void cChildWindow::applyScrollbarSetting() {
    for (cCanvas* canvas : canvases) {
        const bool show = showsScrollBars(canvas);
        canvas->showScrollBars(show);
        if (show)
            canvas->updateScrollBars();
        canvas->projectionDirty = true;
    }
}

void cChildWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (maximizedCanvas)
        layOutCells();
}

// ---- Closing

void cChildWindow::closeEvent(QCloseEvent* event) {
    if (project && !closing && !project->windowClosing(this)) {
        event->ignore();
        return;
    }
    if (project)
        project->windows.removeAll(this);
    project = nullptr;
    event->accept();
}

// ---- Walks

void cChildWindow::setTimersRunning(bool running) {
    for (cCanvas* canvas : canvases)
        canvas->setTimerRunning(running);
}

void cChildWindow::redrawViews(int mask) {
    for (cCanvas* canvas : canvases)
        if (mask & (canvas->isCamera() ? REDRAW_3D : REDRAW_2D))
            canvas->requestRedraw(false);
}

void cChildWindow::redrawAllNow() {
    for (cCanvas* canvas : canvases)
        canvas->requestRedraw(true);
}

void cChildWindow::centerViews(const float* point) {
    for (cCanvas* canvas : canvases)
        canvas->centerOn(point);
}

void cChildWindow::setZoomAll(float zoom) {
    for (cCanvas* canvas : canvases)
        canvas->setZoom(zoom);
}

void cChildWindow::setOffsetAll(float x, float y) {
    for (cCanvas* canvas : canvases)
        canvas->setOffset(x, y);
}

void cChildWindow::setCameraOrigin(const float* point) {
    for (cCanvas* canvas : canvases) {
        if (!canvas->isCamera())
            continue;
        canvas->setCameraOrigin(point);
        canvas->requestRedraw(false);
    }
}

void cChildWindow::setCameraAngles(const float* angles) {
    for (cCanvas* canvas : canvases) {
        if (!canvas->isCamera())
            continue;
        canvas->setCameraAngles(angles);
        canvas->requestRedraw(false);
    }
}

cCanvas* cChildWindow::findCanvas(int axis) const {
    for (cCanvas* canvas : canvases) {
        const bool fits =
            axis < 0 ? canvas->isCamera() : canvas->axisH == axis || canvas->axisV == axis;
        if (fits)
            return canvas;
    }
    return nullptr;
}

cCanvas* cChildWindow::firstCanvas() const {
    return canvases.empty() ? nullptr : canvases.front();
}

// ---- Which view

void cChildWindow::noteUse(cCanvas* canvas) {
    if (!canvas->isCamera())
        m_usedFlat = canvas;
    if (canvas == m_used)
        return;
    m_used = canvas;
    g_viewHost->updateViewControls();
    redrawViews(REDRAW_ALL); // the captions tell
}

cCanvas* cChildWindow::activeView() const {
    return m_active ? m_active : firstCanvas();
}

cCanvas* cChildWindow::commandView() const {
    return m_used ? m_used : activeView();
}

cCanvas* cChildWindow::flatCommandView() const {
    for (cCanvas* canvas : {commandView(), m_usedFlat})
        if (canvas && !canvas->isCamera())
            return canvas;
    cCanvas* flat = nullptr;
    for (cCanvas* canvas : canvases)
        if (canvas->viewType == VIEW_TOP || (!flat && !canvas->isCamera()))
            flat = canvas;
    return flat;
}
