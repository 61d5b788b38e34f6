// SPDX-License-Identifier: MIT
#include "dialogs/tTextureReplaceDialog.h"

#include "document/tMap.h"
#include "document/tTexture.h"
#include "resources/tTextureCatalogue.h"
#include "support/tMapText.h"
#include "ui_tTextureReplaceDialog.h"
#include "views/tTextureView.h"

#include <QMessageBox>
#include <QPushButton>

static cTextureView* viewIn(QFrame* frame) {
    auto* view = new cTextureView(frame);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view);
    return view;
}

cTextureReplaceDialog::cTextureReplaceDialog(QWidget* parent)
    : QDialog(parent), m_ui(new Ui::cTextureReplaceDialog) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    m_findView = viewIn(m_ui->wFind);
    m_replaceView = viewIn(m_ui->wReplace);
    connectWidgets();
}

cTextureReplaceDialog::~cTextureReplaceDialog() = default;

void cTextureReplaceDialog::connectWidgets() {
    using D = cTextureReplaceDialog;
    connect(m_ui->btnFind, &QPushButton::clicked, this, &D::exec_on_browseFindText);
    connect(m_ui->btnReplace, &QPushButton::clicked, this, &D::exec_on_browseReplaceText);
    connect(m_ui->txtFind, &QLineEdit::textEdited, this, &D::exec_on_changeFindText);
    connect(m_ui->txtReplace, &QLineEdit::textEdited, this, &D::exec_on_changeReplaceText);
    connect(m_ui->txtFind, &QLineEdit::textChanged, this, &D::exec_on_checkInput);
    connect(m_ui->txtReplace, &QLineEdit::textChanged, this, &D::exec_on_checkInput);
    connect(m_ui->cbMark, &QCheckBox::clicked, this, &D::exec_on_checkInput);
    connect(m_ui->cbScale, &QCheckBox::toggled, m_ui->sbScale, &QWidget::setEnabled);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &D::exec_on_accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QString cTextureReplaceDialog::run(cMap& map, cTextureCatalogue& catalogue, const QString& name,
                                   QWidget* parent, bool fromBrowser) {
    m_map = &map;
    m_catalogue = &catalogue;
    m_parent = parent;
    m_fromBrowser = fromBrowser;
    m_resultName = name;
    m_ui->txtFind->setText(name);
    const bool anyMarked = map.data.selectedBrushes || map.data.selectedFaces;
    m_ui->rbInMarked->setEnabled(anyMarked);
    if (!anyMarked)
        m_ui->rbInAll->setChecked(true);
    exec_on_changeFindText();
    exec_on_changeReplaceText();
    exec_on_checkInput();
    exec();
    m_map = nullptr;
    m_catalogue = nullptr;
    return m_resultName;
}

// ---- Names and previews

cTexture* cTextureReplaceDialog::find(const QString& text) const {
    return text.isEmpty() || !m_catalogue ? nullptr : m_catalogue->find(text);
}

void cTextureReplaceDialog::preview(const QLineEdit* text, cTextureView* view) {
    view->setTexture(find(text->text()));
}

void cTextureReplaceDialog::exec_on_changeFindText() {
    preview(m_ui->txtFind, m_findView);
}

void cTextureReplaceDialog::exec_on_changeReplaceText() {
    preview(m_ui->txtReplace, m_replaceView);
}

void cTextureReplaceDialog::browse(QLineEdit* text, cTextureView* view) {
    const QString name = browseTexture(find(text->text()) ? text->text() : QString());
    if (name.isEmpty() || name == text->text())
        return;
    text->setText(name);
    preview(text, view);
}

void cTextureReplaceDialog::exec_on_browseFindText() {
    browse(m_ui->txtFind, m_findView);
}

void cTextureReplaceDialog::exec_on_browseReplaceText() {
    browse(m_ui->txtReplace, m_replaceView);
}

void cTextureReplaceDialog::exec_on_checkInput() {
    const bool marks = m_ui->cbMark->isChecked();
    const QString wanted = m_ui->txtReplace->text();
    m_ui->txtReplace->setEnabled(!marks);
    m_ui->wReplace->setEnabled(!marks);
    m_ui->btnFind->setEnabled(!m_fromBrowser);
    m_ui->btnReplace->setEnabled(!m_fromBrowser && !marks);
    const bool replaces = !wanted.trimmed().isEmpty() && wanted != m_ui->txtFind->text();
    m_ui->buttonBox->button(QDialogButtonBox::Ok)
        ->setEnabled(!m_ui->txtFind->text().trimmed().isEmpty() && (marks || replaces));
}

// ---- The work

cTextureSearch cTextureReplaceDialog::search() const {
    cTextureSearch search;
    search.find = toMapText(m_ui->txtFind->text());
    search.match = m_ui->rbActExact->isChecked()     ? MATCH_EXACT
                   : m_ui->rbActPartial->isChecked() ? MATCH_PART
                                                     : MATCH_SUBSTITUTE;
    search.marked = m_ui->rbInMarked->isChecked();
    search.hidden = m_ui->cbInHidden->isChecked();
    if (m_ui->cbScale->isChecked())
        search.factor = float(m_ui->sbScale->value());
    return search;
}

// As the texture calls itself, where it is known.
QString cTextureReplaceDialog::replacement() const {
    const QString text = m_ui->txtReplace->text();
    const cTexture* texture =
        m_ui->rbActSubst->isChecked() ? nullptr : find(m_ui->txtReplace->text());
    return texture ? fromMapText(texture->name) : text;
}

void cTextureReplaceDialog::tell(int count, const QString& what, int refused) {
    const QString title = QStringLiteral("Karvex");
    const QString left =
        refused ? QLatin1Char('\n') + tr("%n name(s) would be longer than 63 characters and stay.",
                                         nullptr, refused)
                : QString();
    if (count > 0)
        QMessageBox::information(m_parent, title, tr("%1 %2.").arg(count).arg(what) + left);
    else
        QMessageBox::warning(m_parent, title, tr("No %1.").arg(what) + left);
}

void cTextureReplaceDialog::exec_on_accept() {
    const cTextureSearch sought = search();
    cReplaced done;
    const bool marks = m_ui->cbMark->isChecked();
    if (marks)
        done.count = markTextures(*m_map, sought);
    else
        done = replaceTextures(*m_map, sought, toMapText(replacement()));
    if (find(m_ui->txtReplace->text()) && !marks)
        m_resultName = m_ui->txtReplace->text();
    else if (find(m_ui->txtFind->text()))
        m_resultName = m_ui->txtFind->text();
    tell(done.count, marks ? tr("objects marked") : tr("textures replaced"), done.refused);
    accept();
}
