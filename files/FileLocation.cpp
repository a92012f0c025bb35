#include "files/FileLocation.h"

#include "files/FileErrors.h"

FileLocation const& FileLocation::RequireNonEmpty() const
{
    if ( mPlatform.URL() == nullptr )
    {
        throw EmptyFileLocationError( 0 );
    }
    return *this;
}
