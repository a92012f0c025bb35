#include <CoreServices/Aliases.h>

#include "linux/CoreServices/CatalogItem.h"
#include "linux/CoreServices/ErrorCodes.h"

#include <cerrno>
#include <climits>
#include <string_view>
#include <unistd.h>

namespace
{

// One step. Answers 0 or an errno value.
int ReadLink( std::string const& path, std::string& target )
{
    char text[PATH_MAX]; // the kernel's links are shorter
    ssize_t const length = readlink( path.c_str(), text, sizeof( text ) );
    if ( length < 0 )
    {
        return errno;
    }
    std::string_view const link( text, static_cast<std::size_t>( length ) );
    target = link.starts_with( '/' ) ? "" : FolderPath( path );
    if ( !target.empty() && !target.ends_with( '/' ) )
    {
        target += '/';
    }
    target += link;
    return 0;
}

OSErr ResultOfLink( int error )
{
    return error == ELOOP || error == ENOTDIR ? OSErr{ fnfErr } : ResultCode( error );
}

OSErr ResolveLink( std::string const& path, bool wholeChain, FSRef& ref, CatalogItem& item )
{
    std::string target;
    int error = wholeChain ? ReadRealPath( path, target ) : ReadLink( path, target );
    if ( error == 0 )
    {
        error = ReadItem( target, item );
    }
    if ( error == 0 )
    {
        ref = { target, item.Identity() };
    }
    return ResultOfLink( error );
}

} // namespace

OSErr FSResolveAliasFile(
    FSRef* theRef, Boolean resolveAliasChains, Boolean* targetIsFolder, Boolean* wasAliased )
{
    return CodeOf(
        [&]() -> OSErr
        {
            if ( theRef == nullptr || theRef->path.empty() || targetIsFolder == nullptr ||
                 wasAliased == nullptr )
            {
                return paramErr;
            }
            CatalogItem item;
            int const error = ReadItem( theRef->path, item );
            if ( error != 0 || item.Identity() != theRef->identity )
            {
                return error != 0 ? ResultCodeForPath( error, theRef->path ) : OSErr{ fnfErr };
            }
            bool const isLink = S_ISLNK( item.status.stx_mode );
            if ( isLink )
            {
                OSErr const result =
                    ResolveLink( theRef->path, resolveAliasChains != 0, *theRef, item );
                if ( result != noErr )
                {
                    return result;
                }
            }
            *targetIsFolder = item.IsFolder();
            *wasAliased = isLink;
            return noErr;
        } );
}
