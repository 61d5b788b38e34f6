// SPDX-License-Identifier: MIT
// Choosing a texture by eye.
#include "dialogs/tTextureBrowserDialog.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tTexturesDock.h"

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
    m_textureBrowser->setCurrentTexture(name);
    m_textureBrowser->setGroup(group);
    m_textureBrowser->setMap(project ? project->map.get() : nullptr);
    m_textureBrowser->exec();
    m_textureBrowser->forget();
    return m_textureBrowser->currentName;
}

QString cMainWindow::replaceTextures(const QString&) {
    tellUnderDevelopment(tr("R&eplace textures..."));
    return QString();
}

void cMainWindow::execBrowseTexture() {
    if (const cProject* project = activeProject())
        m_texturesDock->choose(browseTexture(project->texture.name, project->texture.group));
}
