#include "SlabPool.h"

#include "Check.h"

#include <algorithm>
#include <cstdint>
#include <new>

#include <malloc.h>
#include <sys/mman.h>

namespace quillbox {

namespace {

    constexpr std::size_t kSlabSize = std::size_t { 256 } << 10;
    constexpr std::size_t kAlignment = 16;

    std::size_t bytesOfAllPools = 0;
    std::size_t slabsGivenBack = 0;
    // Only a megabyte of cells or more is given back; less than that is soon wanted again.
    constexpr std::size_t kManySlabs = 4;

    constexpr std::size_t roundedUp(std::size_t size)
    {
        return (size + kAlignment - 1) / kAlignment * kAlignment;
    }

} // namespace

struct SlabPool::Cell {
    Cell* next;
};

// The slab's data lie at the start of its memory, which is aligned to its size, so that a cell's address leads to its
// slab.
struct SlabPool::Slab {
    Slab* next;
    Slab* previous;
    // Cells that were returned. Cells never used yet lie from `unused` to the end.
    Cell* returned;
    char* unused;
    char* end;
    std::size_t liveCount;

    bool isFull() const { return !returned && unused == end; }
};

SlabPool::SlabPool(std::size_t cellSize) : cellSize_(roundedUp(std::max(cellSize, sizeof(Cell))))
{
    QB_CHECK(cellSize_ <= kSlabSize / 16);
}

SlabPool::Slab* SlabPool::makeSlab()
{
    // Twice as much is asked for, and what lies before and behind the aligned half is given back.
    void* memory = mmap(nullptr, 2 * kSlabSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    QB_CHECK(memory != MAP_FAILED);
    char* begin = static_cast<char*>(memory);
    const std::size_t surplus = (kSlabSize - reinterpret_cast<std::uintptr_t>(begin) % kSlabSize) % kSlabSize;
    if (surplus > 0)
        munmap(begin, surplus);
    begin += surplus;
    munmap(begin + kSlabSize, kSlabSize - surplus);
    // A pool that needs another slab will soon use all of it. Touching all pages at once costs half of touching them
    // one by one; where the system can't do that, they come one by one.
    if (slabCount_ > 0)
        madvise(begin, kSlabSize, MADV_POPULATE_WRITE);

    char* firstCell = begin + roundedUp(sizeof(Slab));
    const std::size_t cellCount = (kSlabSize - roundedUp(sizeof(Slab))) / cellSize_;
    ++slabCount_;
    ++emptyCount_;
    return new (begin) Slab { nullptr, nullptr, nullptr, firstCell, firstCell + cellCount * cellSize_, 0 };
}

void SlabPool::link(Slab& slab)
{
    slab.previous = nullptr;
    slab.next = available_;
    if (available_)
        available_->previous = &slab;
    available_ = &slab;
}

void SlabPool::unlink(Slab& slab)
{
    (slab.previous ? slab.previous->next : available_) = slab.next;
    if (slab.next)
        slab.next->previous = slab.previous;
}

std::size_t SlabPool::bytesInUse()
{
    return bytesOfAllPools;
}

void* SlabPool::allocate()
{
    bytesOfAllPools += cellSize_;
    if (!available_)
        link(*makeSlab());
    Slab& slab = *available_;
    if (slab.liveCount++ == 0)
        --emptyCount_;
    void* cell = slab.returned;
    if (cell) {
        slab.returned = slab.returned->next;
    } else {
        cell = slab.unused;
        slab.unused += cellSize_;
    }
    if (slab.isFull())
        unlink(slab);
    return cell;
}

void SlabPool::deallocate(void* cell)
{
    bytesOfAllPools -= cellSize_;
    Slab& slab = *reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(cell) / kSlabSize * kSlabSize);
    const bool wasFull = slab.isFull();
    slab.returned = new (cell) Cell { slab.returned };
    if (wasFull)
        link(slab);
    if (--slab.liveCount > 0)
        return;
    if (++emptyCount_ > 1) {
        --emptyCount_;
        --slabCount_;
        unlink(slab);
        ++slabsGivenBack;
        munmap(&slab, kSlabSize);
    }
}

void SlabPool::trimHeapAfterMany()
{
    if (slabsGivenBack < kManySlabs)
        return;
    slabsGivenBack = 0;
    malloc_trim(0);
}

} // namespace quillbox
