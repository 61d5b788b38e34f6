// SPDX-License-Identifier: MIT
// The list of visgroups in the Filter Control dock. One item dropped on another asks whether the
// two are to become one; who owns the groups carries it out.
#pragma once

#include <QListWidget>

class QVisGroupList : public QListWidget {
    Q_OBJECT

public:
    static constexpr int ID_ROLE = 32; // the visgroup's id

    explicit QVisGroupList(QWidget* parent = nullptr);

    // Shows the visgroups of a map, or none. The current id survives where it is still there.
    void rebuild(const class cMap* map);
    void rebuild(const class cMap* map, uint32_t current);      // where the ids have changed
    uint32_t currentId() const;                                 // 0: none
    QSize sizeHint() const override { return QSize(190, 120); } // the views want the room

signals:
    void mergeRequested(QListWidgetItem* source, QListWidgetItem* target);
    void iconClicked(QListWidgetItem* item);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void startDrag(Qt::DropActions actions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    bool isOwnDrag(const QDropEvent* event) const;
    void askToMerge(uint32_t source, uint32_t target);
    QListWidgetItem* itemOf(uint32_t id) const;
    QListWidgetItem* iconAt(const QPoint& point) const; // the item whose icon lies there, or null

    QListWidgetItem* m_source = nullptr; // of the drag
    QListWidgetItem* m_pressedIcon = nullptr;
};
