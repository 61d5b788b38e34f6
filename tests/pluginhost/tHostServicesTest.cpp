// SPDX-License-Identifier: MIT
// The service table as a plug-in sees it: every entry filled, safe on null, guarded on the border.
#include "pluginhost/tHostServices.h"

#include "document/tEntity.h"
#include "document/tMap.h"
#include "document/tMapLists.h"
#include "pluginhost/tPluginDialogForm.h"
#include "pluginhost/tRenderServices.h"
#include "resources/tGameConfig.h"
#include "resources/tTextureManager.h"
#include "support/tBuildNumber.h"
#include "support/tFiles.h"
#include "support/tMapTools.h"
#include "support/tMath.h"
#include "support/tTestHost.h"

#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <cstring>
#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::ElementsAreArray;

class cHostServicesTest : public testing::Test {
protected:
    bool reported(const char* text) { return m_host.count(eMessage::Error, str(text)) == 1; }

    cTestHost m_host;
    const cHostServices& m_services = *hostServices();
};

TEST_F(cHostServicesTest, tableIsWhole) {
    constexpr size_t count = sizeof(cHostServices) / sizeof(void*) - 1;
    EXPECT_EQ(m_services.size, sizeof(cHostServices));
    ASSERT_EQ(count, 113u);
    void* entries[count];
    memcpy(entries, reinterpret_cast<const char*>(&m_services) + sizeof(void*), sizeof entries);
    EXPECT_THAT(entries, testing::Each(testing::NotNull()));
}

TEST_F(cHostServicesTest, consoleMemoryAndVersion) {
    m_services.Sys_Print("a %i", 1);
    m_services.Sys_DPrint("b");
    m_services.Sys_Warning("c");
    m_services.Sys_Error("d %s", "x");
    EXPECT_EQ(m_host.count(eMessage::Print, str("a 1")), 1);
    EXPECT_EQ(m_host.count(eMessage::Debug, str("b")), 1);
    EXPECT_EQ(m_host.count(eMessage::Warning, str("c")), 1);
    EXPECT_TRUE(reported("d x"));
    auto* block = static_cast<char*>(m_services.Sys_Alloc(100));
    EXPECT_EQ(std::string(block, 100), std::string(100, '\0'));
    m_services.Sys_Free(block);
    m_services.Sys_Free(nullptr);
    EXPECT_EQ(m_services.Sys_StrDup(nullptr), nullptr);
    EXPECT_EQ(m_services.Sys_Version(),
              QStringLiteral("Karvex 1.0.%1").arg(buildNumber()).toStdString());
    EXPECT_EQ(m_services.Sys_TextureBrightness(), 1.0);
    cGameConfig config;
    config.textureBrightness = 100;
    const cActiveConfigScope active(&config);
    EXPECT_DOUBLE_EQ(m_services.Sys_TextureBrightness(), 2.0);
}

TEST_F(cHostServicesTest, filesAndTokens) {
    QTemporaryDir folder;
    cGameConfig config;
    config.gameBasedir = folder.path();
    const cActiveConfigScope active(&config);
    writeFile(folder.filePath(str("a.txt")), "(1 2 3) word");
    char path[512];
    ASSERT_EQ(m_services.File_Find("a.txt", path, sizeof path), 1);
    EXPECT_EQ(m_services.File_Find("b.txt", path + 256, 256), 0);
    int32_t size = 0;
    void* data = m_services.File_Load(path, &size);
    EXPECT_EQ(size, 12);
    m_services.Sys_Free(data);
    ASSERT_EQ(m_services.Parser_LoadFile(path), 1);
    float vector[3];
    m_services.Parser_ParseVector(3, vector);
    EXPECT_THAT(vector, ElementsAre(1.f, 2.f, 3.f));
    EXPECT_EQ(m_services.Parser_TokenAvailable(), 1);
    EXPECT_EQ(m_services.Parser_GetToken(0), 1);
    EXPECT_STREQ(m_services.Parser_Token(), "word");
    EXPECT_EQ(m_services.Parser_GetToken(1), 0);
    EXPECT_EQ(m_services.Parser_HasFailed(), 0);
    m_services.Parser_ParseError("why %i", 5);
    EXPECT_TRUE(reported("parse error at line 1: why 5"));
    EXPECT_EQ(m_services.Parser_HasFailed(), 1);
    m_services.Parser_ClearFailure();
    m_services.Parser_Close();
}

// ---- Maps

class cHostMapTest : public cHostServicesTest {
protected:
    cEntityData* addEntity(const char* name, uint32_t flags = EF_POINT) {
        return m_services.Entity_Create(m_data, name, nullptr, flags);
    }

    cMap m_map{m_host};
    cMapData* m_data = &m_map.data;
    cTestGame m_otherGame;
    cMap m_other{m_otherGame};
};

TEST_F(cHostMapTest, namesMeanWhatTheGameOfTheNamedMapMakesOfThem) {
    m_host.addTexture("wall", 16, 16);
    m_otherGame.addTexture("wall", 32, 32);
    m_otherGame.addClass(str("lamp"), CK_POINT);
    cFaceTexture tex = {};
    strcpy(tex.name, "wall");
    for (cMap* map : {&m_map, &m_other}) {
        cEntityData* world = m_services.Entity_Create(&map->data, "worldspawn", nullptr, EF_WORLD);
        cBrushData* brush = m_services.Brush_Create(&map->data, world);
        const cFaceData* face = m_services.Face_Create(&map->data, brush, &tex, 3);
        EXPECT_EQ(face->texture->width, map == &m_map ? 16 : 32);
        const cEntityData* lamp = m_services.Entity_Create(&map->data, "lamp", nullptr, EF_POINT);
        EXPECT_EQ(lamp->entity->entityClass != nullptr, map == &m_other);
    }
}

TEST_F(cHostMapTest, makesFindsAndRemovesObjects) {
    const float origin[3] = {1, 2, 3};
    cEntityData* point = m_services.Entity_Create(m_data, "light", origin, EF_POINT);
    cEntityData* world = addEntity("worldspawn", EF_WORLD);
    EXPECT_EQ(m_data->entities, world) << "the world goes to the head";
    EXPECT_THAT(point->origin, ElementsAre(1.f, 2.f, 3.f));
    cBrushData* brush = m_services.Brush_Create(m_data, world);
    cFaceTexture tex = {};
    memset(tex.name, 'x', sizeof tex.name);
    cFaceData* face = m_services.Face_Create(m_data, brush, &tex, 5);
    ASSERT_TRUE(face);
    EXPECT_EQ(face->vertexCount, 5);
    EXPECT_EQ(strlen(face->tex.name), 63u) << "an unterminated name is cut";
    m_services.Face_Delete(m_data, face);
    EXPECT_EQ(brush->faces, nullptr);
    m_services.Face_Create(m_data, brush, &tex, 3);
    selectedPush(m_data->selectedBrushes, brush);
    m_services.Brush_Delete(m_data, brush);
    EXPECT_EQ(world->brushes, nullptr);
    EXPECT_EQ(checkMapInvariants(m_map).toStdString(), "");

    selectedPush(m_data->selectedEntities, point);
    cEntityData* copy = addEntity("a", point->flags);
    EXPECT_EQ(copy->flags & (EF_POINT | OF_SELECTED), uint32_t(EF_POINT));
    addEpairLast(point, "name", "Lamp");
    addEpairLast(copy, "NAME", "lamp");
    EXPECT_EQ(m_services.Entity_Find(m_data, "name", "lamp"), copy) << "the value is exact";
    EXPECT_EQ(m_services.Entity_Find(m_data, "name", "none"), nullptr);
    EXPECT_EQ(m_services.Entity_Find(m_data, nullptr, "lamp"), nullptr);
}

TEST_F(cHostMapTest, textureNumbersOfNoUseBecomeTheDefaultAndAreToldOnce) {
    cBrushData* brush = m_services.Brush_Create(m_data, addEntity("door", 0));
    cFaceTexture tex = {};
    tex.uScale = HUGE_VALF;
    tex.vAxis[1] = tex.rotation = std::nanf("");
    for (int i = 0; i < 2; ++i) {
        const cFaceData* face = m_services.Face_Create(m_data, brush, &tex, 3);
        EXPECT_EQ(face->tex.uScale, 1);
        EXPECT_EQ(face->tex.vScale, 1);
        EXPECT_EQ(face->tex.rotation, 0);
        EXPECT_TRUE(face->flags & FF_RESET_AXES);
    }
    EXPECT_EQ(m_host.count(eMessage::Warning, QStringLiteral("numbers of no use")), 1);
}

TEST_F(cHostMapTest, objectsOfAnotherMapAndNullAreLeftAlone) {
    cEntityData* foreign = m_other.addEntity("a", m_other.data.cordonMins, EF_POINT);
    cEntityData* solid = addEntity("door", 0);
    cBrushData* brush = m_services.Brush_Create(m_data, solid);
    const uint32_t id = m_services.VisGroup_Create(m_data);
    cFaceTexture tex = {};
    EXPECT_EQ(m_services.Entity_Create(nullptr, "a", nullptr, 0), nullptr);
    EXPECT_EQ(m_services.Entity_Create(m_data, nullptr, nullptr, 0), nullptr);
    EXPECT_EQ(m_services.Brush_Create(m_data, foreign), nullptr);
    EXPECT_EQ(m_services.Brush_Create(m_data, nullptr), nullptr);
    EXPECT_EQ(m_services.Face_Create(m_data, brush, nullptr, 3), nullptr);
    EXPECT_EQ(m_services.Face_Create(&m_other.data, brush, &tex, 3), nullptr);
    EXPECT_EQ(m_services.Face_Create(m_data, brush, &tex, -1), nullptr);
    EXPECT_EQ(m_services.Face_Create(m_data, brush, &tex, INT32_MAX), nullptr);
    EXPECT_EQ(newFace(INT32_MAX), nullptr);
    m_services.Brush_Delete(&m_other.data, brush);
    EXPECT_EQ(solid->brushes, brush);
    m_services.Entity_AddToVisGroup(m_data, foreign, id);
    EXPECT_EQ(m_services.Entity_GetVisGroupCount(foreign), 0);
    m_services.Entity_Update(nullptr, 0);
    m_services.Entity_SetColor(nullptr, nullptr);
    m_services.History_EntityChanged(nullptr);
    EXPECT_EQ(m_services.Entity_GetColor(nullptr, nullptr), nullptr);
    EXPECT_EQ(m_services.Brush_GetVisGroupId(nullptr, 0), 0u);
    m_services.Brush_Delete(m_data, nullptr);
    m_services.Face_Delete(m_data, nullptr);
    m_services.Group_Delete(m_data, nullptr);
    m_services.VisGroup_Clear(nullptr);
    EXPECT_EQ(m_services.VisGroup_GetCount(nullptr), 0);
    EXPECT_EQ(m_services.VisGroup_IndexOf(nullptr, 1), -1);
}

TEST_F(cHostMapTest, groupsTakeOnlyWhatMayJoin) {
    cEntityData* world = addEntity("worldspawn", EF_WORLD);
    cEntityData* light = addEntity("light");
    cEntityData* door = addEntity("door", 0);
    cBrushData* brush = m_services.Brush_Create(m_data, world);
    cBrushData* panel = m_services.Brush_Create(m_data, door);
    cGroupData* group = m_services.Group_Create(m_data);
    cGroupData* outer = m_services.Group_Create(m_data);
    cGroupData* foreign = m_services.Group_Create(&m_other.data);
    m_services.Group_AddEntity(group, world);
    m_services.Group_AddBrush(group, panel);
    m_services.Group_AddEntity(foreign, light);
    m_services.Group_AddBrush(foreign, brush);
    m_services.Group_AddGroup(foreign, group);
    m_services.Group_AddEntity(nullptr, light);
    m_services.Group_AddBrush(group, nullptr);
    EXPECT_EQ(group->memberCount + foreign->memberCount, 0);
    m_services.Group_AddEntity(group, light);
    m_services.Group_AddBrush(group, brush);
    m_services.Group_AddGroup(outer, group);
    EXPECT_EQ(group->memberCount, 2);
    EXPECT_EQ(checkMapInvariants(m_map).toStdString(), "");
    m_services.Group_Delete(&m_other.data, group);
    EXPECT_EQ(light->group, group);
    m_services.Group_Delete(m_data, group);
    EXPECT_EQ(light->group, outer) << "members go up one level";
}

TEST_F(cHostMapTest, visGroups) {
    const uint8_t color[4] = {9, 8, 7, 6};
    const uint32_t first = m_services.VisGroup_Create(m_data);
    const uint32_t second = m_services.VisGroup_Create(m_data);
    m_services.VisGroup_Set(m_data, first, "A long name", 40, color);
    m_services.VisGroup_Set(m_data, second, nullptr, 40, nullptr);
    m_services.VisGroup_Set(m_data, 999, "none", 5, color);
    ASSERT_EQ(m_services.VisGroup_GetCount(m_data), 2);
    EXPECT_EQ(m_services.VisGroup_IndexOf(m_data, second), 0) << "an id that is taken is refused";
    EXPECT_EQ(m_services.VisGroup_IndexOf(m_data, 40), 1);
    char name[7];
    uint32_t id = 0;
    uint8_t out[4];
    EXPECT_EQ(m_services.VisGroup_Get(m_data, 1, name, sizeof name, &id, out), 1);
    EXPECT_STREQ(name, "A long");
    EXPECT_EQ(id, 40u);
    EXPECT_THAT(out, ElementsAreArray(color));
    EXPECT_EQ(m_services.VisGroup_Get(m_data, 2, name, sizeof name, &id, out), 0);

    cEntityData* light = addEntity("light");
    m_services.Entity_AddToVisGroup(m_data, light, 40);
    m_services.Entity_AddToVisGroup(m_data, light, 40);
    m_services.Entity_AddToVisGroup(m_data, light, second);
    EXPECT_EQ(m_services.Entity_GetVisGroupCount(light), 2);
    EXPECT_EQ(m_services.Entity_GetVisGroupId(light, 0), 40u);
    EXPECT_EQ(m_services.Entity_GetVisGroupId(light, 2), 0u);
    m_services.Entity_RemoveFromVisGroup(m_data, light, 40);
    m_services.VisGroup_Delete(m_data, second);
    EXPECT_EQ(m_services.Entity_GetVisGroupCount(light), 0);
    EXPECT_EQ(m_services.VisGroup_IndexOf(m_data, second), -1);
    EXPECT_EQ(m_services.VisGroup_IndexOf(m_data, 40), 0);
    m_services.VisGroup_Clear(m_data);
    EXPECT_EQ(m_services.VisGroup_GetCount(m_data), 0);
    EXPECT_EQ(m_services.VisGroup_IndexOf(m_data, 40), -1);
}

TEST_F(cHostMapTest, packagePathsOfTheProject) {
    cTextureManager textures;
    textures.addPackageFormat({1, str(".pak"), str("Package"), nullptr, nullptr, nullptr});
    cGameConfig config;
    config.parcels =
        QStringList{str("/a/one.PAK::"), str("/a/dir::*.tga;*.png"), str("/b/two.pak::")};
    char* paths = m_services.Sys_StrDup("old");
    EXPECT_EQ(m_services.Map_GetPackagePaths(m_data, &paths, ';'), 0) << "no project";
    EXPECT_STREQ(paths, "old");
    cHostServiceContext context;
    context.configOf = [&](const cMapData* map) { return map == m_data ? &config : nullptr; };
    context.textures = &textures;
    setHostServiceContext(context);
    EXPECT_EQ(m_services.Map_GetPackagePaths(m_data, &paths, ';'), 1);
    EXPECT_STREQ(paths, "/a/one.PAK;/b/two.pak");
    m_services.Sys_Free(paths);
    setHostServiceContext({});
}

// ---- Dialogs

class cTestForm : public cPluginDialogForm {
public:
    explicit cTestForm(QStringList& calls) : m_calls(calls) {}
    ~cTestForm() override { m_calls << str("gone"); }

    void initExternalCommand(const char*, const char*) override {}
    void initInternalCommand(const char*, void (*)()) override {}
    void setProgress(int value, int) override { m_calls << QString::number(value); }
    void addTextEdit(const char*, const char*, const char*, uint32_t) override {}
    void addCheckBox(const char* option, const char*, bool checked, uint32_t) override {
        m_calls << str(option) + QString::number(checked);
    }
    void addRadioBox(const char*, const char*, bool, uint32_t) override {}
    void addSpinBox(const char*, const char*, int, int, int, int, uint32_t) override {}
    void addSpinBoxFloat(const char*, const char*, float, float, float, float, uint32_t) override {}
    void addComboBox(const char*, const char*, int, const char*, uint32_t) override {}
    void addFileEdit(const char*, const char*, const char*, const char*, uint32_t) override {}
    void addFileList(const char*, const char*, const char*, const char*, uint32_t) override {}
    void addDirectoryEdit(const char*, const char*, const char*, uint32_t) override {}
    void queryArgument(const char* option, char* out, int size) override {
        qstrncpy(out, option, uint(size));
    }
    int queryArgumentInt(const char*) override { return 5; }
    float queryArgumentFloat(const char*) override { return 0.5f; }
    void print(const char* text) override { m_calls << str(text); }
    void run() override {
        m_calls << str("run");
        hostServices()->Dialog_End(); // as a careless internal function does
        hostServices()->Dialog_SetProgress(8, 9);
    }

private:
    QStringList& m_calls;
};

static QStringList g_calls;

TEST_F(cHostServicesTest, dialogCallsNeedAnActiveForm) {
    m_services.Dialog_Begin("title");
    EXPECT_TRUE(reported("plug-in dialogs are not available"));
    char out[4] = "abc";
    m_services.Dialog_InitExternalCommand("", "");
    m_services.Dialog_InitInternalCommand("", nullptr);
    m_services.Dialog_SetProgress(1, 2);
    m_services.Dialog_AddTextEdit("o", "l", "v", 0);
    m_services.Dialog_AddCheckBox("o", "l", 0, 0);
    m_services.Dialog_AddRadioBox("o", "l", 0, 0);
    m_services.Dialog_AddSpinBox("o", "l", 0, 0, 1, 1, 0);
    m_services.Dialog_AddSpinBoxFloat("o", "l", 0, 0, 1, 1, 0);
    m_services.Dialog_AddComboBox("o", "l", 0, "", 0);
    m_services.Dialog_AddFileEdit("o", "l", "", "", 0);
    m_services.Dialog_AddFileList("o", "l", "", "", 0);
    m_services.Dialog_AddDirectoryEdit("o", "l", "", 0);
    m_services.Dialog_QueryArgument("o", out, sizeof out);
    m_services.Dialog_QueryArgumentInt("o");
    m_services.Dialog_QueryArgumentFloat("o");
    m_services.Dialog_End();
    m_services.Dialog_Print("silent");
    EXPECT_STREQ(out, "");
    EXPECT_EQ(m_host.count(eMessage::Error, str(" called with no active dialog")), 16);
    EXPECT_TRUE(reported("Dialog_QueryArgumentFloat called with no active dialog"));
    EXPECT_EQ(m_host.messages.size(), 17u);
}

TEST_F(cHostServicesTest, dialogLivesFromBeginToEnd) {
    g_calls.clear();
    setPluginDialogFactory([](const char*) -> std::unique_ptr<cPluginDialogForm> {
        return std::make_unique<cTestForm>(g_calls);
    });
    m_services.Dialog_Begin("title");
    m_services.Dialog_Begin("again");
    EXPECT_TRUE(reported("can't start new dialog while the previous is active"));
    m_services.Dialog_AddCheckBox("c", "label", 7, 0);
    m_services.Dialog_AddCheckBox(nullptr, "label", 1, 0);
    m_services.Dialog_AddCheckBox("c", nullptr, 1, 0);
    EXPECT_EQ(m_host.count(eMessage::Error, str("Dialog_AddCheckBox called with bad parameters")),
              2);
    m_services.Dialog_SetProgress(3, 4);
    m_services.Dialog_Print("%s", std::string(9000, 'x').c_str());
    char out[3];
    m_services.Dialog_QueryArgument("abcdef", out, sizeof out);
    EXPECT_STREQ(out, "ab");
    EXPECT_EQ(m_services.Dialog_QueryArgumentInt("a"), 5);
    m_services.Dialog_End();
    EXPECT_EQ(g_calls, QStringList({str("c1"), str("3"), QString(8191, QLatin1Char('x')),
                                    str("run"), str("8"), str("gone")}));
    setPluginDialogFactory(nullptr);
}

// ---- Model stream

TEST_F(cHostServicesTest, drawingIsForwardedToTheViews) {
    m_services.Render_Vertex(nullptr);
    EXPECT_EQ(m_services.Render_ShadeFloor(), 0.2f);
    EXPECT_EQ(m_services.Render_Shade(nullptr), 1.0f);
    const float up[3] = {0, 0, 1}, down[3] = {0, 0, -1};
    EXPECT_GT(m_services.Render_Shade(up), m_services.Render_Shade(down));

    static uint32_t state;
    const cRenderServices before = g_renderServices;
    g_renderServices.texCoord = [](float s, float t) { state = uint32_t(100 * s + t); };
    g_renderServices.getState = [] { return state; };
    const float coordinates[2] = {2, 5};
    m_services.Render_TexCoordV(coordinates);
    m_services.Render_TexCoordV(nullptr);
    EXPECT_EQ(m_services.Render_GetState(), 205u);
    g_renderServices = before;
}
