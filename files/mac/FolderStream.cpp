#include "files/mac/FolderStream.h"

#include <cerrno>
#include <string_view>

namespace MacintoshPlatform
{

FolderStream::FolderStream( Descriptor folder ) : mStream( fdopendir( folder.Number() ) )
{
    if ( IsOpen() )
    {
        static_cast<void>( folder.GiveUp() );
    }
}

dirent const* FolderStream::Next()
{
    for ( ;; )
    {
        errno = 0;
        dirent const* const entry = readdir( mStream.get() );
        if ( entry == nullptr )
        {
            return nullptr;
        }
        std::string_view const name = entry->d_name;
        if ( name != "." && name != ".." )
        {
            return entry;
        }
    }
}

} // namespace MacintoshPlatform
