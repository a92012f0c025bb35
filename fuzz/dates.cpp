// The file system's time and back against arithmetic without a limit of width, and the dates of
// property lists against the C++ library's calendar.

#include "files/mac/FileTime.h"
#include "fuzz/FuzzInput.h"
#include "linux/CoreFoundation/PropertyListLeaves.h"

#include <chrono>

namespace
{

__extension__ typedef __int128 Wide;

constexpr Wide kMicrosecondsTo1970 = Wide{ 66 * 365 + 17 } * 24 * 60 * 60 * 1'000'000;

std::uint64_t Bits( UTCDateTime time )
{
    return std::uint64_t{ time.highSeconds } << 48 | std::uint64_t{ time.lowSeconds } << 16 |
           time.fraction;
}

// Exact until June 2189; then up to 10 bits are missing.
void CheckFileTime( std::int64_t instant )
{
    Wide const time = Bits( MacintoshPlatform::InstantToFileTime( { instant } ) );
    Wide const since1904 = instant + kMicrosecondsTo1970;
    if ( since1904 < 0 )
        return;
    Wide const missing = since1904 * 65536 / 1'000'000 - time;
    bool const isExact = since1904 < Wide{ 1 } << 53;
    Require( missing >= 0 && missing < ( isExact ? 1 : 1 << 10 ), "an instant's time" );
}

// Exact until May 2082; then up to six factors of five are missing. Wraps round at 64 bits.
void CheckInstant( UTCDateTime time )
{
    auto const instant = MacintoshPlatform::FileTimeToInstant( time ).microseconds;
    auto const sixtyFiveThousandths = static_cast<std::int64_t>( Bits( time ) );
    Wide const exact = Wide{ sixtyFiveThousandths } * 1'000'000 / 65536;
    auto const missing = static_cast<std::int64_t>(
        static_cast<std::uint64_t>( exact - kMicrosecondsTo1970 - instant ) );
    bool const isAfter1904 = sixtyFiveThousandths >= 0;
    bool const isExact = ( isAfter1904 ? exact : -exact ) < Wide{ 5'633'000'000 } * 1'000'000;
    Wide const most = isExact ? 0 : 15624;
    Require( isAfter1904 ? missing >= 0 && missing <= most : missing <= 0 && missing >= -most,
        "a time's instant" );
    if ( isExact && isAfter1904 )
    {
        auto const back = Bits( MacintoshPlatform::InstantToFileTime( { instant } ) );
        Require( Bits( time ) - back <= 1, "there and back" ); // truncated twice
    }
}

// Fields beyond their range carry over, as the calendar's sums do.
void CheckDate( FuzzInput& input )
{
    using namespace std::chrono;
    auto const take = [&]( std::size_t most )
    { return static_cast<int>( input.TakeUpTo( most ) ); };
    int const year = take( 9999 ), month = take( 99 ), day = take( 99 );
    int const hour = take( 99 ), minute = take( 99 ), second = take( 99 );
    char text[32];
    std::snprintf( text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", year, month, day, hour,
        minute, second );
    auto const firstOfMonth =
        sys_days( ( std::chrono::year( year ) / January + months( month - 1 ) ) / 1 );
    seconds const expected = firstOfMonth + days( day - 1 ) - sys_days( 2001y / January / 1 ) +
                             hours( hour ) + minutes( minute ) + seconds( second );
    Require( ParseDate( text ) == static_cast<double>( expected.count() ), "a date" );

    // One byte changed, or cut after it: still a date only where one digit replaced another.
    std::size_t const place = input.TakeUpTo( 19 );
    auto const isDigit = []( char c ) { return c >= '0' && c <= '9'; };
    bool const wasDigit = isDigit( text[place] );
    char const old = text[place];
    text[place] = input.Take<char>();
    bool const isDate = text[place] == old || ( wasDigit && isDigit( text[place] ) );
    std::vector<char> const changed = ExactCopy( { text, 20 } );
    Require( ParseDate( { changed.data(), 20 } ).has_value() == isDate, "a changed date" );
    Require( !ParseDate( { changed.data(), place } ), "the beginning of a date" );
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    auto const number = input.Take<std::uint64_t>();
    unsigned const shift = input.Take<std::uint8_t>() % 64;
    auto const shifted = static_cast<std::int64_t>( number ) >> shift;
    CheckFileTime( shifted );
    CheckFileTime( static_cast<std::int64_t>( shifted - kMicrosecondsTo1970 ) );
    auto const bits = static_cast<std::uint64_t>( shifted );
    CheckInstant( { static_cast<UInt16>( bits >> 48 ), static_cast<UInt32>( bits >> 16 ),
        static_cast<UInt16>( bits ) } );
    CheckDate( input );
    return 0;
}
