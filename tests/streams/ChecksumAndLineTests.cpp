#include "foundation/ExceptionPL.h"
#include "streams/ChecksumReceiver.h"
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

#include <cstring>
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
    std::jthread const other( work );
    work();
    EXPECT_EQ( ChecksumReceiver::Table()[0], 0u );
    EXPECT_EQ( ChecksumReceiver::Table()[1], 0x04C11DB7u );
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
