// SPDX-License-Identifier: MIT
// The New Objects dock: the primitives of the block tool or the point classes of the entity tool,
// and which of them is created next.
#pragma once

#include <QDockWidget>
#include <QList>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QGridLayout;
class QPushButton;
class QSpinBox;
class cGameConfigRegistry;
class cPrimitiveList;
struct cCommandState;
struct cEntityClass;
struct cGameConfig;
struct cPrimitive;

class cObjectsDock : public QDockWidget {
    Q_OBJECT

public:
    // Both outlive the dock.
    cObjectsDock(cPrimitiveList& primitives, const cGameConfigRegistry& configs, QWidget* parent);

    // Lists what the current tool creates, anew if tool or game are others; enables what can be
    // used.
    void follow(const cCommandState& state);
    void forgetConfig(); // the next one may lie at the same address

    // ---- What is created next

    const cPrimitive* currentPrimitive() const; // null: none is there
    cEntityClass* currentClass();               // null: the game has none of that name
    bool randomYaw() const;
    void chooseClass(const QString& name);         // of the next point entity
    void classesChanged() { m_classStale = true; } // the name is looked up again
    QStringList pointClassNames() const;           // of the current configuration, in order

signals:
    void classChosen();
    void moveToWorld();
    void tieToEntity();
    void notBuilt(const QString& command);

private:
    void layOut(QWidget* panel);
    void addList(QGridLayout* layout, const QString& title, QComboBox* list);
    QWidget* createButtons();
    QPushButton* addPrefabButton(const QString& text, const char* name);
    void fillCategories();
    void fillObjects();
    void fillClasses();
    void fillPrimitives();
    void updateFaceCount();
    void editObjectList();
    void editFaceCount(int count);
    void takeClass(const QString& name);

    cPrimitiveList& m_primitives;
    const cGameConfigRegistry& m_configs;
    QComboBox* m_categories;
    QComboBox* m_objects;
    QSpinBox* m_faceCount;
    QCheckBox* m_randomYaw;
    QList<QWidget*> m_lists;        // with their labels
    QList<QWidget*> m_brushButtons; // that want a selected brush
    QList<QWidget*> m_otherButtons; // and whatever else wants a document only
    size_t m_primitive = 0;         // place in the list of primitives
    int m_listedTool = -2; // whose objects are listed; -1 for none, -2 before the first time
    const cGameConfig* m_listedConfig = nullptr; // only compared
    QString m_className;
    bool m_classStale = false; // its reader looks the name up again
    cEntityClass* m_class = nullptr;
};
