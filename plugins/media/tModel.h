// SPDX-License-Identifier: MIT
// A model as all its formats come down to: surfaces of triangles, frame by frame. Readers are pure
// functions from bytes to one of these.
#pragma once

#include "media/tBytes.h"
#include "media/tImage.h"

#include <array>
#include <string>
#include <vector>

using cPoint = std::array<float, 3>;

struct cModelCorner {
    uint32_t vertex = 0;
    float s = 0, t = 0; // t runs down from the first row of the skin
};

struct cModelSurface {
    std::vector<cModelCorner> corners; // three a triangle, clockwise seen from outside
    std::vector<cPoint> positions;     // of all vertices, frame by frame; z up
    size_t vertexCount = 0;            // in one frame
    std::vector<size_t> skins;         // of cModel::skins, to choose from
};

// A picture, or the name of its file when the model has none.
struct cModelSkin {
    cImage image;
    std::string file;
};

struct cModelFrame {
    std::string name;
    cPoint mins = {}, maxs = {};
};

// A run of frames.
struct cModelSequence {
    size_t first = 0, count = 0;
};

struct cModel {
    std::vector<cModelSurface> surfaces;
    std::vector<cModelFrame> frames;
    std::vector<cModelSequence> sequences;
    std::vector<cModelSkin> skins;

    // The frame at that position of a sequence, which begins anew at its end; out of range counts
    // as the first sequence.
    size_t frameAt(int sequence, float position) const;
    const cModelSequence& sequence(int index) const;
    // The box of those frames.
    cModelFrame box(const cModelSequence& range) const;
};

using cModelReader = cProblem (*)(cBytes file, const cPalette* palette, cImageBudget& budget,
                                  cModel& model);
cProblem readMdl(cBytes file, const cPalette* palette, cImageBudget& budget, cModel& model);
cProblem readMd2(cBytes file, const cPalette* palette, cImageBudget& budget, cModel& model);
cProblem readMd3(cBytes file, const cPalette* palette, cImageBudget& budget, cModel& model);
cProblem readObj(cBytes file, const cPalette* palette, cImageBudget& budget, cModel& model);

// What every reader ends with: whether all corners and positions make sense, then the boxes of the
// frames, and the sequences, which are runs of frames whose names differ in their number alone.
cProblem finishModel(cModel& model);
