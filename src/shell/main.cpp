// SPDX-License-Identifier: MIT
// Process entry: the locale, the application, the splash, the main window, the event loop. The
// order matters; each step says why where it is not plain.
#include "shell/tMainWindow.h"
#include "shell/tStartup.h"
#include "support/tMapText.h"
#include "support/tMath.h"
#include "support/tSystem.h"

#include <QApplication>
#include <QSplashScreen>
#include <memory>

int main(int argc, char** argv) {
    // Taken as bytes, before anything decodes it by another codec.
    const QByteArray fileArgument(argc > 1 ? argv[argc - 1] : "");

    prepareLocale();
    T_MathLib_Initialize(0);
    prepareApplication();
    g_application = new QApplication(argc, argv);
    resetNumberLocale(); // QApplication has just set the user's own
    QCoreApplication::setApplicationName(QStringLiteral("Karvex: Tolvane Development Kit"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.0"));
    const QString baseDir = programDirectory(QCoreApplication::applicationDirPath());
    QCoreApplication::addLibraryPath(baseDir);
    setAppBaseDir(baseDir);

    showSplash();
    int result = 0;
    {
        cMainWindow window;
        finishSplash(&window);
        window.openArgument(fromMapText(fileArgument));
        result = QApplication::exec();
    }
    delete g_application;
    g_application = nullptr;
    return result;
}
