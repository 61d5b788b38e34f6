// SPDX-License-Identifier: MIT
// The loader, on plug-ins loaded from disk: order, messages, what each offer leads to.
#include "pluginhost/tPluginManager.h"

#include "pluginhost/tFlagCaptions.h"
#include "pluginhost/tPrimitiveList.h"
#include "support/tMapText.h"
#include "support/tRegistryTest.h"

#include <QDir>
#include <gmock/gmock.h>

using testing::ElementsAre;

class cPluginManagerTest : public cRegistryTest {
protected:
    cPluginManagerTest() {
        cPluginTargets targets;
        targets.configs = &configs;
        targets.textures = &textures;
        targets.models = &models;
        targets.captions = &m_captions;
        targets.registerPrimitive = [this](const cPrimitive* p) {
            m_primitives.registerPrimitive(p);
        };
        m_manager = std::make_unique<cPluginManager>(targets);
    }

    QString provide(const char* name, const QString& as) {
        EXPECT_TRUE(QFile::copy(str(KARVEX_TEST_PLUGINS "/") + str(name), path(as)));
        return path(as);
    }
    QStringList texts(eMessage level) {
        QStringList lines;
        for (const auto& message : host.messages)
            if (message.level == level)
                lines << message.text;
        return lines;
    }

    cFlagCaptions m_captions;
    cPrimitiveList m_primitives;
    std::unique_ptr<cPluginManager> m_manager;
};

TEST_F(cPluginManagerTest, refusedLibrariesCostTheirMessageOnly) {
    write("tpa.so", "no library at all");
    provide("tpnomain.so", str("tpb.so"));
    provide("tprefuse.so", str("tpc.so"));
    const QString good = provide("tpfull.so", str("tpd.so"));
    provide("tpfull.so", str("other.so"));
    m_manager->loadAll(path("absent"));
    EXPECT_TRUE(host.messages.empty());
    m_manager->loadAll(folder.path());

    EXPECT_THAT(texts(eMessage::Error).mid(0, 3),
                ElementsAre(str("Couldn't load \"%1\"").arg(path("tpa.so")),
                            str("Couldn't find \"tpMain\" export in \"%1\"").arg(path("tpb.so")),
                            str("Couldn't initialize \"%1\"").arg(path("tpc.so"))));
    EXPECT_EQ(count(eMessage::Warning, "is not for me"), 1) << "it did get the table";
    EXPECT_EQ(count(eMessage::Print, "Adding: "), 1);
    ASSERT_EQ(m_manager->libraries.size(), 1u);
    EXPECT_EQ(m_manager->libraries[0]->fileName(), good);

    const QByteArray mapped = readFile(str("/proc/self/maps"));
    EXPECT_TRUE(mapped.contains(toMapText(good)));
    EXPECT_FALSE(mapped.contains(toMapText(path("tpb.so"))));
    EXPECT_FALSE(mapped.contains(toMapText(path("tpc.so"))));
}

TEST_F(cPluginManagerTest, countsAreTold) {
    ASSERT_TRUE(m_manager->load(provide("tpfull.so", str("tpfull.so"))));
    EXPECT_EQ(texts(eMessage::Print).mid(1).join(QLatin1Char('\n')),
              str("2 map export format(s) registered\n"
                  "1 map import format(s) registered\n1 texture format(s) registered\n"
                  "1 package format(s) registered\n1 sprite format(s) registered\n"
                  "1 model format(s) registered\n2 primitive type(s) registered"));
    EXPECT_EQ(count(eMessage::Debug, "tpfull on Karvex 1.0."), 1);
}

TEST_F(cPluginManagerTest, formatsGoWithTheProfilesOfTheirPlugin) {
    m_manager->load(provide("tppartial.so", str("tpa.so")));
    m_manager->load(provide("tpfull.so", str("tpb.so")));
    const cMapProfile* profile = configs.profiles.value(str("test"));
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->library, 2u) << "the place in the list, from 1";
    EXPECT_EQ(profile->detailContentMask, 0x100u);
    EXPECT_EQ(count(eMessage::Warning, "empty profile name!"), 1);
    EXPECT_EQ(count(eMessage::Warning, "profile \"test\" is already registered!"), 1);

    ASSERT_EQ(m_manager->exportFormats.size(), 2);
    ASSERT_EQ(m_manager->importFormats.size(), 1);
    const cMapFormat* text =
        cPluginManager::findFormat(m_manager->exportFormats, profile->library, str(".txt"));
    ASSERT_TRUE(text);
    EXPECT_EQ(text->id, 11u);
    EXPECT_FALSE(cPluginManager::findFormat(m_manager->exportFormats, 1, str(".txt")));
    EXPECT_FALSE(textures.isPackageExtension(str(".Names")));
    ASSERT_EQ(models.spriteFormats.size(), 1);
    EXPECT_FALSE(models.spriteFormats[0].unload);
    ASSERT_EQ(models.modelFormats.size(), 1);
    EXPECT_TRUE(models.modelFormats[0].render);
    EXPECT_FALSE(models.modelFormats[0].getBounds);
}

TEST_F(cPluginManagerTest, formatsThatLackTheirFunctionsAreNotEntered) {
    const QString path = provide("tppartial.so", str("tppartial.so"));
    ASSERT_TRUE(m_manager->load(path));
    EXPECT_TRUE(m_manager->exportFormats.isEmpty());
    EXPECT_TRUE(m_manager->importFormats.isEmpty());
    EXPECT_EQ(count(eMessage::Print, "7 model format(s) registered"), 1);
    EXPECT_EQ(count(eMessage::Print, "texture format"), 0);
    const std::pair<const char*, const char*> missing[] = {
        {"texture format \".tex\" (Texture)", "tpLoadTexture"},
        {"package format \".pak\" (Package)", "tpGetPackageInfo"},
        {"sprite format \".spr\" (Sprite)", "tpLoadSprite"},
        {"model format \".mdl\" (Model)", "tpRenderModel"}};
    EXPECT_EQ(host.count(eMessage::Warning, QString()), 4);
    for (const auto& m : missing)
        EXPECT_EQ(host.count(eMessage::Warning,
                             str("Plugin \"%1\" defines %2, but doesn't export \"%3\" function!")
                                 .arg(path, str(m.first), str(m.second))),
                  1)
            << m.first;
    EXPECT_EQ(textures.textureFormats.size() + textures.packageFormats.size(), 0);
    EXPECT_EQ(models.spriteFormats.size() + models.modelFormats.size(), 0);
}

TEST_F(cPluginManagerTest, actionsAreOrderedByCategoryAndRunUnderTheCurrentConfiguration) {
    provide("tpfull.so", str("tpfull.so"));
    m_manager->loadAll(folder.path());
    std::vector<std::string> titles;
    for (const auto& action : m_manager->actions)
        titles.push_back(action->title);
    EXPECT_THAT(titles, ElementsAre("empty", "a1", "b1", "b2", "none"));
    EXPECT_EQ(count(eMessage::Error, "registerAction: action title is NULL!"), 1);
    EXPECT_EQ(count(eMessage::Error, "registerAction: dispatch function for \"idle\" is NULL!"), 1);

    cGameConfig* config = configs.addConfig(str("Game"));
    configs.setCurrent(config);
    const auto* last =
        reinterpret_cast<const uintptr_t*>(m_manager->libraries[0]->resolve("g_lastAction"));
    ASSERT_TRUE(last);
    for (const int place : {3, 99, -1})
        m_manager->runAction(place);
    EXPECT_EQ(*last, 4u);
    EXPECT_EQ(activeConfig(), config);
    setActiveConfig(nullptr);
}

TEST_F(cPluginManagerTest, primitivesAndCaptions) {
    m_manager->load(provide("tpfull.so", str("tpfull.so")));
    ASSERT_EQ(m_primitives.all().size(), 2u);
    EXPECT_STREQ(m_primitives.all()[0].category, "(unknown)");
    EXPECT_STREQ(m_primitives.all()[1].name, "Block");
    EXPECT_EQ(count(eMessage::Error, "registerPrimitive: primitive name is NULL!"), 1);
    EXPECT_EQ(count(eMessage::Error, "registerPrimitive: dispatch function for \"Ghost\" is NULL!"),
              1);
    const cFlagCaptions::cTable& table = m_captions.of(str("test"));
    EXPECT_EQ(table.surface[11], str("slick"));
    EXPECT_EQ(table.content[31], str("detail"));
    EXPECT_EQ(table.content[0], QString());
    EXPECT_FALSE(m_captions.has(str("other")));
}
