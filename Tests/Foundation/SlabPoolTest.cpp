#include "SlabPool.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <set>
#include <vector>

namespace quillbox {

namespace {

    constexpr std::size_t kCellSize = 240;

    unsigned char markOf(const unsigned char* cell)
    {
        return static_cast<unsigned char>(reinterpret_cast<std::uintptr_t>(cell) >> 4);
    }

    TEST(SlabPool, CellsAreApartAlignedAndWholeWhateverTheOrder)
    {
        SlabPool pool(kCellSize);
        std::mt19937 random(7);
        std::vector<unsigned char*> cells;
        for (int step = 0; step < 20'000; ++step) {
            if (cells.empty() || random() % 3 != 0) {
                cells.push_back(static_cast<unsigned char*>(pool.allocate()));
                ASSERT_EQ(reinterpret_cast<std::uintptr_t>(cells.back()) % 16, 0U);
                std::memset(cells.back(), markOf(cells.back()), kCellSize);
            } else {
                std::swap(cells[random() % cells.size()], cells.back());
                ASSERT_EQ(cells.back()[0], markOf(cells.back()));
                ASSERT_EQ(cells.back()[kCellSize - 1], markOf(cells.back()));
                pool.deallocate(cells.back());
                cells.pop_back();
            }
        }
        EXPECT_EQ(std::set<unsigned char*>(cells.begin(), cells.end()).size(), cells.size());
        for (unsigned char* cell : cells)
            pool.deallocate(cell);
    }

    TEST(SlabPool, MemoryGoesBackWhenItsCellsAreGone)
    {
        SlabPool pool(kCellSize);
        const std::size_t before = SlabPool::bytesInUse();
        std::vector<void*> cells(10'000);
        for (void*& cell : cells)
            cell = pool.allocate();
        EXPECT_EQ(SlabPool::bytesInUse() - before, cells.size() * kCellSize);
        EXPECT_GE(pool.slabCount(), 10U);
        void* kept = cells.back();
        cells.pop_back();
        for (void* cell : cells)
            pool.deallocate(cell);
        EXPECT_EQ(pool.slabCount(), 2U) << "the one in use and one in reserve";
        pool.deallocate(kept);
        EXPECT_EQ(pool.slabCount(), 1U);
        EXPECT_EQ(SlabPool::bytesInUse(), before);
    }

} // namespace

} // namespace quillbox
