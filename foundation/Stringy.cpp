#include "foundation/Stringy.h"

#include "foundation/Ascii.h"
#include "foundation/Numeral.h"
#include "foundation/StringyLengthTooLong.h"
#include "foundation/TrimAsciiWhitespace.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstring>
#include <stdexcept>

namespace
{

void CopyBytes( char* to, std::string_view from )
{
    if ( !from.empty() )
        std::memmove( to, from.data(), from.size() );
}

std::int32_t IndexOrNone( std::size_t found )
{
    if ( found == std::string_view::npos )
        return -1;
    if ( found > INT32_MAX )
        throw std::length_error( "Stringy::Find" );
    return static_cast<std::int32_t>( found );
}

} // namespace

Stringy::Stringy( char const* text )
{
    if ( text != nullptr )
        Set( 0, text, kInlineSize );
}

Stringy::Stringy( ConstData const& text ) : Stringy( text.begin(), text.Length() ) {}

Stringy::Stringy( char const* bytes, unsigned int length )
{
    if ( length != 0 )
        Set( 0, { bytes, length }, kInlineSize );
}

Stringy::Stringy( unsigned char const* bytes, unsigned int length )
    : Stringy( reinterpret_cast<char const*>( bytes ), length )
{
}

Stringy::Stringy( Stringy const& other )
{
    if ( !other.IsNull() )
        Set( 0, other.View(), kInlineSize );
}

Stringy::Stringy( int value ) : Stringy( Numeral( std::int64_t( value ) ) ) {}

Stringy::Stringy( unsigned int value ) : Stringy( Numeral( std::int64_t( value ) ) ) {}

Stringy::Stringy( unsigned long long value ) : Stringy( Numeral( std::uint64_t( value ) ) ) {}

Stringy::~Stringy()
{
    Release();
}

Stringy& Stringy::operator=( Stringy const& other )
{
    if ( this == &other )
        return *this;
    Release();
    if ( !other.IsEmpty() )
        Set( 0, other.View(), kInlineSize );
    return *this;
}

Stringy& Stringy::operator=( char const* text )
{
    if ( text == nullptr )
        Release();
    else if ( text != mData )
        Set( 0, text, kInlineSize );
    return *this;
}

Stringy& Stringy::operator+=( char c )
{
    if ( c != '\0' )
        Set( Length(), { &c, 1 }, kInlineSize );
    return *this;
}

Stringy& Stringy::operator+=( char const* text )
{
    if ( text != nullptr && *text != '\0' )
        Set( Length(), text, LimitForAppending() );
    return *this;
}

Stringy& Stringy::operator+=( Stringy const& other )
{
    if ( !other.IsEmpty() )
        Set( Length(), other.View(), LimitForAppending() );
    return *this;
}

Stringy& Stringy::operator+=( ConstData const& text )
{
    if ( !text.IsEmpty() )
        Set( Length(), { reinterpret_cast<char const*>( text.begin() ), text.Length() },
            kInlineSize );
    return *this;
}

Stringy::operator ConstData() const
{
    return ConstData( View() );
}

signed char Stringy::operator[]( unsigned int index ) const
{
    if ( mData == nullptr || index > mSize )
        return 0;
    return static_cast<signed char>( mData[index] );
}

std::int32_t Stringy::Find( char c ) const
{
    return IndexOrNone( View().find( c ) );
}

std::int32_t Stringy::FindFromRight( char c ) const
{
    return IndexOrNone( View().rfind( c ) );
}

bool Stringy::Contains( char const* needle ) const
{
    if ( mData == nullptr || needle == nullptr )
        return mData == nullptr && needle == nullptr;
    return std::strstr( mData, needle ) != nullptr;
}

std::uint32_t Stringy::Replace( char from, char to )
{
    std::uint32_t count = 0;
    for ( char* c = mData; c != mData + Length(); ++c )
        if ( *c == from )
        {
            *c = to;
            ++count;
        }
    return count;
}

void Stringy::MakeLower()
{
    std::transform( mData, mData + Length(), mData,
        []( signed char c ) { return static_cast<char>( std::tolower( c ) ); } );
}

void Stringy::MakeUpper()
{
    std::transform( mData, mData + Length(), mData,
        []( signed char c ) { return static_cast<char>( std::toupper( c ) ); } );
}

bool Stringy::StartsWith( char const* prefix ) const
{
    return prefix == nullptr || View().starts_with( prefix );
}

bool Stringy::StartsWithIgnoringCase( char const* prefix ) const
{
    return prefix == nullptr || BeginsIgnoringCase( prefix );
}

bool Stringy::StartsWithIgnoringCase( Stringy const& prefix ) const
{
    return BeginsIgnoringCase( prefix.View() );
}

bool Stringy::EqualIgnoringCase( Stringy const& other ) const
{
    return !IsNull() && !other.IsNull() &&
           Ascii::EqualIgnoringCase( WithTerminator(), other.WithTerminator() );
}

std::int32_t Stringy::Compare( Stringy const& other ) const
{
    if ( IsEmpty() || other.IsEmpty() )
        return other.IsEmpty() - IsEmpty();
    return std::strcmp( mData, other.mData );
}

std::int32_t Stringy::CompareNoCase( Stringy const& other ) const
{
    if ( IsNull() || other.IsNull() )
        return other.IsNull() - IsNull();
    return Ascii::CompareUppercase( WithTerminator(), other.WithTerminator() );
}

Stringy Stringy::Left( int count ) const
{
    return Part( 0, count );
}

Stringy Stringy::Right( int count ) const
{
    return Part( std::int64_t( Length() ) - count, count );
}

Stringy Stringy::Mid( int start, int count ) const
{
    return Part( start, count );
}

Stringy Stringy::Mid( int start ) const
{
    return Part( start, std::int64_t( Length() ) - start );
}

Stringy Stringy::SubstringAfterLastSeparator( char separator ) const
{
    std::int32_t const position = FindFromRight( separator );
    if ( position == -1 )
        return {};
    Stringy rest = Part( std::int64_t( position ) + 1, Length() );
    rest.StripLeadingAndTrailingWhite();
    return rest;
}

void Stringy::TrimLeft()
{
    if ( !IsEmpty() )
        Keep( TrimLeadingAsciiWhitespace( *this ) );
}

void Stringy::StripLeadingAndTrailingWhite()
{
    Keep( TrimAsciiWhitespace( *this ) );
}

unsigned int Stringy::SplitSeparatedStringsIntoArray(
    char const* text, char separator, std::vector<Stringy>& out, unsigned int maxCount, bool strip )
{
    if ( maxCount == 0 || text == nullptr || *text == '\0' )
        return 0;
    unsigned int count = 0;
    for ( char const* start = text;; ++text )
    {
        bool const isAtEnd = *text == '\0' && separator != '\0';
        if ( *text != separator && !isAtEnd )
            continue;
        Stringy field;
        if ( start != text )
            field.Set( 0, { start, static_cast<std::size_t>( text - start ) }, kInlineSize );
        if ( strip )
            field.StripLeadingAndTrailingWhite();
        out.push_back( field );
        if ( ++count == maxCount || isAtEnd )
            return count;
        start = text + 1;
    }
}

ConstData Stringy::WithTerminator() const
{
    return ConstData( std::string_view( mData, mSize ) );
}

/// The largest size that appending a text or a Stringy puts into the object: one less where the
/// text is null so far.
std::uint32_t Stringy::LimitForAppending() const
{
    return IsNull() ? kInlineSize - 1 : kInlineSize;
}

/// Makes the text the first `keptLength` characters of the old one, followed by `added`, which may
/// point into the old text. Changes nothing if it throws.
void Stringy::Set( std::uint32_t keptLength, std::string_view added, std::uint32_t inlineLimit )
{
    if ( added.size() >= UINT32_MAX - keptLength )
        throw StringyLengthTooLong();
    std::uint32_t const length = keptLength + static_cast<std::uint32_t>( added.size() );
    std::uint32_t const size = length + 1;
    char* const data = size <= inlineLimit ? mInline : new char[size];
    if ( data != mData )
        CopyBytes( data, { mData, keptLength } );
    CopyBytes( data + keptLength, added );
    data[length] = '\0';
    if ( data != mData )
        Release();
    mData = data;
    mSize = size;
}

/// Makes the text `part` of itself, null if that is empty.
void Stringy::Keep( ConstData part )
{
    if ( part.IsEmpty() )
        Release();
    else if ( part.Length() != Length() )
        Set( 0, { reinterpret_cast<char const*>( part.begin() ), part.Length() }, kInlineSize );
}

/// Makes this null.
void Stringy::Release()
{
    if ( mData != mInline )
        delete[] mData;
    mData = nullptr;
    mSize = 0;
}

bool Stringy::BeginsIgnoringCase( std::string_view prefix ) const
{
    return Ascii::EqualIgnoringCase( View().substr( 0, prefix.size() ), prefix );
}

/// As Mid, but for all lengths.
Stringy Stringy::Part( std::int64_t start, std::int64_t count ) const
{
    std::int64_t const length = Length();
    std::int64_t const from = std::clamp<std::int64_t>( start, 0, length );
    std::int64_t const taken = std::clamp<std::int64_t>( count, 0, length - from );
    return Stringy( mData + from, static_cast<std::uint32_t>( taken ) );
}

Stringy operator+( Stringy const& a, char b )
{
    Stringy sum = a;
    sum += b;
    return sum;
}

Stringy operator+( Stringy const& a, Stringy const& b )
{
    Stringy sum = a;
    sum += b;
    return sum;
}

bool operator==( Stringy const& a, Stringy const& b )
{
    return a.Compare( b ) == 0;
}

std::weak_ordering operator<=>( Stringy const& a, Stringy const& b )
{
    return a.Compare( b ) <=> 0;
}
