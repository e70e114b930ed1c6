#include "SlabPool.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <vector>

using namespace quillbox;

namespace {

using Cell = std::vector<std::uint8_t>;

TEST(SlabPool, CellsAreApartAndMemoryGoesBackWhenTheyAreGone)
{
    constexpr std::size_t kCellSize = 240;
    constexpr std::size_t kCount = 10'000;
    SlabPool pool(kCellSize);
    const std::size_t before = SlabPool::bytesInUse();
    std::vector<std::uint8_t*> cells(kCount);
    const auto markOf = [&](std::size_t index) { return Cell(kCellSize, static_cast<std::uint8_t>(index % 251)); };
    const auto allocate = [&](std::size_t index) {
        cells[index] = static_cast<std::uint8_t*>(pool.allocate());
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(cells[index]) % 16, 0U);
        std::ranges::copy(markOf(index), cells[index]);
    };
    // Comes to all of them, in another order than the pool has.
    const auto place = [](std::size_t step) { return step * 7919 % kCount; };
    for (std::size_t index = 0; index < kCount; ++index)
        allocate(index);
    for (std::size_t step = 0; step < kCount / 3; ++step)
        pool.deallocate(cells[place(step)]);
    for (std::size_t step = 0; step < kCount / 3; ++step)
        allocate(place(step));
    EXPECT_EQ(SlabPool::bytesInUse() - before, kCount * kCellSize);
    EXPECT_GE(pool.slabCount(), 10U);
    for (std::size_t index = 0; index < kCount; ++index)
        ASSERT_EQ(Cell(cells[index], cells[index] + kCellSize), markOf(index));
    for (std::size_t step = 1; step < kCount; ++step)
        pool.deallocate(cells[place(step)]);
    EXPECT_EQ(pool.slabCount(), 2U) << "the one in use and one in reserve";
    pool.deallocate(cells[0]);
    EXPECT_EQ(pool.slabCount(), 1U);
    EXPECT_EQ(SlabPool::bytesInUse(), before);
}

} // namespace
