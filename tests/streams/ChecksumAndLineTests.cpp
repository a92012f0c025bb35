#include "foundation/ExceptionPL.h"
#include "streams/ChecksumKernels.h"
#include "streams/ChecksumReceiver.h"
#include "streams/LineBreakKernels.h"
#include "streams/LineMaker.h"
#include "streams/ReadReader.h"
#include "streams/StartReceiveAndEnd.h"
#include "streams/StringHTTPReceiver.h"
#include "tests/support/ChoppingReader.h"
#include "tests/support/EverySplit.h"
#include "tests/support/RecordingLineReceiver.h"
#include "tests/support/RecordingMessageReceiver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <regex>
#include <sys/mman.h>
#include <thread>

using namespace std::string_view_literals;
using Pieces = std::vector<std::span<char const>>;

namespace
{

void Push( DataReceiver& receiver, Pieces const& pieces )
{
    for ( auto const piece : pieces )
        receiver.Receive( std::string_view( piece.data(), piece.size() ) );
    receiver.ReceiveEnd();
}

TEST( ChecksumReceiver, YieldsTheCheckValueForEverySplitInTwoThreadsAtOnce )
{
    auto const work = []
    {
        ChecksumReceiver receiver;
        ForEverySplit<char>( "123456789"sv,
            [&]( Pieces const& pieces )
            {
                EXPECT_EQ( ChecksumReceiver().checksum, 0xFFFFFFFF ); // writes the table again
                receiver.Start();
                EXPECT_EQ( receiver.checksum, 0xFFFFFFFF );
                Push( receiver, pieces );
                EXPECT_EQ( receiver.checksum, 0x0376E6E7u );
            } );
    };
    {
        std::jthread const other( work );
        work();
    }
    EXPECT_EQ( ChecksumReceiver::Table()[0], 0u );
    EXPECT_EQ( ChecksumReceiver::Table()[1], 0x04C11DB7u );
}

// Each piece ends where its memory ends, and begins at any address.
TEST( ChecksumReceiver, AgreesWithTheTableByEveryKernelAndForEveryCut )
{
    std::uint32_t const* const table = ChecksumReceiver::Table();
    std::mt19937 random( 32 );
    for ( std::size_t length = 0; length < 1500; length += length < 300 ? 1 : 61 )
        for ( std::size_t offset = 0; offset < 64; offset += length < 300 ? 1 : 9 )
        {
            std::vector<unsigned char> bytes( offset + length );
            std::ranges::generate( bytes, std::ref( random ) );
            unsigned char const* const piece = bytes.data() + offset;
            auto const start = static_cast<std::uint32_t>( random() );
            std::uint32_t expected = start;
            for ( std::size_t i = 0; i < length; ++i )
                expected = ( expected << 8 ) ^ table[piece[i] ^ ( expected >> 24 )];
            for ( auto const& kernel : ChecksumKernels() )
            {
                if ( kernel.isSupported() && length >= kFewestBytesForKernels )
                {
                    EXPECT_EQ( kernel.function( start, piece, length ), expected )
                        << kernel.name << ' ' << length;
                }
            }
            for ( std::size_t cut = offset; cut <= length; cut += 64 )
            {
                ChecksumReceiver receiver;
                receiver.checksum = start;
                receiver << ConstData( piece, piece + cut )
                         << ConstData( piece + cut, piece + length );
                EXPECT_EQ( receiver.checksum, expected ) << cut << " of " << length;
            }
        }
}

// What a line maker should make of `text`, adjacent pieces of text joined.
std::string Lines( unsigned long long start, std::string const& text )
{
    static std::regex const kPart( "\r\n|\n\r|[\r\n]|[^\r\n]+" );
    std::string events = "|start " + std::to_string( start );
    for ( std::sregex_iterator i( text.begin(), text.end(), kPart ), end; i != end; ++i )
    {
        auto const first = start + static_cast<std::size_t>( i->position() );
        auto const last = first + i->str().size();
        if ( i->str().find_first_of( "\r\n" ) != 0 )
            events += "|text " + i->str();
        else
            events += "|break " + std::to_string( first ) + "-" + std::to_string( last );
    }
    return events + "|end " + std::to_string( start + text.size() );
}

TEST( LineMaker, FindsTheLinesOfEveryTextOfUpToFiveBytesForEverySplit )
{
    EventLog log;
    RecordingLineReceiver recorder( log );
    LineMaker maker;
    for ( unsigned long long const start : { 0ull, ( 1ull << 32 ) - 3 } )
        for ( unsigned code = 1; code < 2048; ++code )
        {
            std::string text;
            for ( unsigned rest = code; rest > 1; rest /= 4 )
                text += "\r\nx\0"[rest % 4];
            auto const expected = Lines( start, text );
            ForEverySplit<char>( text,
                [&]( Pieces const& pieces )
                {
                    maker( recorder ).Start( start );
                    Push( maker, pieces );
                    EXPECT_EQ( log.Take(), expected );
                } );
        }
}

TEST( LineMaker, PassesTextOnAtOnceButABreakOnlyWithTheByteAfterIt )
{
    EventLog log;
    log.inPieces = true;
    RecordingLineReceiver recorder( log );
    LineMaker maker( recorder );
    maker.Start();
    maker << "ab"sv << ConstData() << "c\r"sv << ConstData();
    EXPECT_EQ( log.Take(), "|start 0|text ab|text c" );
    maker << "\nd\n"sv; // the last byte is forgotten at the next start, and so is the position
    StartReceiveAndEnd( maker, "\r"sv );
    EXPECT_EQ( log.Take(), "|break 3-5|text d|start 0|break 0-1|end 1" );
}

// Of `length` bytes, about one in `rarity` a CR and one an LF.
std::string TextWithBreaks( std::mt19937& random, std::size_t length, unsigned rarity )
{
    std::string text( length, '\0' );
    for ( char& byte : text )
    {
        auto const choice = random() % rarity;
        byte =
            choice < 2 ? "\r\n"[choice] : static_cast<char>( choice % 2 == 0 ? '\v' : '\n' + 128 );
    }
    return text;
}

TEST( LineBreakKernels, FindWhatIsFoundByteByByteAtEveryLengthAndAlignment )
{
    std::mt19937 random( 33 );
    LineBreakOffsets offsets;
    LineBreakOffsets expected;
    for ( unsigned const rarity : { 2u, 10u, 500u } )
    {
        std::string const pool = TextWithBreaks( random, 2 * kLineBreakChunk, rarity );
        for ( unsigned length = 1; length <= kLineBreakChunk; length += length < 301 ? 1 : 759 )
            for ( unsigned alignment = 0; alignment < 64; ++alignment )
            {
                // Whoever reads beyond the text leaves the vector.
                auto const begin = pool.begin() + random() % kLineBreakChunk;
                std::vector<unsigned char> bytes( alignment );
                bytes.insert( bytes.end(), begin, begin + length );
                auto const* const text = bytes.data() + alignment;
                unsigned const count = LineBreaksByByte( text, 0, length, expected, 0 );
                if ( length <= kMostBytesForMask )
                {
                    std::uint64_t mask = 0;
                    for ( unsigned i = 0; i < count; ++i )
                        mask |= 1ull << expected[i];
                    ASSERT_EQ( LineBreakMaskByByte( text, length ), mask ) << length;
                    if ( length >= kFewestBytesForMask )
                    {
                        ASSERT_EQ( LineBreakMask( text, length ), mask ) << length;
                    }
                }
                for ( auto const& kernel : LineBreakKernels() )
                    if ( kernel.isSupported() )
                    {
                        std::ranges::fill( offsets, kLineBreakChunk );
                        ASSERT_EQ( kernel.function( text, length, offsets ), count )
                            << kernel.name << " at " << alignment << " of " << length;
                        ASSERT_TRUE( std::equal( offsets, offsets + count, expected ) )
                            << kernel.name << " at " << alignment << " of " << length;
                    }
            }
    }
}

TEST( LineMaker, FindsTheLinesOfLongTextsForEverySplit )
{
    EventLog log;
    RecordingLineReceiver recorder( log );
    LineMaker maker( recorder );
    std::mt19937 random( 33 );
    for ( unsigned const rarity : { 2u, 3u, 10u, 50u } )
    {
        std::string const text = TextWithBreaks( random, 60, rarity );
        std::string const expected = Lines( 0, text );
        ForEverySplit<char>( text,
            [&]( Pieces const& pieces )
            {
                maker.Start();
                Push( maker, pieces );
                EXPECT_EQ( log.Take(), expected );
            } );
        for ( unsigned i = 0; i < 3; ++i ) // pairs across the boundaries of what is looked at once
        {
            std::string const longText = TextWithBreaks( random, 3 * kLineBreakChunk, rarity );
            StartReceiveAndEnd( maker, std::string_view( longText ) );
            EXPECT_EQ( log.Take(), Lines( 0, longText ) );
        }
    }
}

TEST( LineMaker, KeepsWhatIsNotReportedYetWhenTheTargetThrows )
{
    static constexpr char const* kRests[] = { "|break 0-1|end 1", "|break 2-3|end 3", "|end 4" };
    for ( auto const text : { "ab\n\rcd"sv, "ab\n\rcd, and more than fits into a vector"sv } )
        for ( std::size_t events = 1; events <= std::size( kRests ); ++events )
        {
            EventLog log;
            log.throwAfter = events;
            RecordingLineReceiver recorder( log );
            LineMaker maker( recorder );
            maker.Start();
            EXPECT_THROW( maker << text, int );
            log.throwAfter = SIZE_MAX;
            log.Take();
            maker.ReceiveEnd();
            EXPECT_EQ( log.Take(), kRests[events - 1] );
        }
    EventLog log;
    log.throwAfter = 1;
    RecordingLineReceiver recorder( log );
    LineMaker maker( recorder );
    maker.Start();
    EXPECT_THROW( maker << "a"sv, int ); // a single byte goes another way
    log.throwAfter = SIZE_MAX;
    log.Take();
    maker.ReceiveEnd();
    EXPECT_EQ( log.Take(), "|end 0" );
}

TEST( LineMaker, CountsPositionsBeyondFourGiB )
{
    struct : DataReader
    {
        void Reset() override { next = 0; }

        bool Finished() const override { return next > 1ull << 32; }

        // Dots, but for a CR before 4 GiB, an LF behind it and a CR at the end.
        DataReader& operator>>( Buffer& to ) override
        {
            std::memset( to.Next(), '.', to.Room().Length() );
            if ( next >> 32 != 0 )
                to.Next()[0] = '\n';
            next += to.Room().Length(); // 4096
            if ( next >> 32 != 0 )
                to.End()[-1] = '\r';
            to.Advance( to.Room().Length() );
            return *this;
        }

        unsigned long long next = 0;
    } reader;

    struct Breaks : RecordingLineReceiver
    {
        using RecordingLineReceiver::RecordingLineReceiver;

        void Receive( ConstData ) override {}
    };

    EventLog log;
    Breaks recorder( log );
    ReadReader( reader, recorder );
    EXPECT_EQ( log.Take(), "|start 0|break 4294967295-4294967297|break 4294971391-4294971392"
                           "|end 4294971392" );
}

TEST( ReadReader, PumpsLinesMessagesAndBoundedStringsHoweverTheyCome )
{
    EventLog log;
    for ( std::uint32_t const atMost : { 0u, 1u, 3u, 100u } )
    {
        ChoppingReader reader( "a:b\n\r\nc", atMost );
        RecordingLineReceiver lines( log );
        ReadReader( reader, lines );
        EXPECT_EQ( log.Take(), "|start 0|text a:b|break 3-5|break 5-6|text c|end 7" );
        reader.Reset();
        RecordingMessageReceiver message( log );
        ReadReader( reader, message );
        EXPECT_EQ( log.Take(), "|start 0|field 0 a|value start|value b|value end|field end 3|body 6"
                               "|body start 6|body text c|body end 7|end 7" );
        reader.Reset();
        EXPECT_EQ( ReadReader( reader, 7 ), "a:b\n\r\nc" );
        reader.Reset();
        EXPECT_THROW( ReadReader( reader, 6 ), ExceptionPL );
    }
    EXPECT_EQ( ReadReader( DataReader::Empty(), 0 ), "" );
}

TEST( StringHTTPReceiver, TakesWholePiecesUpToItsMaximumEvenWhereTheSumNeeds33Bits )
{
    std::size_t const size = UINT32_MAX - 7u;
    void* const pages = mmap( nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0 );
    ASSERT_NE( pages, MAP_FAILED );
    std::string target = "old";
    StringHTTPReceiver receiver( target, 10 );
    for ( std::string_view const tooLong : { "xyz"sv, { static_cast<char*>( pages ), size } } )
    {
        receiver.Start();
        receiver << "0123"sv
                 << "4567"sv;
        EXPECT_THAT( [&] { receiver << tooLong; },
            testing::ThrowsMessage<ExceptionPL>( "The request cannot be fulfilled because the "
                                                 "maximum size for the HTTP body has been "
                                                 "reached." ) );
        EXPECT_EQ( target, "01234567" );
        receiver << "89"sv << ConstData();
        EXPECT_EQ( target, "0123456789" );
        EXPECT_THROW( receiver << "x"sv, ExceptionPL );
    }
    munmap( pages, size );
}

} // namespace
