// SPDX-License-Identifier: MIT
// The one clock that all animated models and sprites of the program go by. Its time stands still
// but for its ticks, so what is drawn between two of them shows the same.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class cAnimationClock : public QObject {
    Q_OBJECT

public:
    static cAnimationClock& shared();

    double seconds() const { return m_seconds; }
    // Something animated is in view: it ticks on. Nobody who says so again lets it stop.
    void keepRunning();

signals:
    void ticked();

private:
    explicit cAnimationClock(QObject* parent);
    void tick();

    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    double m_seconds = 0;
    bool m_isWanted = false;
};
