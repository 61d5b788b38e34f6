// SPDX-License-Identifier: MIT
// The command Tie to Entity: the questions before it, in their order, and the list of entities to
// choose from.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <vector>

class QWidget;
class cEntityListDialog;
class cMainWindow;
class cMap;
class cProject;
struct cEntityData;

class cTieToEntity : public QObject {
public:
    explicit cTieToEntity(cMainWindow& window) : m_window(window) {}
    ~cTieToEntity() override;

    // For the active document; the name holds for this one time, empty stands for the game's own
    // solid class.
    void run(const QString& name);
    void updateList(const cProject& project); // what is gone from the map goes from the list
    void forget(const cProject& project);     // it closes: so does its list
    const QString& className() const { return m_className; }

private:
    bool canTie(cMap& map);
    bool confirmDeselectPoints(cMap& map);
    void chooseTarget(cMap& map);
    void confirmTarget(cMap& map, cEntityData* owner);
    void listTargets(const std::vector<cEntityData*>& owners);
    void tieToListed();
    void cancel();
    void tie(cMap& map, cEntityData* target); // null: to a new entity
    QWidget* propertiesWindow() const;
    QWidget* boxParent() const;

    cMainWindow& m_window;
    QString m_className; // while a choice is under way
    QPointer<cEntityListDialog> m_list;
    cProject* m_project = nullptr; // whose entities it shows
};
