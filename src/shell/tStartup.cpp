// SPDX-License-Identifier: MIT
// Locale, codec, platform and splash.
#include "shell/tStartup.h"

#include "shell/tMainWindow.h"
#include "support/tMapText.h"

#include <QApplication>
#include <QLocale>
#include <QPixmap>
#include <QSplashScreen>
#include <clocale>

QApplication* g_application = nullptr;
QSplashScreen* g_splash = nullptr;

static const QColor SPLASH_TEXT(157, 157, 157, 255);

void prepareLocale() {
    resetNumberLocale();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    setMapCodec();
}

void resetNumberLocale() {
    setlocale(LC_ALL, "C");
}

void prepareApplication() {
    // The views are native windows and stack among plain widgets.
    QCoreApplication::setAttribute(Qt::AA_DontCreateNativeWidgetSiblings);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb"); // the cursor is warped
}

QString programDirectory(const QString& applicationDirectory) {
    const bool besideSdk = applicationDirectory.endsWith(QLatin1String("system")) ||
                           applicationDirectory.endsWith(QLatin1String("system64"));
    return besideSdk ? applicationDirectory + QStringLiteral("/../sdk") : applicationDirectory;
}

void showSplash() {
    g_splash = new QSplashScreen(QPixmap(QStringLiteral(":/qrc/splash.png")));
    g_splash->setWindowFlags(g_splash->windowFlags() | Qt::WindowStaysOnTopHint);
    g_splash->show();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    g_splash->showMessage(QCoreApplication::translate("main", "Initializing..."),
                          Qt::AlignBottom | Qt::AlignLeft, SPLASH_TEXT);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void finishSplash(QWidget* mainWindow) {
    g_splash->finish(mainWindow);
    delete g_splash;
    g_splash = nullptr;
}
