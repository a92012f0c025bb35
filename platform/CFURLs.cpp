#include "platform/CFURLs.h"

#include "platform/CFErrors.h"
#include "platform/FSRefs.h"

#include <CoreFoundation/CFURLAccess.h>
#include <CoreServices/CFURLFiles.h>

namespace
{

// Adopts what a call created, or throws.
template<typename Error, typename Holder>
Holder Checked( Holder holder )
{
    if ( holder.Get() == nullptr )
    {
        throw Error();
    }
    return holder;
}

} // namespace

AutoCFURL MakeURL( CFStringRef text )
{
    return Checked<CFURLCreateWithStringFailed>(
        AutoCFURL( CFURLCreateWithString( kCFAllocatorDefault, text, nullptr ) ) );
}

AutoCFURL MakeURL( FSRef const& ref )
{
    return Checked<CFURLCreateFromFSRefFailed>(
        AutoCFURL( CFURLCreateFromFSRef( kCFAllocatorDefault, &ref ) ) );
}

AutoCFURL MakeURL( FSSpec const& spec )
{
    return MakeURL( MakeFSRef( spec ) );
}

AutoCFURL MakeURLFromFileSystemPath( CFStringRef path, CFURLPathStyle pathStyle, bool isDirectory )
{
    return Checked<CFURLCreateWithFileSystemPathFailed>( AutoCFURL(
        CFURLCreateWithFileSystemPath( kCFAllocatorDefault, path, pathStyle, isDirectory ) ) );
}

AutoCFURL MakeURLFromFileSystemBytes( ConstData path, bool isDirectory )
{
    // An empty range may have no bytes to point to.
    static constexpr unsigned char kNothing = 0;
    return Checked<CFURLCreateWithFileSystemPathFailed>(
        AutoCFURL( CFURLCreateFromFileSystemRepresentation( kCFAllocatorDefault,
            path.IsEmpty() ? &kNothing : path.begin(), static_cast<CFIndex>( path.Length() ),
            isDirectory ) ) );
}

AutoCFURL MakeURLFromFileSystemPathRelativeToBase(
    CFStringRef path, CFURLPathStyle pathStyle, bool isDirectory, CFURLRef base )
{
    return Checked<CFURLCreateWithFileSystemPathRelativeToBaseFailed>(
        AutoCFURL( CFURLCreateWithFileSystemPathRelativeToBase(
            kCFAllocatorDefault, path, pathStyle, isDirectory, base ) ) );
}

AutoCFURL CreateCopyAppendingPathComponent( CFURLRef url, CFStringRef component, bool isDirectory )
{
    return Checked<CFURLCreateCopyAppendingPathComponentFailed>(
        AutoCFURL( CFURLCreateCopyAppendingPathComponent(
            kCFAllocatorDefault, url, component, isDirectory ) ) );
}

AutoCFURL CreateCopyDeletingLastPathComponent( CFURLRef url )
{
    return Checked<CFURLCreateCopyDeletingLastPathComponentFailed>(
        AutoCFURL( CFURLCreateCopyDeletingLastPathComponent( kCFAllocatorDefault, url ) ) );
}

AutoCFString CopyLastPathComponent( CFURLRef url )
{
    return Checked<CFURLCopyLastPathComponentFailed>(
        AutoCFString( CFURLCopyLastPathComponent( url ) ) );
}

AutoCFString FileSystemPath( CFURLRef url, CFURLPathStyle pathStyle )
{
    return Checked<CFURLCopyFileSystemPathFailed>(
        AutoCFString( CFURLCopyFileSystemPath( url, pathStyle ) ) );
}

AutoCFData GetData( CFURLRef url )
{
    CFDataRef data = nullptr;
    SInt32 code = 0;
    if ( !CFURLCreateDataAndPropertiesFromResource(
             kCFAllocatorDefault, url, &data, nullptr, nullptr, &code ) )
    {
        throw CFURLErrorCode( code );
    }
    return AutoCFData( data );
}
