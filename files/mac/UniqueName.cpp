#include "files/mac/UniqueName.h"

#include "files/FileErrors.h"
#include "files/mac/OperationErrors.h"

#include <array>
#include <cerrno>
#include <unistd.h>

namespace MacintoshPlatform
{

namespace
{

constexpr std::size_t kMaxNameLength = 255;

std::string_view CutToLength( std::string_view text, std::size_t length )
{
    if ( text.size() <= length )
    {
        return text;
    }
    auto const continues = [text]( std::size_t at )
    { return ( static_cast<unsigned char>( text[at] ) & 0xC0 ) == 0x80; };
    std::size_t end = length;
    while ( end > 0 && length - end < 3 && continues( end ) )
    {
        --end;
    }
    return text.substr( 0, end );
}

} // namespace

std::string MakeUniqueName( std::string_view prefix )
{
    std::array<unsigned char, 16> random;
    if ( getentropy( random.data(), random.size() ) != 0 )
    {
        ThrowFileError<CreateUniqueFileLocationFailed>( errno, std::string( prefix ) );
    }
    std::string name( CutToLength( prefix, kMaxNameLength - 2 * random.size() ) );
    for ( unsigned const byte : random )
    {
        name += "0123456789abcdef"[byte >> 4];
        name += "0123456789abcdef"[byte & 15];
    }
    return name;
}

} // namespace MacintoshPlatform
