// SPDX-License-Identifier: MIT
#include "views/tTextureBrowser.h"

#include "document/tTexture.h"
#include "resources/tTextureCatalogue.h"
#include "support/tColors.h"
#include "support/tHost.h"
#include "support/tMapText.h"
#include "views/tGLState.h"
#include "views/tPlainGL.h"
#include "views/tTextDrawer.h"
#include "views/tViewHost.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>

static const QString LABEL_FAMILY = QStringLiteral("Courier New");
static constexpr int LABEL_POINTS = 7;

cTextureBrowser::cTextureBrowser(QWidget* parent)
    : cGLWidget(eGLBuffers::Color, parent, g_viewHost->shareWidget()),
      labelFont(LABEL_FAMILY, LABEL_POINTS) {
    setFocusPolicy(Qt::StrongFocus);
}

// ---- What is shown

void cTextureBrowser::invalidate() {
    m_shownIsOld = true;
    m_layoutWidth = -1;
    update();
}

void cTextureBrowser::setCatalogue(const cTextureCatalogue* catalogue) {
    m_catalogue = catalogue;
    m_selected = nullptr;
    invalidate();
}

void cTextureBrowser::setGroup(const QString& group) {
    m_group = group;
    invalidate();
}

void cTextureBrowser::setFilter(const QString& text) {
    static const QRegularExpression separators(QStringLiteral("[ ,;]"));
    if (text == m_filter)
        return;
    m_filter = text;
    m_words = text.split(separators, Qt::SkipEmptyParts);
    invalidate();
}

void cTextureBrowser::setUsed(const QSet<const cTexture*>& used) {
    m_used = used;
    invalidate();
}

void cTextureBrowser::setOnlyUsed(bool on) {
    m_onlyUsed = on;
    invalidate();
}

void cTextureBrowser::setScaleMode(int mode) {
    m_scaleMode = std::clamp(mode, 0, TEXTURE_SCALE_COUNT - 1);
    m_layoutWidth = -1;
    update();
}

bool cTextureBrowser::passes(const cTextureEntry& entry, const QString& name) const {
    if (m_onlyUsed && !m_used.contains(entry.texture))
        return false;
    if (!m_group.isEmpty() && entry.group != m_group)
        return false;
    return m_words.isEmpty() ||
           std::any_of(m_words.begin(), m_words.end(), [&](const QString& word) {
               return name.contains(word, Qt::CaseInsensitive);
           });
}

const std::vector<cShownTexture>& cTextureBrowser::shown() {
    if (!m_shownIsOld)
        return m_shown;
    m_shownIsOld = false;
    m_shown.clear();
    if (!m_catalogue)
        return m_shown;
    for (const cTextureEntry& entry : m_catalogue->entries) {
        const QString name = fromMapText(entry.texture->name);
        if (!passes(entry, name))
            continue;
        int& width = entry.texture->labelWidth;
        if (width == 0)
            width = int(std::ceil(textWidth(labelFont, name)));
        m_shown.push_back({entry.texture, name, width});
    }
    return m_shown;
}

const cTextureTiles& cTextureBrowser::tiles() {
    if (m_layoutWidth != width()) {
        m_layoutWidth = width();
        m_tiles.layOut(shown(), m_scaleMode, m_layoutWidth);
    }
    return m_tiles;
}

// ---- The current one

void cTextureBrowser::select(const cTexture* texture) {
    m_selected = texture;
    update();
}

int cTextureBrowser::selectedTile() {
    const auto& all = shown();
    const auto found = std::find_if(all.begin(), all.end(), [this](const cShownTexture& one) {
        return one.texture == m_selected;
    });
    return found == all.end() ? -1 : int(found - all.begin());
}

void cTextureBrowser::bringIntoView() {
    const int tile = m_selected ? selectedTile() : -1;
    if (tile < 0) {
        setScroll(0);
        return;
    }
    const QRect bounds = tiles().tiles()[size_t(tile)].bounds();
    const int top = scrollOffset();
    if (bounds.top() >= top && bounds.bottom() < top + height())
        return;
    const int hidden = m_tiles.contentHeight() - height();
    setScroll(hidden > 0 ? float(bounds.top() - 1) / float(hidden) : 0);
}

// ---- Scrolling

void cTextureBrowser::setScroll(float share) {
    m_scroll = std::clamp(share, 0.0f, 1.0f);
    update();
}

int cTextureBrowser::scrollOffset() {
    return std::max(0, int(double(tiles().contentHeight() - height()) * double(m_scroll)));
}

void cTextureBrowser::resizeEvent(QResizeEvent* event) {
    cGLWidget::resizeEvent(event);
    emit resized();
}

// ---- Painting

void cTextureBrowser::initializeGL() {
    initializePlainGL();
    stopWaitingForScreen();
}

void cTextureBrowser::paintGL() {
    beginPlainFrame(*this, g_host->schemeColor(COLOR_TEXBROWSER_BACKGROUND));
    const int offset = scrollOffset();
    const auto [first, end] = tiles().between(offset, offset + height());
    for (int tile = first; tile < end; ++tile)
        drawTile(tile, offset);
    drawStrips(first, end, offset);
    drawNames(first, end, offset);
    for (int tile = first; tile < end; ++tile)
        if (m_shown[size_t(tile)].texture == m_selected)
            drawFrame(m_tiles.tiles()[size_t(tile)].bounds().translated(0, -offset));
}

void cTextureBrowser::drawTile(int tile, int offset) {
    const cTextureImage* image = m_shown[size_t(tile)].texture->image;
    if (image)
        drawPlainTexture(image->glName, m_tiles.tiles()[size_t(tile)].image.translated(0, -offset));
}

void cTextureBrowser::drawStrips(int first, int end, int offset) const {
    glColor4ubv(g_host->schemeColor(COLOR_TEXBROWSER_TEXT_BGCOLOR));
    glBegin(GL_QUADS);
    for (int tile = first; tile < end; ++tile) {
        const QRect label = m_tiles.tiles()[size_t(tile)].label().translated(0, -offset);
        const int right = label.x() + label.width(), bottom = label.y() + label.height();
        glVertex2i(label.x(), label.y());
        glVertex2i(label.x(), bottom);
        glVertex2i(right, bottom);
        glVertex2i(right, label.y());
    }
    glEnd();
}

void cTextureBrowser::drawNames(int first, int end, int offset) const {
    static constexpr int MARGIN = 2, BASELINE = 9; // pixels from the label's corner
    const uint8_t* plain = g_host->schemeColor(COLOR_TEXBROWSER_TEXT_FGCOLOR);
    const uint8_t* current = g_host->schemeColor(COLOR_TEXBROWSER_TEXT_SELECTED);
    cTextDrawer drawer(labelFont, devicePixelRatioF());
    for (int tile = first; tile < end; ++tile) {
        const cShownTexture& one = m_shown[size_t(tile)];
        const QRect label = m_tiles.tiles()[size_t(tile)].label();
        drawer.add(float(label.x() + MARGIN), float(label.y() + BASELINE - offset), one.name,
                   one.texture == m_selected ? current : plain);
    }
    drawer.flush();
}

// A pixel outside of tile and label; a line lies on the middles of pixels.
void cTextureBrowser::drawFrame(const QRect& bounds) const {
    const float left = float(bounds.x()) - 0.5f, top = float(bounds.y()) - 0.5f;
    const float right = float(bounds.x() + bounds.width()) + 0.5f;
    const float bottom = float(bounds.y() + bounds.height()) + 0.5f;
    glColor4ubv(g_host->schemeColor(COLOR_TEXBROWSER_LINE));
    glBegin(GL_LINE_LOOP);
    glVertex2f(left, top);
    glVertex2f(left, bottom);
    glVertex2f(right, bottom);
    glVertex2f(right, top);
    glEnd();
}

// ---- Mouse

void cTextureBrowser::choose(int tile) {
    select(shown()[size_t(tile)].texture);
    emit chosen(m_selected);
}

void cTextureBrowser::mousePressEvent(QMouseEvent* event) {
    const int tile = tiles().at(event->x(), event->y() + scrollOffset());
    event->setAccepted(event->button() == Qt::LeftButton && tile >= 0);
    if (event->isAccepted())
        choose(tile);
}

void cTextureBrowser::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
    if (event->isAccepted())
        emit accepted();
}

void cTextureBrowser::wheelEvent(QWheelEvent* event) {
    m_wheelDelta += event->angleDelta().y();
    const int steps = m_wheelDelta / QWheelEvent::DefaultDeltasPerStep;
    m_wheelDelta -= steps * QWheelEvent::DefaultDeltasPerStep;
    if (steps)
        emit wheelTurned(steps);
}

// ---- Keys

// Where that key leads from the current tile, or to the first one while none is; -1: no way.
int cTextureBrowser::tileOfKey(int key) {
    static const int ways[] = {Qt::Key_Left, Qt::Key_Right,  Qt::Key_Up,       Qt::Key_Down,
                               Qt::Key_Home, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_End};
    if (tiles().tiles().empty() ||
        std::find(std::begin(ways), std::end(ways), key) == std::end(ways))
        return -1;
    const int from = selectedTile();
    if (from < 0)
        return 0;
    const int count = int(m_tiles.tiles().size()), page = m_tiles.rowsIn(height());
    switch (key) {
    case Qt::Key_Left:
        return m_tiles.beside(from, -1);
    case Qt::Key_Right:
        return m_tiles.beside(from, 1);
    case Qt::Key_Up:
        return m_tiles.inRow(from, -1);
    case Qt::Key_Down:
        return m_tiles.inRow(from, 1);
    case Qt::Key_PageUp:
        return m_tiles.inRow(from, -page);
    case Qt::Key_PageDown:
        return m_tiles.inRow(from, page);
    default:
        return key == Qt::Key_Home ? 0 : count - 1;
    }
}

void cTextureBrowser::keyPressEvent(QKeyEvent* event) {
    const int tile = tileOfKey(event->key());
    event->setAccepted(tile >= 0);
    if (tile < 0)
        return;
    choose(tile);
    bringIntoView();
}
