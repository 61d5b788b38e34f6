// SPDX-License-Identifier: MIT
#include "shell/tVisGroupList.h"

#include "document/tMap.h"
#include "document/tVisGroup.h"

#include <QDropEvent>
#include <QIcon>
#include <QMessageBox>
#include <QMimeData>
#include <QMouseEvent>

QVisGroupList::QVisGroupList(QWidget* parent) : QListWidget(parent) {
    setSortingEnabled(true);
    setDragDropMode(QAbstractItemView::InternalMove);
    setSelectionMode(QAbstractItemView::SingleSelection);
}

// ---- Items

static QString itemText(const cVisGroup& group) {
    const QString name = QString::fromLocal8Bit(group.name);
    if (group.objectCount > 1)
        return QVisGroupList::tr("%1 (%2 objects)").arg(name).arg(group.objectCount);
    return group.objectCount == 1 ? QVisGroupList::tr("%1 (1 object)").arg(name) : name;
}

static void fillItem(QListWidgetItem* item, const cVisGroup& group) {
    static const QString on = QStringLiteral(":/qrc/vg_on.png");
    static const QString off = QStringLiteral(":/qrc/vg_off.png");
    item->setText(itemText(group));
    item->setIcon(QIcon(group.visible ? on : off));
    item->setData(QVisGroupList::ID_ROLE, group.id);
}

uint32_t QVisGroupList::currentId() const {
    const QListWidgetItem* item = currentItem();
    return item ? item->data(ID_ROLE).toUInt() : 0;
}

void QVisGroupList::rebuild(const cMap* map) {
    const uint32_t current = currentId();
    m_source = nullptr;
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

void QVisGroupList::refresh(const cMap& map) {
    setSortingEnabled(false); // an item that moves would be met twice
    for (int row = 0; row < count(); ++row)
        if (const cVisGroup* group = map.findVisGroup(item(row)->data(ID_ROLE).toUInt()))
            fillItem(item(row), *group);
    setSortingEnabled(true);
    sortItems();
}

// ---- Drag and drop

// The base class needs the press to begin a drag.
void QVisGroupList::mousePressEvent(QMouseEvent* event) {
    QListWidget::mousePressEvent(event);
    m_source = itemAt(event->pos());
    event->accept();
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

// The base class would move the row. The merge itself deletes the source item, so the drag must
// not: it was a copy.
void QVisGroupList::dropEvent(QDropEvent* event) {
    if (!isOwnDrag(event)) {
        event->ignore();
        return;
    }
    QListWidgetItem* source = m_source;
    m_source = nullptr;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    if (!source || !currentItem() || currentItem() == source)
        return;
    const auto answer = QMessageBox::question(this, QStringLiteral("Karvex"), tr("Combine groups?"),
                                              QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    if (answer == QMessageBox::Yes)
        emit mergeRequested(source, currentItem());
    else
        setCurrentItem(source);
}
