#pragma once

#include <cstddef>

namespace quillbox {

// Memory for very many objects of one size that come and go together, as the items of a menu do. Cells are cut from
// slabs of 256 KiB, and a slab goes back to the system when its last cell is returned (one empty slab is kept).
// Neighbouring objects lie side by side, which makes building and releasing a long menu cheap. Main thread only. A pool
// lives as long as the process.
class SlabPool {
public:
    // Makes a pool whose cells have `cellSize` bytes, aligned to 16.
    explicit SlabPool(std::size_t cellSize);
    SlabPool(const SlabPool&) = delete;
    SlabPool& operator=(const SlabPool&) = delete;

    // Returns a cell, never null: without memory the process ends, as it would for any small object.
    void* allocate();
    void deallocate(void* cell);

    // The number of slabs held, the empty one included.
    std::size_t slabCount() const { return slabCount_; }
    // The bytes of all cells in use, over all pools.
    static std::size_t bytesInUse();
    // Returns free heap memory to the system if many slabs were released since the last call: the texts and lists that
    // the objects held lay there. It takes about a millisecond then.
    static void trimHeapAfterMany();

private:
    struct Slab;
    struct Cell;

    Slab* makeSlab();
    void link(Slab& slab);
    void unlink(Slab& slab);

    const std::size_t cellSize_;
    // Slabs with a free cell; the first one is filled first.
    Slab* available_ = nullptr;
    std::size_t slabCount_ = 0;
    std::size_t emptyCount_ = 0;
};

// The pool as an allocator of single objects, for std::shared_ptr's own blocks and the like.
template <class T>
class SlabAllocator {
public:
    using value_type = T;

    SlabAllocator() = default;
    template <class Other>
    SlabAllocator(const SlabAllocator<Other>&)
    {
    }
    T* allocate(std::size_t) { return static_cast<T*>(pool().allocate()); }
    void deallocate(T* cell, std::size_t) { pool().deallocate(cell); }

    template <class Other>
    friend bool operator==(const SlabAllocator&, const SlabAllocator<Other>&)
    {
        return true;
    }

private:
    static SlabPool& pool()
    {
        // Never destroyed: objects of other statics may still return their cells.
        static auto& pool = *new SlabPool(sizeof(T));
        return pool;
    }
};

} // namespace quillbox
