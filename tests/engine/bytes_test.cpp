// The two owners of byte memory: what they hold, what they cost, and how they fail.
#include "ground/bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <utility>

#include "failure.h"
#include "resident_memory.h"

namespace {
bool arraysFail = false;
}

// In this program, new arrays can be made to fail as in a process without memory.
void* operator new[](std::size_t size) {
    if (arraysFail) throw std::bad_alloc();
    return ::operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return arraysFail ? nullptr : ::operator new(size, tag);
}
void operator delete[](void* block) noexcept { ::operator delete(block); }
void operator delete[](void* block, std::size_t) noexcept { ::operator delete(block); }

namespace vrx::test {
namespace {

constexpr std::uint64_t kHuge = 1900000000;

bool isZero(const ZeroedBytes& bytes) {
    return std::count(bytes.data(), bytes.data() + bytes.size(), 0) ==
           static_cast<std::ptrdiff_t>(bytes.size());
}

TEST(ZeroedBytes, ReadAsZero) { EXPECT_TRUE(isZero(ZeroedBytes(100000))); }

TEST(ZeroedBytes, ReadAsZeroAfterEveryReset) {
    ZeroedBytes bytes(1000);
    for (const std::uint64_t size : {1000U, 1000U, 5000U, 10U, 0U, 1000U}) {
        bytes.reset(size);
        EXPECT_EQ(bytes.size(), size);
        EXPECT_TRUE(isZero(bytes));
        std::fill_n(bytes.data(), bytes.size(), std::uint8_t{255});
    }
}

TEST(ZeroedBytes, CostNoResidentMemoryUntilWritten) {
    const long before = residentMegabytes();
    ASSERT_GT(before, 0);
    ZeroedBytes bytes(kHuge);
    bytes.data()[kHuge - 1] = 1;
    EXPECT_LT(residentMegabytes() - before, 50);
}

TEST(ZeroedBytes, AreOutOfMemoryBeyondTwoGigabytes) {
    EXPECT_EQ(errorNumberOf([] { ZeroedBytes(std::uint64_t{1} << 31); }), 7);
    EXPECT_EQ(errorNumberOf([] { ZeroedBytes(~std::uint64_t{0}); }), 7);
}

TEST(ZeroedBytes, AreEmptyAfterAResetThatFails) {
    ZeroedBytes bytes(1000);
    EXPECT_EQ(errorNumberOf([&] { bytes.reset(std::uint64_t{1} << 40); }), 7);
    EXPECT_EQ(bytes.size(), 0U);
    bytes.reset(10);
    EXPECT_TRUE(isZero(bytes));
}

TEST(ZeroedBytes, MoveLeavingNothingBehind) {
    ZeroedBytes first(10);
    first.data()[3] = 7;
    ZeroedBytes second(std::move(first));
    EXPECT_EQ(first.size(), 0U);  // NOLINT(bugprone-use-after-move): this is what is tested
    EXPECT_EQ(second.size(), 10U);
    EXPECT_EQ(second.data()[3], 7);
    first = std::move(second);
    EXPECT_EQ(second.size(), 0U);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(first.data()[3], 7);
}

TEST(Bytes, HoldWhatIsWritten) {
    Bytes bytes(3);
    std::copy_n("abc", 3, bytes.data());
    EXPECT_EQ(bytes.span()[2], 'c');
    bytes.shrink(2);
    EXPECT_EQ(bytes.span().size(), 2U);
    bytes.shrink(5);
    EXPECT_EQ(bytes.size(), 2U);
}

TEST(Bytes, AreOutOfMemoryBeyondTwoGigabytes) {
    EXPECT_EQ(errorNumberOf([] { Bytes(std::uint64_t{1} << 31); }), 7);
}

TEST(Bytes, AreOutOfMemoryWhereTheProcessHasNone) {
    arraysFail = true;
    int number = -1;
    try {
        number = errorNumberOf([] { Bytes(1000); });
    } catch (const std::bad_alloc&) {
        number = -2;
    }
    arraysFail = false;
    EXPECT_EQ(number, 7);
}

}  // namespace
}  // namespace vrx::test
