// SPDX-License-Identifier: MIT
// Images on the card: their levels, read back, and faces that show them, texel by texel.
#include "views/tTextureUpload.h"
#include "views/tViewFixture.h"

#include "document/tBrush.h"
#include "document/tFaceMapping.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"

#include <cmath>
#include <cstring>
#include <list>
#include <vector>

class TextureTest : public ViewFixture {
protected:
    using cBytes = std::vector<uint8_t>;

    ~TextureTest() override {
        for (cTextureImage& image : m_images)
            uploader.free(&image);
    }

    cTextureImage& upload(int width, int height, uint32_t format, const cBytes& pixels,
                          QIcon** icon = nullptr) {
        m_images.push_back({1, width, height, int(pixels.size()), format, format, 0, nullptr});
        uploader.upload(&m_images.back(), pixels.data(), icon);
        return m_images.back();
    }
    static cBytes pattern(int width, int height, int channels) {
        cBytes bytes(size_t(width * height * channels));
        for (size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = uint8_t(i * 37 + i / 11);
        return bytes;
    }

    QSize levelSize(int level) {
        GLint width = 0, height = 0;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_WIDTH, &width);
        glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_HEIGHT, &height);
        return {width, height};
    }
    // As the format of the image has it.
    cBytes levelOf(const cTextureImage& image, int level, GLenum format, int channels) {
        uploader.makeContextCurrent();
        glBindTexture(GL_TEXTURE_2D, image.glName);
        const QSize size = levelSize(level);
        cBytes bytes(size_t(size.width() * size.height() * channels));
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glGetTexImage(GL_TEXTURE_2D, level, format, GL_UNSIGNED_BYTE, bytes.data());
        glPixelStorei(GL_PACK_ALIGNMENT, 4);
        return bytes;
    }
    std::vector<QSize> sizesOf(const cTextureImage& image) {
        uploader.makeContextCurrent();
        glBindTexture(GL_TEXTURE_2D, image.glName);
        std::vector<QSize> sizes;
        while (!levelSize(int(sizes.size())).isEmpty())
            sizes.push_back(levelSize(int(sizes.size())));
        return sizes;
    }

    cTextureUpload uploader{*viewHost.shareWidget()};

private:
    std::list<cTextureImage> m_images;
};

TEST_F(TextureTest, everyFormatArrivesWithEachRowInItsPlace) {
    const struct {
        GLenum format, sent;
        int channels;
    } cases[] = {{GL_RGB, GL_RGB, 3},
                 {GL_RGBA, GL_RGBA, 4},
                 {GL_LUMINANCE, GL_LUMINANCE, 1},
                 {GL_LUMINANCE_ALPHA, GL_LUMINANCE_ALPHA, 2},
                 {0, GL_RGBA, 4}};
    for (const auto& c : cases) {
        const cBytes bytes = pattern(2, 8, c.channels);
        const cTextureImage& image = upload(2, 8, c.format, bytes);
        EXPECT_EQ(levelOf(image, 0, c.sent, c.channels), bytes) << c.format;
    }
    host.TextureCompression = true;
    EXPECT_EQ(sizesOf(upload(64, 64, GL_COMPRESSED_RGB, pattern(64, 64, 3))).size(), 7u);
}

TEST_F(TextureTest, sizesOfTheLevelsOnBothRoads) {
    const struct {
        int width, height;
        QSize level, halved;
    } cases[] = {{640, 200, {512, 256}, {256, 128}},
                 {1, 1, {1, 1}, {1, 1}},
                 {64, 16, {64, 16}, {64, 16}},
                 {64, 128, {64, 128}, {64, 64}},
                 {2048, 3, {512, 4}, {256, 4}}};
    host.MinHalfSizeTextureDims = 64;
    for (const auto& c : cases) {
        for (const bool halved : {false, true}) {
            host.HalfSizeTextures = halved;
            std::vector<QSize> wanted = {halved ? c.halved : c.level};
            while (wanted.back() != QSize(1, 1))
                wanted.emplace_back(std::max(wanted.back().width() / 2, 1),
                                    std::max(wanted.back().height() / 2, 1));
            for (const bool automatic : {false, true}) {
                host.AutoMipmaps = automatic;
                const cTextureImage& image =
                    upload(c.width, c.height, GL_RGB, pattern(c.width, c.height, 3));
                EXPECT_EQ(sizesOf(image), wanted) << c.width << " by " << c.height;
                EXPECT_EQ(image.width, c.width);
            }
        }
    }
}

TEST_F(TextureTest, aLevelIsTheAverageOfTheOneAbove) {
    host.AutoMipmaps = false;
    const cTextureImage& image = upload(16, 4, GL_RGBA, pattern(16, 4, 4));
    for (int level = 1, width = 16, height = 4; level < 5; ++level) {
        const cBytes above = levelOf(image, level - 1, GL_RGBA, 4);
        const cBytes got = levelOf(image, level, GL_RGBA, 4);
        const int dx = width > 1 ? 2 : 1, dy = height > 1 ? 2 : 1;
        for (size_t i = 0; i < got.size(); ++i) {
            const int x = int(i) / 4 % (width / dx) * dx, y = int(i) / 4 / (width / dx) * dy;
            int sum = 0;
            for (int k = 0; k < dx * dy; ++k)
                sum += above[size_t(((y + k / dx) * width + x + k % dx) * 4) + i % 4];
            EXPECT_EQ(got[i], sum / (dx * dy)) << level << " " << i;
        }
        width /= dx;
        height /= dy;
    }
}

TEST_F(TextureTest, reducedImagesAreAveragedAndBlended) {
    cBytes stripes(2048 * 2);
    for (size_t i = 0; i < stripes.size(); ++i)
        stripes[i] = i % 4 == 0 ? 200 : 0; // every fourth texel: taking one of four is a lie
    EXPECT_EQ(levelOf(upload(2048, 2, GL_LUMINANCE, stripes), 0, GL_LUMINANCE, 1),
              cBytes(512 * 2, 50));
    const cBytes ramp = {0, 90, 180}; // to four: at 0, 3/4, 6/4, 9/4
    EXPECT_EQ(levelOf(upload(3, 1, GL_LUMINANCE, ramp), 0, GL_LUMINANCE, 1),
              cBytes({0, 67, 135, 180}));
    EXPECT_EQ(levelOf(upload(1, 3, GL_LUMINANCE, ramp), 0, GL_LUMINANCE, 1),
              cBytes({0, 67, 135, 180}));
}

TEST_F(TextureTest, brightnessIsPutOnceOnColoursAndIcons) {
    const struct {
        int slider;
        cBytes level;
    } cases[] = {{33, {10, 20, 250, 7}}, {100, {20, 40, 255, 7}}, {0, {5, 10, 125, 7}}};
    for (const auto& c : cases) {
        document.folders.textureBrightness = c.slider;
        const cActiveConfigScope active(&document.folders);
        QIcon* icon = nullptr;
        const cTextureImage& image = upload(1, 1, GL_RGBA, {10, 20, 250, 7}, &icon);
        EXPECT_EQ(levelOf(image, 0, GL_RGBA, 4), c.level) << c.slider;
        delete icon;
        upload(1, 1, GL_RGB, {10, 20, 250}, &icon);
        const QImage picture = icon->pixmap(24, 24).toImage();
        delete icon;
        EXPECT_EQ(picture.pixel(1, 22), qRgb(c.level[0], c.level[1], c.level[2]));
        EXPECT_EQ(qAlpha(picture.pixel(0, 22)) + qAlpha(picture.pixel(23, 1)), 0) << "the border";
    }
}

// ---- Faces

// Where the middle of a texel lies on the plane of a face.
static void pointOfTexel(const cFaceData& face, double u, double v, float point[3]) {
    const cFaceTexture& tex = face.tex;
    const double rows[3][4] = {
        {tex.uAxis[0], tex.uAxis[1], tex.uAxis[2], (u - double(tex.uShift)) * double(tex.uScale)},
        {tex.vAxis[0], tex.vAxis[1], tex.vAxis[2], (v - double(tex.vShift)) * double(tex.vScale)},
        {face.normal[0], face.normal[1], face.normal[2], face.dist}};
    const auto determinant = [&](int replaced) {
        const auto at = [&](int row, int column) {
            return rows[row][column == replaced ? 3 : column];
        };
        double sum = 0;
        for (int i = 0; i < 3; ++i)
            sum += at(0, i) * (at(1, (i + 1) % 3) * at(2, (i + 2) % 3) -
                               at(1, (i + 2) % 3) * at(2, (i + 1) % 3));
        return sum;
    };
    for (int i = 0; i < 3; ++i)
        point[i] = float(determinant(i) / determinant(3));
}

TEST_F(TextureTest, facesShowTheirImageTexelByTexel) {
    static constexpr int WIDTH = 16, HEIGHT = 8;
    host.TextureFilter = 0;
    host.AnisotropicFilter = false;
    cTexture* texture = host.addTexture("chart", WIDTH, HEIGHT);
    cBytes pixels;
    for (int i = 0; i < WIDTH * HEIGHT; ++i)
        for (const int value : {i % WIDTH * 16, i / WIDTH * 32, 100})
            pixels.push_back(uint8_t(value));
    texture->image = &upload(WIDTH, HEIGHT, GL_RGB, pixels);
    // Facing +y, where shades are 1, and away from the origin's cross.
    cBrushData* brush = addBox(270, -20, 280, 330, 0, 320);
    cFaceData* face = nullptr;
    for (cFaceData* each : facesOf(brush))
        if (each->normal[1] > 0.5f)
            face = each;
    cCanvas* camera = openCanvas(VIEW_CAMERA);
    camera->setViewType(VIEW_CAMERA, RM_TEXTURED);
    const float origin[3] = {300, 35, 300}, towardsFace[3] = {0, 270, 0};
    camera->setCameraOrigin(origin);
    camera->setCameraAngles(towardsFace);
    for (const uint32_t align : {uint32_t(FT_ALIGN_WORLD), uint32_t(FT_ALIGN_FACE), 0u})
        for (const float degrees : {0.0f, 90.0f, 37.0f, -120.0f})
            for (const float scale : {2.0f, -2.0f}) {
                cFaceTexture block = face->tex;
                strcpy(block.name, "chart");
                block.uShift = 3;
                block.vShift = -5;
                block.uScale = scale;
                block.vScale = 3;
                applyTextureBlock(face, block);
                face->tex.alignFlags = align;
                resetAxes(face);
                rotateAxes(face, degrees);
                computeTexCoords(face);
                noteChange(brush);
                document.map.markChanged();
                const QImage image = picture(camera);
                int checked = 0;
                for (int v = -220; v < 220; ++v)
                    for (int u = -250; u < 250; ++u) {
                        float point[3], pixel[2];
                        pointOfTexel(*face, u + 0.5, v + 0.5, point);
                        if (std::abs(point[0] - 300) > 29 || std::abs(point[2] - 300) > 19 ||
                            !camera->projectToScreen(point, pixel))
                            continue;
                        ++checked;
                        const int x = u & (WIDTH - 1), y = v & (HEIGHT - 1);
                        EXPECT_EQ(image.pixel(int(pixel[0]), int(pixel[1])),
                                  qRgb(x * 16, y * 32, 100))
                            << align << " " << degrees << " " << scale << ": " << u << " " << v;
                    }
                EXPECT_GT(checked, 100);
            }
}
