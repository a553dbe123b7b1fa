#include "pxr/base/tf/slabPool.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <set>
#include <vector>

PXR_NAMESPACE_USING_DIRECTIVE

namespace {

constexpr std::size_t kBlock = 48;

TEST(SlabPool, HandsOutBlocksThatDoNotOverlapAfterAnyMixOfAllocatingAndFreeing)
{
    Tf_SlabPool pool(kBlock);
    std::vector<unsigned char*> blocks;
    std::vector<unsigned char> contents;
    std::mt19937 random(3);
    for (int step = 0; step != 20000; ++step) {
        // More is allocated than freed at first, and the other way round at the end.
        if (blocks.empty() || random() % 20000 > static_cast<unsigned>(step)) {
            blocks.push_back(static_cast<unsigned char*>(pool.Allocate()));
            contents.push_back(static_cast<unsigned char>(random()));
            std::memset(blocks.back(), contents.back(), kBlock);
        } else {
            const std::size_t which = random() % blocks.size();
            const std::vector<unsigned char> expected(kBlock, contents[which]);
            ASSERT_EQ(0, std::memcmp(blocks[which], expected.data(), kBlock));
            pool.Free(blocks[which]);
            blocks[which] = blocks.back();
            contents[which] = contents.back();
            blocks.pop_back();
            contents.pop_back();
        }
    }
    for (unsigned char* const block : blocks) {
        pool.Free(block);
    }
}

TEST(SlabPool, HandsOutBlocksAlignedForAnyScalar)
{
    Tf_SlabPool pool(kBlock);
    std::set<void*> blocks;
    for (int i = 0; i != 3000; ++i) {
        void* const block = pool.Allocate();
        EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t));
        EXPECT_TRUE(blocks.insert(block).second);
    }
    for (void* const block : blocks) {
        pool.Free(block);
    }
}

} // namespace
