#pragma once

// Memory for objects. Internal to linux/.

#include <atomic>
#include <cstddef>

/// Memory for many objects that are made together: blocks that are cut into objects from front to
/// back. The objects do not belong to the pool; each is freed on its own, in any thread, and may
/// outlive the pool. A block goes with the last of its objects.
class ObjectPool
{
  public:
    ObjectPool() = default;
    ObjectPool( ObjectPool const& ) = delete;
    ObjectPool& operator=( ObjectPool const& ) = delete;

    ~ObjectPool() { CloseBlock(); }

    /// Memory for an object of `size` bytes and the alignment of a pointer, from a block of `pool`
    /// or, if that is null or the object is large, of its own. Throws std::bad_alloc.
    static void* Allocate( std::size_t size, ObjectPool* pool );

    /// Frees what Allocate gave.
    static void Free( void* object );

  private:
    // Stands before the objects of a block.
    struct Block
    {
        std::atomic<std::size_t> objects;
    };

    // Stands before each object.
    struct Prefix
    {
        Block* block; // null: the object has its memory to itself
    };

    void* Cut( std::size_t size );
    void OpenBlock();
    void CloseBlock();
    static void Drop( Block* block, std::size_t objects );

    Block* mBlock = nullptr;
    std::size_t mBlockSize = 0;
    std::size_t mUsed = 0;
    std::size_t mObjects = 0;
};
