#include <CoreFoundation/CFURLAccess.h>

#include "linux/CoreFoundation/CFURLObject.h"
#include "linux/CoreFoundation/RegularFile.h"

#include <cerrno>
#include <new>
#include <string>
#include <vector>

namespace
{

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
