#include "streams/LineMaker.h"
#include "streams/MessageMaker.h"
#include "tests/support/EverySplit.h"
#include "tests/support/RecordingMessageReceiver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <type_traits>

using namespace std::string_literals;

static_assert( !std::is_copy_constructible_v<HeaderMaker> );
static_assert( !std::is_copy_constructible_v<MessageMaker> );

namespace
{

using Pieces = std::vector<std::span<char const>>;

std::string Join( std::vector<std::string> const& events )
{
    std::string all;
    for ( std::string const& event : events )
        all += ( all.empty() ? "" : "|" ) + event;
    return all;
}

// What the recorder wrote while `lines` took the pieces through a line maker.
std::string Push( LineReceiver& lines, RecordingMessageReceiver& recorder, Pieces const& pieces,
    unsigned long long position = 0 )
{
    LineMaker lineMaker( lines );
    lineMaker.Start( position );
    for ( auto const piece : pieces )
        lineMaker.Receive( ConstData( std::string_view( piece.data(), piece.size() ) ) );
    lineMaker.ReceiveEnd();
    return Join( recorder.TakeEvents() );
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
        "start 0" + Field( 0, "a", "1", 4 ) + Field( 6, "b", "2", 9 ) +
            "|body 13|body start 13|body text body|body end 17|end 17" },
    { "folded value", "X: a\r\n  b\r\n\r\n",
        "start 0" + Field( 0, "x", "a b", 9 ) + EmptyBody( 13 ) },
    { "white space round a fold", "X:\t a \n \t b\t\n\n",
        "start 0" + Field( 0, "x", "a  b\t", 12 ) + EmptyBody( 14 ) },
    { "value that begins folded", "a:\n b\n\n",
        "start 0" + Field( 0, "a", " b", 5 ) + EmptyBody( 7 ) },
    { "line of blanks only", "a:1\n \nb:2\n\n",
        "start 0" + Field( 0, "a", "1 ", 5 ) + Field( 6, "b", "2", 9 ) + EmptyBody( 11 ) },
    { "blank before the colon", "Name : v\n\n",
        "start 0" + Field( 0, "name ", "v", 8 ) + EmptyBody( 10 ) },
    { "empty name, empty value", ":v\nb: \n\n",
        "start 0" + Field( 0, "", "v", 2 ) + "|field 3 b|value start|value end|field end 6" +
            EmptyBody( 8 ) },
    { "zero bytes, high bytes, colons", "A\0\xC0: b:\0\n\n"s,
        "start 0" + Field( 0, "a\0\xC0"s, "b:\0"s, 8 ) + EmptyBody( 10 ) },
    { "longest name", kName + ":v\n\n", "start 0" + Field( 0, kName, "v", 49 ) + EmptyBody( 51 ) },
    { "name too long", "a:1\n" + kName + "n:v\n w\nb:2\n\n",
        "start 0" + Field( 0, "a", "1", 3 ) + Field( 58, "b", "2", 61 ) + EmptyBody( 63 ) },
    { "name much too long", kName + kName + ":v\nb:2\n\n",
        "start 0" + Field( 97, "b", "2", 100 ) + EmptyBody( 102 ) },
    { "no colon", "a:1\nHTTP/1.1 200 OK\r\n : c\r\nb:2\n\n",
        "start 0" + Field( 0, "a", "1", 3 ) + Field( 27, "b", "2", 30 ) + EmptyBody( 32 ) },
    { "continuation of nothing", " x: y\na:1\n\n",
        "start 0" + Field( 6, "a", "1", 9 ) + EmptyBody( 11 ) },
    { "breaks of LF CR", "a:1\n\rb:2\n\r\n\r",
        "start 0" + Field( 0, "a", "1", 3 ) + Field( 5, "b", "2", 8 ) + EmptyBody( 12 ) },
    { "end within a value", "a:1\nb:2",
        "start 0" + Field( 0, "a", "1", 3 ) + Field( 4, "b", "2", 7 ) + EmptyBody( 7 ) },
    { "end within a name", "a:1\nb", "start 0" + Field( 0, "a", "1", 3 ) + EmptyBody( 5 ) },
    { "end after a break", "a:1\r\n", "start 0" + Field( 0, "a", "1", 3 ) + EmptyBody( 5 ) },
    { "nothing", "", "start 0" + EmptyBody( 0 ) },
    { "no fields", "\r\nabc", "start 0|body 2|body start 2|body text abc|body end 5|end 5" },
    { "lines of a body", "\n\na: b\n\r\r\n c\n",
        "start 0|body 1|body start 1|body break 1-2|body text a: b|body break 6-8|body break 8-10"
        "|body text  c|body break 12-13|body end 13|end 13" },
};

} // namespace

TEST( MessageMaker, TellsTheSameHoweverTheMessageIsCut )
{
    for ( Row const& row : kRows )
    {
        RecordingMessageReceiver recorder;
        MessageMaker maker;
        LineReceiver& lines = maker( recorder );
        ForEverySplit<char>( row.text,
            [&]( Pieces const& pieces )
            {
                ASSERT_EQ( Push( lines, recorder, pieces ), row.events )
                    << row.name << ::testing::PrintToString( pieces );
            } );
    }
}

TEST( MessageMaker, PassesTextOnInThePiecesItComesIn )
{
    RecordingMessageReceiver recorder( RecordingMessageReceiver::Texts::InPieces );
    MessageMaker maker( recorder );
    EXPECT_EQ( Push( maker, recorder, { "a: b"s, "c "s, "d\r"s, "\n e"s, "\n\nf"s, "g"s } ),
        "start 0|field 0 a|value start|value b|value c |value d|value  |value e|value end"
        "|field end 11|body 13|body start 13|body text f|body text g|body end 15|end 15" );
}

TEST( MessageMaker, CountsFromThePositionItIsStartedAt )
{
    RecordingMessageReceiver recorder;
    MessageMaker maker( recorder );
    EXPECT_EQ( Push( maker, recorder, { "a:1\n\nb"s }, 5'000'000'000 ),
        "start 5000000000|field 5000000000 a|value start|value 1|value end|field end 5000000003"
        "|body 5000000005|body start 5000000005|body text b|body end 5000000006|end 5000000006" );
}

TEST( MessageMaker, LetsExceptionsThroughAndCanBeStartedAgain )
{
    std::string const text = "a:1\n 2\nb:3\n\nbody\n";
    RecordingMessageReceiver recorder( RecordingMessageReceiver::Texts::InPieces );
    MessageMaker maker( recorder );
    std::string const expected = Push( maker, recorder, { text } );
    std::size_t const count = static_cast<std::size_t>( std::ranges::count( expected, '|' ) ) + 1;
    ASSERT_EQ( count, 19U );
    for ( std::size_t events = 0; events < count; ++events )
    {
        recorder.ThrowAfter( events );
        EXPECT_THROW( Push( maker, recorder, { text } ), int );
        std::string const before = Join( recorder.TakeEvents() );
        EXPECT_TRUE( expected.starts_with( before ) ) << before;
        recorder.ThrowAfter( SIZE_MAX );
        EXPECT_EQ( Push( maker, recorder, { text } ), expected ) << "after " << events;
    }
}

TEST( HeaderMaker, LeavesEmptyLinesAndTheMessageToItsUser )
{
    RecordingMessageReceiver recorder;
    HeaderMaker maker;
    EXPECT_EQ( Push( maker( recorder ), recorder, { "a:1\n\n\nb:2\n\n"s } ),
        ( Field( 0, "a", "1", 5 ) + Field( 6, "b", "2", 10 ) ).substr( 1 ) );
}
