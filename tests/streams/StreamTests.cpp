#include "foundation/MakeString.h"
#include "streams/ApplyFilter.h"
#include "streams/AsciiCaseFilters.h"
#include "streams/DataFilterer.h"
#include "streams/NoMoreData.h"
#include "streams/ReadReader.h"
#include "streams/StartReceiveAndEnd.h"
#include "streams/StringReceiver.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/ChoppingReader.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <thread>

using namespace std::string_view_literals;
using Events = std::vector<std::string>;

namespace
{

ConstData const kPieces[] = { "ab"sv, ConstData(), "c"sv };
ConstDataRopeReference const kRope( kPieces, kPieces + 3 );

/// Writes down what is done to it: "Start", the bytes in brackets, "End".
struct Recorder : DataReceiver
{
    using DataReceiver::Receive;

    void Start() override { mEvents.push_back( "Start" ); }

    void Receive( ConstData data ) override { mEvents.push_back( '[' + MakeString( data ) + ']' ); }

    void ReceiveEnd() override { mEvents.push_back( "End" ); }

    Events mEvents;
};

/// Copies, holds back 1500 dots until it is flushed, and throws where the input begins with a '!'.
class HoldingFilter : public DataFilter
{
  public:
    using DataFilter::operator();

    void operator()( ConstBuffer& in, Buffer& out ) override
    {
        if ( in.Unread().StartsWith( "!"sv ) )
            throw std::runtime_error( "!" );
        DataFilter::operator()( in, out );
    }

    bool Flushed() const override { return mTrailer == 0; }

    void Flush( Buffer& out ) override
    {
        for ( ; mTrailer != 0 && !out.IsFull(); --mTrailer )
            out.Put( '.' );
    }

  private:
    unsigned mTrailer = 1500;
};

TEST( DataReceiver, GetsAStreamOfChainedPushesRangesAndPiecesOfARope )
{
    Recorder receiver;
    DataReceiver& base = receiver;
    EXPECT_EQ( &( base << "ab"sv << ConstData() ), &receiver );
    StartReceiveAndEnd( base, ConstData() );
    StartReceiveAndEnd( base, kRope );
    EXPECT_EQ( receiver.mEvents,
        ( Events{ "[ab]", "[]", "Start", "[]", "End", "Start", "[ab]", "[]", "[c]", "End" } ) );
}

TEST( StringReceiver, HoldsWhatCameAfterTheLastStartWithoutAllocatingItsOwnCopies )
{
    std::string target( 100, 'x' );
    StringReceiver receiver( target );
    long const allocations = AllocationCount();
    StartReceiveAndEnd( receiver, "lost behind the second start, and long"sv );
    std::string elsewhere;
    StartReceiveAndEnd( StringReceiver()( elsewhere ), "short"sv );
    EXPECT_EQ( elsewhere, "short" );
    StartReceiveAndEnd( receiver, kRope );
    ( receiver << ConstData() << "d\0and too long for a text inside the object"sv ).ReceiveEnd();
    EXPECT_EQ( AllocationCount(), allocations );
    EXPECT_EQ( target, "abcd\0and too long for a text inside the object"sv );
}

TEST( ReadReader, PassesPiecesOfAtMost4096BytesOneForEachRequest )
{
    std::string text;
    for ( unsigned i = 0; text.size() < 10000; ++i )
        text += std::to_string( i );
    for ( std::uint32_t const atMost : { 0u, 4095u, 4097u } )
        for ( std::size_t const length : { 0u, 1u, 4096u, 4097u, 10000u } )
        {
            SCOPED_TRACE( testing::Message() << length << " bytes by " << atMost );
            ChoppingReader reader( text.substr( 0, length ), atMost );
            Recorder receiver;
            ReadReader( reader, receiver );
            EXPECT_EQ( receiver.mEvents.size(), reader.Calls() + 2 );
            EXPECT_EQ( receiver.mEvents.front() + receiver.mEvents.back(), "StartEnd" );
            EXPECT_LE( std::ranges::max( receiver.mEvents, {}, &std::string::size ).size(), 4098u );
            EXPECT_EQ( ReadReader( reader ), "" ); // from where the reader stands
            reader.Reset();
            EXPECT_EQ( ReadReader( reader ), text.substr( 0, length ) );
        }
}

TEST( DataReader, FillsARangeOrThrowsLeavingWhatItHas )
{
    for ( std::uint32_t const atMost : { 0u, 2u, 5u } )
        for ( std::uint32_t length = 0; length <= 4; ++length )
        {
            ChoppingReader reader( "abc", atMost );
            unsigned char storage[5] = {};
            Data const range( storage, storage + length );
            if ( length <= 3 )
                EXPECT_EQ( &( reader >> range ), &reader );
            else
                EXPECT_THROW( reader >> range, NoMoreData );
            EXPECT_EQ( reinterpret_cast<char*>( storage ), "abc"sv.substr( 0, length ) );
            EXPECT_EQ( reader.Unfinished(), length < 3 );
        }
    DataReader& empty = DataReader::Empty();
    empty.Reset();
    unsigned char byte = '.';
    Buffer room( Data( &byte, &byte + 1 ) );
    EXPECT_EQ( ReadReader( empty >> Data() >> room ), "" );
    EXPECT_EQ( room.Filled().Length(), 0u );
}

TEST( DataFilter, MovesPlainRangesButIsNotAskedWhereThereIsNothingToMove )
{
    unsigned char storage[] = "....";
    Data const room( storage, storage + 2 );
    ConstBuffer in( "!xyz"sv );
    Buffer out( room );
    HoldingFilter filter;
    EXPECT_NO_THROW( filter( "!"sv, Data() ) );
    EXPECT_NO_THROW( filter( in, Data() ) );
    EXPECT_NO_THROW( filter( ConstData(), room ) );
    EXPECT_NO_THROW( filter( ConstData(), out ) );
    EXPECT_THROW( filter( "!"sv, room ), std::runtime_error );
    EXPECT_THROW( filter( "!"sv, out ), std::runtime_error );
    DataFilter::copy( in, room );
    EXPECT_EQ( MakeString( in.Unread() ) + MakeString( room ), "yz!x" );
    DataFilter::copy( "abc"sv, room );
    EXPECT_STREQ( reinterpret_cast<char*>( storage ), "ab.." );
    DataFilter::copy( "1"sv, out );
    DataFilter::copy.Flush( out );
    EXPECT_EQ( MakeString( out.Filled() ), "1" );
}

TEST( DataFilterer, PassesPiecesOfAtMost1024BytesAndFlushesAtTheEnd )
{
    HoldingFilter filter;
    Recorder receiver;
    std::string const text = "Z[\xE9{" + std::string( 1030, 'a' ), dots( 1024, '.' );
    EXPECT_THROW( StartReceiveAndEnd( receiver, "!"sv, filter ), std::runtime_error );
    StartReceiveAndEnd( receiver, ConstData( text ), filter );
    StartReceiveAndEnd( receiver, ConstData(), filter );
    StartReceiveAndEnd( receiver, kRope, Ascii::RaiseCase() );
    EXPECT_EQ(
        receiver.mEvents, ( Events{ "Start", "Start", '[' + text.substr( 0, 1024 ) + ']',
                              "[aaaaaaaaaa]", '[' + dots + ']', '[' + dots.substr( 0, 476 ) + ']',
                              "End", "Start", "End", "Start", "[AB]", "[C]", "End" } ) );
    EXPECT_EQ( ApplyFilter( ConstData( text ), Ascii::LowerCase() ), "z" + text.substr( 1 ) );
    long const allocations = AllocationCount();
    StartReceiveAndEnd( DataReceiver::Ignore(), ConstData( text ), DataFilter::copy );
    EXPECT_EQ( AllocationCount(), allocations );
}

TEST( SharedObjects, ServeManyThreads )
{
    auto const use = []
    {
        StartReceiveAndEnd( DataReceiver::Ignore(), "A"sv, Ascii::LowerCase() );
        EXPECT_EQ( ApplyFilter( "a"sv, DataFilter::copy ), "a" );
        EXPECT_EQ( ApplyFilter( "a"sv, Ascii::RaiseCase() ), "A" );
        EXPECT_EQ( ReadReader( DataReader::Empty() ), "" );
    };
    std::jthread const one( use ), other( use );
}

} // namespace
