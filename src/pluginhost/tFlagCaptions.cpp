// SPDX-License-Identifier: MIT
#include "pluginhost/tFlagCaptions.h"

#include "support/tMapText.h"

template<class Row> static void setCaption(Row& row, const char* caption, int index) {
    row[size_t(index)] = fromMapText(caption);
}

void cFlagCaptions::setSurface(const char* profileName, const char* caption, int index) {
    if (profileName && index >= 0 && index < SURFACE_COUNT)
        setCaption(m_tables[fromMapText(profileName)].surface, caption, index);
}

void cFlagCaptions::setContent(const char* profileName, const char* caption, int index) {
    if (profileName && index >= 0 && index < CONTENT_COUNT)
        setCaption(m_tables[fromMapText(profileName)].content, caption, index);
}

const cFlagCaptions::cTable& cFlagCaptions::of(const QString& profileName) const {
    static const cTable none;
    const auto found = m_tables.constFind(profileName);
    return found == m_tables.constEnd() ? none : *found;
}
