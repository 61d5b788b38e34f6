// SPDX-License-Identifier: MIT
// The steps of start-up before and around the main window, for main() and for the tests that
// start the program as main() does.
#pragma once

#include <QString>

class QWidget;

// Numbers print and read with a point; texts of files are Windows-1251.
void prepareLocale();
void resetNumberLocale();
// What must be set before a QApplication exists.
void prepareApplication();
// Where the program's files lie: the folder "sdk" beside a folder system or system64, otherwise
// the program's own folder.
QString programDirectory(const QString& applicationDirectory);
void showSplash();
void finishSplash(QWidget* mainWindow);
