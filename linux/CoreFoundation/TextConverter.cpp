#include "linux/CoreFoundation/TextConverter.h"

#include <bit>
#include <cerrno>
#include <cstdint>
#include <new>

TextConverter::TextConverter( char const* to, char const* from )
    : mConversion( iconv_open( to, from ) )
{
    if ( !IsKnown() && errno == ENOMEM )
    {
        throw std::bad_alloc();
    }
}

TextConverter::~TextConverter()
{
    if ( IsKnown() )
    {
        iconv_close( mConversion );
    }
}

bool TextConverter::IsKnown() const
{
    // The value that iconv_open gives for a failure.
    return mConversion != reinterpret_cast<iconv_t>( std::intptr_t{ -1 } );
}

std::optional<std::string> TextConverter::Convert( std::string_view text )
{
    iconv( mConversion, nullptr, nullptr, nullptr, nullptr );
    std::string converted;
    char* in = const_cast<char*>( text.data() );
    std::size_t inLeft = text.size();
    // The last round has no input and writes what the conversion still holds back.
    for ( bool isFlushing = text.empty();; )
    {
        char block[1024];
        char* out = block;
        std::size_t outLeft = sizeof block;
        std::size_t const result = isFlushing
                                       ? iconv( mConversion, nullptr, nullptr, &out, &outLeft )
                                       : iconv( mConversion, &in, &inLeft, &out, &outLeft );
        int const error = result == static_cast<std::size_t>( -1 ) ? errno : 0;
        converted.append( block, out );
        if ( error != 0 && error != E2BIG )
        {
            return std::nullopt;
        }
        if ( error == 0 && isFlushing )
        {
            return converted;
        }
        isFlushing = isFlushing || error == 0;
    }
}

char const* HostUTF16Name()
{
    return std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";
}

char const* HostUTF32Name()
{
    return std::endian::native == std::endian::little ? "UTF-32LE" : "UTF-32BE";
}
