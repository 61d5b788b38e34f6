// SPDX-License-Identifier: MIT
// One frame of a view: set-up, the map's picture, what lies over it, and the picking pass.
#include "views/tCanvas.h"

#include "document/tMap.h"
#include "document/tMapContext.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tSystem.h"
#include "support/tVec.h"
#include "views/tAnimationClock.h"
#include "views/tCachedPicture.h"
#include "views/tChildWindow.h"
#include "views/tDocumentViews.h"
#include "views/tGLBuffer.h"
#include "views/tGLState.h"
#include "views/tMapPainter.h"
#include "views/tModelStream.h"
#include "views/tOverlay.h"
#include "views/tTextDrawer.h"
#include "views/tTool.h"
#include "views/tViewHost.h"

#include <QOpenGLFramebufferObject>

#ifndef GL_MULTISAMPLE
#define GL_MULTISAMPLE 0x809D
#endif

// Of outlines towards the viewer, in the smallest steps of depth. None by the slope of a face:
// seen edge-on it would come through the walls before it.
static constexpr float OUTLINE_SHIFT = 64;

static uint32_t s_frame = 0; // grows at each view set-up
static bool s_keepPictures = true;
static uint32_t s_pictureEpoch = 0; // grows when kept pictures are to be forgotten

void cCanvas::setKeepPictures(bool keep) {
    s_keepPictures = keep;
}

void cCanvas::invalidatePictures() {
    ++s_pictureEpoch;
}

// ---- Context

void cCanvas::initializeGL() {
    static const GLenum off[] = {GL_POLYGON_SMOOTH, GL_POLYGON_STIPPLE, GL_LINE_STIPPLE,
                                 GL_DITHER,         GL_COLOR_LOGIC_OP,  GL_LIGHTING,
                                 GL_TEXTURE_2D,     GL_MULTISAMPLE};
    static const GLenum nicest[] = {GL_LINE_SMOOTH_HINT, GL_POLYGON_SMOOTH_HINT,
                                    GL_PERSPECTIVE_CORRECTION_HINT};
    glDrawBuffer(GL_BACK);
    glReadBuffer(GL_BACK);
    glShadeModel(GL_SMOOTH);
    for (const GLenum what : off)
        glDisable(what);
    for (const GLenum what : nicest)
        glHint(what, GL_NICEST);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_CULL_FACE);
    glFrontFace(GL_CCW);
    glCullFace(GL_BACK);
    glAlphaFunc(GL_GEQUAL, 0.2f);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glPolygonOffset(0, -OUTLINE_SHIFT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    stopWaitingForScreen();
    glClearColor(0, 0, 0, 1);
    hasMultisample = format().sampleBuffers();
    if (!isSharing())
        cGLBuffer::keepToMemory(true); // another view could not draw from them
    cModelStream::install();           // models draw into views only
}

// What Qt hands over is in device pixels.
void cCanvas::resizeGL(int, int) {
    centerX = width() >> 1;
    centerY = height() >> 1;
    viewDirty = projectionDirty = true;
    if (!isCamera() && viewType >= 0) {
        clampOffset();
        updateScrollBars();
    }
}

void cCanvas::glDraw() {
    m_paintDropped = cBusy::isBusy();
    if (!m_paintDropped)
        cGLWidget::glDraw();
}

void cCanvas::paintDropped() {
    if (m_paintDropped)
        update();
}

// ---- Set-up of a view

void cCanvas::setup2D() {
    clampOffset();
    buildFrustum2D();
    fillViewVectors();
    viewInfo.flags &= ~uint32_t(VF_TRANSPARENCY | VF_CULL_TREE | VF_DRAW_CULL_TREE | VF_ANIMATE);
    if (!g_host->DrawModels)
        viewInfo.flags &= ~uint32_t(VF_MODELS);
    viewInfo.flags |= VF_NODRAW;
}

void cCanvas::setup3D() {
    if (projectionDirty)
        buildProjection();
    if (modelviewDirty)
        buildModelview();
    processCameraMoved();
    if (viewDirty)
        buildFrustum3D();
    fillViewVectors();
    if (viewInfo.settings.modelRenderDistance == 0)
        viewInfo.flags &= ~uint32_t(VF_MODELS);
}

void cCanvas::setupView() {
    GL_ResetState(GLS_DEFAULT); // the cached word may be another context's
    GL_SetPixelRatio(float(devicePixelRatioF()));
    glViewport(0, 0, deviceSize().width(), deviceSize().height());
    if (isCamera())
        setup3D();
    else
        setup2D();
    viewDirty = false;
    viewInfo.frame = ++s_frame;
}

// The modelview of a 2D view: the world axes onto the screen's, with depth towards the viewer.
void cCanvas::loadMatrices() {
    glMatrixMode(GL_PROJECTION);
    if (isCamera()) {
        glLoadMatrixf(projection);
    } else {
        const double halfWidth = width() * 0.5, halfHeight = height() * 0.5;
        const double depth = double(zoom) * double(halfWorldSize);
        glLoadIdentity();
        glOrtho(-halfWidth, halfWidth, -halfHeight, halfHeight, -depth, depth);
        std::fill_n(modelview, 16, 0.0f);
        modelview[axisH * 4] = zoom;
        modelview[axisV * 4 + 1] = zoom;
        modelview[axisDepth * 4 + 2] = viewType == VIEW_SIDE ? -zoom : zoom;
        modelview[12] = -offsetX;
        modelview[13] = offsetY;
        modelview[15] = 1;
    }
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(modelview);
}

static void switchGL(GLenum what, bool on) {
    if (on)
        glEnable(what);
    else
        glDisable(what);
}

void cCanvas::clearView() {
    static const uint8_t black[4] = {0, 0, 0, 0};
    const uint8_t* color =
        viewInfo.settings.color(isCamera() ? COLOR_3D_BACKGROUND : COLOR_2D_BACKGROUND);
    if (viewInfo.isPicking())
        color = black;
    glClearColor(float(color[0]) / 255.0f, float(color[1]) / 255.0f, float(color[2]) / 255.0f,
                 float(color[3]) / 255.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    switchGL(GL_DEPTH_TEST, isCamera());
    switchGL(GL_MULTISAMPLE,
             hasMultisample && viewInfo.settings.antialiasing && !viewInfo.isPicking());
}

// ---- The map's picture

cPictureKey cCanvas::pictureKey() const {
    cPictureKey key;
    cMap* shown = map();
    key.add(shown);
    key.add(shown->revision());
    key.add(shown->points);
    key.add(shown->pointCount);
    key.add(shown->portals);
    key.add(s_pictureEpoch);
    key.add(shown->context.profile().targetPrefixCharacters);
    const int numbers[] = {width(),
                           height(),
                           deviceSize().width(),
                           deviceSize().height(),
                           viewType,
                           renderMode,
                           int(viewInfo.flags),
                           int(viewInfo.hideMask),
                           int(viewInfo.detailContentMask)};
    key.add(numbers);
    key.add(viewInfo.settings);
    if (isCamera()) {
        key.addBytes(modelview, sizeof modelview);
        key.addBytes(projection, sizeof projection);
    } else {
        const float place[] = {zoom, offsetX, offsetY};
        key.add(place);
    }
    return key;
}

void cCanvas::drawMapPicture() {
    clearView();
    loadMatrices();
    if (!isCamera() && !viewInfo.isPicking())
        drawGrid();
    drawMap(*map(), viewInfo, stats);
}

// Draws the picture anew if what it depends on has changed. Call only with a usable picture.
void cCanvas::updatePicture() {
    cPictureKey key = pictureKey();
    if (m_picture->isCurrent(key) && viewInfo.seconds < m_picture->stats().changesAt)
        return;
    m_picture->begin();
    stats = {};
    drawMapPicture();
    m_picture->end(key, stats);
}

// A window with samples takes no copy; its picture is drawn each time.
bool cCanvas::keepsPicture() {
    return s_keepPictures && !hasMultisample && m_picture->isUsable(deviceSize());
}

int cCanvas::pictureCount() const {
    return m_picture->drawCount();
}

void cCanvas::drawPicture() {
    if (!keepsPicture()) {
        drawMapPicture();
        return;
    }
    updatePicture();
    stats = m_picture->stats();
    m_picture->show();
    switchGL(GL_DEPTH_TEST, isCamera());
    loadMatrices();
}

// The context for what runs between two frames, set up even before the first of them.
void cCanvas::beginOutsidePaint() {
    glInit();
    makeCurrent();
}

bool cCanvas::readDepth(int x, int y, float* depth) {
    if (!map() || !rect().contains(x, y))
        return false;
    beginOutsidePaint();
    refreshViewInfo();
    const QPoint at = devicePixel(x, y);
    const cActiveConfigScope scope(project()->viewConfig());
    setupView();
    if (keepsPicture()) {
        updatePicture();
        m_picture->readDepth(at.x(), at.y(), depth);
    } else {
        drawMapPicture();
        glReadPixels(at.x(), at.y(), 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, depth);
    }
    doneCurrent();
    return true;
}

// ---- Frame

void cCanvas::paintGL() {
    if (viewType < 0 || !map() || width() <= 0 || height() <= 0)
        return;
    const float frameTime = viewInfo.frameTime;
    const cActiveConfigScope scope(project()->viewConfig());
    stats = {};
    refreshViewInfo();
    viewInfo.frameTime = frameTime;
    setupView();
    paintView();
    swapBuffers();
}

void cCanvas::paintView() {
    drawPicture();
    m_changesAt = stats.changesAt;
    keepAnimated();
    drawWorldOverlays();
    drawPixelOverlays();
    if (isCamera())
        ++frameCount;
}

// ---- Animation

bool cCanvas::isAnimated() const {
    return m_changesAt < std::numeric_limits<double>::infinity();
}

void cCanvas::keepAnimated() const {
    if (isAnimated() && isVisible())
        cAnimationClock::shared().keepRunning();
}

// The clock has ticked.
void cCanvas::animate() {
    keepAnimated();
    if (isAnimated() && cAnimationClock::shared().seconds() >= m_changesAt)
        update();
}

// ---- Over the picture, in pixels

void cCanvas::drawPixelOverlays() {
    glDisable(GL_MULTISAMPLE);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE); // y grows downwards, so everything is seen from behind
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, width(), height(), 0, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    cOverlay overlay(*this);
    cTool* const tools[] = {isFreeLook() ? g_viewHost->cameraTool() : nullptr,
                            g_viewHost->suspendedTool, g_viewHost->currentTool};
    for (cTool* tool : tools)
        if (tool)
            tool->drawOverlay(this, viewInfo, overlay);
    if (showStats)
        drawStatsTexts(overlay);
    overlay.flush();
    drawCaption();
    drawMoveIcon(overlay);
    overlay.flush();
    glEnable(GL_CULL_FACE);
    glEnable(GL_DEPTH_TEST);
}

void cCanvas::drawStatsLine(cOverlay& overlay, int line, const QString& text) {
    static constexpr int MARGIN = 4, BASELINE = 5; // pixels
    const int y =
        captionRect.y() + captionRect.height() - BASELINE + line * textLineSpacing(captionFont);
    overlay.text(0, y, width() - MARGIN, TEXT_RIGHT, text, g_host->schemeColor(COLOR_TEXT));
}

void cCanvas::drawStatsTexts(cOverlay& overlay) {
    drawStatsLine(overlay, 0,
                  QStringLiteral("%1 culls, %2 entities, %3 brushes, %4 faces")
                      .arg(stats.culls)
                      .arg(stats.entities)
                      .arg(stats.brushes)
                      .arg(stats.faces));
    drawStatsLine(overlay, 2,
                  QStringLiteral("%1 calls, %2 ranges, %3 bytes sent")
                      .arg(stats.calls)
                      .arg(stats.ranges)
                      .arg(stats.bytes));
    const float yawPitchRoll[3] = {angles[1], angles[0], angles[2]};
    const float* shown = isCamera() ? yawPitchRoll : viewInfo.origin;
    drawStatsLine(overlay, 1,
                  QStringLiteral("FPS=%1, y=%2, p=%3, r=%4")
                      .arg(double(fps), 0, 'f', 2)
                      .arg(double(shown[0]), 0, 'f', 2)
                      .arg(double(shown[1]), 0, 'f', 2)
                      .arg(double(shown[2]), 0, 'f', 2));
}

static uint8_t dimmed(uint8_t channel) {
    static constexpr float IDLE_DIM = 0.78f; // of the caption text without the mouse over it
    return uint8_t(float(channel) * IDLE_DIM);
}

static void drawFrame(const QRect& r) {
    const float left = float(r.x()) + 0.5f, top = float(r.y()) + 0.5f;
    const float right = left + float(r.width() - 1), bottom = top + float(r.height() - 1);
    glBegin(GL_LINE_LOOP);
    glVertex2f(left, top);
    glVertex2f(right, top);
    glVertex2f(right, bottom);
    glVertex2f(left, bottom);
    glEnd();
}

// The views that commands go to have a framed caption.
void cCanvas::drawCaption() {
    const QRect& r = captionRect;
    glColor4ubv(g_host->schemeColor(COLOR_CAPTION));
    glRecti(r.x(), r.y(), r.x() + r.width(), r.y() + r.height());
    if (childWindow->commandView() == this || childWindow->flatCommandView() == this) {
        glColor4ubv(g_host->schemeColor(COLOR_ACTIVE_TEXT));
        drawFrame(r);
    }
    const uint8_t* text = g_host->schemeColor(isActive() ? COLOR_ACTIVE_TEXT : COLOR_TEXT);
    const uint8_t idle[4] = {dimmed(text[0]), dimmed(text[1]), dimmed(text[2]), text[3]};
    cTextDrawer drawer(captionHover ? hoverFont : captionFont, devicePixelRatioF());
    drawer.add(float(r.x() + 2), float(r.y() + r.height() - 5), caption,
               captionHover ? text : idle);
    drawer.flush();
}

void cCanvas::drawMoveIcon(cOverlay& overlay) {
    if (!middleDown)
        return;
    if (m_moveIcon.isNull())
        m_moveIcon.load(QStringLiteral(":/qrc/c_move.png"));
    overlay.centerIcon(m_moveIcon, ICON_BLENDED);
}

// ---- Picking

bool cCanvas::bindPickBuffer() {
    if (!QOpenGLFramebufferObject::hasOpenGLFramebufferObjects())
        return false;
    const QSize wanted = deviceSize();
    if (!m_pickBuffer || m_pickBuffer->size() != wanted) {
        m_pickBuffer.reset();
        m_pickBuffer =
            std::make_unique<QOpenGLFramebufferObject>(wanted, QOpenGLFramebufferObject::Depth);
    }
    return m_pickBuffer->bind();
}

// Colours come out as they went in: nothing here blends, smooths, dithers or filters. Only the
// one pixel is drawn, of the objects near it.
void cCanvas::drawPick(int x, int y, int pickFlags, int pickMode) {
    cFrustum nearby;
    setupView();
    viewInfo.flags &= ~uint32_t(VF_TRANSPARENCY | VF_ANIMATE);
    if (!g_host->PreciseModelSelection)
        viewInfo.flags &= ~uint32_t(VF_MODELS);
    viewInfo.pickMode = pickMode != PICK_NONE ? pickMode : map()->updateSelectionMode();
    viewInfo.pickFlags = pickFlags;
    buildPickFrustum(x, y, nearby);
    viewInfo.frustum = &nearby;
    glDisable(GL_DITHER);
    glEnable(GL_SCISSOR_TEST);
    const QPoint at = devicePixel(x, y);
    glScissor(at.x(), at.y(), 1, 1);
    drawMapPicture();
    glDisable(GL_SCISSOR_TEST);
    viewInfo.frustum = &frustum;
    viewInfo.pickMode = PICK_NONE;
    glEnable(GL_DEPTH_TEST);
}

int cCanvas::pickObject(int x, int y, int pickFlags, int pickMode) {
    if (!map() || !rect().contains(x, y))
        return 0;
    beginOutsidePaint();
    stats = {};
    refreshViewInfo();
    const cActiveConfigScope scope(project()->viewConfig());
    const bool buffered = bindPickBuffer();
    drawPick(x, y, pickFlags, pickMode);
    uint8_t rgba[4] = {0, 0, 0, 0};
    glFinish();
    const QPoint at = devicePixel(x, y);
    glReadPixels(at.x(), at.y(), 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
    if (buffered)
        m_pickBuffer->release();
    refreshViewInfo();
    doneCurrent();
    return rgba[0] | rgba[1] << 8 | rgba[2] << 16;
}
