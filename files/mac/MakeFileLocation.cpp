#include "files/mac/MakeFileLocation.h"

#include "foundation/MakeString.h"
#include "platform/CFStrings.h"
#include "platform/CFURLs.h"

#include <string>
#include <string_view>

namespace MacintoshPlatform
{

FileLocation MakeFileLocation(
    char const* path, unsigned length, unsigned long encoding, long pathStyle )
{
    AutoCFString const text = MakeCFString(
        ConstData( std::string_view( path, length ) ), static_cast<CFStringEncoding>( encoding ) );
    AutoCFURL const url = MakeURLFromFileSystemPath( text.Get(), pathStyle, true );
    return FileLocation( url.Get() );
}

FileLocation MakeFileLocation( ConstData path )
{
    std::string const bytes = MakeString( path );
    return MakeFileLocation(
        bytes.data(), path.Length(), kCFStringEncodingUTF8, kCFURLPOSIXPathStyle );
}

FileLocation MakeFileLocationOfBytes( ConstData path )
{
    AutoCFURL const url = MakeURLFromFileSystemBytes( path, true );
    return FileLocation( url.Get() );
}

FileLocation MakeRelativeFileLocation(
    FileLocation const& base, char const* relativePath, unsigned long encoding, long pathStyle )
{
    AutoCFString const text =
        MakeCFString( relativePath, static_cast<CFStringEncoding>( encoding ) );
    AutoCFURL const url =
        MakeURLFromFileSystemPathRelativeToBase( text.Get(), pathStyle, true, base.URL() );
    return FileLocation( url.Get() );
}

} // namespace MacintoshPlatform
