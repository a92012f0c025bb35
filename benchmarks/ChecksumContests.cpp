#include "benchmarks/Contest.h"
#include "streams/ChecksumKernels.h"
#include "streams/ChecksumReceiver.h"

#include <boost/crc.hpp>
#include <isa-l.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>

namespace
{

// Table s holds what each byte with s zero bytes behind it makes of a register of zero.
using Tables = std::array<std::array<std::uint32_t, 256>, 16>;

Tables const gTables = []
{
    Tables tables;
    std::copy_n( ChecksumReceiver::Table(), 256, tables[0].begin() );
    for ( std::size_t s = 1; s < tables.size(); ++s )
        for ( std::size_t byte = 0; byte < 256; ++byte )
        {
            std::uint32_t const value = tables[s - 1][byte];
            tables[s][byte] = ( value << 8 ) ^ tables[0][value >> 24];
        }
    return tables;
}();

std::uint32_t TableLoop( std::uint32_t crc, unsigned char const* bytes, std::size_t length )
{
    auto const& table = gTables[0];
    for ( std::size_t i = 0; i < length; ++i )
        crc = ( crc << 8 ) ^ table[bytes[i] ^ ( crc >> 24 )];
    return crc;
}

std::uint32_t Word( unsigned char const* bytes )
{
    return std::uint32_t{ bytes[0] } << 24 | std::uint32_t{ bytes[1] } << 16 |
           std::uint32_t{ bytes[2] } << 8 | bytes[3];
}

template<std::size_t kBytes>
std::uint32_t Slicing( std::uint32_t crc, unsigned char const* bytes, std::size_t length )
{
    for ( ; length >= kBytes; bytes += kBytes, length -= kBytes )
    {
        std::uint32_t next = 0;
        for ( std::size_t i = 0; i < kBytes; i += 4 )
        {
            std::uint32_t const word = Word( bytes + i ) ^ ( i == 0 ? crc : 0 );
            next ^=
                gTables[kBytes - 1 - i][word >> 24] ^ gTables[kBytes - 2 - i][word >> 16 & 0xFF] ^
                gTables[kBytes - 3 - i][word >> 8 & 0xFF] ^ gTables[kBytes - 4 - i][word & 0xFF];
        }
        crc = next;
    }
    return TableLoop( crc, bytes, length );
}

// The same polynomial, with the register inverted at both ends.
std::uint32_t IsaL( std::uint32_t crc, unsigned char const* bytes, std::size_t length )
{
    return ~crc32_ieee( ~crc, bytes, length );
}

template<ChecksumFunction* kFold>
class FoldReceiver : public DataReceiver
{
  public:
    using DataReceiver::Receive;

    void Start() override { checksum = 0xFFFFFFFF; }

    void Receive( ConstData data ) override
    {
        checksum = kFold( checksum, data.begin(), data.Length() );
    }

    void ReceiveEnd() override {}

    std::uint32_t checksum = 0xFFFFFFFF;
};

class BoostReceiver : public DataReceiver
{
  public:
    using DataReceiver::Receive;

    void Start() override { mCrc.reset(); }

    void Receive( ConstData data ) override { mCrc.process_block( data.begin(), data.end() ); }

    void ReceiveEnd() override { checksum = mCrc.checksum(); }

    std::uint32_t checksum = 0;

  private:
    boost::crc_optimal<32, kChecksumPolynomial, 0xFFFFFFFF, 0, false, false> mCrc;
};

// One stream, cut into pieces that begin at odd addresses.
class Stream
{
  public:
    Stream( std::size_t pieceLength, std::size_t pieces )
    {
        constexpr std::size_t kUneven = 3;
        std::mt19937_64 random( 32 );
        mBytes.resize( ( pieceLength * pieces + kUneven ) / sizeof( std::uint64_t ) + 1 );
        std::ranges::generate( mBytes, std::ref( random ) );
        auto const* begin = reinterpret_cast<unsigned char const*>( mBytes.data() ) + kUneven;
        for ( std::size_t i = 0; i < pieces; ++i, begin += pieceLength )
            mPieces.push_back( { begin, begin + pieceLength } );
    }

    void PushInto( DataReceiver& receiver ) const
    {
        receiver.Start();
        for ( ConstData const piece : mPieces )
            receiver.Receive( piece );
        receiver.ReceiveEnd();
    }

    std::uint64_t Read() const
    {
        std::uint64_t sum = 0;
        for ( std::uint64_t const eight : mBytes )
            sum += eight;
        return sum;
    }

  private:
    std::vector<std::uint64_t> mBytes;
    std::vector<ConstData> mPieces;
};

using SharedStream = std::shared_ptr<Stream const>;

template<typename Receiver>
Contender By( char const* name, SharedStream const& stream )
{
    auto const run = [stream, receiver = std::make_shared<Receiver>()]
    {
        stream->PushInto( *receiver );
        return receiver->checksum;
    };
    return { name, run };
}

using Reference = FoldReceiver<TableLoop>;

std::vector<Contender> TablePeers( SharedStream const& stream )
{
    return { By<BoostReceiver>( "Boost.CRC", stream ),
        By<FoldReceiver<Slicing<8>>>( "slicing-by-8", stream ),
        By<FoldReceiver<Slicing<16>>>( "slicing-by-16", stream ) };
}

Contest OfReceiver( SharedStream const& stream, std::vector<Goal> const& goals )
{
    Contest contest{
        { By<Reference>( "table loop", stream ), By<ChecksumReceiver>( "ChecksumReceiver", stream ),
            By<FoldReceiver<IsaL>>( "isa-l", stream ) },
        goals };
    for ( Contender& peer : TablePeers( stream ) )
        contest.contenders.push_back( std::move( peer ) );
    return contest;
}

Contest OfPortableBody( SharedStream const& stream )
{
    Contest contest{ { By<Reference>( "table loop", stream ),
                         By<FoldReceiver<ChecksumBySlicing>>( "portable body", stream ) },
        { { "", 6 } } };
    for ( Contender& peer : TablePeers( stream ) )
        contest.contenders.push_back( std::move( peer ) );
    return contest;
}

// Only reads the memory. What it adds to the sum, to have the answer of the others, is right only
// if it reads all of it.
Contender PlainRead( SharedStream const& stream )
{
    ChecksumReceiver receiver;
    stream->PushInto( receiver );
    std::uint64_t const difference = receiver.checksum - stream->Read();
    return { "plain read", [stream, difference] { return stream->Read() + difference; } };
}

ContestMaker Maker(
    std::string const& variant, std::size_t pieceLength, std::size_t pieces, double must )
{
    auto const make = [=]
    {
        return OfReceiver(
            std::make_shared<Stream>( pieceLength, pieces ), { { "", must }, { "isa-l", 0, 1 } } );
    };
    return { "ChecksumReceiver", variant, make };
}

ContestMaker PortableMaker(
    std::string const& variant, std::size_t pieceLength, std::size_t pieces )
{
    auto const make = [=]
    { return OfPortableBody( std::make_shared<Stream>( pieceLength, pieces ) ); };
    return { "ChecksumReceiver without special instructions", variant, make };
}

Contest In64MiB()
{
    auto const stream = std::make_shared<Stream>( std::size_t{ 64 } << 20, 1 );
    Contest contest = OfReceiver( stream, { { "", 25 }, { "isa-l", 0, 1 } } );
    contest.contenders.push_back( PlainRead( stream ) );
    return contest;
}

} // namespace

std::vector<ContestMaker> ChecksumContests()
{
    return {
        Maker( "pieces of 64 B", 64, 4096, 12 ),
        Maker( "pieces of 77 B", 77, 3400, 12 ),
        Maker( "pieces of 4 KiB", 4096, 64, 60 ),
        Maker( "pieces of 1 MiB", 1 << 20, 1, 60 ),
        { "ChecksumReceiver", "64 MiB in one go", In64MiB, 7 },
        PortableMaker( "pieces of 64 B", 64, 4096 ),
        PortableMaker( "pieces of 77 B", 77, 3400 ),
        PortableMaker( "pieces of 4 KiB", 4096, 64 ),
        PortableMaker( "pieces of 1 MiB", 1 << 20, 1 ),
    };
}
