// SPDX-License-Identifier: MIT
#include "resources/tEntityClassTree.h"

#include "document/tEntityClass.h"

cEntityClassTreeBuilder::cEntityClassTreeBuilder() {
    m_nodes.push_back({});
}

void cEntityClassTreeBuilder::add(cEntityClass* entityClass) {
    const int parent = groupNode(entityClass->group);
    const int leaf = int(m_nodes.size());
    m_nodes.push_back({QString(), entityClass, {}, {}, {}});
    m_nodes[size_t(parent)].leaves.push_back(leaf);
}

// The node of the group, made with those above it when there is none; the root for null.
int cEntityClassTreeBuilder::groupNode(cEntityClass* group) {
    if (!group)
        return 0;
    const size_t parent = size_t(groupNode(group->group));
    const auto found = m_nodes[parent].groupByName.constFind(group->name);
    if (found != m_nodes[parent].groupByName.constEnd())
        return *found;
    const int made = int(m_nodes.size());
    m_nodes.push_back({group->name, nullptr, {}, {}, {}});
    m_nodes[parent].groups.push_back(made);
    m_nodes[parent].groupByName.insert(group->name, made);
    return made;
}

cEntityClassNode cEntityClassTreeBuilder::build(int index) const {
    const cNode& node = m_nodes[size_t(index)];
    cEntityClassNode result;
    result.name = node.name;
    result.entityClass = node.entityClass;
    for (const std::vector<int>* children : {&node.groups, &node.leaves}) {
        for (const int child : *children)
            result.children.append(build(child));
    }
    return result;
}
