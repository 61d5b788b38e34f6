// SPDX-License-Identifier: MIT
// What is drawn after any change is what would be drawn if all were made anew.
#include "views/tMapBuffers.h"

#include "document/tFace.h"
#include "document/tFaceMapping.h"
#include "support/tRandomWalk.h"
#include "support/tWalkedBoxes.h"

#include <QElapsedTimer>
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <iostream>
#include <map>

namespace {
using cBytes = std::vector<uint8_t>;
using cPrimitives = std::vector<cBytes>; // corners with all their colours, one after the other

// Reads what the buffers would have OpenGL draw. They keep to main memory, so no context is needed.
class cDrawn {
public:
    cDrawn() { cGLBuffer::keepToMemory(true); }
    ~cDrawn() { cGLBuffer::keepToMemory(false); }

    // By key: what is drawn at all, and what as selected.
    std::map<std::string, cPrimitives> read(cMap& map) {
        static const uint8_t markColor[4] = {255, 200, 40, 255};
        m_buffers = &cMapBuffers::of(map);
        m_buffers->update(0x8000000, markColor);
        for (int look = 0; look < LOOK_COUNT; ++look)
            m_buffers->look(eLook(look));
        std::map<std::string, cPrimitives> drawn;
        for (const uint32_t number : m_buffers->order())
            for (const cDrawCell& cell : m_buffers->row(number).cells) {
                const cDrawKey& key = m_buffers->row(number).key;
                const uint8_t* indices = m_buffers->indices().bind();
                add(drawn[textOf(key)], key, indices, cell.first, cell.count);
                if (m_buffers->leaves()[cell.leaf].isWhollySelected())
                    add(drawn["selected " + textOf(key)], key, indices, cell.first, cell.count);
            }
        for (const cSelectedCell& cell : m_buffers->selectedCells()) {
            const cDrawKey& key = m_buffers->row(cell.row).key;
            add(drawn["selected " + textOf(key)], key, m_buffers->selectedIndices().bind(),
                cell.first, cell.count);
        }
        for (const cDrawLeaf& leaf : m_buffers->leaves())
            addLists(drawn, leaf);
        for (auto it = drawn.begin(); it != drawn.end();) {
            std::sort(it->second.begin(), it->second.end());
            it = it->second.empty() ? drawn.erase(it) : std::next(it);
        }
        return drawn;
    }

private:
    static std::string textOf(const cDrawKey& key) {
        return std::to_string(key.kind) + " " +
               std::to_string(reinterpret_cast<uintptr_t>(key.texture)) + " " +
               std::to_string(key.color) + " " + std::to_string(key.facing) + " " +
               std::to_string(key.traits);
    }

    void append(cBytes& bytes, const cGLBuffer& buffer, uint32_t place, size_t size) const {
        const uint8_t* first = buffer.bind() + place * size;
        bytes.insert(bytes.end(), first, first + size);
    }

    void appendVertex(cBytes& bytes, uint32_t vertex) const {
        append(bytes, m_buffers->vertices(), vertex, sizeof(cShapeVertex));
        for (int look = 0; look < LOOK_COUNT; ++look)
            append(bytes, m_buffers->look(eLook(look)), vertex, 4);
    }

    void add(cPrimitives& drawn, const cDrawKey& key, const uint8_t* indices, uint32_t first,
             uint32_t count) const {
        const uint32_t corners = key.kind == KIND_FACES ? 3 : key.kind == KIND_CORNERS ? 1 : 2;
        for (uint32_t i = 0; i < count; i += corners) {
            cBytes bytes;
            for (uint32_t k = 0; k < corners; ++k) {
                uint32_t index;
                memcpy(&index, indices + (first + i + k) * 4, 4);
                if (key.kind == KIND_MARKS)
                    for (int axis = 0; axis < 3; ++axis)
                        append(bytes, m_buffers->marks(axis), index, 3 * sizeof(float));
                else
                    appendVertex(bytes, index);
            }
            if (key.kind == KIND_FACES && key.facing != FACING_OTHER)
                expectFacing(bytes, key.facing);
            drawn.push_back(bytes);
        }
    }

    // All corners of a face that looks along an axis are equally far along it.
    static void expectFacing(const cBytes& triangle, int facing) {
        const size_t vertexBytes = triangle.size() / 3;
        float along[3];
        for (size_t k = 0; k < 3; ++k) {
            float xyz[3];
            memcpy(xyz, triangle.data() + k * vertexBytes, sizeof xyz);
            along[k] = xyz[facing / 2];
        }
        EXPECT_NEAR(along[0], along[1], 0.01f);
        EXPECT_NEAR(along[0], along[2], 0.01f);
    }

    void addLists(std::map<std::string, cPrimitives>& drawn, const cDrawLeaf& leaf) const {
        const auto addVertices = [&](const char* list, uint32_t first, uint32_t count) {
            cBytes bytes;
            for (uint32_t i = 0; i < count; ++i)
                appendVertex(bytes, first + i);
            drawn[list].push_back(bytes);
        };
        for (const cOutlineRun& run : leaf.outlines) // of many faces each by itself
            for (uint32_t i = 0; i < run.count; i += run.row == cOutlineRun::MANY ? 4 : run.count)
                addVertices("outline", run.first + i, run.row == cOutlineRun::MANY ? 4 : run.count);
        for (const cTranslucentFace& face : leaf.translucent)
            addVertices("translucent", face.first, face.count);
        for (const uint32_t slot : leaf.arrows)
            addVertices("arrow", m_buffers->slot(slot).first, m_buffers->slot(slot).count);
        for (const uint32_t slot : leaf.figures)
            addVertices("figure", m_buffers->slot(slot).first, m_buffers->slot(slot).count);
        for (const uint32_t number : leaf.objects) {
            const cDrawSlot& slot = m_buffers->slot(number);
            for (uint32_t i = 0; i < slot.count; ++i) {
                cShapeVertex vertex;
                memcpy(&vertex, m_buffers->vertices().bind() + (slot.first + i) * sizeof vertex,
                       sizeof vertex);
                for (int axis = 0; axis < 3; ++axis)
                    EXPECT_TRUE(vertex.xyz[axis] >= leaf.mins[axis] &&
                                vertex.xyz[axis] <= leaf.maxs[axis]);
            }
        }
    }

    cMapBuffers* m_buffers = nullptr;
};

using cContents = std::map<std::string, cPrimitives>;

// Empty, or a list in which the two differ: kind, texture, colour, facing, traits.
QString differenceOf(const cContents& kept, const cContents& anew) {
    cContents both = kept;
    both.insert(anew.begin(), anew.end());
    for (const auto& [key, unused] : both) {
        const auto a = kept.find(key), b = anew.find(key);
        if (a == kept.end() || b == anew.end() || a->second != b->second)
            return QStringLiteral("%1: kept %2, anew %3")
                .arg(QString::fromStdString(key))
                .arg(a == kept.end() ? 0 : a->second.size())
                .arg(b == anew.end() ? 0 : b->second.size());
    }
    return {};
}
} // namespace

// Some of the lights show a model.
static void giveModels(cWalkedBoxes& boxes, cRandomWalk& walk) {
    for (cEntityData* entity : entitiesOf(boxes.map.data)) {
        if (!(entity->flags & EF_POINT))
            continue;
        removeEpair(entity, "model");
        if (walk.chance(2))
            addEpairLast(entity, "model", "guard");
        updateEntity(entity, UM_ATTACH);
    }
}

static void walkBy(unsigned seed) {
    constexpr int SEGMENTS = 4, OPERATIONS = 40, STEPS = 3;
    cWalkedBoxes boxes(seed);
    for (cBrushData* brush = boxes.map.world()->brushes->next; brush; brush = brush->next)
        if (brush->id % 3 == 0) // the others wear "wall"
            for (cFaceData* face : facesOf(brush))
                setTextureName(face, "nowhere");
    boxes.host.findClass("light", CF_POINT)->flags |= ECF_STUDIO;
    std::fill_n(boxes.host.model.maxs, 3, 40.0f);
    cDrawn drawn;
    cRandomWalk walk(boxes.host, boxes.map, seed);
    int steps = 0;
    walk.check = [&] {
        const auto kept = drawn.read(boxes.map);
        if (++steps % STEPS != 0)
            return QString();
        noteChange(boxes.map);
        return differenceOf(kept, drawn.read(boxes.map));
    };
    for (int i = 0; i < SEGMENTS; ++i) {
        giveModels(boxes, walk);
        const QString problem = walk.runSegment(OPERATIONS);
        ASSERT_TRUE(problem.isEmpty()) << "seed " << seed << "\n" << qPrintable(problem);
        walk.changeWithoutHistory();
    }
}

// By hand, as the random walk of operations: KARVEX_WALK_SECONDS, KARVEX_WALK_SEED.
TEST(MapBuffers, holdAfterAnyChangeWhatTheyWouldHoldIfMadeAnew) {
    const size_t leafObjects = std::exchange(cLeafTree::leafObjects, 4); // so that they part
    bool isGiven = false;
    unsigned seed = qEnvironmentVariable("KARVEX_WALK_SEED").toUInt(&isGiven);
    if (!isGiven)
        seed = std::random_device()();
    std::cout << "seeds 3, " << seed << " and on\n";
    walkBy(3);
    QElapsedTimer timer;
    timer.start();
    const qint64 limit = qEnvironmentVariableIntValue("KARVEX_WALK_SECONDS") * qint64(1000);
    for (int i = 0; !HasFatalFailure() && (i < 2 || timer.elapsed() < limit); ++i)
        walkBy(seed++);
    cLeafTree::leafObjects = leafObjects;
}
