// SPDX-License-Identifier: MIT
#include "host/item/level_buffers.h"

namespace host {

void LevelBuffers::request(const MeshPtr &mesh)
{
    if (!made_.isStarted() && mesh->triangleCount() >= MeshLevels::smallest)
        made_.start(
            [mesh](const std::atomic<bool> &cancelled) { return levelsOf(*mesh, cancelled); });
}

quint64 LevelBuffers::byteSize(const Mesh &mesh) const
{
    if (made_.lackedMemory())
        return 0;
    const quint64 bytes = made_.get() ? made_.get()->byteSize() : MeshLevels::expectedBytes(mesh);
    return bytes * 2; // in the GL as well
}

int LevelBuffers::levelFor(const Mesh &mesh, std::size_t most) const
{
    if (most >= mesh.triangleCount() || !made_.get())
        return -1;
    const auto &levels = made_.get()->levels;
    std::size_t level = 0;
    while (level + 1 < levels.size() && levels[level].triangleCount() > most)
        ++level;
    return levels.empty() ? -1 : int(level);
}

void LevelBuffers::bind()
{
    while (buffers_.size() <= chosen_)
        buffers_.emplace_back(QOpenGLBuffer::IndexBuffer);
    QOpenGLBuffer &buffer = buffers_[chosen_];
    const bool isNew = !buffer.isCreated();
    if (isNew)
        buffer.create();
    buffer.bind();
    if (isNew)
        buffer.allocate(chosen().indices.data(), int(chosen().indices.size() * sizeof(quint32)));
}

std::pair<quint32, quint32> LevelBuffers::run(std::size_t part) const
{
    const quint32 begin = part > 0 ? chosen().ends[part - 1] : 0;
    return {begin, chosen().ends[part] - begin};
}

void LevelBuffers::destroy()
{
    for (QOpenGLBuffer &buffer : buffers_)
        buffer.destroy();
}

} // namespace host
