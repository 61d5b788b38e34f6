// SPDX-License-Identifier: MIT
#include "media/tModel.h"

#include <cmath>

// Far beyond any map.
static constexpr float FARTHEST = 1e6f;
// Each may be looked for in several files.
static constexpr size_t MOST_SKINS = 1024;

const cModelSequence& cModel::sequence(int index) const {
    return sequences[index >= 0 && size_t(index) < sequences.size() ? size_t(index) : 0];
}

size_t cModel::frameAt(int index, float position) const {
    const cModelSequence& range = sequence(index);
    const float inRange = std::fmod(position, float(range.count));
    if (!(inRange >= 0))
        return range.first;
    return range.first + std::min(size_t(inRange), range.count - 1);
}

static void widen(cModelFrame& box, const cPoint& point) {
    for (size_t i = 0; i < 3; ++i) {
        box.mins[i] = std::min(box.mins[i], point[i]);
        box.maxs[i] = std::max(box.maxs[i], point[i]);
    }
}

cModelFrame cModel::box(const cModelSequence& range) const {
    cModelFrame box = frames[range.first];
    for (size_t i = range.first; i < range.first + range.count; ++i) {
        widen(box, frames[i].mins);
        widen(box, frames[i].maxs);
    }
    return box;
}

// ---- Checks

static bool isNear(float value) {
    return std::fabs(value) <= FARTHEST; // not a number is never
}

static bool isSound(const cModelSurface& surface, size_t frames) {
    for (const cModelCorner& corner : surface.corners) {
        if (corner.vertex >= surface.vertexCount || !isNear(corner.s) || !isNear(corner.t))
            return false;
    }
    for (const cPoint& p : surface.positions) {
        if (!isNear(p[0]) || !isNear(p[1]) || !isNear(p[2]))
            return false;
    }
    return surface.corners.size() % 3 == 0 &&
           surface.positions.size() == surface.vertexCount * frames;
}

static void findBox(const cModel& model, size_t index, cModelFrame& frame) {
    bool first = true;
    for (const cModelSurface& surface : model.surfaces) {
        for (size_t i = 0; i < surface.vertexCount; ++i) {
            const cPoint& point = surface.positions[index * surface.vertexCount + i];
            if (first)
                frame.mins = frame.maxs = point;
            first = false;
            widen(frame, point);
        }
    }
}

static std::string stemOf(const std::string& name) {
    return name.substr(0, name.find_last_not_of("0123456789") + 1);
}

static void findSequences(cModel& model) {
    for (size_t i = 0; i < model.frames.size(); ++i) {
        if (i == 0 || stemOf(model.frames[i].name) != stemOf(model.frames[i - 1].name))
            model.sequences.push_back({i, 0});
        ++model.sequences.back().count;
    }
}

cProblem finishModel(cModel& model) {
    if (model.frames.empty())
        return "the model has no frames";
    if (model.skins.size() > MOST_SKINS)
        return "the model has too many skins";
    size_t corners = 0;
    for (const cModelSurface& surface : model.surfaces) {
        if (!isSound(surface, model.frames.size()))
            return "the model has triangles or vertices that make no sense";
        corners += surface.corners.size();
    }
    if (corners == 0)
        return "the model has no triangles";
    for (size_t i = 0; i < model.frames.size(); ++i)
        findBox(model, i, model.frames[i]);
    findSequences(model);
    return nullptr;
}
