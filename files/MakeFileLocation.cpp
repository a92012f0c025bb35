#include "files/MakeFileLocation.h"

#include "encoding/AutoUString.h"
#include "encoding/Transcoder.h"
#include "files/mac/MakeFileLocation.h"
#include "foundation/MakeString.h"

#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>

#include <string>
#include <string_view>

FileLocation MakeFileLocation( char const* path )
{
    ConstData const bytes{ std::string_view( path ) };
    return MacintoshPlatform::MakeFileLocation(
        path, bytes.Length(), kCFStringEncodingUTF8, kCFURLPOSIXPathStyle );
}

FileLocation MakeFileLocation( ConstData path )
{
    return MacintoshPlatform::MakeFileLocation( path );
}

FileLocation MakeFileLocationOfBytes( ConstData path )
{
    return MacintoshPlatform::MakeFileLocationOfBytes( path );
}

FileLocation MakeFileLocation( UStringRef<UTF8> path )
{
    AutoUString<Local8Bit> const native = Transcoder<Local8Bit, UTF8>()( path );
    return MakeFileLocation( UStringRef<Local8Bit>( native ).Bytes() );
}

FileLocation MakeRelativeFileLocation( FileLocation const& base, char const* relativePath )
{
    return MacintoshPlatform::MakeRelativeFileLocation(
        base.Platform(), relativePath, kCFStringEncodingUTF8, kCFURLPOSIXPathStyle );
}

FileLocation MakeRelativeFileLocation( FileLocation const& base, UStringRef<UTF8> relativePath )
{
    std::string const bytes = MakeString( relativePath.Bytes() );
    return MakeRelativeFileLocation( base, bytes.c_str() );
}

bool IsAbsolutePath( char const* path )
{
    return path != nullptr && path[0] == '/';
}
