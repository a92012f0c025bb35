#include <CoreFoundation/CFPropertyList.h>

#include "linux/CoreFoundation/CFDataObject.h"
#include "linux/CoreFoundation/PropertyListReader.h"

#include <new>
#include <string_view>

namespace
{

// Made before the program begins, so that it is there when there is no memory to make it.
CFStringRef const gOutOfMemory = CFStringObject::Create(
    std::u16string_view( u"Out of memory" ), { .lifetime = CFObject::Lifetime::kConstant } );

CFPropertyListRef CreateOrThrow( CFDataRef data, CFOptionFlags mutabilityOption )
{
    std::string_view document;
    if ( data != nullptr )
    {
        document = { reinterpret_cast<char const*>( data->bytes.data() ), data->bytes.size() };
    }
    return ReadPropertyList( document, mutabilityOption == kCFPropertyListMutableContainersAndLeaves
                                           ? CFStringObject::Mutability::kMutable
                                           : CFStringObject::Mutability::kImmutable )
        .release();
}

} // namespace

CFPropertyListRef CFPropertyListCreateFromXMLData(
    CFAllocatorRef, CFDataRef data, CFOptionFlags mutabilityOption, CFStringRef* errorString )
{
    CFStringRef complaint = nullptr;
    CFPropertyListRef result = nullptr;
    try
    {
        result = CreateOrThrow( data, mutabilityOption );
    }
    catch ( PropertyListError const& error )
    {
        complaint = errorString == nullptr ? nullptr
                                           : CFStringCreateWithCString( kCFAllocatorDefault,
                                                 error.what(), kCFStringEncodingISOLatin1 );
    }
    catch ( std::bad_alloc const& )
    {
    }
    if ( errorString != nullptr )
    {
        *errorString = result == nullptr && complaint == nullptr ? gOutOfMemory : complaint;
    }
    return result;
}
