// SPDX-License-Identifier: MIT
#include "views/tShapeMaker.h"

#include <algorithm>
#include <thread>

cShapeMaker::cShapeMaker(const std::vector<cPlacedObject>& objects, const cShapeWish& wish)
    : m_objects(objects), m_wish(wish), m_batches(std::thread::hardware_concurrency() + 1) {
    for (size_t batch = 0; batch < m_batches.size(); ++batch)
        start(batch);
}

void cShapeMaker::start(size_t batch) {
    const size_t first = batch * BATCH;
    if (first >= m_objects.size())
        return;
    const size_t count = std::min(BATCH, m_objects.size() - first);
    cBatch& place = m_batches[batch % m_batches.size()];
    place.shapes.resize(count);
    const auto make = [this, &shapes = place.shapes, first] {
        for (size_t i = 0; i < shapes.size(); ++i) {
            const cPlacedObject& object = m_objects[first + i];
            if (object.isBrush)
                shapes[i].make(static_cast<const cBrushData*>(object.record), m_wish);
            else
                shapes[i].make(static_cast<const cEntityData*>(object.record), m_wish);
        }
    };
    // A single batch would only be waited for.
    const bool alone = m_objects.size() <= BATCH;
    place.made = std::async(alone ? std::launch::deferred : std::launch::async, make);
}

cObjectShape& cShapeMaker::next() {
    const size_t batch = m_next / BATCH, place = m_next % BATCH;
    if (place == 0) {
        if (batch > 0)
            start(batch - 1 + m_batches.size());
        m_batches[batch % m_batches.size()].made.get();
    }
    ++m_next;
    return m_batches[batch % m_batches.size()].shapes[place];
}
