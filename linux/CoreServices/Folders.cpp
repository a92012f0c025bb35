#include <CoreServices/Folders.h>

#include "linux/CoreServices/CatalogItem.h"
#include "linux/CoreServices/ErrorCodes.h"
#include "linux/CoreServices/UserFolders.h"

#include <cerrno>
#include <climits>
#include <optional>
#include <utility>

namespace
{

struct Place
{
    std::string path;
    mode_t mode; // of folders that have to be made
};

std::string TemporaryFolderOfUser()
{
    std::optional<std::string> const path = PathInEnvironment( "TMPDIR" );
    CatalogItem folder;
    return path && ReadFolder( *path, folder ) == 0 ? *path : "/tmp";
}

std::optional<std::string> FolderOfUser( OSType type )
{
    switch ( type )
    {
    case kTemporaryFolderType:
        return TemporaryFolderOfUser();
    case kPreferencesFolderType:
        return UserFolder( "XDG_CONFIG_HOME", "/.config" );
    case kApplicationSupportFolderType:
        return UserFolder( "XDG_DATA_HOME", "/.local/share" );
    case kDocumentsFolderType:
        return UserDirectory( "XDG_DOCUMENTS_DIR", "/Documents" );
    case kDesktopFolderType:
        return UserDirectory( "XDG_DESKTOP_DIR", "/Desktop" );
    default:
        return {};
    }
}

std::optional<std::string> SharedFolder( OSType type, char const* applicationSupport )
{
    switch ( type )
    {
    case kTemporaryFolderType:
        return "/tmp";
    case kPreferencesFolderType:
        return "/etc/xdg";
    case kApplicationSupportFolderType:
        return applicationSupport;
    default:
        return {};
    }
}

std::optional<Place> FindPlace( SInt16 domain, OSType type )
{
    std::optional<std::string> path;
    mode_t mode = 0755;
    switch ( domain )
    {
    case kOnSystemDisk:
    case kOnAppropriateDisk:
    case kUserDomain:
        path = FolderOfUser( type );
        mode = 0700;
        break;
    case kLocalDomain:
        path = SharedFolder( type, "/usr/local/share" );
        break;
    case kSystemDomain:
        path = SharedFolder( type, "/usr/share" );
        break;
    default:
        break;
    }
    return path ? std::optional( Place{ *path, mode } ) : std::nullopt;
}

// Makes a folder and those above it that are missing. Answers 0 or an errno value.
int MakeFolders( Place const& place )
{
    for ( std::size_t end = 0; end != std::string::npos; )
    {
        end = place.path.find( '/', end + 1 );
        std::string const path = place.path.substr( 0, end );
        CatalogItem folder;
        if ( ReadFolder( path, folder ) != 0 && mkdir( path.c_str(), place.mode ) != 0 &&
             errno != EEXIST )
        {
            return errno;
        }
    }
    return 0;
}

OSErr FindOrMake( Place const& place, bool mayMake, FSRef& ref )
{
    if ( place.path.size() >= PATH_MAX )
    {
        return bdNamErr;
    }
    FSRef found;
    CatalogItem folder;
    int error = ReadRealPath( place.path, found.path );
    if ( error == ENOENT && mayMake )
    {
        error = MakeFolders( place );
        error = error == 0 ? ReadRealPath( place.path, found.path ) : error;
    }
    if ( error == 0 )
    {
        error = ReadFolder( found.path, folder );
    }
    if ( error == 0 )
    {
        found.identity = folder.Identity();
        ref = std::move( found );
    }
    return error == ENOENT ? OSErr{ fnfErr } : ResultCodeForPath( error, place.path );
}

} // namespace

OSErr FSFindFolder( SInt16 vRefNum, OSType folderType, Boolean createFolder, FSRef* foundRef )
{
    return CodeOf(
        [&]() -> OSErr
        {
            if ( foundRef == nullptr )
            {
                return paramErr;
            }
            std::optional<Place> const place = FindPlace( vRefNum, folderType );
            return place ? FindOrMake( *place, createFolder != 0, *foundRef ) : OSErr{ fnfErr };
        } );
}
