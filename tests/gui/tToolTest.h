// SPDX-License-Identifier: MIT
// The whole program with a document of a few objects, and a mouse: events go in where the window
// system hands them over, so that grabs, focus and routing are the real ones.
#pragma once

#include "gui/tGuiTest.h"
#include "tools/tToolSelect.h"

#include <initializer_list>

class cToolTest : public cGuiTest {
protected:
    static constexpr int GRID = 16;

    void SetUp() override; // a document with four views, the top view active, a unit a pixel
    void TearDown() override;
    virtual void furnish() {} // the game's folder, before the program starts

    // ---- Objects

    cMap& map() const { return *project->map; }
    cBrushData* addBrush(std::initializer_list<float> mins, std::initializer_list<float> maxs);
    cEntityData* addLight(float x, float y, float z);
    cEntityData* addSolidEntity(); // without brushes
    void objectsAdded();           // after the last of them
    // A cube of 64 units on the ground, from the x axis on; picked by a click.
    cBrushData* pickCube(float x = 0);
    const cSelectionBox& box() const { return project->boxes[TBX_SELECTION]; }
    const cSelectionFrame& frame() const { return project->selection; }
    cToolSelect& tool() const {
        return static_cast<cToolSelect&>(*window->toolSwitch().tools[TOOL_SELECT]);
    }
    int selectedBrushes() const;
    int selectedEntities() const;
    const char* undoName() const { return map().history->undoName(); }
    // Runs what changes the map; undo must give back the dump before, redo the dump after. Leaves
    // the map as after the change.
    void expectUndoable(const std::function<void()>& change, bool withSelection = true);

    // ---- Mouse. Points are world coordinates on the view's axes.

    cCanvas* view(int type) const;
    QPoint pixel(const cCanvas* canvas, float h, float v) const;
    // The middle of a handle of the selection's box, and of the box itself.
    QPoint handle(const cCanvas* canvas, int number) const;
    QPoint middleOf(const cCanvas* canvas) const;
    void moveTo(cCanvas* canvas, const QPoint& at, Qt::KeyboardModifiers modifiers = {});
    void approach(cCanvas* canvas, const QPoint& at, Qt::KeyboardModifiers modifiers = {});
    void press(cCanvas* canvas, const QPoint& at, Qt::KeyboardModifiers modifiers = {},
               Qt::MouseButton button = Qt::LeftButton);
    void release(cCanvas* canvas, const QPoint& at, Qt::KeyboardModifiers modifiers = {},
                 Qt::MouseButton button = Qt::LeftButton);
    void click(cCanvas* canvas, const QPoint& at, Qt::KeyboardModifiers modifiers = {});
    // A click of the right button; the name of the menu that came up by it, which is closed again.
    QString menuAt(cCanvas* canvas, const QPoint& at);
    // A click on the left side of an object, seen from above.
    void pick(const float* mins, const float* maxs, Qt::KeyboardModifiers modifiers = {});
    void pick(const cBrushData* brush, Qt::KeyboardModifiers modifiers = {}) {
        pick(brush->mins, brush->maxs, modifiers);
    }
    // Press, the first move that starts the drag, steps to the end; without the release.
    void dragTo(cCanvas* canvas, const QPoint& from, const QPoint& to,
                Qt::KeyboardModifiers modifiers = {});
    void drag(cCanvas* canvas, const QPoint& from, const QPoint& to,
              Qt::KeyboardModifiers modifiers = {});
    void key(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers = {});

    void expectBounds(const float* mins, const float* maxs, std::initializer_list<float> wantMins,
                      std::initializer_list<float> wantMaxs) const;
    void expectBrush(const cBrushData* brush, std::initializer_list<float> mins,
                     std::initializer_list<float> maxs) const {
        expectBounds(brush->mins, brush->maxs, mins, maxs);
    }

    cProject* project = nullptr;
    cCanvas* top = nullptr;

private:
    void send(cCanvas* canvas, QEvent::Type type, const QPoint& at, Qt::MouseButton button,
              Qt::KeyboardModifiers modifiers);

    Qt::MouseButtons m_held;
};
