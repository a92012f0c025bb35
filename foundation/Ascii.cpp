#include "foundation/Ascii.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace
{

using CaseTable = std::array<unsigned char, 256>;

/// The identity, but for the 26 letters that begin at `from`, which become those that begin at
/// `to`.
consteval CaseTable MakeCaseTable( unsigned char from, unsigned char to )
{
    CaseTable table = {};
    for ( unsigned int c = 0; c < 256; ++c )
        table[c] = static_cast<unsigned char>( c );
    for ( unsigned int letter = 0; letter < 26; ++letter )
        table[from + letter] = static_cast<unsigned char>( to + letter );
    return table;
}

constexpr CaseTable kUpperCase = MakeCaseTable( 'a', 'A' );
constexpr CaseTable kLowerCase = MakeCaseTable( 'A', 'a' );

consteval bool TablesFollowTheRule()
{
    for ( unsigned int c = 0; c < 256; ++c )
    {
        bool const isLower = 97 <= c && c <= 122;
        bool const isUpper = 65 <= c && c <= 90;
        if ( kUpperCase[c] != ( isLower ? c - 32 : c ) )
            return false;
        if ( kLowerCase[c] != ( isUpper ? c + 32 : c ) )
            return false;
    }
    return true;
}

static_assert( TablesFollowTheRule() );

struct Span
{
    unsigned char first;
    unsigned char last;
};

using CharacterSet = std::array<std::uint32_t, 8>;

consteval CharacterSet MakeSet( std::initializer_list<Span> spans )
{
    CharacterSet set = {};
    for ( Span const span : spans )
        for ( unsigned int c = span.first; c <= span.last; ++c )
            set[c / 32] |= std::uint32_t( 1 ) << ( c % 32 );
    return set;
}

consteval CharacterSet Union( CharacterSet a, CharacterSet b )
{
    for ( unsigned int word = 0; word < 8; ++word )
        a[word] |= b[word];
    return a;
}

constexpr CharacterSet kUppercaseAlphabet = MakeSet( { { 'A', 'Z' } } );
constexpr CharacterSet kLowercaseAlphabet = MakeSet( { { 'a', 'z' } } );
constexpr CharacterSet kAlphabetic = Union( kUppercaseAlphabet, kLowercaseAlphabet );
constexpr CharacterSet kUnderscore = MakeSet( { { '_', '_' } } );
constexpr CharacterSet kAlphabetic_ = Union( kAlphabetic, kUnderscore );
constexpr CharacterSet kNumeric = MakeSet( { { '0', '9' } } );
constexpr CharacterSet kAlphanumeric = Union( kAlphabetic, kNumeric );
constexpr CharacterSet kAlphanumeric_ = Union( kAlphanumeric, kUnderscore );
constexpr CharacterSet kHexDigits = MakeSet( { { '0', '9' }, { 'A', 'F' }, { 'a', 'f' } } );
constexpr CharacterSet kPunctuation =
    MakeSet( { { 33, 47 }, { 58, 64 }, { 91, 96 }, { 123, 126 } } );
constexpr CharacterSet kLinearWhiteSpace = MakeSet( { { 9, 9 }, { 32, 32 } } );
constexpr CharacterSet kWhiteSpace = MakeSet( { { 9, 10 }, { 13, 13 }, { 32, 32 } } );
constexpr CharacterSet kControl = MakeSet( { { 0, 31 }, { 127, 127 } } );
constexpr CharacterSet kPrintable = MakeSet( { { 33, 126 } } );
constexpr CharacterSet kPlainText = MakeSet( { { 32, 126 } } );
constexpr CharacterSet kUnprintable = MakeSet( { { 0, 32 }, { 127, 255 } } );
constexpr CharacterSet kLow = MakeSet( { { 0, 127 } } );
constexpr CharacterSet kHigh = MakeSet( { { 128, 255 } } );

static_assert( Union( kPrintable, kUnprintable ) == MakeSet( { { 0, 255 } } ) );
static_assert( Union( kAlphanumeric, kPunctuation ) == kPrintable );

std::string Mapped( ConstData text, CaseTable const& table )
{
    std::string result( text.Length(), '\0' );
    std::transform( text.begin(), text.end(), result.begin(),
        [&]( unsigned char c ) { return static_cast<char>( table[c] ); } );
    return result;
}

void WriteMapped( ConstData from, Data to, CaseTable const& table )
{
    Buffer buffer( to );
    for ( unsigned char const c : from )
        buffer.Put( table[c] );
}

void MoveMapped( ConstBuffer& from, Buffer& to, CaseTable const& table )
{
    std::uint32_t const count = std::min( from.Unread().Length(), to.Room().Length() );
    std::transform(
        from.Next(), from.Next() + count, to.Next(), [&]( unsigned char c ) { return table[c]; } );
    from.Advance( count );
    to.Advance( count );
}

bool IsUnchanged( ConstData text, CaseTable const& table )
{
    return std::all_of(
        text.begin(), text.end(), [&]( unsigned char c ) { return table[c] == c; } );
}

std::int32_t CompareMapped( ConstData a, ConstData b, CaseTable const& table )
{
    std::uint32_t const common = std::min( a.Length(), b.Length() );
    for ( std::uint32_t i = 0; i < common; ++i )
        if ( table[a[i]] != table[b[i]] )
            return table[a[i]] - table[b[i]];
    return ( a.Length() > b.Length() ) - ( a.Length() < b.Length() );
}

} // namespace

namespace Ascii
{

std::uint32_t const* UppercaseAlphabet()
{
    return kUppercaseAlphabet.data();
}

std::uint32_t const* LowercaseAlphabet()
{
    return kLowercaseAlphabet.data();
}

std::uint32_t const* Alphabetic()
{
    return kAlphabetic.data();
}

std::uint32_t const* Alphabetic_()
{
    return kAlphabetic_.data();
}

std::uint32_t const* Numeric()
{
    return kNumeric.data();
}

std::uint32_t const* Alphanumeric()
{
    return kAlphanumeric.data();
}

std::uint32_t const* Alphanumeric_()
{
    return kAlphanumeric_.data();
}

std::uint32_t const* HexDigits()
{
    return kHexDigits.data();
}

std::uint32_t const* Punctuation()
{
    return kPunctuation.data();
}

std::uint32_t const* LinearWhiteSpace()
{
    return kLinearWhiteSpace.data();
}

std::uint32_t const* WhiteSpace()
{
    return kWhiteSpace.data();
}

std::uint32_t const* Control()
{
    return kControl.data();
}

std::uint32_t const* Printable()
{
    return kPrintable.data();
}

std::uint32_t const* PlainText()
{
    return kPlainText.data();
}

std::uint32_t const* Unprintable()
{
    return kUnprintable.data();
}

std::uint32_t const* Low()
{
    return kLow.data();
}

std::uint32_t const* High()
{
    return kHigh.data();
}

std::string RaiseCase( ConstData text )
{
    return Mapped( text, kUpperCase );
}

std::string LowerCase( ConstData text )
{
    return Mapped( text, kLowerCase );
}

void RaiseCase( ConstData from, Data to )
{
    WriteMapped( from, to, kUpperCase );
}

void LowerCase( ConstData from, Data to )
{
    WriteMapped( from, to, kLowerCase );
}

void RaiseCase( ConstBuffer& from, Buffer& to )
{
    MoveMapped( from, to, kUpperCase );
}

void LowerCase( ConstBuffer& from, Buffer& to )
{
    MoveMapped( from, to, kLowerCase );
}

bool IsLowercase( ConstData text )
{
    return IsUnchanged( text, kLowerCase );
}

bool IsUppercase( ConstData text )
{
    return IsUnchanged( text, kUpperCase );
}

bool EqualIgnoringCase( ConstData a, ConstData b )
{
    return a.Length() == b.Length() && CompareMapped( a, b, kLowerCase ) == 0;
}

std::int32_t CompareUppercase( ConstData a, ConstData b )
{
    return CompareMapped( a, b, kUpperCase );
}

std::int32_t CompareLowercase( ConstData a, ConstData b )
{
    return CompareMapped( a, b, kLowerCase );
}

std::int32_t CompareLowercase( char const* a, char const* b )
{
    for ( ; *a != '\0' && *b != '\0'; ++a, ++b )
    {
        unsigned char const mappedA = kLowerCase[static_cast<unsigned char>( *a )];
        unsigned char const mappedB = kLowerCase[static_cast<unsigned char>( *b )];
        if ( mappedA != mappedB )
            return mappedA - mappedB;
    }
    return static_cast<signed char>( *a ) - static_cast<signed char>( *b );
}

bool CaseTablesAreCorrect()
{
    return TablesFollowTheRule();
}

unsigned int HexDigitValue( unsigned char c )
{
    return c > '9' ? ( c | 0x20u ) - 87u : c - 48u;
}

unsigned char HexDigit( unsigned int value )
{
    unsigned char const low = static_cast<unsigned char>( value );
    return static_cast<unsigned char>( low < 10 ? '0' + low : 'a' + ( low - 10 ) );
}

} // namespace Ascii
