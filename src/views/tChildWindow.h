// SPDX-License-Identifier: MIT
// One document window: one or four canvases with their scroll bars and the splitters between
// them. Lives in the main window's MDI area and deletes itself on close.
#pragma once

#include <QWidget>
#include <vector>

class QScrollBar;
class QSplitter;
class cCanvas;
class cDocumentViews;

class cChildWindow : public QWidget {
    Q_OBJECT

public:
    // Enters itself into the document's windows.
    explicit cChildWindow(cDocumentViews* document, QWidget* parent = nullptr);
    ~cChildWindow() override;

    QSize sizeHint() const override; // to be made with, cascaded or restored
    QSize minimumSizeHint() const override;

    // type >= 0 builds one view of that type, -1 the four views. Called once.
    void createViews(int type);
    // Lets one of four views fill the window, or shows all four again.
    void toggleMaximized(cCanvas* canvas);
    void autosize(); // equal cells, none maximized
    void applyScrollbarSetting();
    void setTimersRunning(bool running);

    void redrawViews(int mask); // REDRAW_ bits
    void redrawAllNow();
    void centerViews(const float* point);         // the 2D views
    void setZoomAll(float zoom);                  // likewise
    void setOffsetAll(float x, float y);          // likewise
    void setCameraOrigin(const float* point);     // the camera views
    void setCameraAngles(const float* angles);    // likewise
    cCanvas* findCanvas(int axis) const;          // -1: a camera view; null if there is none
    cCanvas* firstCanvas() const;                 // null if there is none
    bool showsScrollBars(const cCanvas* c) const; // by the setting and the maximized view

    // A view becomes active by the mouse over it, and takes keys and wheel. Commands go to the
    // view used last, by a press, a key or the wheel: the mouse crosses others on its way to a
    // menu.
    void noteActive(cCanvas* canvas) { m_active = canvas; }
    void noteUse(cCanvas* canvas);
    cCanvas* activeView() const;  // the one last active, else the first
    cCanvas* commandView() const; // the one used last, else the active one
    // The 2D view used last, else the top view or any that is there; null without one.
    cCanvas* flatCommandView() const;

    cDocumentViews* project; // null once the document agreed to the close
    bool closing = false;    // the program itself closes: nobody is asked
    cCanvas* maximizedCanvas = nullptr;
    std::vector<cCanvas*> canvases; // in the order they were built
    QSplitter* splitterTop = nullptr;
    QSplitter* splitterBottom = nullptr;
    QSplitter* splitterVertical = nullptr;

public slots:
    void splitterMovedH();
    void splitterMovedV();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* createCell(int type, QWidget* parent);
    QSplitter* createRow(int leftType, int rightType, const char* name);
    void createFourViews();
    void layOutCells();

    cCanvas* m_active = nullptr;
    cCanvas* m_used = nullptr;
    cCanvas* m_usedFlat = nullptr; // it may have become a camera view since
};
