// SPDX-License-Identifier: MIT
#include "shell/tTexturesDock.h"

#include "dialogs/tTextureBoxes.h"
#include "document/tTexture.h"
#include "resources/tTextureCatalogue.h"
#include "shell/tMainWindow.h"
#include "shell/tProject.h"
#include "support/tMapText.h"
#include "support/tSystem.h"
#include "views/tTextureView.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

// ---- The dock

// Mnemonics that a menu has already are left out.
cTexturesDock::cTexturesDock(cActiveProject activeProject, QWidget* parent)
    : QDockWidget(cMainWindow::tr("Textures"), parent),
      m_activeProject(std::move(activeProject)),
      m_groups(new QComboBox),
      m_names(new QComboBox),
      m_list(new cTextureListModel([this] { return catalogue(); }, m_names)),
      m_size(new QLabel),
      m_browse(addButton(cMainWindow::tr("Browse..."), "btnBrowse")),
      m_replace(addButton(cMainWindow::tr("&Replace..."), "btnReplace")) {
    setObjectName(QStringLiteral("textures"));
    m_groups->setObjectName(QStringLiteral("lstTextureGroup"));
    m_names->setObjectName(QStringLiteral("lstTexture"));
    m_size->setObjectName(QStringLiteral("lblTexSize"));
    m_size->setTextFormat(Qt::PlainText);
    auto* panel = new QWidget;
    m_preview = new cTextureView(panel);
    layOut(panel);
    setWidget(panel);
    connect(m_groups, QOverload<int>::of(&QComboBox::activated), this,
            &cTexturesDock::editTextureGroup);
    connect(m_names, QOverload<int>::of(&QComboBox::activated), this,
            &cTexturesDock::editTextureName);
    connect(m_browse, &QPushButton::clicked, this, &cTexturesDock::browse);
    connect(m_replace, &QPushButton::clicked, this, &cTexturesDock::replace);
}

QPushButton* cTexturesDock::addButton(const QString& text, const char* name) {
    auto* button = new QPushButton(text);
    button->setObjectName(QString::fromLatin1(name));
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return button;
}

// A long name does not widen the dock.
void cTexturesDock::addBox(QGridLayout* layout, const QString& title, QComboBox* box) {
    auto* label = new QLabel(title);
    label->setBuddy(box);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(12);
    const int line = m_widgets.size();
    layout->addWidget(label, line, 0, 1, 3);
    layout->addWidget(box, line + 1, 0, 1, 3);
    m_widgets += {label, box};
}

void cTexturesDock::layOut(QWidget* panel) {
    static constexpr int PREVIEW_SIDE = 56, SMALLEST_PREVIEW = 28; // pixels
    auto* layout = new QGridLayout(panel);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    addBox(layout, cMainWindow::tr("Texture &Group:"), m_groups);
    addBox(layout, cMainWindow::tr("Current Texture:"), m_names);
    m_preview->setMinimumSize(SMALLEST_PREVIEW, SMALLEST_PREVIEW);
    m_preview->setFixedWidth(PREVIEW_SIDE);
    const int line = layout->rowCount();
    layout->addWidget(m_preview, line, 0, 2, 1);
    layout->addWidget(m_size, line, 1, 1, 2);
    layout->addWidget(m_browse, line + 1, 1);
    layout->addWidget(m_replace, line + 1, 2);
    layout->setRowStretch(line + 2, 1);
    layout->setColumnStretch(1, 1);
    layout->setColumnStretch(2, 1);
    m_widgets += {m_browse, m_replace};
}

// ---- The document's texture

const cTextureCatalogue* cTexturesDock::catalogue() const {
    const cProject* project = cBusy::isBusy() ? nullptr : m_activeProject();
    return project ? project->game.catalogue() : nullptr;
}

// Its own if the catalogue knows it; else the one chosen last, if there is such a texture here.
static const cTexture* startTexture(const cTextureCatalogue& catalogue, const QString& own,
                                    const QString& last, const QString& byProfile) {
    if (const cTexture* texture = catalogue.find(own))
        return texture;
    const cTexture* texture = catalogue.find(last);
    const bool isThere = texture && !(texture->flags & TF_PLACEHOLDER);
    return isThere ? texture : catalogue.defaultTexture(byProfile);
}

// A group that does not hold the name gives way to the one that does.
static void take(cTextureChoice& choice, const cTexture& texture,
                 const cTextureCatalogue& catalogue) {
    choice.name = fromMapText(texture.name);
    const QString own = catalogue.groupOf(choice.name);
    if (choice.group.isEmpty())
        choice.group = cTextureCatalogue::allTextures();
    if (choice.group != cTextureCatalogue::allTextures() && choice.group != own)
        choice.group = own;
}

cTexture* cTexturesDock::currentTexture() const {
    const cProject* project = m_activeProject();
    const cTextureCatalogue* known = project ? project->game.catalogue() : nullptr;
    return known ? known->find(project->texture.name) : nullptr;
}

void cTexturesDock::choose(const QString& name) {
    const cTextureCatalogue* known = catalogue();
    const cTexture* texture = known ? known->find(name) : nullptr;
    if (!texture)
        return;
    take(m_activeProject()->texture, *texture, *known);
    follow();
}

// ---- What is shown

bool cTexturesDock::cShown::operator==(const cShown& other) const {
    return project == other.project && catalogue == other.catalogue && entries == other.entries &&
           missing == other.missing && name == other.name && group == other.group;
}

cTexturesDock::cShown cTexturesDock::state() const {
    cShown now;
    now.project = m_activeProject();
    now.catalogue = catalogue();
    if (!now.catalogue)
        return now;
    now.entries = now.catalogue->entries.size();
    now.missing = now.catalogue->missingCount;
    now.name = now.project->texture.name;
    now.group = now.project->texture.group;
    return now;
}

void cTexturesDock::forget() {
    m_stale = true;
}

void cTexturesDock::follow() {
    if (cBusy::isBusy() || (!m_stale && state() == m_shown))
        return;
    m_stale = false;
    const cTextureCatalogue* known = catalogue();
    if (known) {
        cProject& project = *m_activeProject();
        const QString byProfile = fromMapText(project.game.profile().defaultTexture);
        if (const cTexture* texture =
                startTexture(*known, project.texture.name, m_lastName, byProfile))
            take(project.texture, *texture, *known);
        show(*known);
    } else {
        showNothing();
    }
    m_shown = state();
}

void cTexturesDock::showNothing() {
    const QSignalBlocker quiet(m_groups);
    m_groups->clear();
    m_list->clear();
    for (QWidget* widget : qAsConst(m_widgets))
        widget->setEnabled(false);
    showTexture(nullptr);
}

void cTexturesDock::show(const cTextureCatalogue& known) {
    const cTextureChoice& choice = m_activeProject()->texture;
    const QSignalBlocker quietGroups(m_groups), quietNames(m_names);
    fillGroupCombo(*m_groups, known, choice.group);
    m_list->fillTextureCombo(known, m_groups->currentText());
    m_names->setCurrentIndex(m_list->rowOf(choice.name));
    for (QWidget* widget : qAsConst(m_widgets))
        widget->setEnabled(true);
    showTexture(known.find(choice.name));
    m_lastName = choice.name;
}

void cTexturesDock::showTexture(const cTexture* texture) {
    QString text;
    if (texture)
        text = texture->flags & TF_PLACEHOLDER
                   ? cMainWindow::tr("(not found: %1)").arg(fromMapText(texture->name))
                   : cMainWindow::tr("%1 x %2").arg(texture->width).arg(texture->height);
    m_size->setText(text);
    m_preview->setTexture(texture);
}

// ---- Choosing

// The current texture stays if the group holds it; else its first one becomes current.
void cTexturesDock::editTextureGroup() {
    const cTextureCatalogue* known = catalogue();
    if (!known)
        return;
    cTextureChoice& choice = m_activeProject()->texture;
    choice.group = m_groups->currentText();
    m_list->fillTextureCombo(*known, choice.group);
    if (m_list->rowOf(choice.name) < 0 && m_list->rowCount() > 0)
        choice.name = m_names->itemText(0);
    follow();
}

void cTexturesDock::editTextureName(int row) {
    choose(m_names->itemText(row));
}
