#include "foundation/DataOverflow.h"
#include "foundation/ExceptionPL.h"
#include "foundation/NumeralErrors.h"
#include "foundation/StringyLengthTooLong.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <optional>

using namespace std::string_view_literals;

TEST( DebuggableException, TagsSayTheirEncodedClassName )
{
    EXPECT_STREQ( static_cast<std::exception const&>( DataOverflow() ).what(), "12DataOverflow" );
    EXPECT_STREQ( NotANumeral().what(), "11NotANumeral" );
    EXPECT_STREQ( StringyLengthTooLong().what(), "20StringyLengthTooLong" );
}

TEST( ExceptionPL, OwnsItsMessageWhateverBecomesOfOthers )
{
    EXPECT_STREQ( ExceptionPL( ConstData() ).what(), "" );
    ExceptionPL const exception( ConstData( "ab\0cd"sv ) );
    EXPECT_EQ( std::string_view( exception.what(), 6 ), "ab\0cd\0"sv );
    EXPECT_STREQ( ExceptionPL( exception ).what(), "ab" );

    std::optional<ExceptionPL> source( "lost" );
    ExceptionPL const constructed( *source );
    ExceptionPL assigned( "old" );
    long const live = LiveAllocations();
    EXPECT_EQ( FailEachAllocation( [&] { ExceptionPL copy( *source ); } ), 1 );
    {
        AllocationFailure const failure( 1 );
        EXPECT_THROW( assigned = *source, std::bad_alloc );
        EXPECT_STREQ( assigned.what(), "old" );
    }
    assigned = *source;
    EXPECT_EQ( LiveAllocations(), live );
    source.reset();
    EXPECT_STREQ( constructed.what(), "lost" );
    char const* const message = assigned.what();
    assigned = static_cast<ExceptionPL const&>( assigned );
    EXPECT_EQ( assigned.what(), message );
    EXPECT_STREQ( message, "lost" );
}
