// SPDX-License-Identifier: MIT
// What is created next: the built-in primitives, the New Objects dock that chooses among
// primitives or point classes, and the room that a new map begins with.
#include "dialogs/tArchDialog.h"
#include "dialogs/tDefaultRoomDialog.h"
#include "document/tEntityClass.h"
#include "operations/tPrimitives.h"
#include "pluginhost/tPrimitiveList.h"
#include "resources/tGameConfigRegistry.h"
#include "resources/tTextureCatalogue.h"
#include "shell/tMainWindow.h"
#include "support/tMapText.h"
#include "views/tDocumentViews.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStyle>
#include <algorithm>

// ---- The built-in primitives

template<bool (*create)(const cPrimitiveParams&)> static int32_t dispatch(cPrimitiveParams* p) {
    return create(*p);
}

static int32_t dispatchArch(cPrimitiveParams* p) {
    const int a = p->axes[0], b = p->axes[1];
    cArchDialog& dialog = g_mainWindow->archDialog();
    if (!dialog.ask(std::min(p->maxs[a] - p->mins[a], p->maxs[b] - p->mins[b])))
        return 0;
    return createArch(*p, dialog.shape());
}

void cMainWindow::registerPrimitives() {
    static constexpr char CATEGORY[] = "(primitives)";
    static const cPrimitive builtIn[] = {
        {"block", CATEGORY, 0, 0, 0, dispatch<createBlock>},
        {"wedge", CATEGORY, 0, 0, 0, dispatch<createWedge>},
        {"cylinder", CATEGORY, 8, 3, 128, dispatch<createCylinder>},
        {"spike", CATEGORY, 4, 3, 128, dispatch<createSpike>},
        {"arch", CATEGORY, 0, 0, 0, dispatchArch},
    };
    for (const cPrimitive& primitive : builtIn)
        m_primitives->registerPrimitive(&primitive);
}

cArchDialog& cMainWindow::archDialog() {
    if (!m_archDialog)
        m_archDialog = std::make_unique<cArchDialog>(this);
    return *m_archDialog;
}

// ---- The dock

static QPushButton* smallButton(const QString& text, const char* name, const QString& tip) {
    constexpr int MARGIN = 8; // beside the text; the style's own would widen the dock
    auto* button = new QPushButton(text);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(tip);
    button->setMinimumWidth(button->fontMetrics().horizontalAdvance(text) + 2 * MARGIN);
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return button;
}

QWidget* cMainWindow::createObjectButtons() {
    auto* row = new QWidget;
    auto* label = new QLabel(tr("Move\nselected:"));
    auto* world = smallButton(tr("toWorld"), "btnToWorld",
                              tr("Detach the selected solids from their entity"));
    auto* entity = smallButton(tr("toEntity"), "btnToEntity",
                               tr("Create a new entity using the selected solids"));
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label);
    layout->addWidget(world, 1);
    layout->addWidget(entity, 1);
    connect(world, &QPushButton::clicked, this, &cMainWindow::cmdToolsMoveToWorld);
    connect(entity, &QPushButton::clicked, this, &cMainWindow::cmdToolsTieToEntity);
    m_objectButtons += label;
    m_brushButtons = {world, entity};
    return row;
}

// Mnemonics that a menu has already are left out.
void cMainWindow::createObjectDock() {
    m_categories = new QComboBox;
    m_categories->setObjectName(QStringLiteral("lstCategories"));
    m_objects = new QComboBox;
    m_objects->setObjectName(QStringLiteral("lstObjects"));
    m_faceCount = new QSpinBox;
    m_faceCount->setObjectName(QStringLiteral("sbFaces"));
    m_faceCount->setMaximum(0);
    m_randomYaw = new QCheckBox(tr("Random &Yaw"));
    m_randomYaw->setObjectName(QStringLiteral("cbRandomYaw"));
    auto* prefab = new QPushButton(tr("Create Prefab"));
    auto* original = new QPushButton(tr("&Insert Original Prefab"));
    prefab->setObjectName(QStringLiteral("btnCreatePrefab"));
    original->setObjectName(QStringLiteral("btnInsertOriginal"));

    auto* panel = new QWidget;
    auto* layout = new QGridLayout(panel);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    const std::pair<QString, QWidget*> rows[] = {{tr("&Categories:"), m_categories},
                                                 {tr("&Objects:"), m_objects}};
    int line = 0;
    for (const auto& row : rows) {
        auto* label = new QLabel(row.first);
        label->setBuddy(row.second);
        layout->addWidget(label, line++, 0, 1, 2);
        layout->addWidget(row.second, line++, 0, 1, 2);
        m_objectLists += {label, row.second};
    }
    auto* faces = new QLabel(tr("Faces:"));
    faces->setBuddy(m_faceCount);
    layout->addWidget(faces, line, 0);
    layout->addWidget(m_faceCount, line++, 1);
    layout->addWidget(m_randomYaw, line++, 0, 1, 2);
    layout->addWidget(createObjectButtons(), line++, 0, 1, 2);
    layout->addWidget(prefab, line++, 0, 1, 2);
    layout->addWidget(original, line++, 0, 1, 2);
    layout->setRowStretch(line, 1);
    layout->setColumnStretch(1, 1);
    m_objectLists += faces;
    m_objectButtons += {prefab, original};
    for (QComboBox* list : {m_categories, m_objects}) { // a long name does not widen the dock
        list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        list->setMinimumContentsLength(12);
    }

    addDock(tr("New Objects"), "newobjects", panel, Qt::RightDockWidgetArea,
            Qt::LeftDockWidgetArea | Qt::RightDockWidgetArea);
    const auto chosen = QOverload<int>::of(&QComboBox::currentIndexChanged);
    connect(m_categories, chosen, this, &cMainWindow::editCategoryList);
    connect(m_objects, chosen, this, &cMainWindow::editObjectList);
    connect(m_faceCount, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &cMainWindow::editFaceCount);
    for (const QPushButton* button : {prefab, original})
        connect(button, &QPushButton::clicked, this, &cMainWindow::msgFeatureUnderDevelopment);
}

// ---- The lists

static void addNames(const cEntityClassNode& node, QStringList& names) {
    if (node.entityClass)
        names.append(node.entityClass->name);
    for (const cEntityClassNode& child : node.children)
        addNames(child, names);
}

QStringList cMainWindow::pointClassNames() const {
    QStringList names;
    if (m_configs->current)
        addNames(m_configs->current->pointClassTree, names);
    names.removeDuplicates();
    names.sort(Qt::CaseInsensitive);
    return names;
}

// The tool that is suspended comes back, so the lists stay with it.
void cMainWindow::updateObjectDock() {
    const bool hasDocument = activeChild() != nullptr;
    const int tool = hasDocument ? currentToolId() : -1;
    const int listed = tool == TOOL_ENTITY || tool == TOOL_BLOCK ? tool : -1;
    for (QWidget* widget : m_objectLists)
        widget->setEnabled(listed >= 0);
    for (QWidget* widget : m_objectButtons)
        widget->setEnabled(hasDocument);
    m_randomYaw->setEnabled(hasDocument);
    if (listed != m_listedTool || m_configs->current != m_listedConfig) {
        m_listedTool = listed;
        m_listedConfig = m_configs->current;
        fillCategories();
    }
    updateFaceCount();
}

void cMainWindow::fillCategories() {
    {
        const QSignalBlocker quiet(m_categories);
        m_categories->clear();
        if (m_listedTool == TOOL_ENTITY) {
            m_categories->addItem(tr("(entities)"));
        } else if (m_listedTool == TOOL_BLOCK) {
            for (const cPrimitive& primitive : m_primitives->all()) {
                const QString category = fromMapText(primitive.category);
                if (m_categories->findText(category) < 0)
                    m_categories->addItem(category);
            }
            if (const cPrimitive* primitive = currentPrimitive())
                m_categories->setCurrentText(fromMapText(primitive->category));
        } else {
            m_categories->addItem(tr("(no category)"));
        }
    }
    fillObjects();
}

// The list that opens is as wide as its longest name, however narrow the dock.
static void showWholeNames(const QComboBox* list) {
    const int bar = list->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    list->view()->setMinimumWidth(list->view()->sizeHintForColumn(0) + bar);
}

// What was chosen stays chosen where the list has it; else the game's own class, or the first.
void cMainWindow::fillObjects() {
    {
        const QSignalBlocker quiet(m_objects);
        m_objects->clear();
        if (m_listedTool == TOOL_ENTITY) {
            m_objects->addItems(pointClassNames());
            int at = m_objects->findText(currentClassName);
            if (at < 0)
                at = m_objects->findText(m_configs->current ? m_configs->current->defaultPointClass
                                                            : QString());
            m_objects->setCurrentIndex(std::max(at, m_objects->count() ? 0 : -1));
        } else if (m_listedTool == TOOL_BLOCK) {
            int number = 0;
            for (const cPrimitive& primitive : m_primitives->all()) {
                ++number;
                if (fromMapText(primitive.category) == m_categories->currentText())
                    m_objects->addItem(fromMapText(primitive.name), number);
            }
            m_objects->setCurrentIndex(std::max(0, m_objects->findData(int(m_primitive) + 1)));
        }
    }
    showWholeNames(m_objects);
    editObjectList();
}

void cMainWindow::updateFaceCount() {
    const QSignalBlocker quiet(m_faceCount);
    const cPrimitive* primitive = m_listedTool == TOOL_BLOCK ? currentPrimitive() : nullptr;
    const bool hasSides = primitive && primitive->maxSides;
    m_faceCount->setRange(hasSides ? primitive->minSides : 0, hasSides ? primitive->maxSides : 0);
    m_faceCount->setValue(hasSides ? primitive->sides : 0);
    m_faceCount->setEnabled(hasSides);
}

void cMainWindow::editCategoryList() {
    fillObjects();
}

void cMainWindow::editObjectList() {
    const int number = m_objects->currentData().toInt();
    if (m_listedTool == TOOL_BLOCK && number > 0) {
        m_primitive = size_t(number - 1);
    } else if (m_listedTool == TOOL_ENTITY && m_objects->currentIndex() >= 0) {
        currentClassName = m_objects->currentText();
        currentClassStale = true;
        redrawAllViews(REDRAW_3D); // the class's box about the point
    }
    updateFaceCount();
}

void cMainWindow::editFaceCount(int count) {
    if (m_listedTool == TOOL_BLOCK)
        m_primitives->setSides(m_primitive, count);
}

// ---- What is chosen

const cPrimitive* cMainWindow::currentPrimitive() const {
    const std::vector<cPrimitive>& all = m_primitives->all();
    return m_primitive < all.size() ? &all[m_primitive] : nullptr;
}

cEntityClass* cMainWindow::currentClass() {
    if (currentClassStale) {
        m_currentClass = currentClassName.isEmpty()
                             ? nullptr
                             : m_configs->findClass(m_configs->current, currentClassName, CF_POINT);
        currentClassStale = false;
    }
    return m_currentClass;
}

cTexture* cMainWindow::currentTexture() {
    const char* name = profile().defaultTexture;
    const cTextureCatalogue* catalogue = m_configs->currentCatalogue;
    return *name && catalogue ? catalogue->find(fromMapText(name)) : nullptr;
}

bool cMainWindow::randomYaw() const {
    return m_randomYaw->isChecked();
}

// ---- The room of a new map

static void takeTextures(const cMapProfile& profile, cRoomShape& room) {
    room.wall = profile.roomWallTexture;
    room.ceiling = profile.roomCeilingTexture;
    room.floor = profile.roomFloorTexture;
}

bool cMainWindow::askDefaultRoom(bool forced, const cRoomShape** room) {
    *room = nullptr;
    if (SkipDefaultRoomDialog && !forced)
        return true;
    if (m_roomProfile != profile().name) { // another game has other textures
        m_roomProfile = profile().name;
        takeTextures(profile(), m_room);
    }
    cDefaultRoomDialog dialog(m_room, SkipDefaultRoomDialog, this);
    const int answer = dialog.exec();
    SkipDefaultRoomDialog = dialog.skipNext();
    if (answer == QDialog::Accepted) {
        m_room = dialog.shape();
        *room = &m_room;
    }
    return answer != QDialog::Rejected;
}
