// SPDX-License-Identifier: MIT
// The picker of a texture by eye: the browser, what filters it, and what is done with the texture
// that is current in it. One object serves the whole program; size, filter and flags stay from one
// opening to the next.
#pragma once

#include <QDialog>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <memory>

class cMap;
class cTextureCatalogue;
struct cTexture;

namespace Ui {
class cTextureBrowserDialog;
}

class cTextureBrowserDialog : public QDialog {
    Q_OBJECT

public:
    static constexpr int MAX_FILTERS = 16; // texts that are kept

    explicit cTextureBrowserDialog(QWidget* parent);
    ~cTextureBrowserDialog() override;

    // ---- One opening. What is given here outlives it.

    void setCatalogue(cTextureCatalogue* catalogue); // null: nothing is shown
    void setCurrentTexture(const QString& name);     // the answer, until another one is chosen
    void setGroup(const QString& name);              // empty, or that of all textures: no group
    void setMap(cMap* map);                          // whose uses count; null: none
    void forget();                                   // catalogue and map, at its end

    // The texture chosen last, whether the dialog was accepted or not; after Esc the one that was
    // current at the opening.
    QString currentName;
    // Lets the user replace a texture of that name; the one that took its place, or empty.
    std::function<QString(const QString& name)> replaceTextures;

    bool mayReplace = true; // for the next opening: not from the dialog that replaces

    // ---- Kept between runs

    void setScaleMode(int mode);
    QStringList filterTexts() const; // newest first
    void setFilterTexts(const QStringList& texts);

public slots:
    void exec_on_changeScaleMode();
    void exec_on_applyFilter();
    void exec_on_editFilter();
    void exec_on_toggleOnlyUsed();
    void scrollToPos(int value);
    void exec_on_markTextures();
    void exec_on_replaceTextures();

signals:
    void scaleModeChanged(int mode);

protected:
    void showEvent(QShowEvent* event) override;
    void done(int result) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void connectWidgets();
    cTexture* find(const QString& name) const;
    void showTexture(const cTexture* texture, const QString& name);
    void choose(const cTexture* texture);
    void updateView();
    void updateScrollBar();
    void rememberFilter();
    bool typeIntoFilter(const QKeyEvent& event);
    void takeReturn();

    std::unique_ptr<Ui::cTextureBrowserDialog> m_ui;
    QTimer m_filterDelay;
    cTextureCatalogue* m_catalogue = nullptr;
    cMap* m_map = nullptr;
    QString m_nameAtOpening;
};
