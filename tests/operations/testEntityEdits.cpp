// SPDX-License-Identifier: MIT
#include "document/tEntityAngles.h"
#include "document/tEntityKeys.h"
#include "operations/tEntityEdits.h"
#include "support/tMapTest.h"

#include <random>

class EntityEdits : public cMapTest {
protected:
    EntityEdits() {
        cEntityClass* lamp = host.addClass(QStringLiteral("light"), CK_POINT);
        lamp->variables = {
            {VT_TARGET_SOURCE, QStringLiteral("targetname"), {}, {}, {}, {}},
            {VT_INTEGER, QStringLiteral("style"), {}, {}, QStringLiteral("3"), {}},
            {VT_FLAGS, QStringLiteral("lampflags"), {}, {}, QStringLiteral("2"), {}}};
        cEntityClass* torch = host.addClass(QStringLiteral("torch"), CK_POINT);
        torch->variables = {{VT_STRING, QStringLiteral("style"), {}, {}, {}, {}},
                            {VT_TARGET_SOURCE, QStringLiteral("targetname"), {}, {}, {}, {}},
                            {VT_FLAGS, QStringLiteral("spawnflags"), {}, {}, {}, {}}};
    }

    // The fields are what the keys say: read anew they stay.
    static void expectAgreement(cEntityData* entity) {
        const char* flags = getEpairValue(entity, flagsKeyOf(entity));
        EXPECT_EQ(entity->spawnFlags, flags ? uint32_t(strtol(flags, nullptr, 10)) : 0);
        const cEntityData before = *entity;
        const bool turned = getEpair(entity, "angle") || getEpair(entity, "angles");
        EXPECT_TRUE(turned || vecLength(entity->angles) == 0);
        readAngleKeys(entity);
        readRenderKeys(entity);
        readModelKeys(entity);
        EXPECT_EQ(memcmp(before.angles, entity->angles, sizeof before.angles), 0);
        EXPECT_EQ(memcmp(before.renderColor, entity->renderColor, 4), 0);
        EXPECT_EQ(before.scale, entity->scale);
        EXPECT_EQ(before.sequence, entity->sequence);
    }
    std::string value(const cEntityData* entity, const char* key) {
        const char* text = getEpairValue(entity, key);
        return text ? text : "(none)";
    }
};

// Whatever is edited, undo takes it back and fields and keys agree.
TEST_F(EntityEdits, everyEditIsAStepAndFieldsFollowKeys) {
    const cEntityList all = {pointAt(0), pointAt(64), pointAt(128, 0, 0, "unknown")};
    std::mt19937 random(7);
    const auto any = [&](std::initializer_list<const char*> texts) {
        return QByteArray(texts.begin()[random() % texts.size()]);
    };
    const auto edit = [&](const cEntityList& some, unsigned what) {
        const QByteArray key = any({"angle", "angles", "Scale", "lampflags", "spawnflags", "style",
                                    "_light", "targetname", "sequence", "model"});
        const QByteArray value =
            any({"", "-1", "0 90 0", "2", "255 128 0 200", "lamp.spr", "x\"y"});
        if (what == 0)
            setKeyvalue(map, some, key, value,
                        random() % 2 ? eEmptyValue::Erases : eEmptyValue::Stays);
        else if (what == 1)
            renameKeyvalue(map, some, key, any({"angles", "scale", "other"}));
        else if (what == 2)
            addKeyvalue(map, some, key, value);
        else if (what == 3)
            deleteKeyvalue(map, some, key);
        else if (what == 4)
            setEntityFlags(map, some, 0xffffff, uint32_t(random()));
        else if (what == 5)
            setEntityAngle(map, some, int(random() % 362) - 2);
        else if (what == 6)
            changeEntityClass(map, some, any({"light", "torch", "nothing"}));
        else
            map.history->undo();
    };
    for (int i = 0; i < 400; ++i) {
        cEntityList some;
        for (cEntityData* entity : all)
            if (random() % 2)
                some.push_back(map.findEntityById(entity->id));
        const auto what = unsigned(random() % 8), seed = unsigned(random());
        SCOPED_TRACE(testing::Message() << "edit " << i << " of kind " << what);
        if (what < 7)
            law([&] {
                random.seed(seed);
                edit(some, what);
            });
        else
            edit(some, what);
        for (cEntityData* entity : all)
            expectAgreement(map.findEntityById(entity->id));
        if (HasFailure())
            break;
    }
}

TEST_F(EntityEdits, whatIsWrittenAndWhatIsNot) {
    cEntityData *a = pointAt(0), *b = pointAt(64);
    addEpairLast(a, "name", "Gate");
    const auto steps = [&] { return map.history->lastStep(); };
    const uint32_t none = steps();
    setKeyvalue(map, {a, b}, "name", NO_CHANGE, eEmptyValue::Stays);
    setKeyvalue(map, {a}, "NAME", "gate", eEmptyValue::Stays);
    setKeyvalue(map, {b}, "name", "", eEmptyValue::Stays);
    EXPECT_FALSE(renameKeyvalue(map, {a}, "name", ""));
    EXPECT_FALSE(renameKeyvalue(map, {a}, "name", "ClassName"));
    EXPECT_EQ(steps(), none);
    setKeyvalue(map, {a, b}, "name", "door", eEmptyValue::Erases);
    const uint32_t first = steps();
    setKeyvalue(map, {a, b}, "name", "door1", eEmptyValue::Erases, eStep::Joined);
    EXPECT_EQ(steps(), first);
    EXPECT_TRUE(isStep("Change Keyvalue"));
    map.history->undo();
    EXPECT_EQ(value(a, "name"), "Gate") << "both edits are gone";
    EXPECT_EQ(value(b, "name"), "(none)");
    EXPECT_EQ(addKeyvalue(map, {a, b}, "name", "x"), "name#1");
    EXPECT_EQ(value(b, "name"), "x");
    EXPECT_FALSE(renameKeyvalue(map, {a}, "name", "name#1")) << "taken";
    EXPECT_TRUE(renameKeyvalue(map, {a}, "name", "Name"));
    a->spawnFlags = 0x81000001;
    setEntityFlags(map, {a}, 0xffffff, 2);
    EXPECT_EQ(a->spawnFlags, 0x81000002u) << "the bits above stay";
    EXPECT_EQ(value(a, "lampflags"), std::to_string(int32_t(0x81000002)));
}

TEST_F(EntityEdits, aClassKeepsWhatItKnows) {
    cEntityData* entity = pointAt(0);
    changeEntityClass(map, {entity}, "torch");
    for (const char* const* pair :
         {(const char* const[]){"targetname", "t1"}, (const char* const[]){"angle", "-1"},
          (const char* const[]){"oddity", "1"}, (const char* const[]){"model", "a.mdl"},
          (const char* const[]){"spawnflags", "5"}})
        writeKey(entity, pair[0], pair[1]);
    law([&] { changeEntityClass(map, {entity}, "nothing"); });
    EXPECT_EQ(value(entity, "oddity"), "1") << "an unknown class leaves the pairs";
    EXPECT_EQ(entity->spawnFlags, 5u);
    law([&] { changeEntityClass(map, {entity}, "light"); });
    EXPECT_EQ(value(entity, "targetname"), "t1");
    EXPECT_EQ(value(entity, "style"), "3");
    EXPECT_EQ(value(entity, "angle"), "-1");
    EXPECT_EQ(value(entity, "model"), "a.mdl");
    EXPECT_EQ(value(entity, "oddity"), "(none)");
    EXPECT_EQ(entity->spawnFlags, 2u) << "by its own key's default";
    EXPECT_EQ(entity->angles[0], -90);
    changeEntityClass(map, {map.world()}, "light");
    EXPECT_STREQ(map.world()->classname, "worldspawn");
}

// What is copied is pasted, whatever stands in the values.
TEST_F(EntityEdits, keyvaluesGoThroughTheClipboard) {
    cEntityData *a = pointAt(0), *b = pointAt(64), *c = pointAt(128);
    const std::pair<const char*, const char*> pairs[] = {
        {"path", "c:\\maps\\"}, {"a.b[", "say \"hello\""}, {"both", "1"}, {"angles", "0 45 0"}};
    for (const auto& [key, text] : pairs) {
        writeKey(a, key, text);
        writeKey(b, key, text);
    }
    writeKey(b, "both", "2");
    writeKey(a, "lampflags", "7");
    const QByteArray text = copyKeyvalues({a, b});
    EXPECT_TRUE(text.startsWith("!!EPAIRS\n\"classname\" \"light\"\n"));
    EXPECT_FALSE(text.contains("lampflags"));
    QByteArray classname;
    law([&] { EXPECT_TRUE(pasteKeyvalues(map, {c}, text + "\nno pair", &classname)); });
    EXPECT_EQ(classname, "light");
    EXPECT_EQ(host.count(eMessage::Warning, QStringLiteral("1 pasted line(s)")), 1);
    EXPECT_EQ(value(c, "path"), "c:\\maps\\");
    EXPECT_EQ(value(c, "a.b["), "say \"hello\"");
    EXPECT_EQ(value(c, "both"), "(none)");
    EXPECT_EQ(c->angles[1], 45);
    EXPECT_FALSE(pasteKeyvalues(map, {c}, "{ \"a\" \"b\" }", &classname));
}
