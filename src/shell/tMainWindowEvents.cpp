// SPDX-License-Identifier: MIT
// Held keys and grid keys of the whole application, the shortcuts that must win against
// mnemonics, and the close sequence.
#include "shell/tLayoutStorage.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tServices.h"
#include "shell/tSettingsStorage.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

// The second code of a key is the Cyrillic letter on the same place of a Russian layout.
struct cKeyPair {
    int key;
    int cyrillic;
    bool is(int code) const { return code == key || (cyrillic && code == cyrillic); }
};

static const struct {
    cKeyPair keys;
    eHeldKey bit;
} g_heldKeys[] = {
    {{Qt::Key_Left, 0}, HK_LEFT}, {{Qt::Key_Right, 0}, HK_RIGHT}, {{Qt::Key_Up, 0}, HK_UP},
    {{Qt::Key_Down, 0}, HK_DOWN}, {{Qt::Key_W, 1062}, HK_W},      {{Qt::Key_S, 1067}, HK_S},
    {{Qt::Key_A, 1060}, HK_A},    {{Qt::Key_D, 1042}, HK_D},      {{Qt::Key_C, 1057}, HK_C},
};

static constexpr cKeyPair BIGGER_GRID = {Qt::Key_Plus, 1066};
static constexpr cKeyPair SMALLER_GRID = {Qt::Key_Minus, 1061};
static constexpr int SMALLER_GRID_ALSO = 220;

static bool isTextEntry(const QWidget* widget) {
    if (const auto* edit = qobject_cast<const QTextEdit*>(widget))
        return !edit->isReadOnly();
    if (const auto* edit = qobject_cast<const QPlainTextEdit*>(widget))
        return !edit->isReadOnly();
    if (const auto* combo = qobject_cast<const QComboBox*>(widget))
        return combo->isEditable();
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget);
}

// One key event is shown to the window, the widget and each of its ancestors; only one of these
// calls may act.
static bool takesKeys(QObject* watched) {
    const QObject* focus = QApplication::focusWidget();
    return watched == (focus ? focus : QApplication::activeWindow());
}

static bool changeGridByKey(cMainWindow& window, int key) {
    if (BIGGER_GRID.is(key))
        window.setGridSize(window.gridSize * 2);
    else if (SMALLER_GRID.is(key) || key == SMALLER_GRID_ALSO)
        window.setGridSize(window.gridSize / 2);
    else
        return false;
    return true;
}

static void keyDown(cMainWindow& window, int key) {
    if (QApplication::activeModalWidget() || isTextEntry(QApplication::focusWidget()))
        return;
    if (changeGridByKey(window, key))
        return;
    for (const auto& held : g_heldKeys)
        if (held.keys.is(key))
            window.heldKeys |= 1u << held.bit;
}

static void keyUp(cMainWindow& window, int key) {
    for (const auto& held : g_heldKeys)
        if (held.keys.is(key))
            window.heldKeys &= ~(1u << held.bit);
}

// ---- Alt+E, which a menu's mnemonic would take

static bool isKeptShortcut(const QKeyEvent& key) {
    return !QApplication::activeModalWidget() && key.key() == Qt::Key_E &&
           key.modifiers() == Qt::AltModifier;
}

static void keepShortcut(QKeyEvent& key) {
    if (isKeptShortcut(key))
        key.accept();
}

static void runKeptShortcut(cMainWindow& window, const QKeyEvent& key) {
    if (isKeptShortcut(key))
        QMetaObject::invokeMethod(&window, &cMainWindow::cmdWindowExportMessages,
                                  Qt::QueuedConnection);
}

// ---- Events

bool cMainWindow::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        keepShortcut(*static_cast<QKeyEvent*>(event));
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
        showChanges();
        break;
    case QEvent::KeyPress:
        showChanges();
        if (takesKeys(watched)) {
            auto* key = static_cast<QKeyEvent*>(event);
            runKeptShortcut(*this, *key);
            keyDown(*this, key->key());
        }
        break;
    case QEvent::KeyRelease:
        // Whoever gets it: a menu may have come up since the press.
        if (!static_cast<QKeyEvent*>(event)->isAutoRepeat())
            keyUp(*this, static_cast<QKeyEvent*>(event)->key());
        break;
    case QEvent::ApplicationDeactivate:
        heldKeys = 0; // the releases will not be seen
        break;
    case QEvent::WindowDeactivate:
        if (watched == this)
            heldKeys = 0;
        break;
    default:
        break;
    }
    return false;
}

void cMainWindow::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && (event->modifiers() & Qt::AltModifier)) {
        openObjectProperties();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

// ---- Closing

bool cMainWindow::closeAllWindows() {
    const QList<cProject*> open = projects;
    for (cProject* project : open) {
        removeProject(project);
        if (g_closing && projects.contains(project))
            return false; // thought better of: nobody else is asked
    }
    return projects.isEmpty();
}

void cMainWindow::closeEvent(QCloseEvent* event) {
    g_closing = true;
    leaveFaceMode();
    if (!closeAllWindows()) {
        g_closing = false;
        event->ignore();
        return;
    }
    if (m_storage->save())
        m_services->configs.save();
    m_layout->save();
    event->accept();
}
