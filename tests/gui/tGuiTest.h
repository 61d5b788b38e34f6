// SPDX-License-Identifier: MIT
// The whole program in a folder of its own: the real main window, driven by its actions and by
// real events. Questions and file dialogs are answered by a queue of replies; one that nobody
// expected fails the test and is dismissed, so that nothing hangs.
#pragma once

#include "document/tEntity.h"
#include "document/tHistory.h"
#include "document/tMapLists.h"
#include "shell/tCommandMenus.h"
#include "shell/tConsoleDock.h"
#include "shell/tCustomAction.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "shell/tRecentFiles.h"
#include "shell/tServices.h"
#include "shell/tStatusPanes.h"
#include "shell/tTieToEntity.h"
#include "shell/tToolSwitch.h"
#include "support/tMapTools.h"
#include "support/tPatience.h"
#include "views/tCanvas.h"
#include "views/tChildWindow.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace testing::internal {
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
} // namespace testing::internal

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

// Answers the modal widgets in the order they come up.
class cReplies : public QObject {
public:
    cReplies();

    // A reply must close the widget it is given.
    void expect(std::function<void(QWidget*)> reply) { m_replies.push_back(std::move(reply)); }
    void expectBox(QMessageBox::StandardButton button, const QString& textPart);
    void expectBox(QMessageBox::StandardButton button, const char* textPart) {
        expectBox(button, QString::fromLatin1(textPart));
    }
    void expectFile(const QString& path); // a file dialog takes this name
    void expectCancel();                  // any dialog is rejected
    // Whatever comes that nothing is expected for gets this answer, and fails no more.
    void answerAll(std::function<void(QWidget*)> reply) { m_default = std::move(reply); }
    int pending() const { return int(m_replies.size()); }

private:
    void poll();

    std::deque<std::function<void(QWidget*)>> m_replies;
    std::function<void(QWidget*)> m_default;
    QPointer<QWidget> m_answered; // the next one may lie at the same address
    QTimer m_timer;
};

// How many objects the range gives.
template<class Range> int countOf(const Range& range) {
    int count = 0;
    for ([[maybe_unused]] const auto* object : range)
        ++count;
    return count;
}

// The child of that name, which must be there.
template<class T> T* child(const QWidget* parent, const char* name) {
    T* found = parent->findChild<T*>(QString::fromLatin1(name));
    EXPECT_TRUE(found) << name;
    return found;
}
// Ends a dialog by that button of its box.
void finish(QWidget* dialog, QDialogButtonBox::StandardButton button);

// The menu of the bar with that title.
QMenu* menuOf(const cMainWindow& window, const char* title);
QStringList visibleEntries(const QMenu* menu);

class cGuiTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Builds the window and waits until it is active.
    void start();
    // As the user's close button; true if the window went.
    bool close();
    void restart();

    QString file(const QString& name) const { return m_folder.filePath(name); }
    QString file(const char* name) const { return file(QString::fromLatin1(name)); }
    void write(const QString& name, const QByteArray& bytes) const;
    void write(const char* name, const QByteArray& bytes) const {
        write(QString::fromLatin1(name), bytes);
    }
    QByteArray read(const char* name) const;
    void writeConfigs(int enabled, int disabled = 0, const char* profile = "test") const;

    QAction* action(const char* id, int copy = 0) const; // copy 0 is the menu's
    void trigger(const char* id) const {
        action(id)->trigger();
        letShow();
    }
    // What a command has changed is shown a turn of the event loop later.
    void letShow() const { QCoreApplication::sendPostedEvents(window.get()); }
    QCustomAction* toolAction(int toolIndex) const;
    // A press in the active view's window, as the user makes it.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    cProject* newProject(); // the new one, active
    cProject* startWithProject();
    cProject* active() const { return window->activeProject(); }
    void focus(QWidget* widget) const; // waits until it has it
    bool answered() const;             // waits for the last expected dialog
    int windowCount() const;
    QString pane(int index) const;
    QString console() const;
    void releaseShift() const; // what was pressed with it leaves it held, for the program
    void settle() const;       // lets the events that are due run

    std::unique_ptr<cMainWindow> window;
    cReplies replies;
    QStringList said; // by the status bar, since the last start

private:
    QTemporaryDir m_folder;
};
