// SPDX-License-Identifier: MIT
// Archives (.pk3, .zip) with picture files in folders. Where one has a folder "textures", only what
// lies below it counts.
#include "media/tImageReaders.h"
#include "media/tMediaNames.h"
#include "media/tPackage.h"

#include <QString>
#include <zip.h>

namespace {

constexpr size_t BLOCK = size_t(1) << 20; // memory grows with what is there, not with what is told

struct cZipCloser {
    void operator()(zip_t* archive) const { zip_discard(archive); }
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};

struct cZipEntry {
    zip_uint64_t index;
    std::string path;
};

class cZip : public cPackage {
public:
    explicit cZip(zip_t* archive) : m_archive(archive) {
        bool hasFolder = false;
        const zip_int64_t total = zip_get_num_entries(archive, 0);
        for (zip_int64_t i = 0; i < total; ++i) {
            const char* path = zip_get_name(archive, zip_uint64_t(i), 0);
            if (!path || !imageFormatOf(path))
                continue;
            m_entries.push_back({zip_uint64_t(i), local(path)});
            hasFolder |= isBelowFolder(m_entries.back());
        }
        if (hasFolder)
            m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(),
                                           [](const cZipEntry& e) { return !isBelowFolder(e); }),
                            m_entries.end());
    }

    int count() const override { return int(m_entries.size()); }
    std::string name(int index) const override { return textureName(id(index)); }
    std::string id(int index) const override { return m_entries[size_t(index)].path; }

    cProblem read(int index, const cPalette*, cImageBudget& budget, cImage& image) override {
        const cZipEntry& entry = m_entries[size_t(index)];
        if (const cProblem problem = unpack(entry.index))
            return problem;
        return imageFormatOf(entry.path)
            ->read(cBytes(m_bytes.data(), m_bytes.size()), budget, image);
    }

private:
    // Names in archives are UTF-8, those of the editor of its codec.
    static std::string local(const char* path) {
        return QString::fromUtf8(path).toLocal8Bit().toStdString();
    }

    static bool isBelowFolder(const cZipEntry& entry) {
        return behindTexturesFolder(entry.path) != std::string::npos;
    }

    cProblem unpack(zip_uint64_t index) {
        const std::unique_ptr<zip_file_t, cZipCloser> file(
            zip_fopen_index(m_archive.get(), index, 0));
        if (!file)
            return "the entry can't be unpacked";
        m_bytes.clear();
        for (zip_int64_t got = 1; got > 0;) {
            const size_t size = m_bytes.size();
            if (size > MAX_ENTRY_BYTES)
                return "the entry is too large";
            m_bytes.resize(size + BLOCK);
            got = zip_fread(file.get(), m_bytes.data() + size, BLOCK);
            if (got < 0)
                return "the entry is damaged";
            m_bytes.resize(size + size_t(got));
        }
        return nullptr;
    }

    std::unique_ptr<zip_t, cZipCloser> m_archive;
    std::vector<cZipEntry> m_entries;
    std::vector<uint8_t> m_bytes; // of the last entry
};

std::unique_ptr<cPackage> open(zip_source_t* source, cProblem& problem) {
    zip_t* archive = source ? zip_open_from_source(source, ZIP_RDONLY, nullptr) : nullptr;
    problem = archive ? nullptr : "this is no archive";
    if (archive)
        return std::make_unique<cZip>(archive);
    zip_source_free(source);
    return nullptr;
}

} // namespace

std::unique_ptr<cPackage> openZip(const char* path, cProblem& problem) {
    return open(zip_source_file_create(path, 0, -1, nullptr), problem);
}

std::unique_ptr<cPackage> openZip(cBytes file, cProblem& problem) {
    return open(zip_source_buffer_create(file.data(), file.size(), 0, nullptr), problem);
}
