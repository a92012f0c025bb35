#include "platform/CFDictionaries.h"

#include "platform/AutoCFString.h"
#include "platform/CFErrors.h"

#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFPropertyList.h>

namespace
{

AutoCFDictionary ShareOrThrow( CFDictionaryRef dictionary )
{
    if ( dictionary == nullptr )
    {
        throw CFBundleGetInfoDictionaryFailed();
    }
    return Duplicate( dictionary );
}

} // namespace

AutoCFDictionary DictionaryCreateFromXMLData( CFDataRef data, unsigned long options )
{
    CFStringRef errorString = nullptr;
    CFPropertyListRef const list =
        CFPropertyListCreateFromXMLData( kCFAllocatorDefault, data, options, &errorString );
    if ( errorString != nullptr )
    {
        AutoCFString::DisposeCFStringRef( errorString );
        throw DictionaryCreateFromXMLDataFailed();
    }
    if ( CFGetTypeID( list ) != CFDictionaryGetTypeID() )
    {
        CFRelease( list );
        throw DictionaryCreateFromXMLDataFailed();
    }
    return AutoCFDictionary( static_cast<CFDictionaryRef>( list ) );
}

CFTypeRef GetDictionaryValue( CFDictionaryRef dictionary, CFStringRef key )
{
    void const* value = nullptr;
    if ( !CFDictionaryGetValueIfPresent( dictionary, key, &value ) )
    {
        throw CFDictionaryGetValueIfPresentFailed();
    }
    return value;
}

AutoCFDictionary BundleGetInfoDictionary( CFBundleRef bundle )
{
    return ShareOrThrow( CFBundleGetInfoDictionary( bundle ) );
}

AutoCFDictionary BundleGetLocalInfoDictionary( CFBundleRef bundle )
{
    return ShareOrThrow( CFBundleGetLocalInfoDictionary( bundle ) );
}
