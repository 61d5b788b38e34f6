// SPDX-License-Identifier: MIT
// Builds the class trees of a configuration: groups as inner nodes, classes as leaves.
#pragma once

#include "resources/tGameConfig.h"

#include <QHash>
#include <vector>

class cEntityClassTreeBuilder {
public:
    cEntityClassTreeBuilder();

    void add(cEntityClass* entityClass); // under its chain of groups
    // The tree as it stands: on each level groups before leaves, otherwise in order of addition.
    cEntityClassNode build() const { return build(0); }

private:
    // Nodes by number while the tree grows: a child list by value would be copied and searched.
    struct cNode {
        QString name;
        cEntityClass* entityClass;
        std::vector<int> groups;
        std::vector<int> leaves;
        QHash<QString, int> groupByName;
    };

    int groupNode(cEntityClass* group);
    cEntityClassNode build(int index) const;

    std::vector<cNode> m_nodes; // the first is the root
};
