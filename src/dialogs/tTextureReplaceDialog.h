// SPDX-License-Identifier: MIT
// Replaces a texture by name over a map or its selection, or marks what wears it.
#pragma once

#include "operations/tFaceEdits.h"

#include <QDialog>
#include <functional>
#include <memory>

class QLineEdit;
class cMap;
class cTextureCatalogue;
class cTextureView;
struct cTexture;

namespace Ui {
class cTextureReplaceDialog;
}

class cTextureReplaceDialog : public QDialog {
    Q_OBJECT

public:
    explicit cTextureReplaceDialog(QWidget* parent);
    ~cTextureReplaceDialog() override;

    // One opening over that map and its textures, which outlive it; boxes come up over the parent.
    // From the browser there is no way back into it. Gives the name of the texture that is there
    // now: of the replacement, if it is known, else of what was sought.
    QString run(cMap& map, cTextureCatalogue& catalogue, const QString& name, QWidget* parent,
                bool fromBrowser);

    // Lets the user pick a texture by eye, beginning with that one; the chosen name.
    std::function<QString(const QString& name)> browseTexture;

public slots:
    void exec_on_browseFindText();
    void exec_on_browseReplaceText();
    void exec_on_changeFindText();
    void exec_on_changeReplaceText();
    void exec_on_checkInput();
    void exec_on_accept();

private:
    void connectWidgets();
    cTexture* find(const QString& text) const;
    void preview(const QLineEdit* text, cTextureView* view);
    void browse(QLineEdit* text, cTextureView* view);
    cTextureSearch search() const;
    QString replacement() const;
    void tell(int count, const QString& what, int refused);

    std::unique_ptr<Ui::cTextureReplaceDialog> m_ui;
    cTextureView* m_findView;
    cTextureView* m_replaceView;
    QString m_resultName;
    QWidget* m_parent = nullptr;
    cMap* m_map = nullptr;
    cTextureCatalogue* m_catalogue = nullptr;
    bool m_fromBrowser = false;
};
