// SPDX-License-Identifier: MIT
// The eleven tools, and how one takes another's place. Which is current and which suspended stands
// in cViewHost, for the views; nobody else writes it.
#pragma once

#include "views/tTool.h"

#include <QObject>
#include <array>
#include <memory>

class cViewHost;

class cToolSwitch : public QObject {
    Q_OBJECT

public:
    explicit cToolSwitch(cViewHost& host); // makes them; that of the selection is current
    ~cToolSwitch() override;

    // The tool that loses its place finishes its work; the current one is told that it was chosen
    // again, if that means something to it. A suspended tool ends.
    void switchTo(int id);
    // A tool of views only: the one that works goes on drawing behind it, and comes back.
    void switchForAWhile(int id);
    bool isInUse(int id) const; // current or suspended
    int currentId() const;      // -1: none

    std::array<std::unique_ptr<cTool>, TOOL_COUNT> tools;

signals:
    void changed(); // after each switch, also to the same tool

private:
    void endSuspended(int next);

    cViewHost& m_host;
};
