#include "files/mac/FileLocationWithWildcard.h"

#include "files/FileLocationWithWildcard.h"
#include "files/mac/MakeFileLocation.h"

namespace MacintoshPlatform
{

char const* MakeFileLocationWithWildcard(
    char const* path, FileLocation& out, unsigned long encoding, long pathStyle )
{
    ConstData directoryPart;
    char const* const pattern = MakeFileLocationWithWildcardUnix( path, directoryPart );
    out = MakeFileLocation( path, directoryPart.Length(), encoding, pathStyle );
    return pattern;
}

} // namespace MacintoshPlatform
