#pragma once

// From the elements of a property list to objects. Internal to linux/.

#include "linux/CoreFoundation/CFArrayObject.h"
#include "linux/CoreFoundation/CFDictionaryObject.h"
#include "linux/CoreFoundation/CFStringObject.h"
#include "linux/CoreFoundation/PropertyListLeaves.h"

#include <cstddef>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Why a text is no property list.
class PropertyListError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

/// Builds the objects of one property list from the events of an XML parser, which checks that
/// tags match. All functions throw PropertyListError for what a property list cannot contain, after
/// which the builder is of no further use.
///
/// The levels that are open are on an explicit stack, and what they contain on another; a container
/// is made when it ends, of the size that it then has.
class PropertyListBuilder
{
  public:
    explicit PropertyListBuilder( CFStringObject::Mutability strings );

    void StartElement( char const* name );

    /// The end of the innermost element; `isShortForm` when start and end are one tag.
    void EndElement( bool isShortForm );

    /// A piece of text in UTF-8.
    void Text( std::string_view text );

    void StartCData() const;

    /// Called for a comment, a processing instruction and the like.
    void AllowOnlyOutsideLeaves() const;

    /// Whether an element has begun that can contain text alone.
    bool IsInLeaf() const { return mLeaf.has_value(); }

    /// Whether <plist> has ended.
    bool IsPlistClosed() const { return mIsPlistClosed; }

    /// The finished object.
    Owned<CFObject const> TakeRoot();

  private:
    enum class Element
    {
        kPlist,
        kDict,
        kArray,
        kKey,
        kString,
        kInteger,
        kReal,
        kDate,
        kData,
        kTrue,
        kFalse
    };

    using Entry = CFDictionaryObject::Entry;

    // An element round others that has begun and not ended. A dictionary keeps the key that waits
    // for its value.
    struct Level
    {
        Element element;
        std::size_t firstEntry;
        Owned<CFObject const> key = nullptr;
    };

    static Element ElementNamed( char const* name );
    void CheckPlace( Element element ) const;
    void Add( Owned<CFObject const> object );
    void EndContainer();
    Owned<CFObject const> MakeContainer( Element element, std::span<Entry> entries );
    Owned<CFObject const> MakeLeaf( Element element );
    Owned<CFObject const> MakeString( CFStringObject::Mutability mutability );

    CFStringObject::Mutability const mStrings;
    ObjectPool mPool;
    std::vector<Level> mLevels;
    std::vector<Entry> mEntries; // of all levels; those of arrays have no keys
    std::optional<Element> mLeaf;
    Owned<CFObject const> mRoot;
    bool mIsPlistClosed = false;

    // What the leaf has so far: its text, in UTF-8, or for <data> the bytes.
    std::string mText;
    Base64Decoder mData;
};
