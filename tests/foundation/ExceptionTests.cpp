#include "foundation/DataOverflow.h"
#include "foundation/ExceptionPL.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <optional>

using namespace std::string_view_literals;

TEST( DebuggableException, TagsSayTheirEncodedClassName )
{
    EXPECT_STREQ( static_cast<std::exception const&>( DataOverflow() ).what(), "12DataOverflow" );
}

TEST( ExceptionPL, OwnsItsMessageWhateverBecomesOfOthers )
{
    EXPECT_STREQ( ExceptionPL( ConstData() ).what(), "" );
    std::optional<ExceptionPL> source( ConstData( "ab\0cd"sv ) );
    EXPECT_EQ( std::string_view( source->what(), 6 ), "ab\0cd\0"sv );
    ExceptionPL const constructed( *source );
    ExceptionPL assigned( "old" );
    long const live = LiveAllocations();
    assigned = *source;
    EXPECT_EQ( LiveAllocations(), live );
    source.reset();
    EXPECT_STREQ( constructed.what(), "ab" );
    assigned = static_cast<ExceptionPL const&>( assigned );
    EXPECT_STREQ( assigned.what(), "ab" );
}
