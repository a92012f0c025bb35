#include "foundation/ConstData.h"

#include "foundation/Data.h"
#include "foundation/SearchKernels.h"
#include "foundation/TrimAsciiWhitespace.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <stdexcept>

namespace
{

unsigned char const* Find( ConstData range, unsigned char b )
{
    if ( range.IsEmpty() )
        return nullptr;
    return static_cast<unsigned char const*>( std::memchr( range.begin(), b, range.Length() ) );
}

/// The first occurrence of a needle that is not empty, or null.
unsigned char const* Find( ConstData range, ConstData needle )
{
    if ( range.Length() < needle.Length() )
        return nullptr;
    if ( needle.Length() == 1 )
        return Find( range, needle[0] );
    if ( needle.Length() > kLongestKernelNeedle )
        return SearchPortably( range, needle );
    static auto* const search = FirstSupported( SearchKernels() );
    return search( range, needle );
}

std::int32_t Offset( ConstData range, unsigned char const* found )
{
    if ( found == nullptr )
        return -1;
    std::ptrdiff_t const offset = found - range.begin();
    if ( offset > INT32_MAX )
        throw std::length_error( "ConstData::PositionOf" );
    return static_cast<std::int32_t>( offset );
}

template<typename Iterator>
std::int32_t CompareSequences( Iterator a, Iterator aEnd, Iterator b, Iterator bEnd )
{
    auto const [aNext, bNext] = std::mismatch( a, aEnd, b, bEnd );
    if ( aNext != aEnd && bNext != bEnd )
        return *aNext - *bNext;
    return ( aNext != aEnd ) - ( bNext != bEnd );
}

} // namespace

bool ConstData::StartsWith( ConstData prefix ) const
{
    return prefix.Length() <= Length() && ConstData( mBegin, mBegin + prefix.Length() ) == prefix;
}

bool ConstData::EndsWith( ConstData suffix ) const
{
    return suffix.Length() <= Length() && ConstData( mEnd - suffix.Length(), mEnd ) == suffix;
}

std::int32_t ConstData::PositionOf( ConstData needle ) const
{
    return needle.IsEmpty() ? -1 : Offset( *this, Find( *this, needle ) );
}

std::int32_t ConstData::PositionOf( unsigned char b ) const
{
    return Offset( *this, Find( *this, b ) );
}

bool ConstData::Contains( ConstData needle ) const
{
    return needle.IsEmpty() || Find( *this, needle ) != nullptr;
}

bool ConstData::Contains( unsigned char b ) const
{
    return Find( *this, b ) != nullptr;
}

std::vector<std::uint32_t> ConstData::PositionsOf( ConstData needle ) const
{
    std::vector<std::uint32_t> positions;
    if ( needle.IsEmpty() )
        return positions;
    ConstData rest = *this;
    while ( unsigned char const* const found = Find( rest, needle ) )
    {
        positions.push_back( static_cast<std::uint32_t>( found - mBegin ) );
        rest = { found + needle.Length(), mEnd };
    }
    return positions;
}

std::vector<ConstData> ConstData::Split( ConstData separator, bool trim, bool keepEmpty ) const
{
    auto const trimmed = [trim]( ConstData piece )
    { return trim ? TrimAsciiWhitespace( piece ) : piece; };

    if ( separator.IsEmpty() || separator.Length() > Length() )
        return { trimmed( *this ) };

    std::vector<ConstData> pieces;
    auto const append = [&]( ConstData piece )
    {
        piece = trimmed( piece );
        if ( keepEmpty || !piece.IsEmpty() )
            pieces.push_back( piece );
    };
    unsigned char const* start = mBegin;
    for ( std::uint32_t const position : PositionsOf( separator ) )
    {
        append( { start, mBegin + position } );
        start = mBegin + position + separator.Length();
    }
    append( { start, mEnd } );
    return pieces;
}

ConstData ConstData::operator>>( Data destination ) const
{
    std::uint32_t const count = std::min( Length(), destination.Length() );
    for ( std::uint32_t i = 0; i < count; ++i )
        destination[i] = mBegin[i];
    return { mBegin + count, mEnd };
}

bool operator==( ConstData const& a, ConstData const& b )
{
    return std::equal( a.begin(), a.end(), b.begin(), b.end() );
}

bool operator<( ConstData const& a, ConstData const& b )
{
    return std::lexicographical_compare( a.begin(), a.end(), b.begin(), b.end() );
}

std::int32_t Compare( ConstData a, ConstData b )
{
    return CompareSequences( a.begin(), a.end(), b.begin(), b.end() );
}

std::int32_t CompareReversed( ConstData a, ConstData b )
{
    using Reversed = std::reverse_iterator<unsigned char const*>;
    return CompareSequences(
        Reversed( a.end() ), Reversed( a.begin() ), Reversed( b.end() ), Reversed( b.begin() ) );
}
