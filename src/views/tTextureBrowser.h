// SPDX-License-Identifier: MIT
// The textures of a catalogue as labelled tiles that scroll. What is shown and where it lies is
// kept until something it depends on changes; a frame draws the tiles in view and no others.
#pragma once

#include "views/tGLWidget.h"
#include "views/tTextureTiles.h"

#include <QFont>
#include <QSet>
#include <QStringList>

class cTextureCatalogue;
struct cTexture;
struct cTextureEntry;

class cTextureBrowser : public cGLWidget {
    Q_OBJECT

public:
    explicit cTextureBrowser(QWidget* parent);

    // ---- What is shown

    // null: nothing. Its textures stay as they are until another one is given.
    void setCatalogue(const cTextureCatalogue* catalogue);
    void setGroup(const QString& group); // empty: all
    // Names that hold one of its words, which stand between blanks, commas and semicolons, without
    // regard to case; no word at all: all.
    void setFilter(const QString& text);
    void setUsed(const QSet<const cTexture*>& used);
    void setOnlyUsed(bool on);
    void setScaleMode(int mode); // a place in TEXTURE_SCALES

    // In the order of the catalogue.
    const std::vector<cShownTexture>& shown();
    const cTextureTiles& tiles(); // by number in shown()

    // ---- The current one

    const cTexture* selected() const { return m_selected; }
    void select(const cTexture* texture); // null: none
    // Scrolls so that its tile begins at the top, unless all of it is seen already; to the top if
    // it is not shown.
    void bringIntoView();

    // ---- Scrolling

    float scroll() const { return m_scroll; } // from 0 to 1
    void setScroll(float share);
    int scrollOffset(); // pixels of the content above the view

    const QFont labelFont;

signals:
    void chosen(const cTexture* texture); // by mouse or keys
    void accepted();                      // by a double click
    void resized();
    void wheelTurned(int steps); // up is positive

protected:
    void initializeGL() override;
    void resizeGL(int, int) override {}
    void paintGL() override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool passes(const cTextureEntry& entry, const QString& name) const;
    void invalidate();
    int selectedTile();
    int tileOfKey(int key);
    void choose(int tile);
    void drawTile(int tile, int offset);
    void drawStrips(int first, int end, int offset) const;
    void drawNames(int first, int end, int offset) const;
    void drawFrame(const QRect& bounds) const;

    const cTextureCatalogue* m_catalogue = nullptr;
    const cTexture* m_selected = nullptr;
    QString m_group;
    QString m_filter;
    QStringList m_words; // of the filter
    QSet<const cTexture*> m_used;
    bool m_onlyUsed = false;
    int m_scaleMode = 1;
    float m_scroll = 0;
    int m_wheelDelta = 0; // not made a step of yet

    std::vector<cShownTexture> m_shown;
    cTextureTiles m_tiles;
    bool m_shownIsOld = true;
    int m_layoutWidth = -1; // what the tiles were laid out for; -1: to be done anew
};
