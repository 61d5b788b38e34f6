// SPDX-License-Identifier: MIT
// One OpenGL view of a map, along a world axis or through a camera. Owns what belongs to the view
// and not to the map: axes, zoom, offset, camera, matrices, caption. Events go to the current
// tool; the map draws itself through what the canvas sets up.
//
// A pixel, here and in the tools, is one of Qt's: of mouse events, widths, handles and texts,
// before the scale of the window. OpenGL counts device pixels, so the viewport, buffers and what is
// read from them go by deviceSize() and devicePixel(), widths of lines through GL_LineWidth().
#pragma once

#include "views/tGLWidget.h"
#include "views/tViewInfo.h"

#include <QElapsedTimer>
#include <QFont>
#include <QPixmap>
#include <QRect>
#include <QTimer>
#include <memory>

class QScrollBar;
class QOpenGLFramebufferObject;
class cCachedPicture;
class cPictureKey;
class cChildWindow;
class cDocumentViews;
class cMap;
class cOverlay;
class cTool;
class cViewHost;

// Flags of screenToWorld.
enum { SW_SNAP = 1, SW_DEPTH = 2 };

class cCanvas : public cGLWidget {
    Q_OBJECT

public:
    static constexpr int ACTIVE_INTERVAL = 25; // ms between frames of the active camera view
    static constexpr int IDLE_INTERVAL = 40;   // of the others

    cCanvas(QWidget* parent, cChildWindow* window);
    ~cCanvas() override;

    // What a cViewHost does in setActiveCanvas: the former one becomes the previous one and is
    // told. canvas may be null.
    static void switchActive(cViewHost& host, cCanvas* canvas);
    // Pictures kept between frames are drawn anew, in all views: textures or models changed.
    static void invalidatePictures();
    static void setKeepPictures(bool keep); // off: every frame walks the map, to compare

    void setScrollBars(QScrollBar* horizontal, QScrollBar* vertical);
    void showScrollBars(bool show);
    QScrollBar* horizontalBar() const { return m_horizontal; }
    QScrollBar* verticalBar() const { return m_vertical; }
    // mode < 0 keeps the render mode, or takes the type's default while none is set.
    void setViewType(int type, int mode = -1);
    bool isCamera() const { return viewType == VIEW_CAMERA; }
    bool isActive() const;
    void activate();   // becomes the active canvas and takes the focus, as the one to be used
    cMap* map() const; // null without a document
    cDocumentViews* project() const;

    // ---- Zoom and scrolling, 2D

    float minZoom() const;
    void zoomTo(float value);               // clamped; about the view's centre of coordinates
    void zoomAt(float value, int x, int y); // keeps the world point under the pixel
    void setZoom(float value);              // zoomAt the middle, scroll bars and redraw
    void shareZoom(bool withAll);           // redraws; the document's other 2D views follow, too
    void pan(float dx, float dy);
    void setOffset(float x, float y); // clamped, with scroll bars and redraw
    void clampOffset();
    void updateScrollBars();
    void centerOn(const float* point);      // nothing in camera views
    void ensureVisible(const float* point); // scrolls just enough

    // ---- Coordinates. Pixels have y growing downwards; false where there is no answer.

    QSize deviceSize() const;
    // What is read for a pixel: the device pixel at its middle, y counted from the lower edge.
    QPoint devicePixel(int x, int y) const;
    void screenToWorld2D(float x, float y, bool snap, float out[2]) const;
    // SW_ flags. A camera view reads the depth of the map under the pixel.
    bool screenToWorld(int x, int y, int flags, float out[3]);
    bool unproject(const float in[3], float out[3]) const; // pixel x, y and depth 0 to 1
    bool project(const float in[3], float out[3]) const;
    bool projectToScreen(const float in[3], float out[2]) const;
    // The pick number under the pixel, 0 for none. pickFlags -1 picks all, PICK_BRUSHES brushes.
    // pickMode: PICK_NONE for that of the selection.
    int pickObject(int x, int y, int pickFlags = PICK_ALL, int pickMode = PICK_NONE);

    // ---- Camera

    void setCameraOrigin(const float* point);
    void setCameraAngles(const float* value); // pitch, yaw, roll
    void moveForward(float distance);
    void moveSide(float distance);
    void moveUp(float distance);
    void addAngle(int axis, float delta);
    void markCameraChanged(); // a camera move ended: the 2D views follow at the next frame
    bool runMotion(float dt); // true if the camera moved

    // ---- Frames and state

    void requestRedraw(bool now);
    void paintDropped(); // what was not painted while busy
    void resetInputState(bool keepTimer);
    void setTimerRunning(bool running);
    int timerInterval() const { return m_timer.isActive() ? m_timer.interval() : 0; }
    void updateCursor();
    void warpCursorToCenter();
    // How far the last move has brought the mouse from where the warp has put it; null for the
    // warp's own echo.
    QPoint movedSinceWarp() const { return m_mouseGlobal - m_warpedTo; }
    int pictureCount() const; // how often the map's picture was drawn anew and kept
    void refreshViewInfo();   // from the settings; before every draw

    int viewType = -1;
    int renderMode = -1; // negative: unset
    cChildWindow* childWindow;
    float worldSize = 8192;
    float halfWorldSize = 4096;
    int mouseX = 0;
    int mouseY = 0;
    int centerX = 0;
    int centerY = 0;
    bool leftDown = false; // set by tools
    bool rightDown = false;
    bool middleDown = false;
    QString caption;
    QRect captionRect;
    bool viewDirty = true;
    bool captionHover = false;
    bool scrollUpdating = false;
    bool hasMultisample = false;
    int axisH = -1;
    int axisV = -1;
    int axisDepth = -1;
    int axisSign = 1;
    float zoom = 0.25f;
    float offsetX = 0; // pixels
    float offsetY = 0;
    float maxZoom = 256.0f;
    float minZoomFactor = 0.03125f; // of a world of 8192 units
    float fov = 90.0f;
    float fovV = 90.0f;
    float tanX = 1.0f;
    float tanY = 1.0f;
    float topSpeed[3] = {0, 0, 0}; // forward, sideways, vertical
    float velocity[3] = {0, 0, 0};
    float pitchRate = 0;
    float yawRate = 0;
    float origin[3] = {-16, 0, 64};
    float angles[3] = {0, 0, 0}; // pitch, yaw, roll
    float forward[3] = {1, 0, 0};
    float right[3] = {0, -1, 0};
    float up[3] = {0, 0, 1};
    float projection[16];
    float modelview[16];
    bool projectionDirty = true;
    bool modelviewDirty = true;
    bool cameraMoved = false;
    bool showStats = false;
    bool mouselook = false; // latched by Z
    bool spaceLook = false; // held by the space bar
    uint32_t moveKeys = 0;
    int frameCount = 0;
    float fpsTime = 0;
    float fps = 0;
    cViewInfo viewInfo;
    cDrawStats stats;
    cFrustum frustum;
    QFont captionFont;
    QFont hoverFont;
    QFont labelFont;

public slots:
    void horizontalScroll(int value);
    void verticalScroll(int value);
    void runFrame();

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool) override { return false; }
    void initializeGL() override;
    void resizeGL(int, int) override;
    void paintGL() override;
    void glDraw() override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    // tCanvas.cpp
    void fillCell();
    void setAxes(int type);
    void measureCaption();
    bool isAnimated() const;
    void keepAnimated() const;
    void animate();
    void applyTimerRule();
    void fillViewVectors();
    uint32_t settingFlags() const;
    void restartTimer(int interval);
    // tCanvasInput.cpp
    bool isFreeLook() const { return mouselook || spaceLook; }
    void noteUse(const QEvent& event);
    void becomeActive();
    cTool* toolOfPress(Qt::MouseButtons buttons);
    bool toolMousePress(QMouseEvent* event);
    void openContextMenu(QMouseEvent* event);
    void openCaptionMenu();
    bool followsMouse(QMouseEvent* event);
    void showMousePosition(int x, int y);
    void showZoom();
    bool toolsMouseMove(QMouseEvent* event);
    void panWithMiddleButton(QMouseEvent* event);
    void updateCaptionHover(int x, int y);
    void releaseButton(bool& down, Qt::MouseButton button, QMouseEvent* event);
    void shareOffset(bool withAll);
    void viewKey(int key, Qt::KeyboardModifiers modifiers);
    void key2D(int key, Qt::KeyboardModifiers modifiers);
    bool zoomKey(int key, Qt::KeyboardModifiers modifiers);
    void panKey(int key, Qt::KeyboardModifiers modifiers);
    void energySavingMotion();
    bool endsMotion(int key) const;
    // tCanvasProjection.cpp
    void updateScrollBar(QScrollBar* bar, float extent, float offset);
    float scrollRange(float extent) const;
    bool snapPoint(float* point, int count) const;
    bool depthFromOtherView(float* depth) const;
    bool depthOf(const cCanvas* other, float* depth) const;
    bool readDepth(int x, int y, float* depth);
    bool project3D(const float in[3], float out[3]) const;
    void buildProjection();
    void buildModelview();
    void buildFrustum2D();
    void buildFrustum3D();
    void buildPickFrustum(int x, int y, cFrustum& out) const;
    // tCanvasCamera.cpp
    uint32_t motionKeys() const;
    bool moveCamera(float dt);
    bool turnCamera(float dt);
    void normalizeCamera();
    void processCameraMoved();
    void cameraChanged();
    // tCanvasGrid.cpp
    void drawGrid();
    void drawGridLines(bool vertical, float step);
    void drawGridDots(float step);
    // tCanvasDraw.cpp
    void setupView();
    void setup2D();
    void setup3D();
    void loadMatrices();
    void clearView();
    void paintView();
    cPictureKey pictureKey() const;
    void drawPicture();
    void drawMapPicture();
    void updatePicture();
    bool keepsPicture();
    void beginOutsidePaint();
    void drawWorldOverlays();
    void drawCordon(cOverlay& overlay);
    void drawCameraMarker(cOverlay& overlay);
    void drawPixelOverlays();
    void drawStatsTexts(cOverlay& overlay);
    void drawStatsLine(cOverlay& overlay, int line, const QString& text);
    void drawCaption();
    void drawMoveIcon(cOverlay& overlay);
    bool bindPickBuffer();
    void drawPick(int x, int y, int pickFlags, int pickMode);

    QTimer m_timer;
    // When what the view shows looks different, on the clock of animations.
    double m_changesAt = std::numeric_limits<double>::infinity();
    QElapsedTimer m_lastFrameTime;
    QScrollBar* m_horizontal = nullptr;
    QScrollBar* m_vertical = nullptr;
    const cTool* m_pressTool = nullptr; // who got the press that is held; only compared
    bool m_paintDropped = false;        // while busy
    // On the screen, where Qt rounds both alike; a place in the view may be a pixel aside.
    QPoint m_warpedTo;
    QPoint m_mouseGlobal;
    std::unique_ptr<cCachedPicture> m_picture;
    std::unique_ptr<QOpenGLFramebufferObject> m_pickBuffer;
    QPixmap m_moveIcon;
};

// One step of a speed with an input of -1, 0 or 1.
float ramp(float velocity, float accel, float input, float dt, float top);
