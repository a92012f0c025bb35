#include <CoreServices/CFURLFiles.h>
#include <CoreServices/MacErrors.h>

#include "linux/CoreFoundation/CFURLObject.h"
#include "linux/CoreServices/CatalogItem.h"

#include <optional>

OSErr FSpMakeFSRef( FSSpec const* spec, FSRef* newRef )
{
    return CodeOf(
        [&]() -> OSErr
        {
            if ( spec == nullptr || newRef == nullptr || !spec->name.starts_with( '/' ) )
            {
                return paramErr;
            }
            CatalogItem item;
            OSErr const result = ReadItemInFolder( spec->vRefNum, spec->parID, spec->name, item );
            if ( result == noErr )
            {
                *newRef = { spec->name, item.Identity() };
            }
            return result;
        } );
}

Boolean CFURLGetFSRef( CFURLRef url, FSRef* fsRef )
{
    OSErr const result = CodeOf(
        [&]() -> OSErr
        {
            std::optional<std::string> path = AbsoluteFilePath( url );
            CatalogItem item;
            if ( fsRef == nullptr || !path || ReadItem( *path, item ) != 0 )
            {
                return fnfErr;
            }
            *fsRef = { std::move( *path ), item.Identity() };
            return noErr;
        } );
    return result == noErr;
}

CFURLRef CFURLCreateFromFSRef( CFAllocatorRef, FSRef const* fsRef )
{
    return NullIfThrown(
        [&]() -> CFURLRef
        {
            CatalogItem item;
            bool const isThere = fsRef != nullptr && !fsRef->path.empty() &&
                                 ReadItem( fsRef->path, item ) == 0 &&
                                 item.Identity() == fsRef->identity;
            return isThere ? CreateFileURL( fsRef->path, item.IsFolder() ) : nullptr;
        } );
}
