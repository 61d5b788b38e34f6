// SPDX-License-Identifier: MIT
// The one clipboard of map objects of the program. It holds values, no pointers into any map or
// configuration: its contents may be pasted into any document, any number of times.
#pragma once

#include "pluginhost/tPluginInterface.h"

#include <QByteArray>
#include <QPair>
#include <array>
#include <functional>
#include <vector>

class cMap;

// What one paste does. Copy n is moved by n offsets and turned by n rotations.
struct cPasteOptions {
    int copies = 1;
    const float* target = nullptr;   // where the middle goes; null: it stays in place
    const float* offset = nullptr;   // world units a copy
    const float* rotation = nullptr; // degrees about x, y, z a copy, around the middle
    bool select = true;              // the new objects become the selection
    bool groupCopies = false;        // each copy becomes a group of its own
    // Called now and then, with numbers of objects.
    std::function<void(qint64 done, qint64 total)> progress;
};

class cClipboard {
public:
    enum eMode { PASTED, COPIED, CUT };

    cClipboard();
    ~cClipboard();
    cClipboard(const cClipboard&) = delete;
    cClipboard& operator=(const cClipboard&) = delete;

    bool isEmpty() const { return m_entities.empty() && m_brushes.empty(); }
    bool refersTo(const cMap& map) const { return m_source == &map; }
    static bool canCopy(const cMap& map); // a brush or an entity is selected
    bool canPaste(const cMap* map) const { return map && !isEmpty(); }
    // The source goes: what was cut stays, can be pasted, and can't be restored.
    void forgetSource();
    void clear();

    // With restore, objects that were cut and never pasted go back to where they were first.
    void copySelection(cMap& map, bool restore);
    void cutSelection(cMap& map, bool restore); // "Cut"
    void restoreCut();                          // "Restore Cut"
    void paste(cMap& map, const cPasteOptions& options, const char* stepName);

    eMode mode() const { return m_mode; }
    const float* mins() const { return m_mins; }
    const float* maxs() const { return m_maxs; }

    struct cFaceCopy {
        cFaceTexture tex;
        uint32_t flags;
        std::vector<std::array<float, 3>> points;
    };
    struct cGroupCopy {
        uint32_t id; // in the source, to tell one from another
        std::array<uint8_t, 4> color;
    };
    struct cObjectCopy {
        std::vector<cGroupCopy> groups;  // from the direct one to the outermost
        std::vector<uint32_t> visGroups; // serials
    };
    struct cBrushCopy : cObjectCopy {
        uint32_t flags;
        uint32_t reserved;
        std::array<uint8_t, 4> color;
        std::vector<cFaceCopy> faces;
    };
    struct cEntityCopy : cObjectCopy {
        QByteArray classname;
        QByteArray flagsKey;
        uint32_t flags;
        uint32_t spawnFlags;
        std::array<float, 3> origin;
        std::array<float, 3> angles;
        std::array<uint8_t, 4> color;
        std::vector<QPair<QByteArray, QByteArray>> pairs;
        std::vector<cBrushCopy> brushes;
    };

private:
    void takeSelection(cMap& map, bool withGroups);
    void removeSelection(cMap& map);
    qint64 objectCount() const;

    cMap* m_source = nullptr; // null once it has been closed
    std::vector<cEntityCopy> m_entities;
    std::vector<cBrushCopy> m_brushes; // of the world
    eMode m_mode = PASTED;
    float m_mins[3];
    float m_maxs[3];
};

extern cClipboard* g_clipboard; // made and freed by the main window
