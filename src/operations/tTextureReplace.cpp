// SPDX-License-Identifier: MIT
// Finding faces by the names of their textures, replacing and marking them.
#include "document/tBrush.h"
#include "document/tEntity.h"
#include "document/tFaceMapping.h"
#include "document/tHistory.h"
#include "document/tMap.h"
#include "document/tMapChange.h"
#include "document/tMapContext.h"
#include "document/tMapLists.h"
#include "document/tMapWatcher.h"
#include "operations/tFaceEdits.h"
#include "support/tMath.h"

#include <QHash>
#include <algorithm>

static bool matches(const QByteArray& name, const cTextureSearch& search) {
    if (search.match == MATCH_EXACT)
        return qstricmp(name.constData(), search.find.constData()) == 0;
    return T_Stristr(name.constData(), search.find.constData()) != nullptr;
}

// By each name once: a map has few beside its faces.
static std::vector<cFaceData*> facesFound(const cMap& map, const cTextureSearch& search) {
    std::vector<cFaceData*> found;
    if (search.find.isEmpty() && !search.texture)
        return found;
    QHash<QByteArray, bool> known;
    const auto isFound = [&](const cFaceData* face) {
        if (search.texture)
            return face->texture == search.texture;
        const QByteArray name =
            QByteArray::fromRawData(face->tex.name, int(strlen(face->tex.name)));
        const auto place = known.constFind(name);
        return place != known.constEnd()
                   ? *place
                   : *known.insert(QByteArray(face->tex.name), matches(name, search));
    };
    const auto isSought = [&](uint32_t flags) { return search.hidden || !(flags & OF_HIDDEN); };
    for (const cEntityData* entity : entitiesOf(map.data)) {
        if (!isSought(entity->flags))
            continue;
        for (const cBrushData* brush : brushesOf(entity)) {
            if (!isSought(brush->flags))
                continue;
            for (cFaceData* face : facesOf(brush))
                if ((!search.marked || isSelected(face) || isSelected(brush)) && isFound(face))
                    found.push_back(face);
        }
    }
    return found;
}

static void rescale(cFaceData* face, float factor) {
    const float usable = usableScale(factor);
    face->tex.uScale *= usable;
    face->tex.vScale *= usable;
}

static QByteArray substituted(const QByteArray& name, const cTextureSearch& search,
                              const QByteArray& replacement) {
    QByteArray out;
    const char* from = name.constData();
    while (const char* at = T_Stristr(from, search.find.constData())) {
        out.append(from, int(at - from)).append(replacement);
        from = at + search.find.size();
    }
    return out.append(from);
}

namespace {
struct cNewName {
    QByteArray name;
    cTexture* texture;
    bool fits;
};
} // namespace

cReplaced replaceTextures(cMap& map, const cTextureSearch& search, const QByteArray& replacement) {
    cReplaced result;
    std::vector<cFaceData*> found = facesFound(map, search);
    QHash<QByteArray, cNewName> names;
    const auto newName = [&](const cFaceData* face) -> const cNewName& {
        const QByteArray old(face->tex.name);
        auto place = names.find(old);
        if (place == names.end()) {
            const QByteArray name = search.match == MATCH_SUBSTITUTE
                                        ? substituted(old, search, replacement)
                                        : replacement;
            cTexture* texture = map.context.findTexture(name.constData());
            const bool fits = name.size() < int(sizeof face->tex.name);
            place = names.insert(old, {name, texture, fits});
        }
        return *place;
    };
    const auto tooLong = std::stable_partition(
        found.begin(), found.end(), [&](const cFaceData* face) { return newName(face).fits; });
    result.refused = int(found.end() - tooLong);
    found.erase(tooLong, found.end());
    result.count = int(found.size());
    if (found.empty())
        return result;
    const cHistoryStep step(map, "Replace Textures");
    step->facesChanged(); // undo brings back the selection of what a step holds
    step->brushesChanged(false);
    for (cFaceData* face : found) {
        step->faceChanged(face);
        const cNewName& name = newName(face);
        exchangeTexture(face, name.name.constData(), name.texture);
        rescale(face, search.factor);
        computeTexCoords(face);
    }
    return result;
}

int markTextures(cMap& map, const cTextureSearch& search) {
    const std::vector<cFaceData*> found = facesFound(map, search);
    if (!found.empty() && usableScale(search.factor) != 1) {
        const cHistoryStep step(map, "Modify Texture Scale");
        for (cFaceData* face : found) {
            step->faceChanged(face);
            rescale(face, search.factor);
            computeTexCoords(face);
        }
    }
    return map.selectOnly(found);
}
