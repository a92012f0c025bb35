#include "foundation/MilliSecondSleep.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <unistd.h>

static std::string gCalls;

// These take the place of the C library's in this program.

extern "C" unsigned int sleep( unsigned int seconds )
{
    gCalls += "sleep " + std::to_string( seconds ) + " ";
    return seconds; // as if a signal had come at once
}

extern "C" int usleep( useconds_t microSeconds )
{
    gCalls += "usleep " + std::to_string( microSeconds );
    return microSeconds == 0 ? 0 : -1;
}

TEST( MilliSecondSleep, SleepsWholeSecondsAndThenTheRestAndReturnsTheLastResult )
{
    std::tuple<unsigned, char const*> const rows[] = { { 0, "usleep 0" }, { 999, "usleep 999000" },
        { 1000, "sleep 1 usleep 0" }, { 2500, "sleep 2 usleep 500000" },
        { 4294967295u, "sleep 4294967 usleep 295000" } };
    for ( auto const& [milliSeconds, calls] : rows )
    {
        gCalls.clear();
        EXPECT_EQ( MilliSecondSleep( milliSeconds ), milliSeconds % 1000 == 0 ? 0 : -1 );
        EXPECT_EQ( gCalls, calls );
    }
}
