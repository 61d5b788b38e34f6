// SPDX-License-Identifier: MIT
// The shapes of many objects one after the other, made on all processors a little ahead of whoever
// takes them. Shapes follow from the records alone, which nobody writes meanwhile.
#pragma once

#include "views/tLeafTree.h"
#include "views/tObjectShape.h"

#include <future>

class cShapeMaker {
public:
    // The objects and the wish outlive it.
    cShapeMaker(const std::vector<cPlacedObject>& objects, const cShapeWish& wish);

    // Of the next object; good until the next call.
    cObjectShape& next();

private:
    static constexpr size_t BATCH = 512; // objects

    struct cBatch {
        std::vector<cObjectShape> shapes;
        std::future<void> made; // waits when it goes
    };

    void start(size_t batch);

    const std::vector<cPlacedObject>& m_objects;
    const cShapeWish& m_wish;
    std::vector<cBatch> m_batches; // a ring
    size_t m_next = 0;
};
