// SPDX-License-Identifier: MIT
// The Filter Control dock: the visgroups of the active document and what is done with them.
#pragma once

#include <QDockWidget>
#include <QList>
#include <functional>

class QListWidgetItem;
class QPushButton;
class QVisGroupList;
class cMap;

class cFilterDock : public QDockWidget {
public:
    using cActiveMap = std::function<cMap*()>; // null without a document

    cFilterDock(cActiveMap activeMap, QWidget* parent);

    void rebuild(); // from the active map; the current visgroup stays current

private:
    QPushButton* addButton(const QString& text, const char* name, void (cFilterDock::*slot)());
    void layOut(QWidget* panel);
    void assignVisGroup();
    void editVisGroups();
    void markVisGroup();
    void purgeVisGroups();
    void selectVisGroup(QListWidgetItem* item); // null: none is current
    void changeVisGroupVis(QListWidgetItem* item);
    void mergeVisGroups(QListWidgetItem* source, QListWidgetItem* target);

    cActiveMap m_activeMap;
    QVisGroupList* m_list;
    QList<QWidget*> m_widgets; // all six of the dock
    QPushButton* m_assign;
    QPushButton* m_edit;
    QPushButton* m_mark;
    QPushButton* m_purge;
};
