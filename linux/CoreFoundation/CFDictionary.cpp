#include <CoreFoundation/CFDictionary.h>

#include "linux/CoreFoundation/CFDictionaryObject.h"

#include <algorithm>

CFDictionaryKeyCallBacks const kCFTypeDictionaryKeyCallBacks = { 0 };
CFDictionaryValueCallBacks const kCFTypeDictionaryValueCallBacks = { 0 };

void CFDictionaryObject::Set( Owned<CFObject const> key, Owned<CFObject const> value )
{
    table.try_emplace( std::move( key ) ).first->second = std::move( value );
}

bool CFDictionaryObject::Equal( CFObject const& other ) const
{
    Table const& others = static_cast<CFDictionaryObject const&>( other ).table;
    return table.size() == others.size() &&
           std::ranges::all_of( table,
               [&others]( auto const& entry )
               {
                   auto const found = others.find( entry.first );
                   return found != others.end() &&
                          CFEqual( found->second.get(), entry.second.get() ) != 0;
               } );
}

CFHashCode CFDictionaryObject::Hash() const
{
    return table.size();
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
    return static_cast<CFIndex>( dictionary->table.size() );
}

void const* CFDictionaryGetValue( CFDictionaryRef dictionary, void const* key )
{
    Require( dictionary != nullptr && key != nullptr );
    auto const found = dictionary->table.find( &AsObject( key ) );
    return found == dictionary->table.end() ? nullptr : found->second.get();
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
    for ( auto const& [key, value] : dictionary->table )
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
