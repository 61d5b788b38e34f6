// SPDX-License-Identifier: MIT
// What the surface and content flags of each map profile are called. Filled by the plug-ins, read
// by the face properties.
#pragma once

#include <QHash>
#include <QString>
#include <array>

class cFlagCaptions {
public:
    static constexpr int SURFACE_COUNT = 12;
    static constexpr int CONTENT_COUNT = 32;

    struct cTable {
        std::array<QString, SURFACE_COUNT> surface;
        std::array<QString, CONTENT_COUNT> content;
    };

    // A null profile name or an index past the table is ignored.
    void setSurface(const char* profileName, const char* caption, int index);
    void setContent(const char* profileName, const char* caption, int index);
    // All empty for a profile without captions.
    const cTable& of(const QString& profileName) const;
    bool has(const QString& profileName) const { return m_tables.contains(profileName); }

private:
    QHash<QString, cTable> m_tables;
};
