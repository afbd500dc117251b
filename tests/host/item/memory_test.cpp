// SPDX-License-Identifier: MIT
// What items say that they hold, against what the heap says. Their trees are waited for.
#include <QThreadPool>

#include <gtest/gtest.h>
#include <malloc.h>

#include "host/item/model_item.h"
#include "tests/host/shapes.h"

#if defined(__SANITIZE_ADDRESS__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // has no header everywhere
#endif

namespace host {
namespace {

std::size_t held()
{
#if defined(__SANITIZE_ADDRESS__)
    return __sanitizer_get_current_allocated_bytes();
#else
    const auto heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
#endif
}

template <class Make> void expectHonest(const char *name, const Make &make)
{
    const std::size_t before = held();
    const std::unique_ptr<Item> item = make();
    QThreadPool::globalInstance()->waitForDone();
    const double share = double(item->byteSize()) / double(held() - before);
    EXPECT_NEAR(share, 1, 0.1) << name;
}

TEST(MemoryTest, WhatItemsSayIsWithinATenthOfWhatTheyHold)
{
    const Mesh ring = revolve(arc({5, 0}, 1, -90, 90, 100), 100, 100).mesh;
    expectHonest("triangles",
                 [&] { return std::make_unique<ModelItem>("a", std::make_shared<Mesh>(ring)); });
    expectHonest("posed", [&] {
        Mesh mesh = ring;
        const Texture texture{1000, 1000, std::vector<quint8>(4000000)};
        mesh.textures = {std::make_shared<Texture>(texture)};
        auto item = std::make_unique<ModelItem>("a", flattening(mesh));
        item->playback()->setTime(1);
        EXPECT_TRUE(item->play(0) && item->play(0));
        return item;
    });
}

} // namespace
} // namespace host
