#include "files/mac/UniqueName.h"

#include "files/FileErrors.h"
#include "files/mac/OperationErrors.h"

#include <array>
#include <cerrno>
#include <unistd.h>

namespace MacintoshPlatform
{

std::string MakeUniqueName( std::string_view prefix )
{
    std::array<unsigned char, 16> random;
    if ( getentropy( random.data(), random.size() ) != 0 )
    {
        ThrowFileError<CreateUniqueFileLocationFailed>( errno, std::string( prefix ) );
    }
    std::string name( prefix );
    for ( unsigned const byte : random )
    {
        name += "0123456789abcdef"[byte >> 4];
        name += "0123456789abcdef"[byte & 15];
    }
    return name;
}

} // namespace MacintoshPlatform
