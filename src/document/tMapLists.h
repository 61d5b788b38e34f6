// SPDX-License-Identifier: MIT
// The intrusive lists of the map records: one pair of helpers a list kind, and range adaptors.
// Nothing else opens these links by hand.
#pragma once

#include "plugininterface/tPluginInterface.h"

// ---- Lists with a tail: entities of a map, brushes of an entity, faces of a brush

template<class T> void listPushTail(T*& head, T*& tail, T* item) {
    item->next = nullptr;
    item->prev = tail;
    (tail ? tail->next : head) = item;
    tail = item;
}

template<class T> void listPushHead(T*& head, T*& tail, T* item) {
    item->prev = nullptr;
    item->next = head;
    (head ? head->prev : tail) = item;
    head = item;
}

// previous null: at the head.
template<class T> void listInsertAfter(T*& head, T*& tail, T* item, T* previous) {
    item->prev = previous;
    item->next = previous ? previous->next : head;
    (item->prev ? item->prev->next : head) = item;
    (item->next ? item->next->prev : tail) = item;
}

template<class T> void listRemove(T*& head, T*& tail, T* item) {
    (item->prev ? item->prev->next : head) = item->next;
    (item->next ? item->next->prev : tail) = item->prev;
    item->next = item->prev = nullptr;
}

// ---- Lists without a tail: the groups of a map

template<class T> void listInsertAfter(T*& head, T* item, T* previous) {
    T* tail = nullptr;
    listInsertAfter(head, tail, item, previous);
}

template<class T> void listPushHead(T*& head, T* item) {
    item->prev = nullptr;
    item->next = head;
    if (head)
        head->prev = item;
    head = item;
}

template<class T> void listRemove(T*& head, T* item) {
    (item->prev ? item->prev->next : head) = item->next;
    if (item->next)
        item->next->prev = item->prev;
    item->next = item->prev = nullptr;
}

// ---- Selection lists: membership is the flag, the head is the object selected last

template<class T> bool isSelected(const T* item) {
    return (item->flags & OF_SELECTED) != 0;
}

template<class T> void selectedPush(T*& head, T* item) {
    item->prevSelected = nullptr;
    item->nextSelected = head;
    if (head)
        head->prevSelected = item;
    head = item;
    item->flags |= OF_SELECTED;
}

template<class T> void selectedRemove(T*& head, T* item) {
    (item->prevSelected ? item->prevSelected->nextSelected : head) = item->nextSelected;
    if (item->nextSelected)
        item->nextSelected->prevSelected = item->prevSelected;
    item->nextSelected = item->prevSelected = nullptr;
    item->flags &= ~uint32_t(OF_SELECTED);
}

template<class T> void selectedClear(T*& head) {
    while (T* item = head)
        selectedRemove(head, item);
}

// ---- Walks. The next link is taken first, so the body may remove the object it is given.

template<class T, T* T::*Next> class cListRange {
public:
    class iterator {
    public:
        explicit iterator(T* item) : m_item(item), m_next(item ? item->*Next : nullptr) {}
        T* operator*() const { return m_item; }
        iterator& operator++() {
            *this = iterator(m_next);
            return *this;
        }
        bool operator!=(const iterator& other) const { return m_item != other.m_item; }

    private:
        T* m_item;
        T* m_next;
    };

    explicit cListRange(T* head) : m_head(head) {}
    iterator begin() const { return iterator(m_head); }
    iterator end() const { return iterator(nullptr); }

private:
    T* m_head;
};

using cEntityRange = cListRange<cEntityData, &cEntityData::next>;
using cBrushRange = cListRange<cBrushData, &cBrushData::next>;
using cFaceRange = cListRange<cFaceData, &cFaceData::next>;
using cGroupRange = cListRange<cGroupData, &cGroupData::next>;
using cEpairRange = cListRange<cEpair, &cEpair::next>;

inline cEntityRange entitiesOf(const cMapData& map) {
    return cEntityRange(map.entities);
}
inline cGroupRange groupsOf(const cMapData& map) {
    return cGroupRange(map.groups);
}
inline cBrushRange brushesOf(const cEntityData* entity) {
    return cBrushRange(entity->brushes);
}
inline cFaceRange facesOf(const cBrushData* brush) {
    return cFaceRange(brush->faces);
}
inline cEpairRange epairsOf(const cEntityData* entity) {
    return cEpairRange(entity->epairs);
}

using cSelectedEntityRange = cListRange<cEntityData, &cEntityData::nextSelected>;
using cSelectedBrushRange = cListRange<cBrushData, &cBrushData::nextSelected>;
using cSelectedFaceRange = cListRange<cFaceData, &cFaceData::nextSelected>;
using cSelectedGroupRange = cListRange<cGroupData, &cGroupData::nextSelected>;

inline cSelectedEntityRange selectedEntitiesOf(const cMapData& map) {
    return cSelectedEntityRange(map.selectedEntities);
}
inline cSelectedBrushRange selectedBrushesOf(const cMapData& map) {
    return cSelectedBrushRange(map.selectedBrushes);
}
inline cSelectedFaceRange selectedFacesOf(const cMapData& map) {
    return cSelectedFaceRange(map.selectedFaces);
}
inline cSelectedGroupRange selectedGroupsOf(const cMapData& map) {
    return cSelectedGroupRange(map.selectedGroups);
}
