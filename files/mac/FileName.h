#pragma once

#include "encoding/AutoUString.h"
#include "encoding/Encodings.h"
#include "files/AdviceFileTypes.h"
#include "foundation/ConstData.h"
#include "foundation/Stringy.h"

#include <CoreFoundation/CFString.h>
#include <CoreServices/Files.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace MacintoshPlatform
{

/// The name of one item inside a folder, never a path: up to 255 UTF-16 units, none of them "/".
///
/// All other units are allowed, zero and unpaired surrogates too. Names compare unit by unit, which
/// is no collation.
///
/// **Ignoring case** means that "b" to "z" equal "B" to "Z". The letter "a" keeps its case, as do
/// all letters that are not ASCII.
///
/// **Texts** are zero-terminated and must not be null. Where they are compared to a name, each byte
/// is one unit: one of 0x80 and above equals none in any name. The tests throw nothing.
class FileName
{
  public:
    static constexpr std::size_t kMaximumLength = 255;

    /// The empty name. It cannot be made from bytes, but derived from other names.
    FileName() = default;

    /// As Set with those bytes.
    FileName( char const* text, unsigned long encoding );
    FileName( ConstData const& bytes, unsigned long encoding );

    /// Becomes the name in `string`. Throws IllegalFileName for null and for a "/" in it, the name
    /// staying as it was, and IllegalFileNameLength for more than 255 units: Length() then tells
    /// how many (65,535 if more), and there are no units.
    void Set( CFStringRef string );

    /// Becomes the name in `bytes`, in a CFStringEncoding. Throws what the other form throws,
    /// IllegalFileNameLength for no bytes, and CFStringCreateError for bytes that are not valid in
    /// the encoding.
    void Set( ConstData const& bytes, unsigned long encoding );

    /// The name in `bytes` as the file system has it, which need not be UTF-8: a byte that belongs
    /// to no valid character becomes U+FFFD. UTF-8 gives the same name as Set. Throws
    /// IllegalFileName for a "/" and IllegalFileNameLength for no bytes or more than 255 units;
    /// allocates nothing.
    ///
    /// It is for testing what a name looks like: it need not lead back to the item.
    static FileName FromFileSystem( ConstData bytes );

    std::uint16_t Length() const { return mRecord.length; }

    /// Valid until the name is changed or destroyed.
    std::span<UniChar const> Units() const;

    /// Whether the first (last) units are those of `other`; true for an empty one.
    bool HasPrefix( FileName const& other, bool ignoreCase ) const;
    bool HasPrefix( char const* other, bool ignoreCase ) const;
    bool HasSuffix( FileName const& other, bool ignoreCase ) const;
    bool HasSuffix( char const* other, bool ignoreCase ) const;

    /// Whether the name ends with a "." and `extension`, which may bring the "." along.
    bool HasExtension( FileName const& extension, bool ignoreCase ) const;
    bool HasExtension( char const* extension, bool ignoreCase ) const;

    /// Whether `pattern` describes the whole name: "?" stands for any one unit, "*" for any run of
    /// units, none included, every other byte for itself.
    ///
    /// A "*" that meets a "*" in the name stands for that one unit only: "*" matches "ax" but not
    /// "*x". A "*" with more of the pattern behind it leaves at least one unit to that, unless it
    /// comes at the end of the name. The end of the pattern matches the end of the name only, not a
    /// zero unit.
    ///
    /// Takes time proportional to the length of the name times that of the pattern, at worst, and
    /// a fixed amount of memory.
    bool MatchesWildCard( char const* pattern ) const;

    /// Whether both have the same units.
    static bool Equal( FileName const& a, FileName const& b );

    /// The difference of the first two units that differ, a's minus b's, or, if there are none over
    /// the shorter length, of the lengths. It is cut to 16 bits: differences beyond 32,767 have the
    /// wrong sign, so this is no order to sort by.
    static std::int16_t StrCmp( FileName const& a, FileName const& b );

    /// The same, ignoring case: units that are lower case count as upper case.
    static std::int16_t CompareIgnoreCase( FileName const& a, FileName const& b );

    /// What comes before the last "."; all if there is none. ".profile" gives the empty name.
    FileName BaseName() const;

    /// The leading units that are digits by their low 8 bits: U+0131 counts as one too.
    FileName PrefixDigits() const;

    /// What comes before `extension`: "a.txt" without ".txt" is "a", without "txt" it is "a.".
    /// Throws ExtensionDoesNotMatch unless HasExtension, and IllegalFileName if nothing is left.
    FileName NameBeforeExtension( FileName const& extension, bool ignoreCase ) const;

    /// The same; case matters here whatever the flag says.
    FileName NameBeforeExtension( char const* extension, bool ) const;

    /// What comes after `prefix`. Throws PrefixDoesNotMatch unless HasPrefix, and IllegalFileName
    /// if nothing is left.
    FileName NameAfterPrefix( FileName const& prefix, bool ignoreCase ) const;

    /// The same; case matters here whatever the flag says.
    FileName NameAfterPrefix( char const* prefix, bool ) const;

    /// This name followed by `other`. Throws IllegalFileName if that has more than 255 units.
    FileName Concatenate( FileName const& other ) const;

    /// The name in UTF-8. Both throw InvalidTextEncoding for an unpaired surrogate.
    AutoUString<UTF8> MakeUTF8String() const;
    Stringy MakeStringy() const;

    /// What AdviceFileTypes::TypeOfExtension says of the whole name, so the name should be an
    /// extension with its ".". It counts up to the first zero unit or unpaired surrogate. Throws
    /// CFStringCreateError when memory runs out.
    MorvekFileType ExtensionType() const;

  private:
    explicit FileName( std::span<UniChar const> units );

    void Adopt( HFSUniStr255 const& record );

    HFSUniStr255 mRecord = {};
};

static_assert( sizeof( FileName ) == 512, "a name is the platform's record and nothing else" );

} // namespace MacintoshPlatform
