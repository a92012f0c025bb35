#include "streams/LineMaker.h"
#include "streams/MessageMaker.h"
#include "tests/support/ByteMessageMaker.h"
#include "tests/support/EverySplit.h"
#include "tests/support/RecordingMessageReceiver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <type_traits>

using namespace std::string_literals;

static_assert( !std::is_copy_constructible_v<HeaderMaker> );
static_assert( !std::is_copy_constructible_v<MessageMaker> );

namespace
{

using Pieces = std::vector<std::span<char const>>;

// What is written down while `lines` takes the pieces through a line maker.
std::string Push(
    LineReceiver& lines, EventLog& log, Pieces const& pieces, unsigned long long position = 0 )
{
    LineMaker lineMaker( lines );
    lineMaker.Start( position );
    for ( auto const piece : pieces )
        lineMaker.Receive( ConstData( std::string_view( piece.data(), piece.size() ) ) );
    lineMaker.ReceiveEnd();
    return log.Take();
}

struct Row
{
    char const* name;
    std::string text;
    std::string events;
};

// A field with a value that is not empty.
std::string Field( int begin, std::string const& name, std::string const& value, int end )
{
    return "|field " + std::to_string( begin ) + " " + name + "|value start|value " + value +
           "|value end|field end " + std::to_string( end );
}

std::string EmptyBody( int position )
{
    std::string const p = std::to_string( position );
    return "|body " + p + "|body start " + p + "|body end " + p + "|end " + p;
}

auto const kName = std::string( 47, 'n' );

std::vector<Row> const kRows{
    { "fields and a body", "A: 1\r\nb:2\r\n\r\nbody",
        Field( 0, "a", "1", 4 ) + Field( 6, "b", "2", 9 ) +
            "|body 13|body start 13|body text body|body end 17|end 17" },
    { "folded value", "X: a\r\n  b\r\n\r\n", Field( 0, "x", "a b", 9 ) + EmptyBody( 13 ) },
    { "white space round a fold", "X:\t a \n \t b\t\n\n",
        Field( 0, "x", "a  b\t", 12 ) + EmptyBody( 14 ) },
    { "value that begins folded", "a:\n b\n\n", Field( 0, "a", " b", 5 ) + EmptyBody( 7 ) },
    { "line of blanks only", "a:1\n \nb:2\n\n",
        Field( 0, "a", "1 ", 5 ) + Field( 6, "b", "2", 9 ) + EmptyBody( 11 ) },
    { "blank before the colon", "Name : v\n\n", Field( 0, "name ", "v", 8 ) + EmptyBody( 10 ) },
    { "empty name, empty value", ":v\nb: \n\n",
        Field( 0, "", "v", 2 ) + "|field 3 b|value start|value end|field end 6" + EmptyBody( 8 ) },
    { "zero bytes, high bytes, colons", "A\0\xC0: b:\0\n\n"s,
        Field( 0, "a\0\xC0"s, "b:\0"s, 8 ) + EmptyBody( 10 ) },
    { "longest name", kName + ":v\n\n", Field( 0, kName, "v", 49 ) + EmptyBody( 51 ) },
    { "names too long", "a:1\n" + kName + "n:v\n w\n" + kName + kName + ":v\nb:2\n\n",
        Field( 0, "a", "1", 3 ) + Field( 155, "b", "2", 158 ) + EmptyBody( 160 ) },
    { "no colon", "a:1\nHTTP/1.1 200 OK\r\n : c\r\nb:2\n\n",
        Field( 0, "a", "1", 3 ) + Field( 27, "b", "2", 30 ) + EmptyBody( 32 ) },
    { "continuation of nothing", " x: y\na:1\n\n", Field( 6, "a", "1", 9 ) + EmptyBody( 11 ) },
    { "end within a value", "a:1\nb:2",
        Field( 0, "a", "1", 3 ) + Field( 4, "b", "2", 7 ) + EmptyBody( 7 ) },
    { "end within a name", "a:1\nb", Field( 0, "a", "1", 3 ) + EmptyBody( 5 ) },
    { "end after a break", "a:1\r\n", Field( 0, "a", "1", 3 ) + EmptyBody( 5 ) },
    { "nothing", "", EmptyBody( 0 ) },
    { "no fields", "\r\nabc", "|body 2|body start 2|body text abc|body end 5|end 5" },
    { "lines of a body", "\n\na: b\n\r\r\n c\n",
        "|body 1|body start 1|body break 1-2|body text a: b|body break 6-8|body break 8-10"
        "|body text  c|body break 12-13|body end 13|end 13" },
};

struct MessageMakerTest : testing::Test
{
    EventLog log;
    RecordingMessageReceiver recorder{ log };
    MessageMaker maker{ recorder };
};

TEST_F( MessageMakerTest, TellsTheSameHoweverTheMessageIsCut )
{
    MessageMaker aimedLater;
    LineReceiver& lines = aimedLater( recorder );
    for ( Row const& row : kRows )
        ForEverySplit<char>( row.text,
            [&]( Pieces const& pieces )
            {
                ASSERT_EQ( Push( lines, log, pieces ), "|start 0" + row.events )
                    << row.name << testing::PrintToString( pieces );
            } );
}

TEST_F( MessageMakerTest, PassesTextOnInThePiecesItComesInWithPositionsFromItsStart )
{
    log.inPieces = true;
    EXPECT_EQ(
        Push( maker, log, { "a: b"s, "c "s, "d\r"s, "\n e"s, "\n\nf"s, "g"s }, 5'000'000'000 ),
        "|start 5000000000|field 5000000000 a|value start|value b|value c |value d|value  |value e"
        "|value end|field end 5000000011|body 5000000013|body start 5000000013|body text f"
        "|body text g|body end 5000000015|end 5000000015" );
}

TEST_F( MessageMakerTest, DoesTheSameInTheSamePiecesAsThePlainStateMachine )
{
    log.inPieces = true;
    std::mt19937 random( 1 );
    auto const upTo = [&]( std::size_t last ) { return random() % ( last + 1 ); };
    LineMaker lineMaker( maker );
    ByteMessageMaker plain( recorder );
    auto const push = [&]( DataReceiver& receiver, std::string_view text, std::size_t atMost )
    {
        std::mt19937 cuts( static_cast<unsigned>( text.size() ) );
        receiver.Start();
        for ( std::size_t count; !text.empty(); text.remove_prefix( count ) )
        {
            count = std::min<std::size_t>( text.size(), 1 + cuts() % atMost );
            receiver.Receive( text.substr( 0, count ) );
        }
        receiver.ReceiveEnd();
        return log.Take();
    };
    for ( int i = 0; i < 20'000; ++i )
    {
        std::string text;
        for ( std::size_t left = upTo( 9 ); left > 0; --left )
        {
            for ( std::size_t length = upTo( i % 2 == 0 ? 60 : 4 ); length > 0; --length )
                text += static_cast<char>( upTo( 40 ) == 0 ? upTo( 255 ) : '@' + upTo( 60 ) );
            text += ":: \t\r\n\x80\xba"[upTo( 7 )];
            text += std::array{ "", "", ":", "\r\n", "\n", " ", "\t ", "\r\n\t" }[upTo( 7 )];
        }
        std::size_t const atMost = 1 + upTo( 99 );
        ASSERT_EQ( push( lineMaker, text, atMost ), push( plain, text, atMost ) )
            << testing::PrintToString( text ) << " " << atMost;
    }
}

TEST_F( MessageMakerTest, LetsExceptionsThroughAndCanBeStartedAgain )
{
    std::string const text = "a:1\n 2\nb:3\n\nbody\n";
    std::string const expected = Push( maker, log, { text } );
    for ( log.throwAfter = 0; log.throwAfter < 17; ++log.throwAfter )
    {
        EXPECT_THROW( Push( maker, log, { text } ), int );
        EXPECT_TRUE( expected.starts_with( log.Take() ) ) << log.throwAfter;
        std::size_t const reached = std::exchange( log.throwAfter, SIZE_MAX );
        EXPECT_EQ( Push( maker, log, { text } ), expected ) << "after " << reached;
        log.throwAfter = reached;
    }
    EXPECT_EQ( Push( maker, log, { text } ), expected );
}

TEST( HeaderMaker, LeavesEmptyLinesAndTheMessageToItsUser )
{
    EventLog log;
    RecordingMessageReceiver recorder( log );
    HeaderMaker aimed( recorder ), aimedLater;
    aimed.Start( 0 );
    aimed.Receive( ConstData() );
    for ( HeaderMaker* const maker : { &aimed, &aimedLater( recorder ) } )
        EXPECT_EQ( Push( *maker, log, { "a:1\n\n\nb:2\n\n"s } ),
            Field( 0, "a", "1", 5 ) + Field( 6, "b", "2", 10 ) );
}

} // namespace
