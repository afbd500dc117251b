// SPDX-License-Identifier: MIT
#include "host/item/level_buffers.h"

#include <algorithm>

namespace host {

void LevelBuffers::request(const MeshPtr &mesh, bool all)
{
    const std::size_t triangles = mesh->triangleCount();
    if (triangles >= roughFrom && !rough_.isStarted())
        rough_.start(
            [mesh](const std::atomic<bool> &cancelled) { return roughLevelOf(*mesh, cancelled); });
    if (!all || made_ || triangles < MeshLevels::smallest)
        return;
    made_ = std::make_shared<MeshLevels>(*mesh);
    making_.start([mesh, made = made_](const std::atomic<bool> &cancelled) {
        made->make(*mesh, cancelled);
        return true;
    });
}

quint64 LevelBuffers::byteSize(const Mesh &mesh) const
{
    const std::size_t triangles = mesh.triangleCount();
    if (triangles < MeshLevels::smallest)
        return 0;
    constexpr quint64 perTriangle = 3 * sizeof(quint32);
    const quint64 rough = triangles < roughFrom ? 0 : roughSize * perTriangle;
    const quint64 all = making_.isStarted() && !making_.isBusy() ? made_->byteSize()
                                                                 : MeshLevels::expectedBytes(mesh);
    return rough + all + triangles / 2 * perTriangle; // one of them is in the GL as well
}

int LevelBuffers::levelFor(const Mesh &mesh, std::size_t most, std::size_t least) const
{
    if (most >= mesh.triangleCount())
        return -1;
    const int count = made_ ? int(made_->count()) : 0;
    const auto size = [this](int i) { return (*made_)[std::size_t(i)].triangleCount(); };
    int level = count; // from 1
    while (level > 1 && (size(level - 2) <= most || size(level - 1) < least))
        --level;
    if (level == 0)
        return hasRough() ? 0 : -1;
    const bool finerThanAsked = making_.isBusy() && size(level - 1) > std::max(most, least);
    return finerThanAsked && hasRough() && rough_.get()->triangleCount() < size(level - 1) ? 0
                                                                                           : level;
}

const MeshLevel &LevelBuffers::chosen() const
{
    return chosen_ == 0 ? *rough_.get() : (*made_)[std::size_t(chosen_) - 1];
}

void LevelBuffers::bind()
{
    if (!buffer_.isCreated())
        buffer_.create();
    buffer_.bind();
    if (held_ != chosen_)
        buffer_.allocate(chosen().indices.data(), int(chosen().indices.size() * sizeof(quint32)));
    held_ = chosen_;
}

std::pair<quint32, quint32> LevelBuffers::run(std::size_t part) const
{
    const quint32 begin = part > 0 ? chosen().ends[part - 1] : 0;
    return {begin, chosen().ends[part] - begin};
}

void LevelBuffers::destroy()
{
    buffer_.destroy();
    held_ = -1;
}

} // namespace host
