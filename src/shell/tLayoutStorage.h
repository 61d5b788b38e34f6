// SPDX-License-Identifier: MIT
// TDKLayout.dat: status bar byte, geometry and state of the main window, geometry of the texture
// browser, then the stored document window. Each length is 16 bits, least significant byte first,
// and never 0.
#pragma once

#include <QByteArray>

class QFile;
class QMainWindow;
class QMdiSubWindow;
class QWidget;

class cLayoutStorage {
public:
    // Both outlive it.
    cLayoutStorage(QMainWindow& window, QWidget& browser) : m_window(window), m_browser(browser) {}

    // What fails is told in a box, a block at a time; the other blocks are read and written all
    // the same. No file at all is no failure.
    void load();
    void save();

    void takeChild(const QMdiSubWindow& window);  // its place is the stored one from now on
    void placeChild(QMdiSubWindow& window) const; // where the stored one was, if there is one

private:
    bool readMainBlock(QFile& file);
    bool readBrowserBlock(QFile& file);
    bool readChildBlock(QFile& file);
    bool writeMainBlock(QFile& file);
    bool writeBrowserBlock(QFile& file);
    bool writeChildBlock(QFile& file);

    QMainWindow& m_window;
    QWidget& m_browser;
    QByteArray m_childGeometry;
    quint8 m_childMaximized = 0;
    quint8 m_hasChild = 0;
};
