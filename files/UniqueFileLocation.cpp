#include "files/UniqueFileLocation.h"

#include "files/mac/UniqueFileLocation.h"

FileLocation CreateUniqueFile( FileLocation const& folder, std::string_view prefix )
{
    return MacintoshPlatform::CreateUniqueFile( folder.RequireNonEmpty().Platform(), prefix );
}

FileLocation CreateUniqueDirectory( FileLocation const& folder, std::string_view prefix )
{
    return MacintoshPlatform::CreateUniqueDirectory( folder.RequireNonEmpty().Platform(), prefix );
}

FileLocation CreateTemporaryFile( std::string_view prefix )
{
    return MacintoshPlatform::CreateTemporaryFile( prefix );
}

FileLocation CreateTemporaryDirectory( std::string_view prefix )
{
    return MacintoshPlatform::CreateTemporaryDirectory( prefix );
}
