#pragma once

// From the elements of a property list to objects. Internal to linux/.

#include "linux/CoreFoundation/CFArrayObject.h"
#include "linux/CoreFoundation/CFDictionaryObject.h"
#include "linux/CoreFoundation/CFStringObject.h"
#include "linux/CoreFoundation/PropertyListLeaves.h"

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
/// Containers being filled are on an explicit stack; each belongs to the one around it, so that
/// whatever happens, the root owns everything.
class PropertyListBuilder
{
  public:
    explicit PropertyListBuilder( CFStringObject::Mutability strings ) : mStrings( strings ) {}

    void StartElement( std::string_view name );

    /// The end of the innermost element; `isShortForm` when start and end are one tag.
    void EndElement( bool isShortForm );

    /// A piece of text in UTF-8.
    void Text( std::string_view text );

    void StartCData() const;

    /// Called for a comment, a processing instruction and the like.
    void AllowOnlyOutsideLeaves() const;

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

    // An element that has begun and not ended. A dictionary keeps the key that waits for its value.
    struct Level
    {
        Element element;
        CFArrayObject* array = nullptr;
        CFDictionaryObject* dictionary = nullptr;
        Owned<CFObject const> key = nullptr;
    };

    static Element ElementNamed( std::string_view name );
    bool IsInLeaf() const;
    void CheckPlace( Element element ) const;
    void Add( Owned<CFObject const> object );
    Owned<CFObject const> MakeLeaf( Element element );
    Owned<CFObject const> MakeString( CFStringObject::Mutability mutability );

    CFStringObject::Mutability const mStrings;
    std::vector<Level> mLevels;
    Owned<CFObject const> mRoot;
    bool mIsPlistClosed = false;

    // What the leaf at the top has so far, by its type.
    std::u16string mUnits;
    std::string mText;
    Base64Decoder mData;
};
