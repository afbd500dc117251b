// SPDX-License-Identifier: MIT
#ifndef HOST_READ_SCENE_NODES_H
#define HOST_READ_SCENE_NODES_H

#include <vector>

#include <assimp/scene.h>

#include "host/read/mesh.h"

namespace host {

/// The nodes of a scene on their way to the list that people see.
class SceneNodes {
public:
    /// Notes a node below one that add() numbered before, or below none: -1. Returns its number.
    qint32 add(const aiNode &node, qint32 above);

    /// Fills the nodes of @p mesh, whose parts name theirs by these numbers: those that have a part
    /// themselves or below. Left out are what readers put in between: a root that only holds the
    /// others together, and the steps into which the FBX reader takes transforms apart. More than
    /// @p most are none at all, with a note that says so.
    void fill(Mesh &mesh, quint64 most) const;

private:
    struct Node {
        const aiNode *node;
        qint32 above;
    };
    bool onlyHolds(std::size_t index) const;

    std::vector<Node> nodes_;
};

} // namespace host

#endif
