// SPDX-License-Identifier: MIT
// The menus of entity classes in the pop-up menus, made from the class trees of the current game
// configuration, and the class that the next new object is of, as its command names it.
#pragma once

#include "shell/tCommandTable.h"

#include <QList>
#include <QString>

class QAction;
class QMenu;
class cCommandMenus;
class cGameConfigRegistry;
class cMainWindow;
struct cEntityClassNode;
struct cGameConfig;

class cClassMenus {
public:
    // parts of update.
    enum { HIDE_POINT = 1, POINT = 2, SOLID = 4 };

    cClassMenus(cMainWindow& window, const cCommandMenus& menus,
                const cGameConfigRegistry& configs);

    // text: the class that is created, or empty. HIDE_POINT hides the point classes; POINT and
    // SOLID rebuild their menus, if the configuration is another one.
    // True if any of the texts below may read otherwise now.
    bool update(const QString& text, int parts);
    void forgetConfig() { m_config = nullptr; } // the next one may lie at the same address

    QString createText() const; // of the command that creates an object
    QString tieText() const;    // of the one that ties to the game's own solid class

private:
    void rebuild(const char* placeholder, const cEntityClassNode& root, cCommandSlot slot,
                 QList<QAction*>& entries);
    void addNode(const cEntityClassNode& node, QMenu* menu, cCommandSlot slot);
    QMenu* menuOf(const char* placeholder) const;

    cMainWindow& m_window;
    const cCommandMenus& m_menus;
    const cGameConfigRegistry& m_configs;
    const cGameConfig* m_config = nullptr; // only compared
    QList<QAction*> m_pointEntries;
    QList<QAction*> m_solidEntries;
    bool m_pointsHidden = false;
    QString m_text;
};
