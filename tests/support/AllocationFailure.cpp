#include "tests/support/AllocationFailure.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

// The first calls come before a sanitizer is ready, so that this file is built without, and uses
// nothing that the linker could take from a file with.

namespace
{

struct Counter
{
    long value;

    long Get() const { return __atomic_load_n( &value, __ATOMIC_SEQ_CST ); }

    void Set( long newValue ) { __atomic_store_n( &value, newValue, __ATOMIC_SEQ_CST ); }

    long Add( long difference )
    {
        return __atomic_add_fetch( &value, difference, __ATOMIC_SEQ_CST );
    }
};

constexpr long kNever = 1L << 62;

Counter gCallsUntilFailure = { kNever };
Counter gIsLasting = { 0 };
Counter gAllocations = { 0 };
Counter gLive = { 0 };
Counter gBlocks = { 0 };

// Counts an allocation and tells whether it is to fail.
bool IsToFail()
{
    if ( gCallsUntilFailure.Get() == kNever )
        return false;
    long const calls = gCallsUntilFailure.Add( -1 );
    return calls == 0 || ( calls < 0 && gIsLasting.Get() != 0 );
}

} // namespace

AllocationFailure::AllocationFailure( long failingCall, Duration duration )
{
    gIsLasting.Set( duration == kLasting );
    gCallsUntilFailure.Set( failingCall );
}

AllocationFailure::~AllocationFailure()
{
    gCallsUntilFailure.Set( kNever );
    gIsLasting.Set( 0 );
}

bool AllocationFailure::HasFailed() const
{
    return gCallsUntilFailure.Get() <= 0;
}

extern "C"
{
    // Below the functions that are replaced here: a sanitizer's, where there is one, else the C
    // library's.
    [[gnu::weak]] void* __interceptor_malloc( std::size_t );
    [[gnu::weak]] void* __interceptor_calloc( std::size_t, std::size_t );
    [[gnu::weak]] void* __interceptor_realloc( void*, std::size_t );
    [[gnu::weak]] void __interceptor_free( void* );
    [[gnu::weak]] void* __libc_malloc( std::size_t );
    [[gnu::weak]] void* __libc_calloc( std::size_t, std::size_t );
    [[gnu::weak]] void* __libc_realloc( void*, std::size_t );
    [[gnu::weak]] void __libc_free( void* );
}

namespace
{

// What the first of the two functions that is there allocates, unless it is to fail.
template<class Function, class... Arguments>
void* Allocate( Function* sanitizers, Function* librarys, Arguments... arguments )
{
    if ( IsToFail() )
    {
        errno = ENOMEM;
        return nullptr;
    }
    return ( sanitizers != nullptr ? sanitizers : librarys )( arguments... );
}

void* Counted( void* block )
{
    gBlocks.Add( block != nullptr ? 1 : 0 );
    return block;
}

} // namespace

extern "C"
{
    [[gnu::visibility( "default" )]] void* malloc( std::size_t size ) noexcept
    {
        return Counted( Allocate( __interceptor_malloc, __libc_malloc, size ) );
    }

    [[gnu::visibility( "default" )]] void* calloc( std::size_t count, std::size_t size ) noexcept
    {
        return Counted( Allocate( __interceptor_calloc, __libc_calloc, count, size ) );
    }

    [[gnu::visibility( "default" )]] void* realloc( void* block, std::size_t size ) noexcept
    {
        void* const result = Allocate( __interceptor_realloc, __libc_realloc, block, size );
        return block == nullptr ? Counted( result ) : result;
    }

    [[gnu::visibility( "default" )]] void free( void* block ) noexcept
    {
        gBlocks.Add( block != nullptr ? -1 : 0 );
        ( __interceptor_free != nullptr ? __interceptor_free : __libc_free )( block );
    }
}

// All forms for types of the usual alignment are here: an address sanitizer that supplied one of
// them itself would find its memory freed by another's.

void* operator new( std::size_t size )
{
    void* const memory = std::malloc( size == 0 ? 1 : size );
    if ( memory == nullptr )
        throw std::bad_alloc();
    gAllocations.Add( 1 );
    gLive.Add( 1 );
    return memory;
}

void* operator new[]( std::size_t size )
{
    return operator new( size );
}

void operator delete( void* memory ) noexcept
{
    gLive.Add( memory != nullptr ? -1 : 0 );
    std::free( memory );
}

void operator delete[]( void* memory ) noexcept
{
    operator delete( memory );
}

void operator delete( void* memory, std::size_t ) noexcept
{
    operator delete( memory );
}

void operator delete[]( void* memory, std::size_t ) noexcept
{
    operator delete( memory );
}

long LiveAllocations()
{
    return gLive.Get();
}

long LiveBlocks()
{
    return gBlocks.Get();
}

long AllocationCount()
{
    return gAllocations.Get();
}
