// print_property_lists: reads documents from the standard input, each behind its length in four
// bytes, and answers each with its text in one form (PropertyListText.h), which also has its length
// in front: 0 when the document is refused, 1 when its text has no form.

#include "fuzz/PropertyListText.h"

#include <cstdint>
#include <cstdio>

int main()
{
    std::string document;
    for ( std::uint32_t length = 0; std::fread( &length, sizeof length, 1, stdin ) == 1; )
    {
        document.resize( length );
        if ( std::fread( document.data(), 1, length, stdin ) != length )
            return 1;
        Held<CFTypeRef> const root = ReadPropertyList( document, kCFPropertyListImmutable );
        std::string const answer = root ? PropertyListText( root.get() ).value_or( "?" ) : "";
        std::uint32_t const answerLength = static_cast<std::uint32_t>( answer.size() );
        std::fwrite( &answerLength, sizeof answerLength, 1, stdout );
        std::fwrite( answer.data(), 1, answer.size(), stdout );
    }
    return std::fflush( stdout ) == 0 ? 0 : 1;
}
