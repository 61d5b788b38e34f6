// SPDX-License-Identifier: MIT
// Moving, turning, scaling, shearing and stretching objects by one matrix, and flip, align and
// snap. Each operation named ...Selection opens its own history step, leaves every changed brush
// rebuilt and the document dirty; refreshing tools and views is the caller's business.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <vector>

class cMap;

// A transform of objects: v goes to matrix (v - center) + center.
struct cTransformRecord {
    const float* center = nullptr; // null: the middle of the bounds of all the objects
    const float* matrix = nullptr; // 4x4, row-major, translation in the last column
    // Stretch: bit axis lets only the min side of each object on that axis move, axis + 3 the max.
    uint32_t sideMask = 0;
    int axisH = -1; // of the view the drag is in, -1 without one
    int axisV = -1;
    bool scaleModels = false; // model entities take a new "scale" key
};

// To the given objects, or with null to the selected ones. Opens no step. A brush that a stretch
// would leave with a face that is no longer flat stays as it is, with a warning.
void applyTransform(cMap& map, const std::vector<cEntityData*>* entities,
                    const std::vector<cBrushData*>* brushes, const cTransformRecord& record);
// A point as the transform moves it; pivot is the record's center made definite, own the centre
// of the object by which the side mask keeps coordinates. keepMargin: how far above or below own
// a coordinate must lie to be kept. Bit axis of the result: that coordinate was kept.
unsigned transformPoint(const cTransformRecord& record, const float* pivot, const float* own,
                        float keepMargin, float* point);

// Nothing happens for an identity matrix. "Transformation"
void transformSelection(cMap& map, const cTransformRecord& record);
// The copies become the selection and are transformed; groups are copied with their structure
// while groups act as units. "Clone Objects".
void cloneSelection(cMap& map, const cTransformRecord& record);

void flipSelection(cMap& map, int axis);            // "Flip Selection"
void alignSelection(cMap& map, int axis, int side); // 0 min, 1 max; "Align Selection"
// Each object by itself, or all of them by one offset. "Snap to Grid"
void snapSelection(cMap& map, float grid, bool each);
