// SPDX-License-Identifier: MIT
// Models in text (.obj): one frame, a surface for each material, whose name is that of its skin.
// There y is up and z comes towards the viewer; here that is where the model looks, +x.
#include "media/tModel.h"

#include <charconv>
#include <string_view>
#include <unordered_map>

namespace {

using cTexel = std::array<float, 2>;

// The words of a line, or what slashes part in one of them.
class cWords {
public:
    cWords(std::string_view text, const char* separators)
        : m_rest(text), m_separators(separators) {}

    bool next(std::string_view& word) {
        if (m_rest.empty())
            return false;
        const size_t end = std::min(m_rest.find_first_of(m_separators), m_rest.size());
        word = m_rest.substr(0, end);
        m_rest.remove_prefix(std::min(end + 1, m_rest.size()));
        return true;
    }
    // Blanks in a row count as one.
    bool nextFilled(std::string_view& word) {
        while (next(word)) {
            if (!word.empty())
                return true;
        }
        return false;
    }

private:
    std::string_view m_rest;
    const char* m_separators;
};

template<class T> T number(std::string_view word) {
    T value = {};
    std::from_chars(word.data(), word.data() + word.size(), value);
    return value;
}

class cObjReader {
public:
    explicit cObjReader(cModel& model) : m_model(model) { m_model.frames.emplace_back(); }

    cProblem read(std::string_view text) {
        cWords lines(text, "\r\n");
        for (std::string_view line; lines.nextFilled(line);) {
            if (!readLine(line))
                return "a face of the model names what is not there";
        }
        return finishModel(m_model);
    }

private:
    bool readLine(std::string_view line) {
        cWords words(line, " \t");
        std::string_view kind;
        words.nextFilled(kind);
        if (kind == "v")
            readVertex(words);
        else if (kind == "vt")
            readTexel(words);
        else if (kind == "usemtl")
            choose(words);
        else if (kind == "f")
            return readFace(words);
        return true;
    }

    static void readNumbers(cWords& words, float* out, size_t count) {
        std::string_view word;
        for (size_t i = 0; i < count && words.nextFilled(word); ++i)
            out[i] = number<float>(word);
    }

    void readVertex(cWords& words) {
        cPoint p = {};
        readNumbers(words, p.data(), p.size());
        m_vertices.push_back({p[2], p[0], p[1]});
    }

    void readTexel(cWords& words) {
        cTexel texel = {};
        readNumbers(words, texel.data(), texel.size());
        m_texels.push_back({texel[0], 1 - texel[1]});
    }

    void choose(cWords& words) {
        std::string_view name;
        words.nextFilled(name);
        const auto [found, isNew] = m_surfaces.emplace(name, m_model.surfaces.size());
        m_surface = found->second;
        if (!isNew)
            return;
        m_model.surfaces.emplace_back();
        m_locals.emplace_back();
        m_model.surfaces.back().skins.push_back(m_model.skins.size());
        m_model.skins.push_back({cImage(), std::string(name)});
    }

    // Counted from 1, or back from the last one; false when there is none.
    static bool find(std::string_view word, size_t count, size_t& index) {
        const int64_t told = number<int64_t>(word);
        const int64_t at = told < 0 ? int64_t(count) + told : told - 1;
        index = size_t(at);
        return at >= 0 && at < int64_t(count);
    }

    bool readCorner(std::string_view word, cModelCorner& corner) {
        cWords parts(word, "/");
        std::string_view vertex, texel;
        size_t index = 0;
        if (!parts.next(vertex) || !find(vertex, m_vertices.size(), index))
            return false;
        corner.vertex = local(index);
        if (!parts.next(texel) || texel.empty())
            return true;
        if (!find(texel, m_texels.size(), index))
            return false;
        corner.s = m_texels[index][0];
        corner.t = m_texels[index][1];
        return true;
    }

    // A surface holds the vertices that it uses.
    uint32_t local(size_t vertex) {
        cModelSurface& surface = m_model.surfaces[m_surface];
        const auto [found, isNew] =
            m_locals[m_surface].emplace(vertex, uint32_t(surface.vertexCount));
        if (isNew) {
            surface.positions.push_back(m_vertices[vertex]);
            ++surface.vertexCount;
        }
        return found->second;
    }

    void put(const std::array<cModelCorner, 3>& triangle) {
        auto& corners = m_model.surfaces[m_surface].corners;
        corners.insert(corners.end(), triangle.begin(), triangle.end());
    }

    bool readFace(cWords& words) {
        if (m_model.surfaces.empty()) {
            m_model.surfaces.emplace_back();
            m_locals.emplace_back();
        }
        cModelCorner first, before;
        std::string_view word;
        for (size_t i = 0; words.nextFilled(word); ++i) {
            cModelCorner corner;
            if (!readCorner(word, corner))
                return false;
            if (i == 0)
                first = corner;
            else if (i > 1)
                put({first, corner, before});
            before = corner;
        }
        return true;
    }

    cModel& m_model;
    std::vector<cPoint> m_vertices;
    std::vector<cTexel> m_texels;
    std::unordered_map<std::string_view, size_t> m_surfaces;    // by material
    std::vector<std::unordered_map<size_t, uint32_t>> m_locals; // vertices of each surface
    size_t m_surface = 0;
};

} // namespace

cProblem readObj(cBytes file, const cPalette*, cImageBudget&, cModel& model) {
    return cObjReader(model).read(
        std::string_view(reinterpret_cast<const char*>(file.data()), file.size()));
}
