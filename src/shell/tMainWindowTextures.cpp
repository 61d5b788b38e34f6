// SPDX-License-Identifier: MIT
// Choosing textures by eye, and putting them on faces.
#include "dialogs/tTextureBrowserDialog.h"
#include "dialogs/tTextureReplaceDialog.h"
#include "operations/tFaceEdits.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tTexturesDock.h"
#include "support/tMapText.h"
#include "support/tVec.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QApplication>
#include <QPointer>

// Windows that stay on top would lie over a modal dialog. While it lives they are as others.
class cLoweredWindows {
public:
    cLoweredWindows() {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && (window->windowFlags() & Qt::WindowStaysOnTopHint)) {
                setOnTop(window, false);
                m_windows.append(window);
            }
    }
    ~cLoweredWindows() {
        for (const QPointer<QWidget>& window : qAsConst(m_windows)) {
            if (!window)
                continue;
            setOnTop(window, true);
            window->raise();
            window->activateWindow();
        }
    }
    cLoweredWindows(const cLoweredWindows&) = delete;
    cLoweredWindows& operator=(const cLoweredWindows&) = delete;

private:
    static void setOnTop(QWidget* window, bool on) {
        window->setWindowFlag(Qt::WindowStaysOnTopHint, on); // which hides it
        window->show();
    }

    QList<QPointer<QWidget>> m_windows;
};

QString cMainWindow::browseTexture(const QString& name, const QString& group) {
    const cLoweredWindows lowered;
    cProject* project = activeProject();
    m_textureBrowser->setScaleMode(TextureBrowserScaleMode);
    m_textureBrowser->setCatalogue(project ? project->game.catalogue() : nullptr);
    m_textureBrowser->mayReplace = !m_textureReplace->isVisible();
    m_textureBrowser->setCurrentTexture(name);
    m_textureBrowser->setGroup(group);
    m_textureBrowser->setMap(project ? project->map.get() : nullptr);
    m_textureBrowser->exec();
    m_textureBrowser->forget();
    return m_textureBrowser->currentName;
}

QString cMainWindow::replaceTextures(const QString& name) {
    cProject* project = activeProject();
    cTextureCatalogue* catalogue = project ? project->game.catalogue() : nullptr;
    if (!catalogue || m_textureReplace->isVisible())
        return QString();
    const cLoweredWindows lowered;
    const bool fromBrowser = m_textureBrowser->isVisible();
    QWidget* parent = fromBrowser ? static_cast<QWidget*>(m_textureBrowser) : this;
    return m_textureReplace->run(*project->map, *catalogue, name, parent, fromBrowser);
}

void cMainWindow::cmdToolsTextureReplace() {
    replaceTextures(activeProject()->texture.name);
}

void cMainWindow::toolApplyTexture() {
    if (cProject* project = activeProject())
        applyTextureToSelection(*project->map, toMapText(project->texture.name).constData());
}

void cMainWindow::cmdToolsTextureAlignToView() {
    for (const cCanvas* canvas : activeChild()->canvases) {
        if (!canvas->isCamera())
            continue;
        cViewAxes axes;
        vecCopy(canvas->origin, axes.point);
        vecCopy(canvas->right, axes.right);
        vecCopy(canvas->up, axes.up);
        alignSelectionToView(*canvas->map(), axes);
        return;
    }
}

void cMainWindow::execBrowseTexture() {
    if (const cProject* project = activeProject())
        m_texturesDock->choose(browseTexture(project->texture.name, project->texture.group));
}
