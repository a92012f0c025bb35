#include "files/FileLocationDate.h"

#include "files/FileNameErrors.h"
#include "foundation/Stringy.h"

#include <string_view>

namespace
{

constexpr std::size_t kDateLength = 8;

unsigned Number( std::string_view digits )
{
    unsigned number = 0;
    for ( char const digit : digits )
    {
        number = number * 10 + static_cast<unsigned char>( digit - '0' );
    }
    return number;
}

} // namespace

void GetDateFromNameInFileLocation(
    FileLocation const& location, unsigned& year, unsigned& month, unsigned& day )
{
    Stringy const text = location.Name().MakeStringy();
    std::string_view const name( text.Text(), text.Length() );
    if ( name.size() <= kDateLength )
    {
        throw IllegalFileName();
    }
    year = Number( name.substr( 0, 4 ) );
    month = Number( name.substr( 4, 2 ) );
    day = Number( name.substr( 6, 2 ) );
}
