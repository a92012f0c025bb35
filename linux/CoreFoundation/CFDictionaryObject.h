#pragma once

// The object behind a CFDictionaryRef. Internal to linux/.

#include <CoreFoundation/CFDictionary.h>

#include "linux/CoreFoundation/CFObject.h"

#include <unordered_map>

struct CFDictionaryObject final : CFObject
{
    struct HashOf
    {
        using is_transparent = void;

        // Not noexcept on purpose: the table then keeps each hash beside its entry instead of
        // computing it again.
        template<class Key>
        CFHashCode operator()( Key const& key ) const
        {
            return key->Hash();
        }
    };

    struct AreEqual
    {
        using is_transparent = void;

        template<class A, class B>
        bool operator()( A const& a, B const& b ) const
        {
            return CFEqual( &*a, &*b );
        }
    };

    using Table =
        std::unordered_map<Owned<CFObject const>, Owned<CFObject const>, HashOf, AreEqual>;

    CFDictionaryObject() : CFObject( CFKind::kDictionary ) {}

    /// Puts a value under a key; an equal key that is there stays.
    void Set( Owned<CFObject const> key, Owned<CFObject const> value );

    bool Equal( CFObject const& other ) const override;
    CFHashCode Hash() const override;

    Table table;
};
