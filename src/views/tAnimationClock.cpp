// SPDX-License-Identifier: MIT
#include "views/tAnimationClock.h"

#include <QCoreApplication>

cAnimationClock& cAnimationClock::shared() {
    static auto* const clock = new cAnimationClock(QCoreApplication::instance());
    return *clock;
}

cAnimationClock::cAnimationClock(QObject* parent) : QObject(parent) {
    static constexpr int INTERVAL = 50; // milliseconds
    m_timer.setInterval(INTERVAL);
    connect(&m_timer, &QTimer::timeout, this, &cAnimationClock::tick);
}

void cAnimationClock::keepRunning() {
    m_isWanted = true;
    if (m_timer.isActive())
        return;
    m_sinceTick.start();
    m_timer.start();
}

void cAnimationClock::tick() {
    m_seconds += double(m_sinceTick.restart()) / 1000;
    m_isWanted = false;
    emit ticked();
    if (!m_isWanted)
        m_timer.stop();
}
