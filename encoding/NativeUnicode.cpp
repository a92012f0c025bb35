#include "encoding/NativeUnicode.h"

#include "foundation/AutoNullTerminated.h"

#include <cstddef>
#include <cstdlib>
#include <langinfo.h>
#include <memory>
#include <string_view>
#include <utility>

// The C library's wide characters are UTF-32 here.
static_assert( sizeof( wchar_t ) == sizeof( UTF32::Unit ) );

namespace MacintoshPlatform
{

namespace
{

constexpr std::size_t kConversionError = static_cast<std::size_t>( -1 );

} // namespace

ConstDataOfCapacity<48> IANAEncodingName( Local8Bit )
{
    return ConstDataOfCapacity<48>( std::string_view( nl_langinfo( CODESET ) ) );
}

AutoUString<Local8Bit> FromNativeUnicode( UStringRef<UTF32> text )
{
    AutoNullTerminated<UTF32::Unit> const terminated( text.begin(), text.end(), false );
    auto const* const wide = reinterpret_cast<wchar_t const*>( terminated.Text() );
    std::size_t const length = std::wcstombs( nullptr, wide, 0 );
    if ( length == kConversionError )
        throw WideToMultiByteConvertError();
    auto bytes = std::make_unique_for_overwrite<char[]>( length + 1 );
    if ( std::wcstombs( bytes.get(), wide, length ) == kConversionError )
        throw WideToMultiByteConvertError();
    bytes[length] = '\0';
    return { std::move( bytes ), length };
}

AutoUString<UTF32> ToNativeUnicode( UStringRef<Local8Bit> text )
{
    AutoNullTerminated<char> const terminated( text.begin(), text.end(), false );
    std::size_t const length = std::mbstowcs( nullptr, terminated.Text(), 0 );
    if ( length == kConversionError )
        throw MultiByteToWideConvertError();
    auto units = std::make_unique_for_overwrite<UTF32::Unit[]>( length + 1 );
    auto* const wide = reinterpret_cast<wchar_t*>( units.get() );
    if ( std::mbstowcs( wide, terminated.Text(), length ) == kConversionError )
        throw MultiByteToWideConvertError();
    units[length] = 0;
    return { std::move( units ), length };
}

} // namespace MacintoshPlatform
