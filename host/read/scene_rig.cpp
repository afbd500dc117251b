// SPDX-License-Identifier: MIT
#include "host/read/scene_rig.h"

#include <algorithm>
#include <cmath>

#include "host/read/scene_values.h"

namespace host {
namespace {

// Sets of colours that carry bones and weights: nothing else of a mesh follows its vertices.
constexpr unsigned bonesIn = 1, weightsIn = 2;
constexpr float mostWeight = 1e6f; // so that sums are finite
constexpr double usualRate = 25;   // ticks per second where a file names none

QMatrix4x4 matrix(const aiMatrix4x4 &m)
{
    return QMatrix4x4(&m.a1); // row by row, both
}

QString notPlayed()
{
    return QStringLiteral("its animation is too large, or too broken, to be played");
}

/// The keys of a channel in seconds, ascending, without those that make no sense.
template <class Out, class In, class Convert>
std::vector<Out> keysOf(const In *keys, unsigned count, double rate, const Convert &convert)
{
    std::vector<Out> out;
    for (unsigned i = 0; i < count && keys; ++i) {
        Out key{std::max(0.0, keys[i].mTime / rate), convert(keys[i].mValue)};
        if (std::isfinite(key.seconds) && key.seconds <= Rig::maxSeconds &&
            std::isfinite(key.value.length()))
            out.push_back(key);
    }
    std::stable_sort(out.begin(), out.end(),
                     [](const Out &a, const Out &b) { return a.seconds < b.seconds; });
    return out;
}

template <class Key> bool varies(const std::vector<Key> &keys)
{
    return std::any_of(keys.begin(), keys.end(),
                       [&](const Key &key) { return key.value != keys.front().value; });
}

template <class Key> double lastOf(const std::vector<Key> &keys)
{
    return keys.empty() ? 0 : keys.back().seconds;
}

QVector3D vector(const aiVector3D &v)
{
    return {v.x, v.y, v.z};
}

QQuaternion turn(const aiQuaternion &q)
{
    return QQuaternion(q.w, q.x, q.y, q.z).normalized();
}

/// One node's part of an animation; what it leaves out is as the node stands.
Rig::Track trackOf(const aiNodeAnim &channel, quint32 number, const aiNode &node, double rate)
{
    aiVector3D scale(1, 1, 1), place;
    aiQuaternion rotation;
    node.mTransformation.Decompose(scale, rotation, place);
    Rig::Track track;
    track.node = number;
    track.places =
        keysOf<Rig::VectorKey>(channel.mPositionKeys, channel.mNumPositionKeys, rate, vector);
    track.turns = keysOf<Rig::TurnKey>(channel.mRotationKeys, channel.mNumRotationKeys, rate, turn);
    track.scales =
        keysOf<Rig::VectorKey>(channel.mScalingKeys, channel.mNumScalingKeys, rate, vector);
    const auto noTurn = [](const Rig::TurnKey &key) { return key.value.isNull(); };
    track.turns.erase(std::remove_if(track.turns.begin(), track.turns.end(), noTurn),
                      track.turns.end());
    if (track.places.empty())
        track.places.push_back({0, vector(place)});
    if (track.turns.empty())
        track.turns.push_back({0, turn(rotation)});
    if (track.scales.empty())
        track.scales.push_back({0, vector(scale)});
    return track;
}

bool isSound(const Rig::Track &track)
{
    return std::isfinite(track.places[0].value.length()) && !track.turns[0].value.isNull() &&
           std::isfinite(track.turns[0].value.length()) &&
           std::isfinite(track.scales[0].value.length());
}

/// Takes @p weight in if it is one of the four heaviest.
void take(SceneRig::Hold &hold, quint16 bone, float weight)
{
    auto least = std::min_element(hold.weights.begin(), hold.weights.end());
    if (weight > *least) {
        *least = weight;
        hold.bones[std::size_t(least - hold.weights.begin())] = bone;
    }
}

} // namespace

std::unique_ptr<SceneRig> SceneRig::of(const aiScene &scene, const std::string &format,
                                       QStringList &notes)
{
    // The one reader whose skins do not stand where their bones say: see poseSkins().
    if (scene.mNumAnimations == 0 || format.rfind("Quake Mesh", 0) == 0)
        return nullptr;
    auto made = std::make_unique<SceneRig>();
    const bool fits = made->collectNodes(scene);
    if (fits)
        made->collectClips(scene);
    if (fits && made->rig_->clips.empty() && !made->tooMany_)
        return nullptr;
    if (!fits || made->tooMany_ || !made->collectSkins(scene)) {
        notes << notPlayed();
        return nullptr;
    }
    return made;
}

bool SceneRig::collectNodes(const aiScene &scene)
{
    rig_->nodes.emplace_back();
    std::vector<std::pair<const aiNode *, qint32>> steps;
    if (scene.mRootNode)
        steps.emplace_back(scene.mRootNode, 0);
    while (!steps.empty()) {
        const auto [node, parent] = steps.back();
        steps.pop_back();
        if (rig_->nodes.size() >= Rig::maxNodes || !isFinite(node->mTransformation))
            return false;
        const auto number = quint32(rig_->nodes.size());
        rig_->nodes.push_back({parent, matrix(node->mTransformation)});
        sources_.push_back(node);
        numbers_.emplace(node, number);
        names_.emplace(node->mName.C_Str(), number);
        for (unsigned i = node->mNumChildren; i-- > 0;) {
            if (node->mChildren[i])
                steps.emplace_back(node->mChildren[i], qint32(number));
        }
    }
    return true;
}

void SceneRig::addClip(const aiAnimation &animation)
{
    const double rate = animation.mTicksPerSecond > 0 ? animation.mTicksPerSecond : usualRate;
    Rig::Clip clip;
    clip.name = shortText(animation.mName);
    if (clip.name.isEmpty())
        clip.name = QStringLiteral("animation %1").arg(rig_->clips.size() + 1);
    if (std::isfinite(animation.mDuration))
        clip.seconds = animation.mDuration / rate;
    for (unsigned i = 0; i < animation.mNumChannels; ++i) {
        const aiNodeAnim *channel = animation.mChannels[i];
        if (!channel)
            continue;
        const auto node = names_.find(channel->mNodeName.C_Str());
        if (node == names_.end())
            continue;
        Rig::Track track = trackOf(*channel, node->second, *sources_[node->second - 1], rate);
        if (!isSound(track))
            continue;
        clip.seconds = std::max(
            {clip.seconds, lastOf(track.places), lastOf(track.turns), lastOf(track.scales)});
        clip.tracks.push_back(std::move(track));
    }
    rig_->clips.push_back(std::move(clip));
}

void SceneRig::collectClips(const aiScene &scene)
{
    for (unsigned i = 0; i < scene.mNumAnimations && !tooMany_; ++i) {
        addClip(*scene.mAnimations[i]);
        const Rig::Clip &clip = rig_->clips.back();
        if (!(clip.seconds > 0 && clip.seconds <= Rig::maxSeconds) || !moves(clip, scene))
            rig_->clips.pop_back();
        tooMany_ = rig_->keyCount() > Rig::maxKeys;
    }
}

/// Whether something that is shown changes its place: cameras and lights have animations as well.
bool SceneRig::moves(const Rig::Clip &clip, const aiScene &scene) const
{
    std::vector<bool> moved(rig_->nodes.size());
    for (const Rig::Track &track : clip.tracks)
        moved[track.node] = moved[track.node] || varies(track.places) || varies(track.turns) ||
                            varies(track.scales);
    for (std::size_t i = 1; i < moved.size(); ++i)
        moved[i] = moved[i] || moved[std::size_t(rig_->nodes[i].parent)];
    for (std::size_t i = 1; i < moved.size(); ++i) {
        if (moved[i] && sources_[i - 1]->mNumMeshes > 0)
            return true;
    }
    for (unsigned m = 0; m < scene.mNumMeshes; ++m) {
        for (unsigned b = 0; b < scene.mMeshes[m]->mNumBones; ++b) {
            const auto node = names_.find(scene.mMeshes[m]->mBones[b]->mName.C_Str());
            if (node != names_.end() && moved[node->second])
                return true;
        }
    }
    return false;
}

quint16 SceneRig::boneOf(quint32 node, const aiMatrix4x4 &offset)
{
    std::array<float, 16> key;
    std::copy(&offset.a1, &offset.a1 + 16, key.begin());
    const auto number = quint16(std::min(rig_->bones.size(), Rig::maxBones - 1));
    const auto [at, isNew] = bones_.emplace(std::make_pair(node, key), number);
    if (isNew && rig_->bones.size() < Rig::maxBones)
        rig_->bones.push_back({node, matrix(offset)});
    else if (isNew)
        tooMany_ = true;
    return at->second;
}

bool SceneRig::collectSkins(const aiScene &scene)
{
    for (unsigned m = 0; m < scene.mNumMeshes; ++m) {
        const aiMesh &mesh = *scene.mMeshes[m];
        if (mesh.mNumBones == 0)
            continue;
        std::vector<Hold> &holds = skins_[&mesh];
        holds.assign(mesh.mNumVertices, {{}, {}});
        for (unsigned b = 0; b < mesh.mNumBones; ++b) {
            const aiBone &bone = *mesh.mBones[b];
            const auto node = names_.find(bone.mName.C_Str());
            if (node == names_.end() || !isFinite(bone.mOffsetMatrix))
                continue;
            const quint16 number = boneOf(node->second, bone.mOffsetMatrix);
            for (unsigned i = 0; i < bone.mNumWeights; ++i) {
                const aiVertexWeight &weight = bone.mWeights[i];
                if (weight.mVertexId < mesh.mNumVertices &&
                    weight.mWeight < mostWeight) // false for NaN
                    take(holds[weight.mVertexId], number, weight.mWeight);
            }
        }
    }
    return !tooMany_;
}

void SceneRig::attach(aiScene &scene) const
{
    for (unsigned m = 0; m < scene.mNumMeshes; ++m) {
        aiMesh &mesh = *scene.mMeshes[m];
        const auto skin = skins_.find(&mesh);
        if (skin == skins_.end())
            continue;
        aiColor4D *bones = mesh.mColors[bonesIn] = new aiColor4D[mesh.mNumVertices];
        aiColor4D *weights = mesh.mColors[weightsIn] = new aiColor4D[mesh.mNumVertices];
        for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
            const Hold &hold = skin->second[i];
            for (unsigned k = 0; k < 4; ++k) {
                bones[i][k] = hold.bones[k];
                weights[i][k] = hold.weights[k];
            }
        }
    }
}

SceneRig::Hold SceneRig::holdOf(const aiNode *node, const aiMesh &mesh, unsigned index)
{
    Hold hold{{}, {}};
    float sum = 0;
    if (mesh.mColors[bonesIn] && mesh.mColors[weightsIn]) {
        for (unsigned k = 0; k < 4; ++k) {
            hold.bones[k] = quint16(mesh.mColors[bonesIn][index][k]);
            sum += hold.weights[k] = mesh.mColors[weightsIn][index][k];
        }
    }
    if (sum > 0) {
        for (float &weight : hold.weights)
            weight /= sum;
        return hold;
    }
    // What no bone holds goes with the node that shows it.
    const auto number = numbers_.find(node);
    hold = {};
    hold.bones[0] = boneOf(number == numbers_.end() ? 0 : number->second, {});
    return hold;
}

void SceneRig::addVertex(const aiNode *node, const aiMesh &mesh, unsigned index)
{
    const Hold hold = holdOf(node, mesh, index);
    rig_->vertexBones.insert(rig_->vertexBones.end(), hold.bones.begin(), hold.bones.end());
    rig_->vertexWeights.insert(rig_->vertexWeights.end(), hold.weights.begin(), hold.weights.end());
}

std::shared_ptr<const Rig> SceneRig::finish(const aiMatrix4x4 &turn, QStringList &notes)
{
    if (tooMany_)
        notes << notPlayed();
    if (tooMany_ || rig_->bones.empty())
        return nullptr;
    rig_->nodes[0].local = matrix(turn);
    return rig_;
}

} // namespace host
