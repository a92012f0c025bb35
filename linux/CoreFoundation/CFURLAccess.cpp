#include <CoreFoundation/CFURLAccess.h>

#include "linux/CoreFoundation/CFURLObject.h"
#include "linux/Descriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <new>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace
{

constexpr std::size_t kLimit = kCFURLMaximumResourceLength;

// Reads to the end of the file, or until there are more bytes than the limit. Answers 0 or an
// errno value.
int ReadToEnd( int file, std::size_t expected, std::vector<UInt8>& bytes )
{
    bytes.resize( std::clamp<std::size_t>( expected, 4095, kLimit ) + 1 );
    std::size_t used = 0;
    while ( used <= kLimit )
    {
        if ( used == bytes.size() )
        {
            bytes.resize( std::min( 2 * used, kLimit + 1 ) );
        }
        ssize_t const count = read( file, bytes.data() + used, bytes.size() - used );
        if ( count == 0 )
        {
            bytes.resize( used );
            return 0;
        }
        if ( count < 0 && errno != EINTR )
        {
            return errno;
        }
        used += static_cast<std::size_t>( std::max<ssize_t>( count, 0 ) );
    }
    return EFBIG;
}

// Reads a regular file. The item is first held without opening it, so that its kind is known and
// stays the same before anything that may have an effect is done to it.
int ReadRegularFile( std::string const& path, std::vector<UInt8>& bytes )
{
    Descriptor const item( open( path.c_str(), O_PATH | O_CLOEXEC ) );
    struct stat status = {};
    if ( item.Get() < 0 || fstat( item.Get(), &status ) != 0 )
    {
        return errno;
    }
    if ( !S_ISREG( status.st_mode ) )
    {
        return EINVAL;
    }
    auto const size = static_cast<std::size_t>( std::max<off_t>( status.st_size, 0 ) );
    if ( size > kLimit )
    {
        return EFBIG;
    }
    std::string const itself = "/proc/self/fd/" + std::to_string( item.Get() );
    Descriptor const file( open( itself.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC ) );
    return file.Get() < 0 ? errno : ReadToEnd( file.Get(), size, bytes );
}

SInt32 CodeOf( int error )
{
    switch ( error )
    {
    case ENOENT:
    case ENOTDIR:
        return kCFURLResourceNotFoundError;
    case EACCES:
    case EPERM:
        return kCFURLResourceAccessViolationError;
    default:
        return kCFURLUnknownError;
    }
}

// Reads the resource into `data`; answers 0 or a code.
SInt32 ReadResource( CFURLRef url, CFDataRef& data )
{
    std::optional<std::string> const path = AbsoluteFilePath( url );
    if ( !path )
    {
        return kCFURLUnknownSchemeError;
    }
    std::vector<UInt8> bytes;
    int const error = ReadRegularFile( *path, bytes );
    if ( error != 0 )
    {
        return CodeOf( error );
    }
    data = CFDataCreate( kCFAllocatorDefault, bytes.data(), static_cast<CFIndex>( bytes.size() ) );
    return data != nullptr ? 0 : kCFURLUnknownError;
}

} // namespace

Boolean CFURLCreateDataAndPropertiesFromResource( CFAllocatorRef, CFURLRef url,
    CFDataRef* resourceData, CFDictionaryRef* properties, CFArrayRef, SInt32* errorCode )
{
    SInt32 code = kCFURLImproperArgumentsError;
    CFDataRef data = nullptr;
    if ( url != nullptr && resourceData != nullptr )
    {
        try
        {
            code = ReadResource( url, data );
        }
        catch ( std::bad_alloc const& )
        {
            code = kCFURLUnknownError;
        }
    }
    if ( resourceData != nullptr )
    {
        *resourceData = data;
    }
    if ( properties != nullptr )
    {
        *properties = nullptr;
    }
    if ( errorCode != nullptr )
    {
        *errorCode = code;
    }
    return code == 0;
}
