// The checksum by every kernel, and by the receiver however the bytes are cut, against the division
// of polynomials bit by bit.

#include "fuzz/FuzzInput.h"
#include "streams/ChecksumKernels.h"
#include "streams/ChecksumReceiver.h"

#include <string>

namespace
{

std::uint32_t BitByBit( std::uint32_t crc, std::string_view bytes )
{
    for ( char const byte : bytes )
        for ( int bit = 7; bit >= 0; --bit )
        {
            std::uint32_t const carry =
                ( crc >> 31 ^ static_cast<unsigned char>( byte ) >> bit ) & 1;
            crc = crc << 1 ^ carry * 0x04C11DB7;
        }
    return crc;
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    auto const crc = input.Take<std::uint32_t>();
    std::size_t const repeats = 1 + input.TakeUpTo( 3 );
    std::size_t const offset = input.TakeUpTo( 63 );
    std::string_view const lengths = input.TakeText( input.TakeUpTo( 15 ) );
    std::string text;
    std::string_view const part = input.TakeText( 1000 );
    for ( std::size_t i = 0; i < repeats; ++i )
        text += part;

    std::vector<char> const placed = ExactCopy( std::string( offset, 'x' ) + text );
    auto const* const bytes = reinterpret_cast<unsigned char const*>( placed.data() ) + offset;
    std::uint32_t const expected = BitByBit( crc, text );
    for ( auto const& kernel : ChecksumKernels() )
        if ( kernel.isSupported() && text.size() >= kFewestBytesForKernels )
            Require( kernel.function( crc, bytes, text.size() ) == expected, kernel.name );

    ChecksumReceiver receiver;
    receiver.checksum = crc;
    ForEachPiece( text, lengths, [&]( std::string_view piece ) { receiver << piece; } );
    receiver.ReceiveEnd();
    Require( receiver.checksum == expected, "in pieces" );
    return 0;
}
