// SPDX-License-Identifier: MIT
#include "host/read/scene_nodes.h"

#include <cstring>

#include "host/read/scene_values.h"

namespace host {

qint32 SceneNodes::add(const aiNode &node, qint32 above)
{
    nodes_.push_back({&node, above});
    return qint32(nodes_.size() - 1);
}

/// Whether the node is none of the file's own making.
bool SceneNodes::onlyHolds(std::size_t index) const
{
    const Node &node = nodes_[index];
    return node.above < 0 || std::strstr(node.node->mName.C_Str(), "_$AssimpFbx$_");
}

void SceneNodes::fill(Mesh &mesh, quint64 most) const
{
    std::vector<bool> has(nodes_.size()), holdsPart(nodes_.size());
    for (const MeshPart &part : mesh.parts) {
        holdsPart[std::size_t(part.node)] = true;
        for (qint32 at = part.node; at >= 0 && !has[std::size_t(at)];
             at = nodes_[std::size_t(at)].above)
            has[std::size_t(at)] = true;
    }
    // Of those left out the number of the next one above that is kept.
    std::vector<qint32> kept(nodes_.size(), -1);
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        const qint32 above = nodes_[i].above < 0 ? -1 : kept[std::size_t(nodes_[i].above)];
        kept[i] = above;
        if (!has[i] || (onlyHolds(i) && !holdsPart[i]))
            continue;
        kept[i] = qint32(mesh.nodes.size());
        MeshNode node{shortText(nodes_[i].node->mName), above};
        if (node.name.isEmpty())
            node.name = QStringLiteral("node %1").arg(mesh.nodes.size() + 1);
        mesh.nodes.push_back(node);
    }
    const bool tooMany = mesh.nodes.size() > most;
    for (MeshPart &part : mesh.parts)
        part.node = tooMany ? -1 : kept[std::size_t(part.node)];
    if (tooMany) {
        mesh.nodes.clear();
        mesh.notes << QStringLiteral("its nodes are too many to list");
    }
}

} // namespace host
