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
using testing::ElementsAre;

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
}

TEST( ChecksumReceiver, HasATableOfTheRemaindersOfPolynomialDivision )
{
    for ( std::uint64_t i = 0; i < 256; ++i )
    {
        std::uint64_t remainder = i << 32;
        for ( int bit = 39; bit >= 32; --bit )
            if ( remainder >> bit & 1 )
                remainder ^= 0x104C11DB7u << ( bit - 32 );
        EXPECT_EQ( ChecksumReceiver::Table()[i], remainder ) << i;
    }
}

// What a line maker should make of `text`, adjacent pieces of text joined.
std::vector<std::string> Lines( unsigned long long start, std::string const& text )
{
    static std::regex const kPart( "\r\n|\n\r|[\r\n]|[^\r\n]+" );
    std::vector<std::string> events{ "Start:" + std::to_string( start ) };
    for ( std::sregex_iterator i( text.begin(), text.end(), kPart ), end; i != end; ++i )
    {
        auto const first = start + static_cast<std::size_t>( i->position() );
        auto const last = first + i->str().size();
        bool const isText = i->str().find_first_of( "\r\n" ) != 0;
        events.push_back( isText
                              ? "Text:" + i->str()
                              : "Break:" + std::to_string( first ) + "-" + std::to_string( last ) );
    }
    events.push_back( "End:" + std::to_string( start + text.size() ) );
    return events;
}

TEST( LineMaker, FindsTheLinesOfEveryTextOfUpToFiveBytesForEverySplit )
{
    RecordingLineReceiver recorder;
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
                    recorder = {};
                    maker( recorder ).Start( start );
                    Push( maker, pieces );
                    EXPECT_EQ( recorder.JoinedEvents(), expected );
                } );
        }
}

TEST( LineMaker, PassesTextOnAtOnceButABreakOnlyWithTheByteAfterIt )
{
    RecordingLineReceiver recorder;
    LineMaker maker( recorder );
    maker.Start();
    maker << "ab"sv << ConstData() << "c\r"sv << ConstData();
    EXPECT_THAT( recorder.Events(), ElementsAre( "Start:0", "Text:ab", "Text:c" ) );
    maker << "\nd\n"sv; // the last byte is forgotten at the next start, and so is the position
    StartReceiveAndEnd( maker, "\r"sv );
    EXPECT_THAT( recorder.Events(), ElementsAre( "Start:0", "Text:ab", "Text:c", "Break:3-5",
                                        "Text:d", "Start:0", "Break:0-1", "End:1" ) );
}

TEST( LineMaker, CountsPositionsBeyondFourGiB )
{
    // 4,200 MiB, each with an LF at its beginning and a CR at its end.
    struct : DataReader
    {
        void Reset() override { next = 0; }

        bool Finished() const override { return next == 4200ull << 20; }

        DataReader& operator>>( Buffer& to ) override
        {
            std::uint32_t const length = to.Room().Length(); // a part of one MiB: there is 4096
            std::memset( to.Next(), '.', length );
            if ( next % ( 1 << 20 ) == 0 )
                to.Next()[0] = '\n';
            next += length;
            if ( next % ( 1 << 20 ) == 0 )
                to.End()[-1] = '\r';
            to.Advance( length );
            return *this;
        }

        unsigned long long next = 0;
    } reader;

    struct : RecordingLineReceiver
    {
        void Receive( ConstData ) override {}
    } recorder;

    ReadReader( reader, recorder );
    auto const& events = recorder.Events();
    ASSERT_EQ( events.size(), 4203u );
    EXPECT_EQ( events[1], "Break:0-1" );
    EXPECT_EQ( events[4097], "Break:4294967295-4294967297" );
    EXPECT_EQ( events[4201], "Break:4404019199-4404019200" );
    EXPECT_EQ( events[4202], "End:4404019200" );
}

TEST( ReadReader, PumpsLinesMessagesAndBoundedStringsHoweverTheyCome )
{
    for ( std::uint32_t const atMost : { 0u, 1u, 3u, 100u } )
    {
        ChoppingReader reader( "a:b\n\r\nc", atMost );
        RecordingLineReceiver lines;
        ReadReader( reader, lines );
        EXPECT_THAT( lines.JoinedEvents(),
            ElementsAre( "Start:0", "Text:a:b", "Break:3-5", "Break:5-6", "Text:c", "End:7" ) );
        reader.Reset();
        RecordingMessageReceiver message;
        ReadReader( reader, message );
        EXPECT_THAT( message.TakeEvents(),
            ElementsAre( "start 0", "field 0 a", "value start", "value b", "value end",
                "field end 3", "body 6", "body start 6", "body text c", "body end 7", "end 7" ) );
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
    for ( std::string_view const tooLong : { "x"sv, { static_cast<char*>( pages ), size } } )
    {
        receiver.Start();
        receiver << "0123"sv
                 << "4567"sv
                 << "89"sv << ConstData();
        EXPECT_THROW( receiver << tooLong, ExceptionPL );
        EXPECT_EQ( target, "0123456789" );
    }
    munmap( pages, size );
    receiver.Start();
    receiver << "abcdef"sv;
    EXPECT_THAT( [&] { receiver << "ghijkl"sv; },
        testing::ThrowsMessage<ExceptionPL>( "The request cannot be fulfilled because the maximum "
                                             "size for the HTTP body has been reached." ) );
    EXPECT_EQ( target, "abcdef" );
}

} // namespace
