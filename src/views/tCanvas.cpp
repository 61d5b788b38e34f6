// SPDX-License-Identifier: MIT
// Construction of a view, its type, its state and what it tells drawing code about itself.
#include "views/tCanvas.h"

#include "document/tMap.h"
#include "document/tMapContext.h"
#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tAnimationClock.h"
#include "views/tCachedPicture.h"
#include "views/tChildWindow.h"
#include "views/tDocumentViews.h"
#include "views/tTextDrawer.h"
#include "views/tTool.h"
#include "views/tViewHost.h"

#include <QFontMetrics>
#include <QGridLayout>
#include <QOpenGLFramebufferObject>
#include <QScrollBar>
#include <cmath>

cCanvas::cCanvas(QWidget* parent, cChildWindow* window)
    : cGLWidget(g_host->Antialiasing ? eGLBuffers::Multisampled : eGLBuffers::Depth, parent,
                g_viewHost->shareWidget()),
      childWindow(window),
      captionFont(QStringLiteral("MS Sans Serif"), 10, 50),
      hoverFont(QStringLiteral("MS Sans Serif"), 10, 75),
      labelFont(QStringLiteral("Arial"), 8, 50),
      m_picture(std::make_unique<cCachedPicture>()) {
    setAutoBufferSwap(false);
    setAutoFillBackground(false);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    for (int i = 0; i < 16; ++i)
        projection[i] = modelview[i] = (i % 5 == 0) ? 1.0f : 0.0f;
    hasMultisample = isMultisampled();
    connect(&m_timer, &QTimer::timeout, this, &cCanvas::runFrame);
    connect(&cAnimationClock::shared(), &cAnimationClock::ticked, this, &cCanvas::animate);
    m_lastFrameTime.start();
}

cCanvas::~cCanvas() {
    if (g_viewHost && g_viewHost->activeCanvas == this)
        g_viewHost->activeCanvas = nullptr;
    if (g_viewHost && g_viewHost->previousCanvas == this)
        g_viewHost->previousCanvas = nullptr;
    makeCurrent();
    m_picture.reset();
    m_pickBuffer.reset();
    doneCurrent();
}

void cCanvas::switchActive(cViewHost& host, cCanvas* canvas) {
    cCanvas* before = host.activeCanvas;
    if (before == canvas)
        return;
    host.activeCanvas = canvas;
    if (canvas && canvas->childWindow)
        canvas->childWindow->noteActive(canvas);
    if (before == host.previousCanvas)
        return;
    host.previousCanvas = before;
    if (before)
        before->resetInputState(false);
}

void cCanvas::setScrollBars(QScrollBar* horizontal, QScrollBar* vertical) {
    m_horizontal = horizontal;
    m_vertical = vertical;
    connect(horizontal, &QScrollBar::valueChanged, this, &cCanvas::horizontalScroll);
    connect(vertical, &QScrollBar::valueChanged, this, &cCanvas::verticalScroll);
}

void cCanvas::showScrollBars(bool show) {
    if (m_horizontal)
        m_horizontal->setVisible(show);
    if (m_vertical)
        m_vertical->setVisible(show);
}

cDocumentViews* cCanvas::project() const {
    return childWindow ? childWindow->project : nullptr;
}

cMap* cCanvas::map() const {
    return project() ? project()->viewMap() : nullptr;
}

bool cCanvas::isActive() const {
    return g_viewHost->activeCanvas == this;
}

// ---- View type

struct cViewAxes {
    const char* caption;
    int h, v, depth, sign;
};

static const cViewAxes s_viewAxes[] = {
    {"front (y/z)", 1, 2, 0, 1},
    {"side (x/z)", 0, 2, 1, 0},
    {"top (x/y)", 0, 1, 2, 1},
    {"camera", -1, -1, -1, 1},
};

void cCanvas::setAxes(int type) {
    const cViewAxes& axes = s_viewAxes[type];
    caption = QString::fromLatin1(axes.caption);
    axisH = axes.h;
    axisV = axes.v;
    axisDepth = axes.depth;
    axisSign = axes.sign;
}

void cCanvas::setViewType(int type, int mode) {
    if (type < VIEW_FRONT || type > VIEW_CAMERA)
        return;
    resetInputState(false);
    viewType = type;
    if (mode >= 0)
        renderMode = mode;
    if (renderMode < 0)
        renderMode = isCamera() ? RM_TEXTURED : RM_WIREFRAME;
    setAxes(type);
    viewDirty = projectionDirty = modelviewDirty = true;
    if (isCamera()) { // points may be projected before the first frame
        buildProjection();
        buildModelview();
    }
    fillViewVectors();
    measureCaption();
    applyTimerRule();
    if (childWindow)
        childWindow->applyScrollbarSetting();
    g_viewHost->updateViewControls();
    updateCursor();
    if (cDocumentViews* document =
            project()) // others show its camera, and which one commands go to
        document->redrawViews(REDRAW_ALL);
}

void showTool(const cCanvas& canvas) {
    canvas.project()->redrawViews(REDRAW_ALL);
}

void cCanvas::measureCaption() {
    const QFontMetrics metrics(hoverFont);
    captionRect =
        QRect(0, 0, int(std::ceil(textWidth(hoverFont, caption))) + 6, metrics.height() + 4);
}

void cCanvas::restartTimer(int interval) {
    m_timer.setInterval(interval); // keeps a running timer running
}

void cCanvas::applyTimerRule() {
    if (!isCamera()) {
        m_timer.stop();
        return;
    }
    if (m_timer.isActive() || g_host->EnergySavingMode)
        return;
    m_lastFrameTime.start();
    m_timer.start(isActive() ? ACTIVE_INTERVAL : IDLE_INTERVAL);
}

void cCanvas::setTimerRunning(bool running) {
    if (!running)
        m_timer.stop();
    else if (isCamera())
        applyTimerRule();
}

// ---- Size

// Views are native windows: under load the X server's report of the size they were created with
// may come after the layout has given them their cell, and would undo it.
void cCanvas::resizeEvent(QResizeEvent* event) {
    cGLWidget::resizeEvent(event);
    QTimer::singleShot(0, this, &cCanvas::fillCell);
}

void cCanvas::fillCell() {
    const auto* grid =
        parentWidget() ? qobject_cast<QGridLayout*>(parentWidget()->layout()) : nullptr;
    const QRect cell = grid ? grid->cellRect(0, 0) : QRect();
    if (cell.isValid() && cell != geometry())
        setGeometry(cell);
}

// ---- Activity

void cCanvas::activate() {
    childWindow->noteUse(this);
    becomeActive();
}

void cCanvas::becomeActive() {
    if (!isActive()) {
        g_viewHost->setActiveCanvas(this);
        if (m_timer.isActive())
            restartTimer(ACTIVE_INTERVAL);
        g_viewHost->updateViewControls();
        showZoom();
        requestRedraw(false);
    }
    setFocus();
}

void cCanvas::resetInputState(bool keepTimer) {
    if (!keepTimer && m_timer.isActive()) {
        if (g_host->EnergySavingMode)
            m_timer.stop();
        else
            restartTimer(isActive() ? ACTIVE_INTERVAL : IDLE_INTERVAL);
    }
    frameCount = 0;
    fpsTime = 0;
    if (leftDown && g_viewHost->currentTool)
        g_viewHost->currentTool->breakOff();
    leftDown = rightDown = middleDown = false;
    captionHover = false;
    mouselook = spaceLook = false;
    cameraMoved = false;
    moveKeys = 0;
    if (viewType < 0)
        return;
    updateCursor();
    requestRedraw(false);
}

void cCanvas::requestRedraw(bool now) {
    viewInfo.frameTime = 0;
    if (now)
        updateGL();
    else
        update();
}

// ---- What drawing code is told

struct cSettingFlag {
    bool cSettings::*setting;
    uint32_t flag;
};

static const cSettingFlag s_settingFlags[] = {
    {&cSettings::DrawCamera, VF_CAMERA},
    {&cSettings::ShowConnections, VF_CONNECTIONS},
    {&cSettings::EnableGrid3D, VF_GRID_3D},
    {&cSettings::SelectByHandles, VF_BY_HANDLES},
    {&cSettings::TransparentSort, VF_TRANSPARENT_SORT},
    {&cSettings::UseCullTree, VF_CULL_TREE},
    {&cSettings::DrawNoDraw, VF_NODRAW},
    {&cSettings::AnimateModels, VF_ANIMATE},
    {&cSettings::NoPolyOffset, VF_NO_POLYGON_OFFSET},
};

static bool isVertexTool(const cTool* tool) {
    return tool && tool->getId() == TOOL_VERTEX;
}

uint32_t cCanvas::settingFlags() const {
    uint32_t flags = VF_MODELS;
    for (const cSettingFlag& entry : s_settingFlags)
        if (g_host->*entry.setting)
            flags |= entry.flag;
    if (isVertexTool(g_viewHost->currentTool) || isVertexTool(g_viewHost->suspendedTool))
        flags |= VF_MORPHING;
    if (g_host->Transparency && renderMode != RM_WIREFRAME)
        flags |= VF_TRANSPARENCY;
    if (g_host->UseCullTree && g_host->DrawCullTree)
        flags |= VF_DRAW_CULL_TREE;
    return flags;
}

void cCanvas::refreshViewInfo() {
    static constexpr float MIN_GRID_DEPTH = 64, MAX_GRID_DEPTH = 2048;
    worldSize = float(g_host->MaxWorldSize);
    halfWorldSize = worldSize * 0.5f;
    viewInfo.is3D = isCamera();
    viewInfo.flags = settingFlags();
    viewInfo.renderMode = renderMode;
    viewInfo.pickMode = PICK_NONE;
    viewInfo.pickFlags = PICK_ALL;
    viewInfo.texture = nullptr;
    viewInfo.hideMask = uint32_t(g_host->HideMask);
    viewInfo.detailContentMask = map()->context.profile().detailContentMask;
    viewInfo.gridSize = float(g_host->gridSize);
    viewInfo.gridDepth = std::clamp(viewInfo.gridSize * 16.0f, MIN_GRID_DEPTH, MAX_GRID_DEPTH);
    viewInfo.modelRenderDistance = float(g_host->ModelRenderDistance);
    viewInfo.selectionBulletSize = float(g_host->SelectionBulletSize);
    viewInfo.vertexBulletSize = float(g_host->VertexToolBulletSize);
    viewInfo.seconds = isCamera() ? cAnimationClock::shared().seconds() : 0;
    viewInfo.frustum = &frustum;
    viewInfo.settings = cDrawSettings::current();
    fillViewVectors();
}

void cCanvas::fillViewVectors() {
    viewInfo.axisH = axisH;
    viewInfo.axisV = axisV;
    viewInfo.axisDepth = axisDepth;
    viewInfo.axisSign = axisSign;
    viewInfo.invZoom = 1.0f / zoom;
    if (isCamera()) {
        vecCopy(origin, viewInfo.origin);
        vecCopy(forward, viewInfo.forward);
        vecCopy(right, viewInfo.right);
        vecCopy(up, viewInfo.up);
        return;
    }
    viewInfo.origin[axisH] = offsetX / zoom;
    viewInfo.origin[axisV] = offsetY / zoom;
    viewInfo.origin[axisDepth] = halfWorldSize;
    for (int i = 0; i < 3; ++i) {
        viewInfo.forward[i] = i == axisDepth ? -1.0f : 0.0f;
        viewInfo.right[i] = i == axisH ? 1.0f : 0.0f;
        viewInfo.up[i] = i == axisV ? 1.0f : 0.0f;
    }
}
