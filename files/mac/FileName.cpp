#include "files/mac/FileName.h"

#include "encoding/Transcoder.h"
#include "files/FileNameErrors.h"
#include "platform/CFStrings.h"

#include <algorithm>
#include <bitset>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace MacintoshPlatform
{

static_assert( std::extent_v<decltype( HFSUniStr255::unicode )> == FileName::kMaximumLength );
static_assert( offsetof( HFSUniStr255, length ) == 0 && offsetof( HFSUniStr255, unicode ) == 2 );

namespace
{

using UnitSpan = std::span<UniChar const>;

// The units of names and texts as numbers that can be compared with each other.
constexpr int Number( UniChar unit )
{
    return unit;
}

constexpr int Number( char byte )
{
    return static_cast<signed char>( byte );
}

constexpr int Folded( int unit )
{
    return unit >= 'b' && unit <= 'z' ? unit - 0x20 : unit;
}

// What follows takes the other name as a UnitSpan or as the std::string_view of a text.

template<typename Other>
bool Same( UnitSpan name, Other const& other, bool ignoreCase )
{
    auto const number = [ignoreCase]( auto unit )
    { return ignoreCase ? Folded( Number( unit ) ) : Number( unit ); };
    return std::ranges::equal( name, other, {}, number, number );
}

template<typename Other>
bool Begins( UnitSpan name, Other const& other, bool ignoreCase )
{
    return other.size() <= name.size() && Same( name.first( other.size() ), other, ignoreCase );
}

template<typename Other>
bool Ends( UnitSpan name, Other const& other, bool ignoreCase )
{
    return other.size() <= name.size() && Same( name.last( other.size() ), other, ignoreCase );
}

template<typename Other>
bool EndsInExtension( UnitSpan name, Other const& extension, bool ignoreCase )
{
    if ( !Ends( name, extension, ignoreCase ) )
    {
        return false;
    }
    if ( !extension.empty() && extension.front() == '.' )
    {
        return true;
    }
    return name.size() > extension.size() && name[name.size() - extension.size() - 1] == '.';
}

template<typename Other>
UnitSpan BeforeExtension( UnitSpan name, Other const& extension, bool ignoreCase )
{
    if ( !EndsInExtension( name, extension, ignoreCase ) )
    {
        throw ExtensionDoesNotMatch();
    }
    if ( extension.size() == name.size() )
    {
        throw IllegalFileName();
    }
    return name.first( name.size() - extension.size() );
}

template<typename Other>
UnitSpan AfterPrefix( UnitSpan name, Other const& prefix, bool ignoreCase )
{
    if ( !Begins( name, prefix, ignoreCase ) )
    {
        throw PrefixDoesNotMatch();
    }
    if ( prefix.size() == name.size() )
    {
        throw IllegalFileName();
    }
    return name.subspan( prefix.size() );
}

std::int16_t Difference( UnitSpan a, UnitSpan b, int ( *number )( int ) )
{
    auto const [inA, inB] = std::ranges::mismatch( a, b, {}, number, number );
    if ( inA != a.end() && inB != b.end() )
    {
        return static_cast<std::int16_t>( number( *inA ) - number( *inB ) );
    }
    return static_cast<std::int16_t>( std::ssize( a ) - std::ssize( b ) );
}

constexpr char32_t kReplacementCharacter = 0xFFFD;

// The UTF-8 character that the bytes, of which there is at least one, begin with, and its length;
// the replacement character for one byte that begins none.
std::pair<char32_t, std::uint32_t> FirstCharacter( ConstData bytes )
{
    constexpr char32_t kSmallest[] = { 0, 0, 0x80, 0x800, 0x10000 }; // by length
    constexpr std::pair<char32_t, std::uint32_t> kNone( kReplacementCharacter, 1 );
    unsigned char const lead = bytes[0];
    if ( lead < 0x80 )
    {
        return { lead, 1 };
    }
    std::uint32_t const length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if ( length == 1 || lead >= 0xF8 || length > bytes.Length() )
    {
        return kNone;
    }
    char32_t character = lead & ( 0x7Fu >> length );
    for ( std::uint32_t i = 1; i < length; ++i )
    {
        if ( ( bytes[i] & 0xC0 ) != 0x80 )
        {
            return kNone;
        }
        character = ( character << 6 ) | ( bytes[i] & 0x3Fu );
    }
    bool const isSurrogate = character >= 0xD800 && character < 0xE000;
    if ( character < kSmallest[length] || character > 0x10FFFF || isSurrogate )
    {
        return kNone;
    }
    return { character, length };
}

void Append( HFSUniStr255& record, char32_t unit )
{
    if ( record.length == FileName::kMaximumLength )
    {
        throw IllegalFileNameLength();
    }
    record.unicode[record.length++] = static_cast<UniChar>( unit );
}

} // namespace

FileName::FileName( char const* text, unsigned long encoding )
{
    Set( ConstData( text ), encoding );
}

FileName::FileName( ConstData const& bytes, unsigned long encoding )
{
    Set( bytes, encoding );
}

FileName::FileName( UnitSpan units )
{
    mRecord.length = static_cast<UInt16>( units.size() );
    std::ranges::copy( units, mRecord.unicode );
}

void FileName::Adopt( HFSUniStr255 const& record )
{
    UnitSpan const units( record.unicode, record.length );
    if ( std::ranges::find( units, '/' ) != units.end() )
    {
        throw IllegalFileName();
    }
    mRecord = record;
}

void FileName::Set( CFStringRef string )
{
    if ( string == nullptr )
    {
        throw IllegalFileName();
    }
    CFIndex const length = CFStringGetLength( string );
    HFSUniStr255 record = {};
    record.length = static_cast<UInt16>( std::min<CFIndex>( length, UINT16_MAX ) );
    if ( record.length > kMaximumLength )
    {
        mRecord.length = record.length;
        throw IllegalFileNameLength();
    }
    CFStringGetCharacters( string, CFRangeMake( 0, length ), record.unicode );
    Adopt( record );
}

void FileName::Set( ConstData const& bytes, unsigned long encoding )
{
    if ( bytes.IsEmpty() )
    {
        throw IllegalFileNameLength();
    }
    AutoCFString const string = MakeCFString( bytes, static_cast<CFStringEncoding>( encoding ) );
    Set( string.Get() );
}

FileName FileName::FromFileSystem( ConstData bytes )
{
    if ( bytes.IsEmpty() )
    {
        throw IllegalFileNameLength();
    }
    HFSUniStr255 record = {};
    ConstData const byteOrderMark( std::string_view( "\xEF\xBB\xBF" ) ); // strings drop it as well
    std::uint32_t at = bytes.StartsWith( byteOrderMark ) ? byteOrderMark.Length() : 0;
    while ( at < bytes.Length() )
    {
        auto const [character, length] =
            FirstCharacter( ConstData( bytes.begin() + at, bytes.end() ) );
        at += length;
        if ( character < 0x10000 )
        {
            Append( record, character );
        }
        else
        {
            Append( record, 0xD800 + ( ( character - 0x10000 ) >> 10 ) );
            Append( record, 0xDC00 + ( character & 0x3FF ) );
        }
    }
    FileName name;
    name.Adopt( record );
    return name;
}

UnitSpan FileName::Units() const
{
    return { mRecord.unicode, mRecord.length <= kMaximumLength ? mRecord.length : 0u };
}

bool FileName::HasPrefix( FileName const& other, bool ignoreCase ) const
{
    return Begins( Units(), other.Units(), ignoreCase );
}

bool FileName::HasPrefix( char const* other, bool ignoreCase ) const
{
    return Begins( Units(), std::string_view( other ), ignoreCase );
}

bool FileName::HasSuffix( FileName const& other, bool ignoreCase ) const
{
    return Ends( Units(), other.Units(), ignoreCase );
}

bool FileName::HasSuffix( char const* other, bool ignoreCase ) const
{
    return Ends( Units(), std::string_view( other ), ignoreCase );
}

bool FileName::HasExtension( FileName const& extension, bool ignoreCase ) const
{
    return EndsInExtension( Units(), extension.Units(), ignoreCase );
}

bool FileName::HasExtension( char const* extension, bool ignoreCase ) const
{
    return EndsInExtension( Units(), std::string_view( extension ), ignoreCase );
}

bool FileName::MatchesWildCard( char const* pattern ) const
{
    UnitSpan const name = Units();
    // The numbers of units that the pattern so far can have taken off the name.
    std::bitset<kMaximumLength + 1> taken;
    taken.set( 0 );
    for ( ; *pattern != '\0' && taken.any(); ++pattern )
    {
        std::bitset<kMaximumLength + 1> next;
        bool spread = false; // whether a "*" has met a unit: from there on it takes any number
        for ( std::size_t i = 0; i < name.size(); ++i )
        {
            bool const here = taken[i];
            bool const equal = *pattern == '?' || Number( *pattern ) == Number( name[i] );
            if ( here && equal )
            {
                next.set( i + 1 );
            }
            spread = spread || ( here && !equal && *pattern == '*' );
            if ( spread )
            {
                next.set( i );
            }
        }
        if ( spread && pattern[1] == '\0' )
        {
            return true;
        }
        if ( taken[name.size()] && *pattern == '*' )
        {
            next.set( name.size() );
        }
        taken = next;
    }
    return *pattern == '\0' && taken[name.size()];
}

bool FileName::Equal( FileName const& a, FileName const& b )
{
    return std::ranges::equal( a.Units(), b.Units() );
}

std::int16_t FileName::StrCmp( FileName const& a, FileName const& b )
{
    return Difference( a.Units(), b.Units(), []( int unit ) { return unit; } );
}

std::int16_t FileName::CompareIgnoreCase( FileName const& a, FileName const& b )
{
    return Difference( a.Units(), b.Units(), Folded );
}

FileName FileName::BaseName() const
{
    UnitSpan const name = Units();
    auto const point = std::find( name.rbegin(), name.rend(), '.' );
    return FileName( point == name.rend() ? name : UnitSpan( name.begin(), point.base() - 1 ) );
}

FileName FileName::PrefixDigits() const
{
    UnitSpan const name = Units();
    auto const isDigit = []( UniChar unit )
    { return static_cast<unsigned char>( unit - '0' ) < 10; };
    return FileName( UnitSpan( name.begin(), std::ranges::find_if_not( name, isDigit ) ) );
}

FileName FileName::NameBeforeExtension( FileName const& extension, bool ignoreCase ) const
{
    return FileName( BeforeExtension( Units(), extension.Units(), ignoreCase ) );
}

FileName FileName::NameBeforeExtension( char const* extension, bool ) const
{
    return FileName( BeforeExtension( Units(), std::string_view( extension ), false ) );
}

FileName FileName::NameAfterPrefix( FileName const& prefix, bool ignoreCase ) const
{
    return FileName( AfterPrefix( Units(), prefix.Units(), ignoreCase ) );
}

FileName FileName::NameAfterPrefix( char const* prefix, bool ) const
{
    return FileName( AfterPrefix( Units(), std::string_view( prefix ), false ) );
}

FileName FileName::Concatenate( FileName const& other ) const
{
    if ( std::size_t{ Length() } + other.Length() > kMaximumLength )
    {
        throw IllegalFileName();
    }
    FileName both( Units() );
    for ( UniChar const unit : other.Units() )
    {
        both.mRecord.unicode[both.mRecord.length++] = unit;
    }
    return both;
}

AutoUString<UTF8> FileName::MakeUTF8String() const
{
    UnitSpan const name = Units();
    return Transcoder<UTF8, UTF16>()( UStringRef<UTF16>( name.data(), name.data() + name.size() ) );
}

Stringy FileName::MakeStringy() const
{
    AutoUString<UTF8> const text = MakeUTF8String();
    return Stringy( text.begin(), static_cast<unsigned int>( text.Length() ) );
}

MorvekFileType FileName::ExtensionType() const
{
    UnitSpan const name = Units();
    AutoCFString const string = MakeCFString( name.data(), std::ssize( name ) );
    return AdviceFileTypes::TypeOfExtension(
        MakeString( string.Get(), kCFStringEncodingUTF8, 0 ).c_str() );
}

} // namespace MacintoshPlatform
