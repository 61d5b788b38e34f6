// SPDX-License-Identifier: MIT
// The camera of a view: placing, flight by keys, frames by timer, and who follows it.
#include "views/tCanvas.h"

#include "support/tHost.h"
#include "support/tVec.h"
#include "views/tChildWindow.h"
#include "views/tDocumentViews.h"
#include "views/tViewHost.h"

#include <QApplication>

enum { PITCH = 0, YAW = 1, ROLL = 2 };

// Bits of moveKeys: two opposite ones for each motion.
enum eMoveKey : uint32_t {
    MK_FORWARD = 0x001,
    MK_BACK = 0x002,
    MK_LEFT = 0x004,
    MK_RIGHT = 0x008,
    MK_RISE = 0x010,
    MK_SINK = 0x020,
    MK_TURN_LEFT = 0x040,
    MK_TURN_RIGHT = 0x080,
    MK_PITCH_UP = 0x100,
    MK_PITCH_DOWN = 0x200
};

struct cMotionKey {
    eHeldKey held;
    uint32_t move;
};

static const cMotionKey s_mouselookKeys[] = {
    {HK_W, MK_FORWARD}, {HK_S, MK_BACK}, {HK_A, MK_LEFT}, {HK_D, MK_RIGHT}};
static const cMotionKey s_plainKeys[] = {{HK_D, MK_FORWARD}, {HK_C, MK_BACK}};
static const cMotionKey s_turnKeys[] = {{HK_LEFT, MK_TURN_LEFT},
                                        {HK_RIGHT, MK_TURN_RIGHT},
                                        {HK_UP, MK_PITCH_UP},
                                        {HK_DOWN, MK_PITCH_DOWN}};
static const cMotionKey s_shiftKeys[] = {
    {HK_LEFT, MK_LEFT}, {HK_RIGHT, MK_RIGHT}, {HK_UP, MK_RISE}, {HK_DOWN, MK_SINK}};

template<size_t N> static uint32_t motionsOf(const cMotionKey (&table)[N]) {
    uint32_t moves = 0;
    for (const cMotionKey& key : table)
        if (g_viewHost->heldKeys & (1u << key.held))
            moves |= key.move;
    return moves;
}

uint32_t cCanvas::motionKeys() const {
    const Qt::KeyboardModifiers modifiers =
        QApplication::keyboardModifiers() &
        (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (modifiers == Qt::ShiftModifier)
        return motionsOf(s_shiftKeys);
    if (modifiers != Qt::NoModifier)
        return 0;
    return motionsOf(s_turnKeys) |
           (g_host->Mouselook ? motionsOf(s_mouselookKeys) : motionsOf(s_plainKeys));
}

float ramp(float velocity, float accel, float input, float dt, float top) {
    if (accel == 0)
        return input * top;
    if (input == 0)
        return 0;
    if (input * velocity < 0)
        velocity = 0;
    return std::clamp(velocity + accel * input * dt, -top, top);
}

// +1, -1 or 0 of a pair of keys.
static float inputOf(uint32_t keys, uint32_t plus, uint32_t minus) {
    return float((keys & plus) != 0) - float((keys & minus) != 0);
}

// Top speed in a second's worth; 0 asks for the speed at once.
static float accelerationTo(float top) {
    const int time = g_host->TimeToTopSpeed;
    return time > 0 ? top / (float(time) * 0.001f) : 0.0f;
}

bool cCanvas::moveCamera(float dt) {
    static constexpr float SHARE[3] = {1.0f, 0.75f, 0.5f}; // of ForwardSpeed
    static constexpr uint32_t PLUS[3] = {MK_FORWARD, MK_RIGHT, MK_RISE};
    static constexpr uint32_t MINUS[3] = {MK_BACK, MK_LEFT, MK_SINK};
    const float* directions[3] = {forward, right, up};
    bool moved = false;
    for (int i = 0; i < 3; ++i) {
        topSpeed[i] = float(g_host->ForwardSpeed) * SHARE[i];
        velocity[i] = ramp(velocity[i], accelerationTo(topSpeed[i]),
                           inputOf(moveKeys, PLUS[i], MINUS[i]), dt, topSpeed[i]);
        vecMA(origin, velocity[i] * dt, directions[i], origin);
        moved |= velocity[i] != 0;
    }
    return moved;
}

bool cCanvas::turnCamera(float dt) {
    static constexpr float TOP_RATE = 180.0f; // degrees per second
    const float accel = accelerationTo(TOP_RATE);
    pitchRate = ramp(pitchRate, accel, inputOf(moveKeys, MK_PITCH_UP, MK_PITCH_DOWN), dt, TOP_RATE);
    yawRate = ramp(yawRate, accel, inputOf(moveKeys, MK_TURN_LEFT, MK_TURN_RIGHT), dt, TOP_RATE);
    angles[PITCH] += pitchRate * dt;
    angles[YAW] += yawRate * dt;
    return pitchRate != 0 || yawRate != 0;
}

bool cCanvas::runMotion(float dt) {
    if (!isCamera())
        return false;
    moveKeys = motionKeys();
    const bool moved = moveCamera(dt);
    const bool turned = turnCamera(dt);
    if (!moved && !turned)
        return false;
    cameraChanged();
    return true;
}

static float wrapAngle(float degrees) {
    if (degrees > 180.0f)
        return degrees - 360.0f;
    return degrees < -180.0f ? degrees + 360.0f : degrees;
}

void cCanvas::normalizeCamera() {
    worldSize = float(g_host->MaxWorldSize);
    for (int i = 0; i < 3; ++i) {
        origin[i] = std::clamp(origin[i], -worldSize, worldSize);
        angles[i] = wrapAngle(angles[i]);
    }
    angles[PITCH] = std::clamp(angles[PITCH], -90.0f, 90.0f);
}

// The matrices are out of date; 2D views that show the marker at every step follow at once.
void cCanvas::cameraChanged() {
    modelviewDirty = viewDirty = true;
    buildModelview();
    if (!g_host->DrawCamera || g_host->FastCamera || !project())
        return;
    for (cChildWindow* window : project()->windows)
        for (cCanvas* canvas : window->canvases)
            if (!canvas->isCamera())
                canvas->requestRedraw(true);
}

void cCanvas::setCameraOrigin(const float* point) {
    vecCopy(point, origin);
    cameraChanged();
}

void cCanvas::setCameraAngles(const float* value) {
    vecCopy(value, angles);
    cameraChanged();
}

void cCanvas::moveForward(float distance) {
    vecMA(origin, distance, forward, origin);
    cameraChanged();
}

void cCanvas::moveSide(float distance) {
    vecMA(origin, distance, right, origin);
    cameraChanged();
}

void cCanvas::moveUp(float distance) {
    vecMA(origin, distance, up, origin);
    cameraChanged();
}

void cCanvas::addAngle(int axis, float delta) {
    angles[axis] += delta;
    cameraChanged();
}

void cCanvas::markCameraChanged() {
    cameraMoved = true;
}

void cCanvas::processCameraMoved() {
    if (!cameraMoved)
        return;
    cameraMoved = false;
    if (!project())
        return;
    if (g_host->CenterOnCamera)
        project()->centerViews(origin);
    else if (g_host->DrawCamera && g_host->FastCamera)
        project()->redrawViews(REDRAW_2D);
}

void cCanvas::runFrame() {
    // The time runs on while nothing is drawn, so that a wait does not end in a leap.
    const float dt = float(m_lastFrameTime.restart()) * 0.001f;
    if (cBusy::isBusy())
        return;
    fpsTime += dt;
    if (fpsTime >= 1.0f) {
        fps = float(frameCount) / fpsTime;
        frameCount = 0;
        fpsTime = 0;
    }
    if (isActive())
        runMotion(dt);
    viewInfo.frameTime = dt;
    updateGL();
}
