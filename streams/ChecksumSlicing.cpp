// Michael E. Kounavis and Frank L. Berry, "Novel Table Lookup-Based Algorithms for High-Performance
// CRC Generation", IEEE Transactions on Computers 57 (2008).
//
// The checksum is linear: what a piece makes of the register is the exclusive or of what each byte
// makes of it alone, with zeros behind it. All these look-ups can be under way at the same time.

#include "streams/ChecksumKernels.h"

#include <array>

namespace
{

constexpr std::size_t kSlices = 16;

using Slices = std::array<std::array<std::uint32_t, 256>, kSlices>;

// Entry b of slice s is what the byte b with s zero bytes behind it makes of a register of zero.
consteval Slices MakeSlices()
{
    Slices slices{};
    for ( std::uint32_t byte = 0; byte < 256; ++byte )
    {
        std::uint32_t value = byte << 24;
        for ( int bit = 0; bit < 8; ++bit )
            value = ( value << 1 ) ^ ( ( value >> 31 ) * kChecksumPolynomial );
        slices[0][byte] = value;
    }
    for ( std::size_t slice = 1; slice < kSlices; ++slice )
        for ( std::size_t byte = 0; byte < 256; ++byte )
        {
            std::uint32_t const value = slices[slice - 1][byte];
            slices[slice][byte] = ( value << 8 ) ^ slices[0][value >> 24];
        }
    return slices;
}

constexpr Slices kTables = MakeSlices();

// `length` is at least 4, at most kSlices. The register is added to the first four bytes; the sum
// of the others does not wait for it.
inline std::uint32_t Slice( std::uint32_t crc, unsigned char const* bytes, std::size_t length )
{
    std::uint32_t others = 0;
    for ( std::size_t i = 4; i < length; ++i )
        others ^= kTables[length - 1 - i][bytes[i]];
    auto const* const last = &kTables[length - 4];
    crc ^= std::uint32_t{ bytes[0] } << 24 | std::uint32_t{ bytes[1] } << 16 |
           std::uint32_t{ bytes[2] } << 8 | bytes[3];
    return others ^ ( ( last[3][crc >> 24] ^ last[2][crc >> 16 & 0xFF] ) ^
                        ( last[1][crc >> 8 & 0xFF] ^ last[0][crc & 0xFF] ) );
}

} // namespace

std::uint32_t ChecksumBySlicing( std::uint32_t crc, unsigned char const* bytes, std::size_t length )
{
    for ( ; length >= kSlices + 4; bytes += kSlices, length -= kSlices )
        crc = Slice( crc, bytes, kSlices );
    if ( length > kSlices )
    {
        crc = Slice( crc, bytes, 4 );
        bytes += 4;
        length -= 4;
    }
    return Slice( crc, bytes, length );
}
