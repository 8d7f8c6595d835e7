// Blocks of memory that wait for the next one who wants as much. Under the sanitizer no block that went back
// to the system is handed out again soon, so that one with the same address is one that has waited.
#include "ground/memory_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

namespace vrx::test {
namespace {

constexpr std::size_t kMegabyte = 1 << 20;

class WaitingBlocks : public testing::Test {
  protected:
    WaitingBlocks() { releaseWaitingBlocks(); }

    /// The address of a block of this size that is given up at once.
    static const void* giveUp(std::size_t size) { return makeBlock(size).get(); }
};

TEST_F(WaitingBlocks, ServeTheNextOneOfTheirSizeOrLess) {
    const void* const first = giveUp(kMegabyte);
    EXPECT_EQ(giveUp(kMegabyte), first);
    EXPECT_EQ(giveUp(kMegabyte * 2 / 3), first);
    EXPECT_EQ(makeZeroedBlock(kMegabyte).get(), first);
}

TEST_F(WaitingBlocks, ServeNobodyWhoWantsMoreOrLessThanHalf) {
    const void* const first = giveUp(kMegabyte);
    EXPECT_NE(giveUp(kMegabyte + 1), first);
    EXPECT_NE(giveUp(kMegabyte / 2 - 1), first);
    EXPECT_EQ(giveUp(kMegabyte), first);
}

TEST_F(WaitingBlocks, AreZeroWhereThatIsWanted) {
    const MemoryBlock taken = makeZeroedBlock(kMegabyte);
    std::fill_n(makeBlock(kMegabyte).get(), kMegabyte, std::uint8_t{255});
    const MemoryBlock zeroed = makeZeroedBlock(kMegabyte);
    EXPECT_EQ(std::count(zeroed.get(), zeroed.get() + kMegabyte, 0), static_cast<std::ptrdiff_t>(kMegabyte));
}

TEST_F(WaitingBlocks, BelongToOneAtATime) {
    giveUp(kMegabyte);
    const MemoryBlock first = makeBlock(kMegabyte);
    const MemoryBlock second = makeBlock(kMegabyte);
    EXPECT_NE(first.get(), second.get());
}

TEST_F(WaitingBlocks, AreThreeAtMost) {
    std::vector<MemoryBlock> blocks;
    std::vector<const void*> before;
    for (int i = 0; i < 5; ++i) before.push_back(blocks.emplace_back(makeBlock(kMegabyte)).get());
    blocks.clear();
    long waited = 0;
    for (int i = 0; i < 5; ++i) {
        const void* const block = blocks.emplace_back(makeBlock(kMegabyte)).get();
        waited += std::count(before.begin(), before.end(), block);
    }
    EXPECT_EQ(waited, 3);
}

TEST_F(WaitingBlocks, AreNeitherSmallNorLarge) {
    EXPECT_NE(giveUp(1000), giveUp(1000));
    EXPECT_NE(giveUp(8 * kMegabyte), giveUp(8 * kMegabyte));
}

TEST_F(WaitingBlocks, GoBackToTheSystemOnDemand) {
    const void* const first = giveUp(kMegabyte);
    releaseWaitingBlocks();
    EXPECT_NE(giveUp(kMegabyte), first);
}

TEST_F(WaitingBlocks, ServeAllThreads) {
    const auto work = [](std::uint8_t mark) {
        for (std::size_t i = 0; i < 2000; ++i) {
            const std::size_t size = kMegabyte / 4 + i % 7;
            const MemoryBlock block = makeBlock(size);
            block[0] = block[size / 2] = block[size - 1] = mark;
            std::this_thread::yield();
            if (block[0] != mark || block[size / 2] != mark || block[size - 1] != mark) return false;
            if (i % 100 == 0) releaseWaitingBlocks();
        }
        return true;
    };
    bool one = false;
    std::thread other([&] { one = work(1); });
    EXPECT_TRUE(work(2));
    other.join();
    EXPECT_TRUE(one);
}

}  // namespace
}  // namespace vrx::test
