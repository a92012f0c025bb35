#include "benchmarks/Contest.h"
#include "foundation/ConstData.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string_view>

// A job is a number of searches; its digest is made of the offsets that were found.

namespace
{

using std::string_view;

constexpr std::size_t kMebibyte = std::size_t( 1 ) << 20;
constexpr std::size_t kNotFound = string_view::npos;

struct Searches
{
    std::vector<std::string> texts;
    std::vector<std::vector<std::string>> needles; ///< one list for each text
};

template<typename Search>
Contender Searcher( std::string name, std::shared_ptr<Searches const> searches, Search search )
{
    auto const run = [=]
    {
        std::uint64_t digest = 0;
        for ( std::size_t i = 0; i < searches->texts.size(); ++i )
            for ( std::string const& needle : searches->needles[i] )
                digest = digest * 31 + search( string_view( searches->texts[i] ), needle );
        return digest;
    };
    return { std::move( name ), run };
}

[[gnu::noinline]] std::size_t DoubleLoop( string_view text, string_view needle )
{
    for ( std::size_t i = 0; i + needle.size() <= text.size(); ++i )
    {
        std::size_t matching = 0;
        while ( matching < needle.size() && text[i + matching] == needle[matching] )
            ++matching;
        if ( matching == needle.size() )
            return i;
    }
    return kNotFound;
}

std::size_t PositionOf( string_view text, string_view needle )
{
    std::int32_t const position = ConstData( text ).PositionOf( ConstData( needle ) );
    return position == -1 ? kNotFound : static_cast<std::size_t>( position );
}

std::size_t Memmem( string_view text, string_view needle )
{
    auto const* found = static_cast<char const*>(
        memmem( text.data(), text.size(), needle.data(), needle.size() ) );
    return found == nullptr ? kNotFound : static_cast<std::size_t>( found - text.data() );
}

std::size_t Offset( string_view text, string_view::iterator found )
{
    return found == text.end() ? kNotFound : static_cast<std::size_t>( found - text.begin() );
}

std::size_t StandardSearch( string_view text, string_view needle )
{
    return Offset( text, std::search( text.begin(), text.end(), needle.begin(), needle.end() ) );
}

std::size_t HorspoolSearch( string_view text, string_view needle )
{
    std::boyer_moore_horspool_searcher const searcher( needle.begin(), needle.end() );
    return Offset( text, std::search( text.begin(), text.end(), searcher ) );
}

Contest MakeContest( Searches made, std::vector<Goal> goals )
{
    auto const searches = std::make_shared<Searches const>( std::move( made ) );
    auto const find = []( string_view text, string_view needle ) { return text.find( needle ); };
    return {
        { Searcher( "double loop", searches, DoubleLoop ),
            Searcher( "PositionOf", searches, PositionOf ), Searcher( "memmem", searches, Memmem ),
            Searcher( "std::search", searches, StandardSearch ),
            Searcher( "std::search, Horspool", searches, HorspoolSearch ),
            Searcher( "string_view::find", searches, find ) },
        std::move( goals ) };
}

using Random = std::mt19937;
using TextMaker = std::function<std::string( std::size_t length, Random& random )>;

std::string Letters( std::size_t length, Random& random )
{
    std::string text( length, '\0' );
    for ( char& c : text )
        c = static_cast<char>( 'a' + random() % 26 );
    return text;
}

// Words as often as they come in English: few of them, mostly.
std::string Words( std::size_t length, Random& random )
{
    std::vector<std::string> words = { "the", "of", "and", "to", "a", "in", "that", "is", "was",
        "it", "for", "with", "as", "his", "on", "be", "at", "by", "had", "not", "are", "but",
        "from", "or", "have", "an", "they", "which", "one", "were", "all", "their", "there" };
    while ( words.size() < 3000 )
        words.push_back( Letters( 3 + random() % 9, random ) );
    std::string text;
    while ( text.size() < length )
    {
        double const place = static_cast<double>( random() ) / static_cast<double>( Random::max() );
        text += words[static_cast<std::size_t>( place * place * place * 2999 )];
        text += random() % 11 != 0 ? " " : random() % 3 != 0 ? ", " : ".\n";
    }
    text.resize( length );
    return text;
}

// Many zeros and small numbers, as in programs and tables.
std::string Binary( std::size_t length, Random& random )
{
    std::string text( length, '\0' );
    for ( char& c : text )
        c = static_cast<char>( random() % 3 == 0 ? 0 : random() % ( random() % 2 ? 256 : 8 ) );
    return text;
}

// Needles of 2 to 40 bytes: every second is in the text, near the end; the others are such a piece
// with one byte changed.
Searches SearchesIn( TextMaker const& makeText )
{
    Random random( 5 );
    Searches searches;
    for ( std::size_t const length : { kMebibyte - 3, kMebibyte + 1777 } )
    {
        std::string const& text = searches.texts.emplace_back( makeText( length, random ) );
        std::vector<std::string>& needles = searches.needles.emplace_back();
        for ( std::size_t size = 2 + length % 3; size <= 40; size += 4 )
        {
            needles.push_back( text.substr( length - 100 - random() % 5000, size ) );
            if ( size % 8 < 4 )
                needles.back()[random() % size] ^= '\x40';
        }
    }
    return searches;
}

// Thousands of texts of about 20 bytes, as the pieces of a header or a path are.
Searches ShortSearches()
{
    Random random( 6 );
    Searches searches;
    for ( int i = 0; i < 4000; ++i )
    {
        std::string const& text = searches.texts.emplace_back( Words( 16 + random() % 9, random ) );
        std::string needle = text.substr( random() % 12, 3 );
        if ( i % 2 != 0 )
            needle[random() % 3] = '#';
        searches.needles.push_back( { needle } );
    }
    return searches;
}

std::string Repeat( string_view piece, std::size_t length )
{
    std::string text;
    while ( text.size() < length )
        text += piece;
    text.resize( length );
    return text;
}

// A run of one letter with another one at the end, in the middle, or at the beginning.
Searches RunsOf( std::vector<std::size_t> const& sizes, std::size_t length )
{
    Searches searches{ { std::string( length, 'a' ) }, { {} } };
    for ( std::size_t const size : sizes )
        for ( std::size_t const place : { size - 1, size - 2, size / 2, size_t( 1 ), size_t( 0 ) } )
            searches.needles[0].emplace_back( size, 'a' )[place] = 'b';
    return searches;
}

// Texts that repeat a piece of 7 to 64 bytes, and needles that are such texts but for one byte.
Searches PeriodicSearches( std::vector<std::size_t> const& sizes, std::size_t length )
{
    Random random( 7 );
    Searches searches;
    for ( std::size_t const period : { 7, 16, 40, 64 } )
    {
        std::string const piece = Letters( period, random );
        searches.texts.push_back( Repeat( piece, length + period ) );
        std::vector<std::string>& needles = searches.needles.emplace_back();
        for ( std::size_t const size : sizes )
            needles.emplace_back( Repeat( piece, size ) )[random() % size] = '#';
    }
    return searches;
}

// Two bytes of which the text has many, but never side by side.
Searches PairSearches()
{
    Random random( 8 );
    std::string text( kMebibyte, 'a' );
    for ( std::size_t i = 1; i < text.size(); ++i )
        text[i] = text[i - 1] == 'a' ? "ac"[random() % 2] : "abc"[random() % 3];
    return { { text }, { { "ab", "bb#", "cab", "acab" } } };
}

ContestMaker Maker( std::string variant, std::function<Searches()> searches, Goal reference = {},
    unsigned rounds = 0 )
{
    auto const make = [=] {
        return MakeContest( searches(), { reference, { "memmem", 0.9, 0 } } );
    };
    return { "PositionOf", std::move( variant ), make, rounds };
}

} // namespace

std::vector<ContestMaker> SearchContests()
{
    Goal const fast = { "", 9, 25 };
    auto const in = []( TextMaker const& text ) { return [=] { return SearchesIn( text ); }; };
    return { Maker( "needles of 2 to 40 bytes in 1 MiB of letters", in( Letters ), fast ),
        Maker( "the same in words", in( Words ), fast ),
        Maker( "the same in binary data", in( Binary ), fast ),
        Maker( "needles of 3 bytes in 20", ShortSearches ),
        Maker( "needles of 2 to 40 bytes, aa...ab in aa...aa",
            [] {
                return RunsOf( { 2, 3, 5, 16, 40 }, kMebibyte / 8 );
            } ),
        Maker( "the same of 64 to 4,000",
            [] {
                return RunsOf( { 64, 65, 300, 1001, 4000 }, kMebibyte / 64 );
            } ),
        Maker( "needles of 2 to 40 bytes, all but one of a period",
            [] {
                return PeriodicSearches( { 2, 3, 5, 13, 24, 40 }, kMebibyte / 8 );
            } ),
        Maker( "the same of 64 to 4,000",
            [] {
                return PeriodicSearches( { 64, 65, 200, 1001, 4000 }, kMebibyte / 8 );
            } ),
        Maker( "two frequent bytes that never meet", PairSearches ) };
}
