// SPDX-License-Identifier: MIT
// A generated city in a shown window of four views.
#pragma once

#include "document/tMap.h"
#include "document/tTexture.h"
#include "tBenchImport.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"
#include "views/tDocumentViews.h"
#include "views/tViewHost.h"

#include <QCursor>
#include <QPixmap>
#include <memory>
#include <vector>

class cBenchViewHost : public cViewHost {
public:
    cBenchViewHost() : m_share(std::make_unique<cGLWidget>(eGLBuffers::Depth)) {
        g_viewHost = this;
    }
    ~cBenchViewHost() override { g_viewHost = nullptr; }

    void setActiveCanvas(cCanvas* canvas) override { cCanvas::switchActive(*this, canvas); }
    cTool* cameraTool() const override { return nullptr; }
    QMenu* popupMenu(const char*) const override { return nullptr; }
    cGLWidget* shareWidget() override { return m_share.get(); }
    void openObjectProperties() override {}
    void updateViewControls() override {}
    bool isActiveWindow(const cChildWindow*) const override { return true; }
    const QCursor& toolCursor(eToolCursor) const override { return m_cursor; }
    const QPixmap& cameraIcon() const override { return m_icon; }
    void setTool(int) override {}
    void toolSelect() override {}

private:
    std::unique_ptr<cGLWidget> m_share;
    QCursor m_cursor;
    QPixmap m_icon;
};

class cBenchDocument : public cDocumentViews {
public:
    bool windowClosing(cChildWindow*) override { return true; }
    cConfigFolders* viewConfig() override { return &folders; }
    cMap* viewMap() override { return &map; }

    cMap map{bench().host};
    cConfigFolders folders;
};

class cShownCity {
public:
    explicit cShownCity(int brushes);
    void frame();
    void wear(int textures); // by districts, eight of them in each
    cMap& map() { return m_document.map; }
    cCanvas* camera() const { return m_window->canvases[0]; }
    cCanvas* top() const { return m_window->canvases[1]; }
    bool isShown() const;
    void select(int brushes);

private:
    static constexpr int WIDTH = 1200, HEIGHT = 900;

    std::vector<cTexture> m_textures; // these two outlive the faces
    std::vector<cTextureImage> m_images;
    cBenchDocument m_document;
    std::unique_ptr<cChildWindow> m_window;
};
