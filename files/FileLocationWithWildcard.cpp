#include "files/FileLocationWithWildcard.h"

#include "files/FileErrors.h"
#include "files/mac/FileLocationWithWildcard.h"

#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>

#include <string_view>

char const* MakeFileLocationWithWildcardUnix( char const* path, ConstData& directoryPart )
{
    if ( path == nullptr || *path == '\0' )
    {
        throw EmptyFileLocationError( 0 );
    }
    std::string_view const whole = path;
    std::size_t const last = whole.rfind( '/' ) + 1;
    if ( whole.find_first_of( "*?", last ) == std::string_view::npos )
    {
        directoryPart = whole;
        return nullptr;
    }
    directoryPart = whole.substr( 0, last );
    return path + last;
}

char const* MakeFileLocationWithWildcard( char const* path, FileLocation& out )
{
    MacintoshPlatform::FileLocation location;
    char const* const pattern = MacintoshPlatform::MakeFileLocationWithWildcard(
        path, location, kCFStringEncodingUTF8, kCFURLPOSIXPathStyle );
    out = location;
    return pattern;
}
