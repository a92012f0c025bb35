#pragma once

// The object behind a CFDictionaryRef. Internal to linux/.

#include <CoreFoundation/CFDictionary.h>

#include "linux/CoreFoundation/CFObject.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// The entries are in the order in which their keys came. Few of them are found one after the
/// other; more through a table of slots (open addressing with linear probing), at most half of
/// which are taken.
struct CFDictionaryObject final : CFObject
{
    struct Entry
    {
        Owned<CFObject const> key;
        Owned<CFObject const> value;
    };

    CFDictionaryObject() : CFObject( CFKind::kDictionary ) {}

    /// Puts a value under a key; an equal key that is there stays. std::bad_alloc leaves the
    /// dictionary as it was.
    void Set( Owned<CFObject const> key, Owned<CFObject const> value );

    /// Sets all these, taking them out of the list. The dictionary is empty before.
    void Fill( std::span<Entry> entries );

    /// Null if there is none.
    CFObject const* ValueOf( CFObject const& key ) const;

    std::span<Entry const> Entries() const { return mEntries; }

    bool Equal( CFObject const& other ) const override;
    CFHashCode Hash() const override;

  private:
    // Half of a key's hash, and the number of its entry counted from 1; 0 if the slot is free.
    struct Slot
    {
        std::uint32_t hash = 0;
        std::uint32_t number = 0;
    };

    std::uint32_t HashOf( CFObject const& key ) const;

    // The number of the entry, or of all entries if there is none.
    std::size_t PlaceOf( CFObject const& key, std::uint32_t hash ) const;

    void SetHashed( Entry entry, std::uint32_t hash );
    std::size_t FirstSlot( std::uint32_t hash ) const;
    void TakeSlot( std::uint32_t hash, std::size_t entry );
    void MakeSlots( std::size_t count );

    std::vector<Entry> mEntries;
    std::vector<Slot> mSlots; // as many as a power of two, or none
};
