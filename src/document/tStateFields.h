// SPDX-License-Identifier: MIT
// The fields of states (tObjectState.h) as bytes. Each kind of state has one table, a row a field:
// its name, where it lies, what it is, which project files have it. Rows that the project file has
// come first, in its order. Whoever writes or reads states walks the table with a stream; the
// project file does, and so can whoever keeps a state on its own, with every row.
//
// Lists stand behind the fields of their object, each with a count, and are the walker's own:
// pairs, visgroups and brushes of an entity, visgroups and faces of a brush, points of a face.
#pragma once

#include "document/tObjectState.h"

enum class eField : uint8_t {
    Bytes,   // as they lie in memory: whole numbers, flags, colours, texture blocks
    Numbers, // floats
    Text,    // a QByteArray; null and empty differ
    Count    // int32, of the points that follow
};

// For walkFields: every row, not only those of a version of the project file.
constexpr int ALL_FIELDS = 0;

struct cStateField {
    const char* name;
    eField kind;
    uint8_t since;   // version of the project file that brought it, 0: no file has it
    uint16_t offset; // in the state
    uint16_t size;   // bytes in memory
    float byDefault; // of numbers that are not finite
};

struct cStateFields {
    const cStateField* first;
    const cStateField* last;
    const cStateField* begin() const { return first; }
    const cStateField* end() const { return last; }
    size_t size() const { return size_t(last - first); }
};

cStateFields fieldsOf(const cGroupState&);
cStateFields fieldsOf(const cEntityState&);
cStateFields fieldsOf(const cBrushState&);
cStateFields fieldsOf(const cFaceState&);

// So many rows of an entity, class name to colour, must have been read before it can be made; what
// a file is cut before stays as in a new entity.
constexpr size_t ENTITY_HEAD = 6;

// Hands each row of a version's project file, or every row, to the stream's bytes(void*, size),
// numbers(float*, count, byDefault), text(QByteArray&) or count(uint32_t&), which write or read.
// Ends where one of them fails; returns how many rows of the table are behind it.
template<class State, class Stream> size_t walkFields(State& state, int version, Stream& stream) {
    const auto walk = [&stream](const cStateField& field, void* place) {
        switch (field.kind) {
        case eField::Numbers:
            return stream.numbers(static_cast<float*>(place), field.size / sizeof(float),
                                  field.byDefault);
        case eField::Text:
            return stream.text(*static_cast<QByteArray*>(place));
        case eField::Count:
            return stream.count(*static_cast<uint32_t*>(place));
        default:
            return stream.bytes(place, field.size);
        }
    };
    const cStateFields fields = fieldsOf(state);
    for (const cStateField& field : fields) {
        const bool wanted = version == ALL_FIELDS || (field.since && field.since <= version);
        if (wanted && !walk(field, reinterpret_cast<char*>(&state) + field.offset))
            return size_t(&field - fields.first);
    }
    return fields.size();
}

template<class State, class Stream> bool walkAllFields(State& state, int version, Stream& stream) {
    return walkFields(state, version, stream) == fieldsOf(state).size();
}
