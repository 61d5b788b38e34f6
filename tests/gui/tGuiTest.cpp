// SPDX-License-Identifier: MIT
// Replies by a polling timer; a folder with one plug-in, one game data file, one configuration.
#include "gui/tGuiTest.h"

#include "support/tFiles.h"
#include "support/tMapText.h"
#include "support/tSystem.h"

#include <QCursor>
#include <QDir>
#include <QMenuBar>
#include <QStatusBar>
#include <QTextEdit>

QMenu* menuOf(const cMainWindow& window, const char* title) {
    for (QAction* action : window.menuBar()->actions())
        if (action->menu() && action->text() == QLatin1String(title))
            return action->menu();
    ADD_FAILURE() << "no menu " << title;
    return nullptr;
}

QStringList visibleEntries(const QMenu* menu) {
    QStringList texts;
    for (const QAction* action : menu->actions())
        if (action->isVisible() && !action->isSeparator())
            texts.append(action->text());
    return texts;
}

static constexpr int POLL_INTERVAL = 10; // ms

cReplies::cReplies() {
    connect(&m_timer, &QTimer::timeout, this, &cReplies::poll);
    m_timer.start(POLL_INTERVAL);
}

void cReplies::poll() {
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal || !modal->isVisible()) {
        m_answered = nullptr;
        return;
    }
    if (modal == m_answered || modal->objectName() == QLatin1String("cWaitDialog"))
        return;
    m_answered = modal;
    if (m_replies.empty() && m_default)
        return m_default(modal);
    if (m_replies.empty()) {
        ADD_FAILURE() << "nobody expected the dialog " << modal->windowTitle().toStdString();
        modal->close();
        return;
    }
    const auto reply = m_replies.front();
    m_replies.pop_front();
    reply(modal);
}

void cReplies::expectBox(QMessageBox::StandardButton button, const QString& textPart) {
    expect([=](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        if (!box || !box->button(button)) {
            ADD_FAILURE() << "no box with that button";
            modal->close();
            return;
        }
        EXPECT_TRUE(box->text().contains(textPart)) << box->text().toStdString();
        box->button(button)->click();
    });
}

void cReplies::expectFile(const QString& path) {
    expect([=](QWidget* modal) {
        auto* name = modal->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        auto* dialog = qobject_cast<QFileDialog*>(modal);
        if (!name || !dialog) {
            ADD_FAILURE() << "not a file dialog";
            modal->close();
            return;
        }
        name->setText(path);
        QMetaObject::invokeMethod(dialog, "accept");
    });
}

void cReplies::expectCancel() {
    expect([](QWidget* modal) { QTest::keyClick(modal, Qt::Key_Escape); });
}

// A dialog that goes before it is active would stay the active window for ever.
void finish(QWidget* dialog, QDialogButtonBox::StandardButton button) {
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog, PATIENCE));
    dialog->findChild<QDialogButtonBox*>()->button(button)->click();
}

void cGuiTest::SetUp() {
    ASSERT_TRUE(m_folder.isValid());
    setAppBaseDir(m_folder.path());
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("plugins")));
    ASSERT_TRUE(QFile::copy(QStringLiteral(KARVEX_TEST_PLUGIN), file("plugins/tptest.so")));
    write("test.fgd",
          "@SolidClass = worldspawn : \"World\" [ message(string) : \"Text\" : \"hello\" ]\n");
    writeConfigs(1);
}

void cGuiTest::TearDown() {
    window.reset();
    EXPECT_EQ(replies.pending(), 0) << "an expected dialog never came";
}

void cGuiTest::start() {
    QCursor::setPos(0, 0); // a view under the pointer would become the active one
    window = std::make_unique<cMainWindow>();
    window->SkipDefaultRoomDialog = true; // a new map is empty
    said.clear();
    QObject::connect(window->statusBar(), &QStatusBar::messageChanged, &replies,
                     [this](const QString& text) { said.append(text); });
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get(), PATIENCE));
    releaseShift();
    settle();
}

void cGuiTest::releaseShift() const {
    QTest::keyRelease(window.get(), Qt::Key_Shift);
}

bool cGuiTest::close() {
    const bool closed = window->close();
    settle();
    return closed;
}

void cGuiTest::restart() {
    ASSERT_TRUE(close());
    window.reset();
    start();
}

void cGuiTest::write(const QString& name, const QByteArray& bytes) const {
    writeFile(file(name), bytes);
}

QByteArray cGuiTest::read(const char* name) const {
    QFile in(file(name));
    return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
}

void cGuiTest::writeConfigs(int enabled, int disabled, const char* profile) const {
    QByteArray text;
    for (int i = 0; i < enabled + disabled; ++i) {
        const QByteArray number = QByteArray::number(i);
        text += "[Config" + number + "]\nTitle=Game " + number +
                "\nEnabled=" + (i < enabled ? "true" : "false") + "\nMapProfile=" + profile +
                "\nGameData0=" + toMapText(file("test.fgd")) +
                "\nGameBasedir=" + toMapText(m_folder.path()) +
                "\nMapSourceFileDirectory=" + toMapText(m_folder.path()) + "\n";
    }
    write("TDKGameCfg.ini", text);
}

QAction* cGuiTest::action(const char* id, int copy) const {
    for (QAction* a : window->menus().actions)
        if (a->objectName() == QLatin1String(id) && copy-- == 0)
            return a;
    ADD_FAILURE() << "no action " << id;
    return nullptr;
}

QCustomAction* cGuiTest::toolAction(int toolIndex) const {
    for (QCustomAction* a : window->menus().toolActions)
        if (a->toolIndex == toolIndex)
            return a;
    ADD_FAILURE() << "no tool " << toolIndex;
    return nullptr;
}

void cGuiTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
    focus(window->activeCanvas);
    QTest::keyClick(window->windowHandle(), key, modifiers);
}

cProject* cGuiTest::newProject() {
    releaseShift();
    trigger("FileNew");
    settle();
    return active();
}

cProject* cGuiTest::startWithProject() {
    start();
    return newProject();
}

static std::string nameOf(const QWidget* widget) {
    if (!widget)
        return "nobody";
    return std::string(widget->metaObject()->className()) + " " +
           widget->objectName().toStdString() + (widget->isVisible() ? "" : " (hidden)");
}

void cGuiTest::focus(QWidget* widget) const {
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            if (QApplication::activeWindow() != window.get())
                window->activateWindow();
            widget->setFocus();
            return QApplication::focusWidget() == widget;
        },
        PATIENCE))
        << "focus is with " << nameOf(QApplication::focusWidget()) << " of "
        << nameOf(QApplication::activeWindow()) << ", below "
        << nameOf(QApplication::activeModalWidget());
}

bool cGuiTest::answered() const {
    return QTest::qWaitFor(
        [this] { return !replies.pending() && !QApplication::activeModalWidget(); }, PATIENCE);
}

int cGuiTest::windowCount() const {
    return window->mdiArea()->subWindowList().size();
}

QString cGuiTest::pane(int index) const {
    letShow();
    return window->panes().label(index)->text();
}

QString cGuiTest::console() const {
    return window->console().text()->toPlainText();
}

void cGuiTest::settle() const {
    for (int i = 0; i < 5; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QTest::qWait(5);
    }
}
