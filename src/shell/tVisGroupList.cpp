// SPDX-License-Identifier: MIT
#include "shell/tVisGroupList.h"

#include "document/tMap.h"
#include "document/tVisGroup.h"
#include "support/tMapText.h"

#include <QDropEvent>
#include <QIcon>
#include <QMessageBox>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <utility>

QVisGroupList::QVisGroupList(QWidget* parent) : QListWidget(parent) {
    setSortingEnabled(true);
    setDragDropMode(QAbstractItemView::InternalMove);
    setSelectionMode(QAbstractItemView::SingleSelection);
}

// ---- Items

static QString itemText(const cVisGroup& group) {
    const QString name = fromMapText(group.name);
    if (group.objectCount > 1)
        return QVisGroupList::tr("%1 (%2 objects)").arg(name).arg(group.objectCount);
    return group.objectCount == 1 ? QVisGroupList::tr("%1 (1 object)").arg(name) : name;
}

// The tick would be lost in the colour of the selected row, and more so in Qt's own tint of it.
static QPixmap onPaper(const QPixmap& pixmap) {
    QPixmap paper(pixmap.size());
    paper.fill(Qt::white);
    QPainter(&paper).drawPixmap(0, 0, pixmap);
    return paper;
}

static void fillItem(QListWidgetItem* item, const cVisGroup& group) {
    static const QString on = QStringLiteral(":/qrc/vg_on.png");
    static const QString off = QStringLiteral(":/qrc/vg_off.png");
    item->setText(itemText(group));
    item->setToolTip(item->text()); // the dock may be narrow
    const QPixmap pixmap(group.visible || group.objectCount == 0 ? on : off);
    QIcon icon(pixmap);
    icon.addPixmap(onPaper(pixmap), QIcon::Selected);
    item->setIcon(icon);
    item->setData(QVisGroupList::ID_ROLE, group.id);
}

static uint32_t idOf(const QListWidgetItem* item) {
    return item ? item->data(QVisGroupList::ID_ROLE).toUInt() : 0;
}

uint32_t QVisGroupList::currentId() const {
    return idOf(currentItem());
}

QListWidgetItem* QVisGroupList::itemOf(uint32_t id) const {
    for (int row = 0; row < count(); ++row)
        if (idOf(item(row)) == id)
            return item(row);
    return nullptr;
}

void QVisGroupList::rebuild(const cMap* map) {
    rebuild(map, currentId());
}

void QVisGroupList::rebuild(const cMap* map, uint32_t current) {
    m_source = m_pressedIcon = nullptr;
    setSortingEnabled(false); // once at the end, not once an item
    clear();
    if (map) {
        for (const cVisGroup* group : map->visGroups) {
            if (!group)
                continue;
            auto* item = new QListWidgetItem(this);
            fillItem(item, *group);
            if (group->id == current)
                setCurrentItem(item);
        }
    }
    setSortingEnabled(true);
    sortItems();
}

// ---- Drag and drop

// The base class needs the press to begin a drag.
void QVisGroupList::mousePressEvent(QMouseEvent* event) {
    QListWidget::mousePressEvent(event);
    m_source = itemAt(event->pos());
    m_pressedIcon = event->button() == Qt::LeftButton ? iconAt(event->pos()) : nullptr;
    event->accept();
}

QListWidgetItem* QVisGroupList::iconAt(const QPoint& point) const {
    QListWidgetItem* item = itemAt(point);
    if (!item)
        return nullptr;
    const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this);
    const int end = visualItemRect(item).left() + 2 * (margin + 1) +
                    style()->pixelMetric(QStyle::PM_ListViewIconSize, nullptr, this);
    return point.x() < end ? item : nullptr;
}

// The list may be rebuilt in answer. A drag that has begun swallows the release.
void QVisGroupList::mouseReleaseEvent(QMouseEvent* event) {
    QListWidget::mouseReleaseEvent(event);
    QListWidgetItem* pressed = std::exchange(m_pressedIcon, nullptr);
    if (pressed && pressed == iconAt(event->pos()))
        emit iconClicked(pressed);
}

// On an icon the first click has done it.
void QVisGroupList::mouseDoubleClickEvent(QMouseEvent* event) {
    if (!iconAt(event->pos()))
        QListWidget::mouseDoubleClickEvent(event);
}

// The base class deletes the selected rows after a move, and by then those are the target's.
void QVisGroupList::startDrag(Qt::DropActions) {
    m_pressedIcon = nullptr;
    QListWidget::startDrag(Qt::CopyAction);
}

// Rows of this list, and nothing from elsewhere.
bool QVisGroupList::isOwnDrag(const QDropEvent* event) const {
    return m_source && (!event->source() || event->source() == this) &&
           event->mimeData()->hasFormat(QStringLiteral("application/x-qabstractitemmodeldatalist"));
}

void QVisGroupList::dragEnterEvent(QDragEnterEvent* event) {
    if (isOwnDrag(event))
        event->acceptProposedAction();
    else
        event->ignore();
}

void QVisGroupList::dragMoveEvent(QDragMoveEvent* event) {
    if (!isOwnDrag(event)) {
        event->ignore();
        return;
    }
    QListWidgetItem* target = itemAt(event->pos());
    if (target && target != currentItem())
        setCurrentItem(target);
    event->accept();
}

// The base class would move the row; the merge itself deletes the source item.
void QVisGroupList::dropEvent(QDropEvent* event) {
    if (!isOwnDrag(event)) {
        event->ignore();
        return;
    }
    const uint32_t source = idOf(m_source);
    const uint32_t target = currentId();
    m_source = nullptr;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (source && target && target != source)
        askToMerge(source, target);
}

// By ids: the list may be rebuilt while the question is up.
void QVisGroupList::askToMerge(uint32_t source, uint32_t target) {
    const auto answer = QMessageBox::question(this, QStringLiteral("Karvex"), tr("Combine groups?"),
                                              QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    QListWidgetItem* sourceItem = itemOf(source);
    QListWidgetItem* targetItem = itemOf(target);
    if (answer != QMessageBox::Yes)
        setCurrentItem(sourceItem);
    else if (sourceItem && targetItem)
        emit mergeRequested(sourceItem, targetItem);
}
