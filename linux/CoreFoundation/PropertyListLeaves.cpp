#include "linux/CoreFoundation/PropertyListLeaves.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <utility>

namespace
{

bool IsBlank( char character )
{
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

bool IsDigit( char character )
{
    return character >= '0' && character <= '9';
}

// Takes leading blanks and a sign off; whether the sign was a minus.
bool TakeBlanksAndSign( std::string_view& text )
{
    while ( !text.empty() && IsBlank( text[0] ) )
    {
        text.remove_prefix( 1 );
    }
    bool const isNegative = text.starts_with( '-' );
    if ( isNegative || text.starts_with( '+' ) )
    {
        text.remove_prefix( 1 );
    }
    return isNegative;
}

bool EqualsIgnoringCase( std::string_view text, std::string_view lowerCase )
{
    return std::ranges::equal( text, lowerCase,
        [&]( char a, char b ) { return ( a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a ) == b; } );
}

// The days from 2001-01-01 to the given day of the proleptic Gregorian calendar. Months and days
// beyond their range carry over. (Days are counted from 1 March of the year 0, so that the leap day
// comes last in its year.)
std::int64_t DaysSince2001( int year, int month, int day )
{
    std::int64_t const months = std::int64_t{ year } * 12 + month - 3;
    std::int64_t const marchYear = ( months + 12 ) / 12 - 1;
    std::int64_t const marchMonth = months - marchYear * 12;
    // The extra year of 400 keeps the divisions away from negative numbers.
    std::int64_t const y = marchYear + 400;
    std::int64_t const days = y * 365 + y / 4 - y / 100 + y / 400 + ( 153 * marchMonth + 2 ) / 5;
    constexpr std::int64_t kDaysTo2001 =
        2400 * 365 + 2400 / 4 - 2400 / 100 + 2400 / 400 + ( 153 * 10 + 2 ) / 5;
    return days + day - 1 - kDaysTo2001;
}

// The value of each base64 character; 64 for all others.
constexpr std::array<std::uint8_t, 256> kBase64Values = []
{
    std::array<std::uint8_t, 256> values{};
    values.fill( 64 );
    constexpr std::string_view kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for ( std::size_t i = 0; i < kAlphabet.size(); ++i )
    {
        values[static_cast<unsigned char>( kAlphabet[i] )] = static_cast<std::uint8_t>( i );
    }
    return values;
}();

} // namespace

bool IsBlank( std::string_view text )
{
    return std::ranges::all_of( text, []( char character ) { return IsBlank( character ); } );
}

std::optional<WideInteger> ParseInteger( std::string_view text )
{
    bool const isNegative = TakeBlanksAndSign( text );
    bool const isHexadecimal = text.starts_with( "0x" ) || text.starts_with( "0X" );
    if ( isHexadecimal )
    {
        text.remove_prefix( 2 );
    }
    std::uint64_t magnitude = 0;
    char const* const end = text.data() + text.size();
    auto const [rest, error] =
        std::from_chars( text.data(), end, magnitude, isHexadecimal ? 16 : 10 );
    if ( error != std::errc() || rest != end )
    {
        return std::nullopt;
    }
    WideInteger const value = isNegative ? -WideInteger{ magnitude } : WideInteger{ magnitude };
    if ( value < std::numeric_limits<std::int64_t>::min() )
    {
        return std::nullopt;
    }
    return value;
}

std::optional<double> ParseReal( std::string_view text )
{
    if ( EqualsIgnoringCase( text, "nan" ) )
    {
        return std::numeric_limits<double>::quiet_NaN();
    }
    bool const isNegative = TakeBlanksAndSign( text );
    double value = std::numeric_limits<double>::infinity();
    if ( !EqualsIgnoringCase( text, "infinity" ) && !EqualsIgnoringCase( text, "inf" ) )
    {
        // Leaves out what from_chars would read besides: another sign and "nan(...)".
        if ( text.empty() || !( IsDigit( text[0] ) || text[0] == '.' ) )
        {
            return std::nullopt;
        }
        char const* const end = text.data() + text.size();
        auto const [rest, error] = std::from_chars( text.data(), end, value );
        if ( error != std::errc() || rest != end )
        {
            return std::nullopt;
        }
    }
    return isNegative ? -value : value;
}

std::optional<CFAbsoluteTime> ParseDate( std::string_view text )
{
    constexpr std::string_view kForm = "0000-00-00T00:00:00Z";
    bool const hasForm = std::ranges::equal( text, kForm,
        []( char given, char form ) { return form == '0' ? IsDigit( given ) : given == form; } );
    if ( !hasForm )
    {
        return std::nullopt;
    }
    auto const field = [text]( std::size_t begin, std::size_t length )
    {
        int value = 0;
        std::from_chars( text.data() + begin, text.data() + begin + length, value );
        return value;
    };
    std::int64_t const days = DaysSince2001( field( 0, 4 ), field( 5, 2 ), field( 8, 2 ) );
    std::int64_t const minutes = ( days * 24 + field( 11, 2 ) ) * 60 + field( 14, 2 );
    return static_cast<CFAbsoluteTime>( minutes * 60 + field( 17, 2 ) );
}

bool Base64Decoder::Append( std::string_view text )
{
    for ( char const character : text )
    {
        std::uint8_t const value = kBase64Values[static_cast<unsigned char>( character )];
        if ( value == 64 && IsBlank( character ) )
        {
            continue;
        }
        // Padding takes the last one or two places of the last group.
        bool const isPadding = character == '=' && mCharacters >= 2;
        if ( !isPadding && ( value == 64 || mPadding != 0 ) )
        {
            return false;
        }
        mPadding += isPadding ? 1 : 0;
        mBits = mBits << 6 | ( isPadding ? 0U : value );
        if ( ++mCharacters == 4 )
        {
            for ( unsigned i = 0; i < 3 - mPadding; ++i )
            {
                mBytes.push_back( static_cast<std::uint8_t>( mBits >> ( 16 - 8 * i ) ) );
            }
            mCharacters = 0;
        }
    }
    return true;
}

std::optional<std::vector<std::uint8_t>> Base64Decoder::Finish()
{
    bool const isWhole = mCharacters == 0;
    std::vector<std::uint8_t> bytes = std::exchange( *this, Base64Decoder() ).mBytes;
    if ( !isWhole )
    {
        return std::nullopt;
    }
    return bytes;
}
