#include "platform/CFBytes.h"

#include "platform/CFErrors.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>

AutoCFData MakeCFData( ConstData bytes )
{
    AutoCFData data( CFDataCreate( kCFAllocatorDefault, bytes.begin(), bytes.Length() ) );
    if ( data.Get() == nullptr )
    {
        throw CFDataCreateError();
    }
    return data;
}

Data ExtractCFData( CFDataRef data )
{
    if ( data == nullptr )
    {
        return {};
    }
    CFIndex const length = CFDataGetLength( data );
    if ( length > UINT32_MAX )
    {
        throw std::length_error( "ExtractCFData" );
    }
    auto bytes =
        std::make_unique_for_overwrite<unsigned char[]>( static_cast<std::size_t>( length ) );
    CFDataGetBytes( data, CFRangeMake( 0, length ), bytes.get() );
    unsigned char* const begin = bytes.release();
    return { begin, begin + length };
}
