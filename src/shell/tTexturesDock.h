// SPDX-License-Identifier: MIT
// The Textures dock: the current texture of the active document, which new faces get, and the boxes
// and buttons that choose another.
#pragma once

#include <QDockWidget>
#include <QList>
#include <functional>

class QComboBox;
class QGridLayout;
class QLabel;
class QPushButton;
class cProject;
class cTextureCatalogue;
class cTextureListModel;
class cTextureView;
struct cTexture;

class cTexturesDock : public QDockWidget {
    Q_OBJECT

public:
    using cActiveProject = std::function<cProject*()>; // null without a document

    cTexturesDock(cActiveProject activeProject, QWidget* parent);

    // Shows the active document's texture and the lists of its game, if they are others than those
    // shown. A document whose texture its game does not know gets one: the one shown last, else
    // that of the profile, else one whose name holds "wall", else the first.
    void follow();
    void forget(); // textures have come, gone or changed: the next follow() shows all anew

    cTexture* currentTexture() const; // of the active document; null: it has none
    // Becomes the active document's; its group stays if it holds it. An unknown name changes none.
    void choose(const QString& name);

signals:
    void browse();
    void replace();

private:
    // What is shown. The pointers are only compared.
    struct cShown {
        const cProject* project = nullptr;
        const cTextureCatalogue* catalogue = nullptr;
        int entries = 0;
        int missing = 0;
        QString name;
        QString group;

        bool operator==(const cShown& other) const;
    };

    void addBox(QGridLayout* layout, const QString& title, QComboBox* box);
    QPushButton* addButton(const QString& text, const char* name);
    void layOut(QWidget* panel);
    const cTextureCatalogue* catalogue() const; // null: there is none, or it is being made
    cShown state() const;
    void showNothing();
    void show(const cTextureCatalogue& catalogue);
    void showTexture(const cTexture* texture);
    void editTextureGroup();
    void editTextureName(int row);

    cActiveProject m_activeProject;
    QComboBox* m_groups;
    QComboBox* m_names;
    cTextureListModel* m_list;
    cTextureView* m_preview;
    QLabel* m_size;
    QPushButton* m_browse;
    QPushButton* m_replace;
    QList<QWidget*> m_widgets; // all but preview and size
    cShown m_shown;
    bool m_stale = true;
    QString m_lastName; // that was current in any document
};
