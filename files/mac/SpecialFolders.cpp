#include "files/mac/SpecialFolders.h"

#include "files/mac/FileErrors.h"

#include <CoreServices/Folders.h>
#include <CoreServices/MacErrors.h>

namespace MacintoshPlatform
{

FileLocation MakeFileLocation(
    MacFileType folderType, short domainOrVolume, unsigned char createFolder )
{
    FSRef ref;
    if ( FSFindFolder( domainOrVolume, folderType, createFolder, &ref ) != noErr )
    {
        throw CannotCreateSpecialFolder( 0 );
    }
    return FileLocation( ref );
}

} // namespace MacintoshPlatform
