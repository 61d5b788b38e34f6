// SPDX-License-Identifier: MIT
// The tables of the fields of states.
#include "document/tStateFields.h"

#include <cstddef>
#include <iterator>

static constexpr uint8_t V111 = 111, V112 = 112, NO_FILE = 0;

#define FIELD(kind, since, member)                                                                 \
    { #member, eField::kind, since, offsetof(STATE, member), sizeof(STATE::member), 0 }
#define NUMBER(since, member, byDefault)                                                           \
    { #member, eField::Numbers, since, offsetof(STATE, member), sizeof(STATE::member), byDefault }

#define STATE cGroupState
static const cStateField g_groupFields[] = {
    FIELD(Bytes, V111, id),    FIELD(Bytes, V111, parentId),
    FIELD(Bytes, V111, flags), FIELD(Bytes, V111, memberCount),
    FIELD(Bytes, V111, color), FIELD(Bytes, NO_FILE, previousId),
};
#undef STATE

#define STATE cEntityState
static const cStateField g_entityFields[] = {
    FIELD(Text, V111, classname),    FIELD(Numbers, V111, origin),
    FIELD(Bytes, V111, flags),       FIELD(Bytes, V111, groupId),
    FIELD(Bytes, V111, rootGroupId), FIELD(Bytes, V111, color), // ENTITY_HEAD ends here
    FIELD(Text, V111, flagsKey),     FIELD(Bytes, V111, spawnFlags),
    FIELD(Numbers, V111, angles),    FIELD(Bytes, V111, renderFlags),
    FIELD(Bytes, V111, renderColor), FIELD(Bytes, V111, renderMode),
    FIELD(Bytes, V111, renderFx),    FIELD(Bytes, V111, body),
    FIELD(Bytes, V111, skin),        FIELD(Bytes, V111, sequence),
    NUMBER(V111, frameRate, 10),     NUMBER(V111, scale, 1),
    FIELD(Bytes, NO_FILE, id),       FIELD(Bytes, NO_FILE, previousId),
    FIELD(Numbers, NO_FILE, mins),   FIELD(Numbers, NO_FILE, maxs),
};
#undef STATE

#define STATE cBrushState
static const cStateField g_brushFields[] = {
    FIELD(Bytes, V112, reserved),        FIELD(Bytes, V111, flags),
    FIELD(Bytes, V111, groupId),         FIELD(Bytes, V111, rootGroupId),
    FIELD(Bytes, V111, color),           FIELD(Bytes, NO_FILE, id),
    FIELD(Bytes, NO_FILE, previousId),   FIELD(Bytes, NO_FILE, entityId),
    FIELD(Bytes, NO_FILE, withGeometry),
};
#undef STATE

#define STATE cFaceState
static const cStateField g_faceFields[] = {
    FIELD(Bytes, V111, flags),    FIELD(Count, V111, points.count), FIELD(Bytes, V111, tex),
    FIELD(Numbers, V111, normal), FIELD(Numbers, V111, dist),       FIELD(Bytes, V111, planeType),
    FIELD(Bytes, NO_FILE, id),
};
#undef STATE

template<size_t N> static cStateFields all(const cStateField (&fields)[N]) {
    return {std::begin(fields), std::end(fields)};
}

cStateFields fieldsOf(const cGroupState&) {
    return all(g_groupFields);
}

cStateFields fieldsOf(const cEntityState&) {
    return all(g_entityFields);
}

cStateFields fieldsOf(const cBrushState&) {
    return all(g_brushFields);
}

cStateFields fieldsOf(const cFaceState&) {
    return all(g_faceFields);
}
