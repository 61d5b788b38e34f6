// SPDX-License-Identifier: MIT
#include "dialogs/tTextureBrowserDialog.h"

#include "document/tMap.h"
#include "document/tMapLists.h"
#include "document/tTexture.h"
#include "operations/tFaceEdits.h"
#include "resources/tTextureCatalogue.h"
#include "support/tMapText.h"
#include "ui_tTextureBrowserDialog.h"
#include "views/tTextureBrowser.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QSignalBlocker>

static constexpr int FILTER_DELAY = 500; // ms
static constexpr double SCREEN_SHARE = 0.9;
static constexpr int PAGE_STEP = 20; // of the scroll bar, for the height of the view

cTextureBrowserDialog::cTextureBrowserDialog(QWidget* parent)
    : QDialog(parent), m_ui(new Ui::cTextureBrowserDialog) {
    m_ui->setupUi(this);
    resize(size().boundedTo(QGuiApplication::primaryScreen()->availableSize() * SCREEN_SHARE));
    for (const cTextureScale& scale : TEXTURE_SCALES)
        m_ui->lstScaleMode->addItem(QString::fromLatin1(scale.text), double(scale.value));
    m_ui->lstFilter->setMaxCount(MAX_FILTERS);
    m_ui->lstFilter->setCompleter(nullptr); // it would write words into the filter
    m_ui->browserScroll->setPageStep(PAGE_STEP);
    // Its place stays: tiles that move up as it goes could bring it back.
    QSizePolicy policy = m_ui->browserScroll->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_ui->browserScroll->setSizePolicy(policy);
    m_filterDelay.setSingleShot(true);
    m_filterDelay.setInterval(FILTER_DELAY);
    connectWidgets();
    showTexture(nullptr, QString());
}

cTextureBrowserDialog::~cTextureBrowserDialog() = default;

void cTextureBrowserDialog::connectWidgets() {
    using D = cTextureBrowserDialog;
    const auto chosen = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(m_ui->lstScaleMode, chosen, this, &D::exec_on_changeScaleMode);
    connect(m_ui->lstFilter, chosen, this, &D::exec_on_applyFilter);
    connect(m_ui->lstFilter, &QComboBox::editTextChanged, this, &D::exec_on_editFilter);
    connect(m_ui->cbOnlyUsed, &QCheckBox::toggled, this, &D::exec_on_toggleOnlyUsed);
    connect(m_ui->browserScroll, &QScrollBar::valueChanged, this, &D::scrollToPos);
    connect(m_ui->btnMark, &QPushButton::clicked, this, &D::exec_on_markTextures);
    connect(m_ui->btnReplace, &QPushButton::clicked, this, &D::exec_on_replaceTextures);
    connect(&m_filterDelay, &QTimer::timeout, this, &D::exec_on_applyFilter);
    const cTextureBrowser* browser = m_ui->browser;
    connect(browser, &cTextureBrowser::chosen, this, &D::choose);
    connect(browser, &cTextureBrowser::accepted, this, &QDialog::accept);
    connect(browser, &cTextureBrowser::resized, this, &D::updateScrollBar);
    connect(browser, &cTextureBrowser::wheelTurned, this, [this](int steps) {
        if (m_ui->browserScroll->isVisible())
            m_ui->browserScroll->setValue(m_ui->browserScroll->value() - steps * PAGE_STEP);
    });
}

// ---- One opening

void cTextureBrowserDialog::setCatalogue(cTextureCatalogue* catalogue) {
    m_catalogue = catalogue;
    m_ui->browser->setCatalogue(catalogue);
}

cTexture* cTextureBrowserDialog::find(const QString& name) const {
    return m_catalogue ? m_catalogue->find(name) : nullptr;
}

void cTextureBrowserDialog::setCurrentTexture(const QString& name) {
    m_nameAtOpening = name;
    cTexture* texture = find(name);
    m_ui->browser->select(texture);
    showTexture(texture, name);
}

void cTextureBrowserDialog::setGroup(const QString& name) {
    m_ui->browser->setGroup(name == cTextureCatalogue::allTextures() ? QString() : name);
}

static QSet<const cTexture*> texturesOf(const cMap& map) {
    QSet<const cTexture*> textures;
    const cTexture* last = nullptr; // most neighbours have the same
    for (const cEntityData* entity : entitiesOf(map.data))
        for (const cBrushData* brush : brushesOf(entity))
            for (const cFaceData* face : facesOf(brush))
                if (face->texture != last)
                    textures.insert(last = face->texture);
    return textures;
}

void cTextureBrowserDialog::setMap(cMap* map) {
    m_map = map;
    m_ui->browser->setUsed(map ? texturesOf(*map) : QSet<const cTexture*>());
    m_ui->btnMark->setEnabled(m_map && m_ui->browser->selected());
}

void cTextureBrowserDialog::forget() {
    setCatalogue(nullptr);
    setMap(nullptr);
}

void cTextureBrowserDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    updateView();
    m_ui->lstFilter->lineEdit()->selectAll(); // what is typed takes its place
    m_ui->browser->setFocus();
}

// ---- The current texture

void cTextureBrowserDialog::showTexture(const cTexture* texture, const QString& name) {
    currentName = name;
    m_ui->lblTextureName->setText(name);
    m_ui->lblTextureGroup->setText(name.isEmpty() || !m_catalogue
                                       ? QString()
                                       : tr("Group: \"%1\"").arg(m_catalogue->groupOf(name)));
    m_ui->lblTextureSize->setText(texture ? tr("%1 x %2").arg(texture->width).arg(texture->height)
                                          : QString());
    m_ui->btnMark->setEnabled(m_map && texture);
    m_ui->btnReplace->setEnabled(texture && mayReplace);
}

void cTextureBrowserDialog::choose(const cTexture* texture) {
    showTexture(texture, fromMapText(texture->name));
    updateScrollBar(); // a key may have scrolled
}

void cTextureBrowserDialog::exec_on_markTextures() {
    if (!m_map || !m_ui->browser->selected())
        return;
    cTextureSearch search;
    search.texture = m_ui->browser->selected();
    markTextures(*m_map, search);
}

void cTextureBrowserDialog::exec_on_replaceTextures() {
    const QString name = replaceTextures ? replaceTextures(currentName) : QString();
    const cTexture* texture = name.isEmpty() ? nullptr : find(name);
    setMap(m_map); // counts anew
    if (!texture)
        return;
    m_ui->browser->select(texture);
    showTexture(texture, name);
    updateView();
}

// ---- Size, filter and flag

void cTextureBrowserDialog::setScaleMode(int mode) {
    m_ui->lstScaleMode->setCurrentIndex(qBound(0, mode, TEXTURE_SCALE_COUNT - 1));
}

void cTextureBrowserDialog::exec_on_changeScaleMode() {
    m_ui->browser->setScaleMode(m_ui->lstScaleMode->currentIndex());
    updateView();
    emit scaleModeChanged(m_ui->lstScaleMode->currentIndex());
}

void cTextureBrowserDialog::exec_on_editFilter() {
    m_filterDelay.start();
}

void cTextureBrowserDialog::exec_on_applyFilter() {
    m_filterDelay.stop();
    m_ui->browser->setFilter(m_ui->lstFilter->currentText());
    updateView();
}

void cTextureBrowserDialog::exec_on_toggleOnlyUsed() {
    m_ui->browser->setOnlyUsed(m_ui->cbOnlyUsed->isChecked());
    updateView();
}

QStringList cTextureBrowserDialog::filterTexts() const {
    QStringList texts;
    for (int i = 0; i < m_ui->lstFilter->count(); ++i)
        texts.append(m_ui->lstFilter->itemText(i));
    return texts;
}

void cTextureBrowserDialog::setFilterTexts(const QStringList& texts) {
    const QSignalBlocker quiet(m_ui->lstFilter);
    const QString current = m_ui->lstFilter->currentText();
    m_ui->lstFilter->clear();
    m_ui->lstFilter->addItems(texts.mid(0, MAX_FILTERS));
    m_ui->lstFilter->setCurrentIndex(m_ui->lstFilter->findText(current, Qt::MatchExactly));
    m_ui->lstFilter->setEditText(current);
}

void cTextureBrowserDialog::rememberFilter() {
    const QString text = m_ui->lstFilter->currentText();
    if (text.trimmed().isEmpty())
        return;
    QStringList texts = filterTexts();
    texts.removeAll(text);
    setFilterTexts(QStringList(text) + texts);
}

void cTextureBrowserDialog::done(int result) {
    rememberFilter();
    QDialog::done(result);
}

// ---- Scrolling

void cTextureBrowserDialog::updateView() {
    m_ui->browser->bringIntoView();
    updateScrollBar();
}

void cTextureBrowserDialog::updateScrollBar() {
    QScrollBar* bar = m_ui->browserScroll;
    const QSignalBlocker quiet(bar); // its value is coarser than the scrolling
    const int content = m_ui->browser->tiles().contentHeight(), view = m_ui->browser->height();
    bar->setVisible(content > view);
    bar->setMaximum(content > view ? int(qint64(content) * PAGE_STEP / qMax(1, view)) : 0);
    bar->setValue(qRound(float(bar->maximum()) * m_ui->browser->scroll()));
}

void cTextureBrowserDialog::scrollToPos(int value) {
    const int maximum = m_ui->browserScroll->maximum();
    m_ui->browser->setScroll(maximum > 0 ? float(value) / float(maximum) : 0);
}

// ---- Keys

// The tiles keep the keys that move, the filter gets what is typed over them.
bool cTextureBrowserDialog::typeIntoFilter(const QKeyEvent& event) {
    if (!m_ui->browser->hasFocus() || (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
        return false;
    QLineEdit* filter = m_ui->lstFilter->lineEdit();
    if (event.key() == Qt::Key_Backspace)
        filter->backspace();
    else if (!event.text().isEmpty() && event.text().at(0).isPrint())
        filter->insert(event.text());
    else
        return false;
    return true;
}

// What is typed and not shown yet is shown before anything is accepted.
void cTextureBrowserDialog::takeReturn() {
    if (!m_filterDelay.isActive()) {
        accept();
        return;
    }
    exec_on_applyFilter();
    m_ui->browser->setFocus();
}

void cTextureBrowserDialog::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        currentName = m_nameAtOpening;
        reject();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        takeReturn();
        break;
    default:
        if (!typeIntoFilter(*event))
            QDialog::keyPressEvent(event);
        break;
    }
}
