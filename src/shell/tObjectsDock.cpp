// SPDX-License-Identifier: MIT
#include "shell/tObjectsDock.h"

#include "document/tEntityClass.h"
#include "pluginhost/tPrimitiveList.h"
#include "resources/tGameConfigRegistry.h"
#include "shell/tCommandState.h"
#include "shell/tMainWindow.h"
#include "support/tMapText.h"
#include "views/tTool.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStyle>
#include <algorithm>

// ---- The dock

// Mnemonics that a menu has already are left out.
cObjectsDock::cObjectsDock(cPrimitiveList& primitives, const cGameConfigRegistry& configs,
                           QWidget* parent)
    : QDockWidget(cMainWindow::tr("New Objects"), parent),
      m_primitives(primitives),
      m_configs(configs),
      m_categories(new QComboBox),
      m_objects(new QComboBox),
      m_faceCount(new QSpinBox),
      m_randomYaw(new QCheckBox(cMainWindow::tr("Random &Yaw"))) {
    setObjectName(QStringLiteral("newobjects"));
    m_categories->setObjectName(QStringLiteral("lstCategories"));
    m_objects->setObjectName(QStringLiteral("lstObjects"));
    m_faceCount->setObjectName(QStringLiteral("sbFaces"));
    m_faceCount->setMaximum(0);
    m_randomYaw->setObjectName(QStringLiteral("cbRandomYaw"));
    auto* panel = new QWidget;
    layOut(panel);
    setWidget(panel);
    const auto chosen = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(m_categories, chosen, this, &cObjectsDock::fillObjects);
    connect(m_objects, chosen, this, &cObjectsDock::editObjectList);
    connect(m_faceCount, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &cObjectsDock::editFaceCount);
}

void cObjectsDock::layOut(QWidget* panel) {
    auto* layout = new QGridLayout(panel);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    addList(layout, cMainWindow::tr("&Categories:"), m_categories);
    addList(layout, cMainWindow::tr("&Objects:"), m_objects);
    int line = layout->rowCount();
    auto* faces = new QLabel(cMainWindow::tr("Faces:"));
    faces->setBuddy(m_faceCount);
    m_lists += faces;
    layout->addWidget(faces, line, 0);
    layout->addWidget(m_faceCount, line++, 1);
    layout->addWidget(m_randomYaw, line++, 0, 1, 2);
    layout->addWidget(createButtons(), line++, 0, 1, 2);
    const auto prefab = cMainWindow::tr("Create Prefab");
    const auto original = cMainWindow::tr("&Insert Original Prefab");
    layout->addWidget(addPrefabButton(prefab, "btnCreatePrefab"), line++, 0, 1, 2);
    layout->addWidget(addPrefabButton(original, "btnInsertOriginal"), line++, 0, 1, 2);
    layout->setRowStretch(line, 1);
    layout->setColumnStretch(1, 1);
}

// A long name does not widen the dock.
void cObjectsDock::addList(QGridLayout* layout, const QString& title, QComboBox* list) {
    auto* label = new QLabel(title);
    label->setBuddy(list);
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(12);
    const int line = m_lists.size();
    layout->addWidget(label, line, 0, 1, 2);
    layout->addWidget(list, line + 1, 0, 1, 2);
    m_lists += {label, list};
}

static QPushButton* smallButton(const QString& text, const char* name, const QString& tip) {
    constexpr int MARGIN = 8; // beside the text; the style's own would widen the dock
    auto* button = new QPushButton(text);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(tip);
    button->setMinimumWidth(button->fontMetrics().horizontalAdvance(text) + 2 * MARGIN);
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return button;
}

QWidget* cObjectsDock::createButtons() {
    auto* row = new QWidget;
    auto* label = new QLabel(cMainWindow::tr("Move\nselected:"));
    auto* world = smallButton(cMainWindow::tr("toWorld"), "btnToWorld",
                              cMainWindow::tr("Detach the selected solids from their entity"));
    auto* entity = smallButton(cMainWindow::tr("toEntity"), "btnToEntity",
                               cMainWindow::tr("Create a new entity using the selected solids"));
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(world, 1);
    layout->addWidget(entity, 1);
    connect(world, &QPushButton::clicked, this, &cObjectsDock::moveToWorld);
    connect(entity, &QPushButton::clicked, this, &cObjectsDock::tieToEntity);
    m_otherButtons += label;
    m_brushButtons = {world, entity};
    return row;
}

QPushButton* cObjectsDock::addPrefabButton(const QString& text, const char* name) {
    auto* button = new QPushButton(text);
    button->setObjectName(QString::fromLatin1(name));
    connect(button, &QPushButton::clicked, this, [this, text] { emit notBuilt(text); });
    m_otherButtons += button;
    return button;
}

// ---- The lists

static void addNames(const cEntityClassNode& node, QStringList& names) {
    if (node.entityClass)
        names.append(node.entityClass->name);
    for (const cEntityClassNode& child : node.children)
        addNames(child, names);
}

QStringList cObjectsDock::pointClassNames() const {
    QStringList names;
    if (m_configs.current)
        addNames(m_configs.current->pointClassTree, names);
    names.removeDuplicates();
    names.sort(Qt::CaseInsensitive);
    return names;
}

void cObjectsDock::forgetConfig() {
    m_listedConfig = nullptr;
    m_classStale = true;
}

// The tool that is suspended comes back, so the lists stay with it.
void cObjectsDock::follow(const cCommandState& state) {
    const int tool = state.hasDocument ? state.tool : -1;
    const int listed = tool == TOOL_ENTITY || tool == TOOL_BLOCK ? tool : -1;
    for (QWidget* widget : qAsConst(m_lists))
        widget->setEnabled(listed >= 0);
    for (QWidget* widget : qAsConst(m_brushButtons))
        widget->setEnabled(state.hasBrushes);
    for (QWidget* widget : qAsConst(m_otherButtons))
        widget->setEnabled(state.hasDocument);
    m_randomYaw->setEnabled(state.hasDocument);
    if (listed != m_listedTool || m_configs.current != m_listedConfig) {
        m_listedTool = listed;
        m_listedConfig = m_configs.current;
        fillCategories();
    }
    updateFaceCount();
}

static QString textOf(const char* text) {
    return fromMapText(text);
}

void cObjectsDock::fillCategories() {
    {
        const QSignalBlocker quiet(m_categories);
        m_categories->clear();
        if (m_listedTool == TOOL_ENTITY) {
            m_categories->addItem(cMainWindow::tr("(entities)"));
        } else if (m_listedTool == TOOL_BLOCK) {
            for (const cPrimitive& primitive : m_primitives.all())
                if (m_categories->findText(textOf(primitive.category)) < 0)
                    m_categories->addItem(textOf(primitive.category));
            if (const cPrimitive* primitive = currentPrimitive())
                m_categories->setCurrentText(textOf(primitive->category));
        } else {
            m_categories->addItem(cMainWindow::tr("(no category)"));
        }
    }
    fillObjects();
}

// The list that opens is as wide as its longest name, however narrow the dock.
static void showWholeNames(const QComboBox* list) {
    const int bar = list->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    list->view()->setMinimumWidth(list->view()->sizeHintForColumn(0) + bar);
}

// What was chosen stays chosen where the list has it.
void cObjectsDock::fillObjects() {
    {
        const QSignalBlocker quiet(m_objects);
        m_objects->clear();
        if (m_listedTool == TOOL_ENTITY)
            fillClasses();
        else if (m_listedTool == TOOL_BLOCK)
            fillPrimitives();
    }
    showWholeNames(m_objects);
    editObjectList();
}

// Else the game's own class, or the first.
void cObjectsDock::fillClasses() {
    m_objects->addItems(pointClassNames());
    int at = m_objects->findText(m_className);
    if (at < 0 && m_configs.current)
        at = m_objects->findText(m_configs.current->defaultPointClass);
    m_objects->setCurrentIndex(std::max(at, m_objects->count() ? 0 : -1));
}

void cObjectsDock::fillPrimitives() {
    int number = 0;
    for (const cPrimitive& primitive : m_primitives.all()) {
        ++number;
        if (textOf(primitive.category) == m_categories->currentText())
            m_objects->addItem(textOf(primitive.name), number);
    }
    m_objects->setCurrentIndex(std::max(0, m_objects->findData(int(m_primitive) + 1)));
}

void cObjectsDock::updateFaceCount() {
    const QSignalBlocker quiet(m_faceCount);
    const cPrimitive* primitive = m_listedTool == TOOL_BLOCK ? currentPrimitive() : nullptr;
    const bool hasSides = primitive && primitive->maxSides;
    m_faceCount->setRange(hasSides ? primitive->minSides : 0, hasSides ? primitive->maxSides : 0);
    m_faceCount->setValue(hasSides ? primitive->sides : 0);
    m_faceCount->setEnabled(hasSides);
}

void cObjectsDock::editObjectList() {
    const int number = m_objects->currentData().toInt();
    if (m_listedTool == TOOL_BLOCK && number > 0)
        m_primitive = size_t(number - 1);
    else if (m_listedTool == TOOL_ENTITY && m_objects->currentIndex() >= 0)
        takeClass(m_objects->currentText());
    updateFaceCount();
}

void cObjectsDock::editFaceCount(int count) {
    if (m_listedTool == TOOL_BLOCK)
        m_primitives.setSides(m_primitive, count);
}

// ---- What is chosen

void cObjectsDock::takeClass(const QString& name) {
    m_className = name;
    m_classStale = true;
    emit classChosen();
}

void cObjectsDock::chooseClass(const QString& name) {
    const int listed = m_listedTool == TOOL_ENTITY ? m_objects->findText(name) : -1;
    if (listed >= 0)
        m_objects->setCurrentIndex(listed);
    takeClass(name);
}

const cPrimitive* cObjectsDock::currentPrimitive() const {
    const std::vector<cPrimitive>& all = m_primitives.all();
    return m_primitive < all.size() ? &all[m_primitive] : nullptr;
}

cEntityClass* cObjectsDock::currentClass() {
    if (m_classStale) {
        m_class = m_className.isEmpty()
                      ? nullptr
                      : m_configs.findClass(m_configs.current, m_className, CF_POINT);
        m_classStale = false;
    }
    return m_class;
}

bool cObjectsDock::randomYaw() const {
    return m_randomYaw->isChecked();
}
