// SPDX-License-Identifier: MIT
// A model that moves: its vertices go with its clip, and where it stops it is measured anew.
#include "host/item/model_item.h"

namespace host {

/// While it plays, only what is drawn moves. At rest it is a mesh of its own, which is picked,
/// measured and cut like any other; until then what is cut is open.
bool ModelItem::play(double seconds)
{
    if (!playback_)
        return false;
    playback_->advance(seconds);
    if (playback_->takeChange()) {
        if (!pose_)
            pose_ = std::make_unique<RigPose>(*base_);
        pose_->pose(playback_->clip(), playback_->time());
        buffers_.move(pose_->positions(), pose_->normals(), centre_, scale_);
        moving_ = true;
        hovered_ = -1;
        return true;
    }
    if (!moving_ || playback_->isPlaying())
        return false;
    moving_ = false;
    takePose();
    return true;
}

/// The mesh is from now on what is drawn. The model keeps its place and size in the world.
void ModelItem::takePose()
{
    if (playback_->clip() < 0) {
        mesh_ = base_;
    } else {
        auto posed = std::make_shared<Mesh>(*base_);
        posed->positions = pose_->positions();
        posed->normals = pose_->normals();
        posed->findBounds();
        mesh_ = std::move(posed);
    }
    brackets_ = {};
    outline_.clear();
    section_.setMesh(mesh_, centre_, scale_);
    buildTree();
}

} // namespace host
