// SPDX-License-Identifier: MIT
#include "support/tSystem.h"

#include "gamedata/tParser.h"
#include "support/tFiles.h"
#include "support/tIniFile.h"
#include "support/tMapText.h"
#include "support/tMath.h"
#include "support/tTestHost.h"
#include "support/tVec.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cerrno>
#include <cstring>
#include <gtest/gtest.h>
#include <sys/stat.h>

// ---- Buffers and files

TEST(System, tempBuffersGrowAndNameWhatIsWrong) {
    cTestHost host;
    const auto reported = [&](const char* text) {
        return host.count(eMessage::Error, QString::fromLatin1(text));
    };
    EXPECT_EQ(TempBuffer_GetSpace(6, 16), nullptr);
    EXPECT_EQ(reported("TempBuffer_GetSpace: invalid buffer index 6"), 1);
    EXPECT_EQ(TempBuffer_GetInternalSpace(1, 0), nullptr);
    EXPECT_EQ(reported("TempBuffer_GetInternalSpace: invalid size 0"), 1);
    auto* first = static_cast<char*>(TempBuffer_GetSpace(5, 100));
    first[99] = 7;
    EXPECT_EQ(TempBuffer_GetSpace(5, 50), first);
    EXPECT_EQ(first[99], 7) << "what need not grow is not cleared";
    TempBuffer_FreeAll();
    EXPECT_EQ(static_cast<char*>(TempBuffer_GetSpace(5, 100))[99], 0);
    TempBuffer_FreeAll();
}

TEST(System, filesAreFoundInTheModBeforeTheBaseAndTheProgramsFolder) {
    cTestHost host;
    QTemporaryDir folder;
    const QString root = QFileInfo(folder.path()).canonicalFilePath();
    for (const char* name : {"mod/maps/a.txt", "base/maps/a.txt", "base/b.txt", "app/b.txt"})
        writeFile(root + QLatin1Char('/') + QString::fromLatin1(name), name);
    cConfigFolders folders;
    folders.gameModdir = root + QStringLiteral("/mod");
    folders.gameBasedir = root + QStringLiteral("/base");
    const QString before = appBaseDir();
    setAppBaseDir(root + QStringLiteral("/app"));
    char out[1024];
    const auto found = [&out](const char* name) {
        return File_Find(name, out, sizeof out) ? fromMapText(out) : QString();
    };
    {
        const cActiveConfigScope scope(&folders);
        EXPECT_EQ(found("maps\\a.txt"), root + QStringLiteral("/mod/maps/a.txt"));
        EXPECT_EQ(found("b.txt"), root + QStringLiteral("/base/b.txt"));
    }
    EXPECT_EQ(found("b.txt"), root + QStringLiteral("/app/b.txt"));
    EXPECT_EQ(found("no\\where.txt"), QString());
    EXPECT_STREQ(out, "no\\where.txt");
    setAppBaseDir(before);
}

TEST(System, emptyFileLoadsAsOneZeroByte) {
    cTestHost host;
    QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("empty")), "");
    int size = -1;
    void* data = File_Load(toMapText(folder.filePath(QStringLiteral("empty"))).constData(), &size);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(size, 0);
    EXPECT_EQ(*static_cast<char*>(data), 0);
    Mem_Free(data);
    EXPECT_EQ(File_Load("/no/such/file", &size), nullptr);
    EXPECT_EQ(host.count(eMessage::Error, QStringLiteral("can't open \"/no/such/file\" (")), 1);
}

TEST(System, whatIsNoPlainFileIsRefusedAtOnceAndSaysWhy) {
    cTestHost host;
    QTemporaryDir folder;
    const QByteArray pipe = toMapText(folder.filePath(QStringLiteral("pipe")));
    ASSERT_EQ(mkfifo(pipe.constData(), 0600), 0);
    errno = ENOSPC; // of something before
    for (const QByteArray& path : {toMapText(folder.path()), pipe, QByteArray("/dev/zero")}) {
        host.messages.clear();
        EXPECT_EQ(File_Load(path.constData(), nullptr), nullptr);
        const int error = path.startsWith(pipe) || path.startsWith("/dev") ? EINVAL : EISDIR;
        const QString text = QStringLiteral("can't open \"%1\" (%2)")
                                 .arg(fromMapText(path), fromMapText(strerror(error)));
        EXPECT_EQ(host.count(eMessage::Error, text), 1) << path.constData();
        EXPECT_FALSE(cIniFile(fromMapText(path)).contains(QString(), QString()));
        EXPECT_FALSE(cParser::loadFile(path.constData()));
    }
}

TEST(System, relativePathsBeginWithTheBasesOwnName) {
    QTemporaryDir folder;
    const QString base = QFileInfo(folder.path()).canonicalFilePath() + QStringLiteral("/game");
    QDir().mkpath(base);
    EXPECT_EQ(relativePath(base, base + QStringLiteral("/a.txt")), QStringLiteral("game/a.txt"));
    EXPECT_EQ(relativePath(base, QStringLiteral("\\other\\a.txt")), QStringLiteral("/other/a.txt"));
    EXPECT_EQ(relativePath(QString(), QStringLiteral("a\\b")), QStringLiteral("a\\b"));
    EXPECT_EQ(relativePath(QStringLiteral("/tmp"), QStringLiteral("/tmp/a")),
              QStringLiteral("tmp/a"));
}

// ---- Numbers and text

TEST(System, numberHelpersKeepTheirTolerances) {
    EXPECT_EQ(floorLog2(0), -1);
    EXPECT_EQ(floorLog2(1023), 9);
    EXPECT_EQ(roundHalfAway(-2.5f), -3);
    EXPECT_EQ(roundHalfAway(2.5f), 3);
    const cPlane a = {{0, 0.6f, 0.8f}, 10, 3, 0};
    const cPlane near = {{0.00009f, 0.6f, 0.8f}, 10.009f, 3, 0};
    const cPlane far = {{0, 0.6f, 0.8f}, 10.02f, 3, 0};
    const cPlane back = {{0, -0.6f, -0.8f}, -10, 3, 0};
    EXPECT_TRUE(planesEqual(a, near, false));
    EXPECT_FALSE(planesEqual(a, far, false));
    EXPECT_TRUE(planesEqual(a, back, true));
    EXPECT_FALSE(planesEqual(a, back, false));
    float tiny[3] = {-0.004f, 0, 0};
    snapVector(tiny);
    EXPECT_FALSE(std::signbit(tiny[0]));
}

TEST(System, textHelpersStayInTheirBuffers) {
    const char* text = "Some TEXT";
    EXPECT_EQ(T_Stristr(text, "text"), text + 5);
    EXPECT_EQ(T_Stristr(text, "texts"), nullptr);
    char out[6];
    T_ExtractFilePath("a/bcd/e", out, sizeof out);
    EXPECT_STREQ(out, "a/bcd");
    T_Sprintf(out, sizeof out, "%s", "longer than that");
    EXPECT_STREQ(out, "longe");
}

// ---- Vectors

TEST(Math, axialVectorsOfAnyLengthBecomeExactlyAxial) {
    for (int length = 1; length <= 8192; ++length) {
        float v[3] = {0, -float(length), 0};
        EXPECT_EQ(T_VectorNormalize(v), float(length));
        ASSERT_EQ(v[1], -1.0f) << length;
    }
}

TEST(Math, boxSideAgreesWithTheCorners) {
    const unsigned seed = 31;
    T_RandomSeed(seed);
    for (int i = 0; i < 2000; ++i) {
        cPlane plane = {};
        for (float& c : plane.normal)
            c = i % 2 ? 0 : float(T_RandomLong(-9, 9)) + 0.5f;
        if (i % 2)
            plane.normal[i % 3] = i % 4 == 1 ? 1.0f : -1.0f;
        T_VectorNormalize(plane.normal);
        plane.planeType = i % 2 ? i % 3 : 3;
        plane.dist = float(T_RandomLong(-30, 30)) + 0.25f;
        T_SetPlaneSignbits(&plane);
        float box[2][3];
        for (int axis = 0; axis < 3; ++axis) {
            box[0][axis] = float(T_RandomLong(-20, 19));
            box[1][axis] = box[0][axis] + float(T_RandomLong(1, 20));
        }
        int sides = 0;
        for (int corner = 0; corner < 8; ++corner) {
            const float p[3] = {box[corner & 1][0], box[corner >> 1 & 1][1], box[corner >> 2][2]};
            sides |= vecDot(p, plane.normal) >= plane.dist ? 1 : 2;
        }
        EXPECT_EQ(T_BoxOnPlaneSide(box[0], box[1], &plane), sides)
            << "seed " << seed << " box " << i;
    }
}

TEST(Math, transformsTurnRightHandedAboutTheAxesInTurn) {
    const float offset[3] = {1, 2, 3}, y[3] = {0, 1, 0};
    float built[16], matrix[16], out[3];
    T_BuildTransformMatrix(90, 0, 90, offset, built);
    T_TransposeMatrix(built, matrix);
    T_VectorTransform(y, matrix, out); // about x first: y to z, which z leaves alone
    EXPECT_NEAR(out[0], 1, 1e-6f);
    EXPECT_NEAR(out[2], 4, 1e-6f);
    const float angles[3] = {30, 90, 0};
    float forward[3], right[3], up[3], cross[3];
    T_AngleVectors(angles, forward, right, up);
    EXPECT_NEAR(forward[1], std::cos(0.52359878f), 1e-6f);
    EXPECT_NEAR(forward[2], -0.5f, 1e-6f);
    EXPECT_NEAR(right[0], 1, 1e-6f);
    vecCross(right, forward, cross);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(cross[i], up[i], 1e-6f);
    const float axis[3] = {0, 0, 5};
    T_RotatePointAroundVector(out, axis, y, 90);
    EXPECT_NEAR(out[0], -1, 1e-6f);
}
