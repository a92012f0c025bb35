#include <CoreFoundation/CFDictionary.h>

#include "linux/CoreFoundation/CFDictionaryObject.h"

#include <algorithm>
#include <bit>
#include <new>
#include <utility>

namespace
{

constexpr std::size_t kFewEntries = 16;

bool AreEqual( CFObject const& a, CFObject const& b )
{
    return &a == &b || ( a.Kind() == b.Kind() && a.Equal( b ) );
}

// Spreads a hash over 32 bits, of which the upper ones choose the slot (Knuth, "Sorting and
// Searching", multiplicative hashing).
std::uint32_t Spread( CFHashCode hash )
{
    return static_cast<std::uint32_t>( hash * 0x9E3779B97F4A7C15U >> 32 );
}

} // namespace

CFDictionaryKeyCallBacks const kCFTypeDictionaryKeyCallBacks = { 0 };
CFDictionaryValueCallBacks const kCFTypeDictionaryValueCallBacks = { 0 };

// 0 as long as there are no slots.
std::uint32_t CFDictionaryObject::HashOf( CFObject const& key ) const
{
    return mSlots.empty() ? 0 : Spread( key.Hash() );
}

std::size_t CFDictionaryObject::FirstSlot( std::uint32_t hash ) const
{
    return static_cast<std::size_t>( std::uint64_t{ hash } * mSlots.size() >> 32 );
}

std::size_t CFDictionaryObject::PlaceOf( CFObject const& key, std::uint32_t hash ) const
{
    if ( mSlots.empty() )
    {
        auto const found = std::ranges::find_if(
            mEntries, [&key]( Entry const& entry ) { return AreEqual( *entry.key, key ); } );
        return static_cast<std::size_t>( found - mEntries.begin() );
    }
    for ( std::size_t i = FirstSlot( hash );; i = ( i + 1 ) & ( mSlots.size() - 1 ) )
    {
        Slot const& slot = mSlots[i];
        if ( slot.number == 0 )
        {
            return mEntries.size();
        }
        if ( slot.hash == hash && AreEqual( *mEntries[slot.number - 1].key, key ) )
        {
            return slot.number - 1;
        }
    }
}

// Takes a slot for an entry whose key has none.
void CFDictionaryObject::TakeSlot( std::uint32_t hash, std::size_t entry )
{
    std::size_t i = FirstSlot( hash );
    while ( mSlots[i].number != 0 )
    {
        i = ( i + 1 ) & ( mSlots.size() - 1 );
    }
    mSlots[i] = { hash, static_cast<std::uint32_t>( entry + 1 ) };
}

void CFDictionaryObject::MakeSlots( std::size_t count )
{
    if ( count > std::uint64_t{ 1 } << 32 )
    {
        throw std::bad_alloc();
    }
    std::vector<Slot> const old = std::exchange( mSlots, std::vector<Slot>( count ) );
    if ( old.empty() )
    {
        for ( std::size_t i = 0; i < mEntries.size(); ++i )
        {
            TakeSlot( Spread( mEntries[i].key->Hash() ), i );
        }
    }
    for ( Slot const& slot : old )
    {
        if ( slot.number != 0 )
        {
            TakeSlot( slot.hash, slot.number - 1 );
        }
    }
}

void CFDictionaryObject::Set( Owned<CFObject const> key, Owned<CFObject const> value )
{
    if ( mEntries.size() >= kFewEntries && 2 * mEntries.size() >= mSlots.size() )
    {
        MakeSlots( std::max( 2 * mSlots.size(), 4 * kFewEntries ) );
    }
    std::uint32_t const hash = HashOf( *key );
    SetHashed( { std::move( key ), std::move( value ) }, hash );
}

void CFDictionaryObject::SetHashed( Entry entry, std::uint32_t hash )
{
    std::size_t const place = PlaceOf( *entry.key, hash );
    if ( place != mEntries.size() )
    {
        mEntries[place].value = std::move( entry.value );
        return;
    }
    mEntries.push_back( std::move( entry ) );
    if ( !mSlots.empty() )
    {
        TakeSlot( hash, place );
    }
}

void CFDictionaryObject::Fill( std::span<Entry> entries )
{
    mEntries.reserve( entries.size() );
    if ( entries.size() > kFewEntries )
    {
        MakeSlots( std::bit_ceil( 2 * entries.size() ) );
    }
    for ( Entry& entry : entries )
    {
        std::uint32_t const hash = HashOf( *entry.key );
        SetHashed( std::move( entry ), hash );
    }
}

CFObject const* CFDictionaryObject::ValueOf( CFObject const& key ) const
{
    std::size_t const place = PlaceOf( key, HashOf( key ) );
    return place == mEntries.size() ? nullptr : mEntries[place].value.get();
}

bool CFDictionaryObject::Equal( CFObject const& object ) const
{
    auto const& other = static_cast<CFDictionaryObject const&>( object );
    return mEntries.size() == other.mEntries.size() &&
           std::ranges::all_of( mEntries,
               [&other]( Entry const& entry )
               {
                   CFObject const* const value = other.ValueOf( *entry.key );
                   return value != nullptr && CFEqual( value, entry.value.get() ) != 0;
               } );
}

CFHashCode CFDictionaryObject::Hash() const
{
    return mEntries.size();
}

CFTypeID CFDictionaryGetTypeID( void )
{
    return static_cast<CFTypeID>( CFKind::kDictionary );
}

CFDictionaryRef CFDictionaryCreate( CFAllocatorRef allocator, void const** keys,
    void const** values, CFIndex count, CFDictionaryKeyCallBacks const* keyCallBacks,
    CFDictionaryValueCallBacks const* valueCallBacks )
{
    return NullIfThrown(
        [&]() -> CFDictionaryRef
        {
            Owned<CFDictionaryObject> dictionary(
                CFDictionaryCreateMutable( allocator, count, keyCallBacks, valueCallBacks ) );
            if ( !dictionary || count < 0 )
            {
                return nullptr;
            }
            for ( CFIndex i = 0; i < count; ++i )
            {
                dictionary->Set( RetainedObject( keys[i] ), RetainedObject( values[i] ) );
            }
            return dictionary.release();
        } );
}

CFMutableDictionaryRef CFDictionaryCreateMutable( CFAllocatorRef, CFIndex,
    CFDictionaryKeyCallBacks const* keyCallBacks, CFDictionaryValueCallBacks const* valueCallBacks )
{
    return NullIfThrown(
        [&]() -> CFMutableDictionaryRef
        {
            bool const areObjects = keyCallBacks == &kCFTypeDictionaryKeyCallBacks &&
                                    valueCallBacks == &kCFTypeDictionaryValueCallBacks;
            return areObjects ? new CFDictionaryObject : nullptr;
        } );
}

CFIndex CFDictionaryGetCount( CFDictionaryRef dictionary )
{
    Require( dictionary != nullptr );
    return static_cast<CFIndex>( dictionary->Entries().size() );
}

void const* CFDictionaryGetValue( CFDictionaryRef dictionary, void const* key )
{
    Require( dictionary != nullptr && key != nullptr );
    return dictionary->ValueOf( AsObject( key ) );
}

Boolean CFDictionaryGetValueIfPresent(
    CFDictionaryRef dictionary, void const* key, void const** value )
{
    void const* const found = CFDictionaryGetValue( dictionary, key );
    if ( found != nullptr && value != nullptr )
    {
        *value = found;
    }
    return found != nullptr;
}

void CFDictionaryGetKeysAndValues(
    CFDictionaryRef dictionary, void const** keys, void const** values )
{
    Require( dictionary != nullptr );
    for ( auto const& [key, value] : dictionary->Entries() )
    {
        if ( keys != nullptr )
        {
            *keys++ = key.get();
        }
        if ( values != nullptr )
        {
            *values++ = value.get();
        }
    }
}

void CFDictionarySetValue( CFMutableDictionaryRef dictionary, void const* key, void const* value )
{
    Require( dictionary != nullptr );
    NullIfThrown(
        [&]
        {
            dictionary->Set( RetainedObject( key ), RetainedObject( value ) );
            return dictionary;
        } );
}
