#include "linux/CoreFoundation/ObjectPool.h"

#include <algorithm>
#include <limits>
#include <new>

namespace
{

// Small enough that a single object does not keep much memory; the first block suits a document of
// one kilobyte.
constexpr std::size_t kFirstBlockSize = 4096 - 64;
constexpr std::size_t kLastBlockSize = 32 * 1024;
constexpr std::size_t kLargestInPool = LARGEST_IN_POOL; // the build decides

// What an open block counts beyond its objects, so that they cannot close it by going.
constexpr std::size_t kOpen = std::size_t{ 1 } << 32;

} // namespace

void* ObjectPool::Allocate( std::size_t size, ObjectPool* pool )
{
    if ( pool != nullptr && size <= kLargestInPool )
    {
        return pool->Cut( size );
    }
    if ( size > std::numeric_limits<std::size_t>::max() - sizeof( Prefix ) )
    {
        throw std::bad_alloc();
    }
    return new ( ::operator new( sizeof( Prefix ) + size ) ) Prefix{ nullptr } + 1;
}

void ObjectPool::Free( void* object )
{
    Prefix* const prefix = static_cast<Prefix*>( object ) - 1;
    if ( prefix->block == nullptr )
    {
        ::operator delete( prefix );
    }
    else
    {
        Drop( prefix->block, 1 );
    }
}

void* ObjectPool::Cut( std::size_t size )
{
    std::size_t const whole =
        ( sizeof( Prefix ) + size + alignof( Prefix ) - 1 ) / alignof( Prefix ) * alignof( Prefix );
    if ( whole > mBlockSize - mUsed )
    {
        OpenBlock();
    }
    auto* const place = reinterpret_cast<std::byte*>( mBlock ) + mUsed;
    mUsed += whole;
    ++mObjects;
    return new ( place ) Prefix{ mBlock } + 1;
}

void ObjectPool::OpenBlock()
{
    std::size_t const size = std::clamp( 2 * mBlockSize, kFirstBlockSize, kLastBlockSize );
    auto* const block = new ( ::operator new( size ) ) Block{ kOpen };
    CloseBlock();
    mBlock = block;
    mBlockSize = size;
    mUsed = sizeof( Block );
    mObjects = 0;
}

void ObjectPool::CloseBlock()
{
    if ( mBlock != nullptr )
    {
        Drop( mBlock, kOpen - mObjects );
    }
}

// Each object counts one from kOpen downwards, and closing takes the rest off.
void ObjectPool::Drop( Block* block, std::size_t objects )
{
    if ( block->objects.fetch_sub( objects, std::memory_order_acq_rel ) == objects )
    {
        ::operator delete( block );
    }
}
