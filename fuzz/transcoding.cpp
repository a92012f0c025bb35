// The input is how the stream is cut, how often the text comes, and a text: as UTF-8 and as UTF-16.

#include "encoding/StreamTranscoder.h"
#include "encoding/Transcoder.h"
#include "encoding/TranscodingLoop.h"
#include "fuzz/FuzzInput.h"

#include <array>
#include <random>
#include <vector>

namespace
{

template<typename E>
using Units = std::vector<typename E::Unit>;

/// What a whole text becomes, plainly; `isValid` tells whether all of it could be converted.
template<typename To>
struct Plain
{
    Units<To> units;
    bool isValid = true;
};

// A lead byte tells by its leading ones how many bytes there are; those after it are 10xxxxxx.
Plain<UTF32> Convert( Units<UTF8> const& text, UTF32 )
{
    Plain<UTF32> result;
    for ( std::size_t at = 0; at < text.size(); )
    {
        unsigned const lead = static_cast<unsigned char>( text[at++] );
        unsigned const more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        std::uint32_t value = more == 0 ? lead : lead & ( 0x3Fu >> more );
        bool const isLead = lead < 0x80 || ( lead >= 0xC0 && lead < 0xF8 );
        result.isValid = isLead && more <= text.size() - at;
        for ( unsigned i = 0; result.isValid && i < more; ++i, ++at )
        {
            unsigned const byte = static_cast<unsigned char>( text[at] );
            result.isValid = byte >= 0x80 && byte < 0xC0;
            value = value << 6 | ( byte & 0x3F );
        }
        if ( !result.isValid )
            return result;
        result.units.push_back( value );
    }
    return result;
}

// Surrogates come in pairs; a character takes as many bytes as its highest bit asks for.
Plain<UTF8> Convert( Units<UTF16> const& text, UTF8 )
{
    Plain<UTF8> result;
    for ( std::size_t at = 0; at < text.size(); ++at )
    {
        std::uint32_t value = text[at];
        if ( value >= 0xD800 && value < 0xE000 )
        {
            std::uint32_t const low = at + 1 < text.size() ? text[at + 1] : 0u;
            result.isValid = value < 0xDC00 && low >= 0xDC00 && low < 0xE000;
            if ( !result.isValid )
                return result;
            value = 0x10000 + ( value - 0xD800 ) * 0x400 + ( low - 0xDC00 );
            ++at;
        }
        auto const put = [&]( std::uint32_t byte )
        { result.units.push_back( static_cast<char>( byte ) ); };
        int const more = value < 0x80 ? 0 : value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
        put( std::array{ 0u, 0xC0u, 0xE0u, 0xF0u }[static_cast<std::size_t>( more )] |
             value >> 6 * more );
        for ( int i = more - 1; i >= 0; --i )
            put( 0x80 | ( value >> 6 * i & 0x3F ) );
    }
    return result;
}

template<typename E>
struct Collector : UTextReceiver<E>
{
    void Receive( ConstArrayOf<typename E::Unit> piece ) override
    {
        units.insert( units.end(), piece.begin(), piece.end() );
    }

    Units<E> units;
};

/// Hands a text over in pieces, each in memory of its own, and then its end. Requires what the
/// plain conversion says; of malformed text, that nothing comes which that does not have.
template<typename To, typename From, typename Receive, typename End>
void Compare( Units<From> const& text, Plain<To> const& plain, unsigned seed,
    Collector<To> const& got, Receive receive, End end )
{
    std::minstd_rand random( seed );
    std::size_t const longest = seed % 3 == 0 && text.size() < 400 ? 4 : seed % 3 == 1 ? 200 : 9000;
    bool isValid = true;
    try
    {
        for ( auto next = text.begin(); next != text.end(); )
        {
            auto const length = std::min<std::ptrdiff_t>(
                static_cast<std::ptrdiff_t>( random() % longest ), text.end() - next );
            Units<From> const piece( next, next + length );
            receive(
                ConstArrayOf<typename From::Unit>( piece.data(), piece.data() + piece.size() ) );
            next += length;
        }
        end();
    }
    catch ( InvalidTextEncoding const& )
    {
        isValid = false;
    }
    Require( isValid == plain.isValid, "malformed text is refused, and nothing else" );
    Require( got.units.size() <= plain.units.size() &&
                 ( !isValid || got.units.size() == plain.units.size() ) &&
                 std::equal( got.units.begin(), got.units.end(), plain.units.begin() ),
        "a conversion in pieces" );
}

template<typename To, typename From, std::size_t Size>
void Try( Units<From> const& text, unsigned seed )
{
    Plain<To> const plain = Convert( text, To() );
    for ( auto const& kernel : TranscodingKernels<To, From>() )
    {
        if ( !kernel.isSupported() )
            continue;
        Collector<To> collector;
        unsigned count = 0;
        typename From::Unit pending[From::kLongestCharacter - 1];
        Compare<To, From>(
            text, plain, seed, collector,
            [&]( ConstArrayOf<typename From::Unit> piece ) {
                TranscodePiece<To, Size, From>(
                    piece, { count, pending }, collector, kernel.function );
            },
            [&]
            {
                if ( count != 0 )
                    throw InvalidTextEncoding();
            } );
    }
    Collector<To> collector;
    StreamTranscoder<To, From> stream( collector );
    stream.Start( From() );
    Compare<To, From>(
        text, plain, seed, collector,
        [&]( ConstArrayOf<typename From::Unit> piece ) { stream.Receive( piece ); },
        [&] { stream.ReceiveEnd(); } );
    Collector<To> whole;
    Compare<To, From>(
        text, plain, seed, whole, []( auto ) {},
        [&] {
            whole.Receive( Transcoder<To, From>()( { text.data(), text.data() + text.size() } ) );
        } );
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    unsigned const seed = input.Take<std::uint8_t>();
    std::size_t const times = 1 + ( input.TakeUpTo( 255 ) < 8 ? 40 : 0 );
    std::string_view const rest = input.TakeRest();
    Units<UTF8> bytes;
    for ( std::size_t i = 0; i < times; ++i )
        bytes.insert( bytes.end(), rest.begin(), rest.end() );
    Units<UTF16> units( bytes.size() / 2 );
    if ( !units.empty() )
        std::memcpy( units.data(), bytes.data(), units.size() * 2 );
    Try<UTF32, UTF8, 1024>( bytes, seed );
    Try<UTF8, UTF16, 4096>( units, seed );
    return 0;
}
