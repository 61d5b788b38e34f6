// SPDX-License-Identifier: MIT
// The one clipboard of map objects of the program. It holds values, no pointers into any map or
// configuration: its contents may be pasted into any document, any number of times.
#pragma once

#include "plugininterface/tPluginInterface.h"

#include <QtGlobal>
#include <functional>
#include <memory>

class cMap;
class cObjectStates;
struct cTakenObjects;

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

    bool isEmpty() const;
    bool refersTo(const cMap& map) const { return m_source == &map; }
    static bool canCopy(const cMap& map); // a brush or an entity is selected
    bool canPaste(const cMap* map) const { return map && !isEmpty(); }
    // The source goes: what was cut stays, can be pasted, and can't be restored.
    void forgetSource();
    void clear();

    // With restore, objects that were cut and never pasted go back to where they were first.
    void copySelection(cMap& map, bool restore);
    // The objects, and groups and entities that are empty without them. "Cut"
    void cutSelection(cMap& map, bool restore);
    // What was cut and not pasted comes back under its ids: into its entities, groups and
    // visgroups; those that have gone meanwhile come back as well. Not selected. "Restore Cut"
    void restoreCut();
    void paste(cMap& map, const cPasteOptions& options, const char* stepName);

    eMode mode() const { return m_mode; }
    const float* mins() const;
    const float* maxs() const;

private:
    cMap* m_source = nullptr; // null once it has been closed
    std::unique_ptr<cTakenObjects> m_contents;
    std::unique_ptr<cObjectStates> m_owners; // of brushes that were cut without their entity
    eMode m_mode = PASTED;
};

extern cClipboard* g_clipboard; // made and freed by the main window
