// SPDX-License-Identifier: MIT
#include "views/tGlyphAtlas.h"

#include <QFontMetricsF>
#include <QImage>
#include <QOpenGLContext>
#include <QPainter>
#include <cmath>
#include <list>
#include <qopengl.h>
#include <vector>

static constexpr int SIDE = 512; // texels, at a scale of 1
static constexpr int MARGIN = 1; // texels about a glyph: smoothing reaches beyond its outline

QString characterText(uint character) {
    return QString::fromUcs4(&character, 1);
}

// ---- One for each font, scale and group of contexts

cGlyphAtlas& cGlyphAtlas::of(const QFont& font, qreal pixelRatio) {
    static QHash<QObject*, std::list<cGlyphAtlas>*> groups;
    QOpenGLContextGroup* group = QOpenGLContextGroup::currentContextGroup();
    std::list<cGlyphAtlas>*& atlases = groups[group];
    if (!atlases) {
        atlases = new std::list<cGlyphAtlas>;
        QObject::connect(group, &QObject::destroyed,
                         [](QObject* gone) { delete groups.take(gone); });
    }
    for (cGlyphAtlas& atlas : *atlases)
        if (atlas.m_pixelRatio == pixelRatio && atlas.m_font == font)
            return atlas;
    return atlases->emplace_back(font, pixelRatio);
}

// ---- Glyphs

void cGlyphAtlas::createTexture() {
    m_side = SIDE * int(std::ceil(m_pixelRatio));
    const std::vector<uint8_t> empty(size_t(m_side) * size_t(m_side));
    glGenTextures(1, &m_texture);
    glBindTexture(GL_TEXTURE_2D, m_texture);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_LINEAR);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, m_side, m_side, 0, GL_ALPHA, GL_UNSIGNED_BYTE,
                 empty.data());
}

void cGlyphAtlas::clear() {
    m_glyphs.clear();
    m_next = QPoint();
    m_lineHeight = 0;
}

// Lines of glyphs, one beneath the other.
bool cGlyphAtlas::findRoom(QSize size, QPoint* place) {
    if (m_next.x() + size.width() > m_side) {
        m_next = QPoint(0, m_next.y() + m_lineHeight);
        m_lineHeight = 0;
    }
    if (size.width() > m_side || m_next.y() + size.height() > m_side)
        return false;
    *place = m_next;
    m_next.rx() += size.width();
    m_lineHeight = std::max(m_lineHeight, size.height());
    return true;
}

static QRect deviceRect(const QFont& font, qreal pixelRatio, const QString& text) {
    const QRectF rect = QFontMetricsF(font).boundingRect(text);
    if (rect.isEmpty())
        return QRect();
    const QRectF scaled(rect.topLeft() * pixelRatio, rect.size() * pixelRatio);
    return scaled.toAlignedRect().adjusted(-MARGIN, -MARGIN, MARGIN, MARGIN);
}

static std::vector<uint8_t> render(const QFont& font, qreal pixelRatio, const QString& text,
                                   const QRect& rect) {
    QImage image(rect.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(-rect.topLeft());
    painter.scale(pixelRatio, pixelRatio);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QPointF(), text);
    painter.end();
    std::vector<uint8_t> alphas;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            alphas.push_back(uint8_t(qAlpha(image.pixel(x, y))));
    return alphas;
}

const cGlyph* cGlyphAtlas::add(uint character) {
    const QString text = characterText(character);
    const QRect rect = deviceRect(m_font, m_pixelRatio, text);
    if (rect.isNull())
        return &*m_glyphs.insert(character, cGlyph{});
    if (!m_texture)
        createTexture();
    QPoint place;
    if (!findRoom(rect.size(), &place))
        return nullptr;
    const std::vector<uint8_t> alphas = render(m_font, m_pixelRatio, text, rect);
    glBindTexture(GL_TEXTURE_2D, m_texture);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1); // rows have no padding
    glTexSubImage2D(GL_TEXTURE_2D, 0, place.x(), place.y(), rect.width(), rect.height(), GL_ALPHA,
                    GL_UNSIGNED_BYTE, alphas.data());
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4); // what OpenGL begins with
    const float texel = 1.0f / float(m_side);
    const auto right = float(place.x() + rect.width()), low = float(place.y() + rect.height());
    return &*m_glyphs.insert(character, {float(rect.x()), float(rect.y()), float(rect.width()),
                                         float(rect.height()), float(place.x()) * texel,
                                         float(place.y()) * texel, right * texel, low * texel});
}

const cGlyph* cGlyphAtlas::find(uint character) {
    const auto found = m_glyphs.constFind(character);
    return found != m_glyphs.constEnd() ? &*found : add(character);
}
