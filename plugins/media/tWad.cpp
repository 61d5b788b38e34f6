// SPDX-License-Identifier: MIT
// Texture packages (.wad) of both kinds: one palette for all, or a palette in each image.
#include "media/tPackage.h"

#include <cstdio>

namespace {

constexpr uint64_t HEADER_SIZE = 12, ENTRY_SIZE = 32, PICTURE_HEADER_SIZE = 40;
constexpr int MIPMAPS = 4;
constexpr char HOLES = '{'; // first in the name of a picture with holes
enum eEntry { PlainTexture = 0x44, TextureWithPalette = 0x43 };

struct cFileCloser {
    void operator()(FILE* file) const { fclose(file); }
};
using cFilePointer = std::unique_ptr<FILE, cFileCloser>;

struct cWadEntry {
    std::string name;
    uint64_t at;
    uint64_t size;
    bool isPacked;
    bool hasPalette;
};

class cWad : public cPackage {
public:
    explicit cWad(cFilePointer file) : m_file(std::move(file)) {}

    cProblem readDirectory() {
        fseeko(m_file.get(), 0, SEEK_END);
        m_size = uint64_t(std::max<off_t>(ftello(m_file.get()), 0));
        if (!load(0, HEADER_SIZE) || !(bytes().startsWith("WAD2") || bytes().startsWith("WAD3")))
            return "this is no texture package";
        const uint64_t count = bytes().u32(4), at = bytes().u32(8);
        if (!load(at, count * ENTRY_SIZE))
            return "its directory lies outside of the file";
        for (uint64_t i = 0; i < count; ++i)
            addEntry(bytes().part(i * ENTRY_SIZE, ENTRY_SIZE));
        return nullptr;
    }

    int count() const override { return int(m_entries.size()); }
    std::string name(int index) const override { return m_entries[size_t(index)].name; }
    std::string id(int index) const override { return name(index); }

    cProblem read(int index, const cPalette* palette, cImageBudget& budget,
                  cImage& image) override {
        const cWadEntry& entry = m_entries[size_t(index)];
        if (entry.isPacked)
            return "packed pictures are not known";
        if (entry.size > MAX_ENTRY_BYTES || !load(entry.at, entry.size))
            return "the picture lies outside of the file";
        return readPicture(entry, palette ? *palette : GREY_PALETTE, budget, image);
    }

private:
    cBytes bytes() const { return cBytes(m_bytes.data(), m_bytes.size()); }

    bool load(uint64_t at, uint64_t count) {
        if (at > m_size || count > m_size - at || fseeko(m_file.get(), off_t(at), SEEK_SET) != 0)
            return false;
        m_bytes.resize(size_t(count));
        return fread(m_bytes.data(), 1, m_bytes.size(), m_file.get()) == m_bytes.size();
    }

    // Fonts, palettes and pictures of menus are no textures.
    void addEntry(cBytes entry) {
        const int kind = entry.u8(12);
        if (kind == PlainTexture || kind == TextureWithPalette)
            m_entries.push_back({entry.text(16, 16), entry.u32(0), entry.u32(4), entry.u8(13) != 0,
                                 kind == TextureWithPalette});
    }

    cProblem readPicture(const cWadEntry& entry, cPalette palette, cImageBudget& budget,
                         cImage& image) const {
        const uint64_t width = bytes().u32(16), height = bytes().u32(20), at = bytes().u32(24);
        if (bytes().size() < PICTURE_HEADER_SIZE)
            return "the picture is cut off";
        if (const cProblem problem = budget.take(int64_t(width), int64_t(height)))
            return problem;
        if (!bytes().holds(at, width * height))
            return "the picture is cut off";
        if (entry.hasPalette && !readPalette(width, height, palette))
            return "the palette of the picture is cut off";
        image.resize(int(width), int(height));
        paint(bytes().data() + at, palette, entry.name[0] == HOLES, image);
        return nullptr;
    }

    // It follows the smallest copy, with the number of its colours before it.
    bool readPalette(uint64_t width, uint64_t height, cPalette& palette) const {
        const int last = MIPMAPS - 1;
        const uint64_t at = bytes().u32(24 + 4 * last) + (width >> last) * (height >> last);
        const uint64_t size = uint64_t(bytes().u16(at)) * 3;
        if (size == 0 || size > palette.size() || !bytes().holds(at + 2, size))
            return false;
        palette.fill(0);
        memcpy(palette.data(), bytes().data() + at + 2, size);
        return true;
    }

    cFilePointer m_file;
    uint64_t m_size = 0;
    std::vector<uint8_t> m_bytes; // of the last load
    std::vector<cWadEntry> m_entries;
};

std::unique_ptr<cPackage> open(FILE* file, cProblem& problem) {
    problem = "the file can't be opened";
    if (!file)
        return nullptr;
    auto wad = std::make_unique<cWad>(cFilePointer(file));
    problem = wad->readDirectory();
    return problem ? nullptr : std::move(wad);
}

} // namespace

std::unique_ptr<cPackage> openWad(const char* path, cProblem& problem) {
    return open(fopen(path, "rb"), problem);
}

std::unique_ptr<cPackage> openWad(cBytes file, cProblem& problem) {
    return open(fmemopen(const_cast<uint8_t*>(file.data()), file.size(), "rb"), problem);
}
