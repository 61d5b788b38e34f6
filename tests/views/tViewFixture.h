// SPDX-License-Identifier: MIT
// Real views on a small map: a host with colours of its own, a view host without a main window,
// a document that is only a map and its windows.
#pragma once

#include "document/tMap.h"
#include "support/tSystem.h"
#include "support/tTestHost.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"
#include "views/tDocumentViews.h"
#include "views/tTool.h"
#include "views/tViewHost.h"

#include <QCursor>
#include <QImage>
#include <QMenu>
#include <QPixmap>
#include <array>
#include <gtest/gtest.h>
#include <map>
#include <memory>

// Hands out the scheme colours a test sets; dark grey for all others.
class cColorHost : public cTestHost {
public:
    const uint8_t* schemeColor(int index) const override;
    void setColor(int index, uint8_t r, uint8_t g, uint8_t b);

private:
    std::map<int, std::array<uint8_t, 4>> m_colors;
};

class cFakeViewHost : public cViewHost {
public:
    cFakeViewHost();
    ~cFakeViewHost() override { g_viewHost = nullptr; }

    void setActiveCanvas(cCanvas* canvas) override { cCanvas::switchActive(*this, canvas); }
    cTool* cameraTool() const override { return nullptr; }
    QMenu* popupMenu(const char*) const override { return nullptr; }
    cGLWidget* shareWidget() override { return m_share.get(); }
    void openObjectProperties() override { ++propertiesCount; }
    void updateViewControls() override {}
    bool isActiveWindow(const cChildWindow*) const override { return windowIsActive; }
    const QCursor& toolCursor(eToolCursor cursor) const override { return cursors[cursor]; }
    const QPixmap& cameraIcon() const override { return icon; }
    void setTool(int id) override { wantedTool = id; }
    void toolSelect() override { wantedTool = TOOL_SELECT; }

    std::array<QCursor, TC_COUNT> cursors;
    QPixmap icon;
    int wantedTool = -1;
    int propertiesCount = 0;
    bool windowIsActive = true;

private:
    std::unique_ptr<cGLWidget> m_share;
};

class cFakeDocument : public cDocumentViews {
public:
    explicit cFakeDocument(cMapContext& game) : map(game) {}

    bool windowClosing(cChildWindow*) override { return agreesToClose; }
    cConfigFolders* viewConfig() override { return &folders; }
    cMap* viewMap() override { return &map; }

    cMap map;
    cConfigFolders folders;
    bool agreesToClose = true;
};

class ViewFixture : public testing::Test {
protected:
    ViewFixture();
    ~ViewFixture() override;

    // A shown window of one view, or of four with type -1.
    cChildWindow* openWindow(int type, int width = 400, int height = 300);
    cCanvas* openCanvas(int type, int width = 400, int height = 300);

    cBrushData* addBox(float x0, float y0, float z0, float x1, float y1, float z1);
    cBrushData* addBoxTo(cEntityData* entity, const float* mins, const float* maxs);
    cEntityData* addPointEntity(float x, float y, float z);
    void select(cBrushData* brush);

    // What a fresh frame shows, without texts and caption; a pixel for each of the view's, under
    // any scale of the window.
    QImage picture(cCanvas* canvas);
    void pressKey(cCanvas* canvas, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    cColorHost host;
    cFakeViewHost viewHost;
    cFakeDocument document{host};
    cEntityData* world;
};
