#include <CoreFoundation/CFBundle.h>

#include "linux/CoreFoundation/CFDictionaryObject.h"
#include "linux/CoreFoundation/CFURLObject.h"
#include "linux/CoreFoundation/PropertyListReader.h"
#include "linux/CoreFoundation/RegularFile.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <clocale>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{

using OwnedReference = Owned<CFObject const>;

// The dictionary in an XML property list of a bundle's folder; null when there is none. Throws
// std::bad_alloc.
OwnedReference ReadDictionary( std::string const& folder, std::string const& name )
{
    if ( folder.empty() )
    {
        return nullptr;
    }
    std::vector<UInt8> bytes;
    int const error = ReadRegularFile( folder + name, bytes );
    if ( error == ENOMEM )
    {
        throw std::bad_alloc();
    }
    if ( error != 0 )
    {
        return nullptr;
    }
    try
    {
        std::string_view const document(
            reinterpret_cast<char const*>( bytes.data() ), bytes.size() );
        OwnedReference list = ReadPropertyList( document, CFStringObject::Mutability::kImmutable );
        return list->Kind() == CFKind::kDictionary ? std::move( list ) : nullptr;
    }
    catch ( PropertyListError const& )
    {
        return nullptr;
    }
}

bool IsLanguageCharacter( char character )
{
    return ( character >= 'A' && character <= 'Z' ) || ( character >= 'a' && character <= 'z' ) ||
           character == '_';
}

// The folders to look into, in order: none, then those of the languages of the process's locale.
std::vector<std::string> LanguageFolders()
{
    std::vector<std::string> folders{ "" };
    char const* const locale = std::setlocale( LC_MESSAGES, nullptr );
    std::string_view const text = locale != nullptr ? locale : "C";
    std::string_view const name = text.substr( 0, text.find_first_of( ".@" ) );
    if ( name != "C" && name != "POSIX" &&
         std::all_of( name.begin(), name.end(), IsLanguageCharacter ) )
    {
        folders.push_back( std::string( name ) + ".lproj/" );
        folders.push_back( std::string( name.substr( 0, name.find( '_' ) ) ) + ".lproj/" );
    }
    folders.push_back( "en.lproj/" );
    return folders;
}

// The real path of the running program. When the file was replaced since the start, the kernel
// marks the old name.
std::string ExecutablePath()
{
    constexpr std::string_view kMark = " (deleted)";
    char buffer[PATH_MAX];
    ssize_t const length = readlink( "/proc/self/exe", buffer, sizeof buffer );
    std::string path( buffer, static_cast<std::size_t>( std::max<ssize_t>( length, 0 ) ) );
    struct stat status = {};
    if ( path.ends_with( kMark ) && lstat( path.c_str(), &status ) != 0 )
    {
        path.resize( path.size() - kMark.size() );
    }
    return path;
}

// PREFIX/share/NAME/ for PREFIX/bin/NAME.
std::string MainBundleFolder()
{
    std::string const path = ExecutablePath();
    std::size_t const name = path.rfind( '/' ) + 1;
    if ( name == 0 )
    {
        return {};
    }
    std::string const binaries = path.substr( 0, name - 1 );
    std::string const prefix = binaries.substr( 0, binaries.rfind( '/' ) + 1 );
    return ( prefix.empty() ? "/" : prefix ) + "share/" + path.substr( name ) + '/';
}

} // namespace

struct CFBundleObject final : CFObject
{
    CFBundleObject( std::string itsFolder, Lifetime lifetime )
        : CFObject( CFKind::kBundle, lifetime ), folder( std::move( itsFolder ) )
    {
    }

    CFDictionaryRef Info();
    CFDictionaryRef LocalInfo();

    std::string const folder; // ends in "/"; empty when there is none

  private:
    std::once_flag mInfoRead;
    std::once_flag mLocalInfoRead;
    OwnedReference mInfo;
    OwnedReference mLocalInfo;
};

CFDictionaryRef CFBundleObject::Info()
{
    std::call_once( mInfoRead,
        [this]
        {
            mInfo = ReadDictionary( folder, "Info.plist" );
            if ( mInfo == nullptr )
            {
                mInfo.reset( new CFDictionaryObject );
            }
        } );
    return static_cast<CFDictionaryRef>( static_cast<CFTypeRef>( mInfo.get() ) );
}

CFDictionaryRef CFBundleObject::LocalInfo()
{
    std::call_once( mLocalInfoRead,
        [this]
        {
            for ( std::string const& language : LanguageFolders() )
            {
                if ( mLocalInfo == nullptr && !language.empty() )
                {
                    mLocalInfo = ReadDictionary( folder, language + "InfoPlist.strings" );
                }
            }
        } );
    return static_cast<CFDictionaryRef>( static_cast<CFTypeRef>( mLocalInfo.get() ) );
}

CFBundleRef CFBundleGetMainBundle( void )
{
    return NullIfThrown(
        []
        {
            static CFBundleRef const bundle =
                new CFBundleObject( MainBundleFolder(), CFObject::Lifetime::kConstant );
            return bundle;
        } );
}

CFBundleRef CFBundleCreate( CFAllocatorRef, CFURLRef bundleURL )
{
    return NullIfThrown(
        [&]() -> CFBundleRef
        {
            std::optional<std::string> const path = AbsoluteFilePath( bundleURL );
            struct stat status = {};
            if ( !path || stat( path->c_str(), &status ) != 0 || !S_ISDIR( status.st_mode ) )
            {
                return nullptr;
            }
            return new CFBundleObject(
                WithDirectoryForm( *path, true ), CFObject::Lifetime::kCounted );
        } );
}

CFDictionaryRef CFBundleGetInfoDictionary( CFBundleRef bundle )
{
    return NullIfThrown( [&] { return bundle != nullptr ? bundle->Info() : nullptr; } );
}

CFDictionaryRef CFBundleGetLocalInfoDictionary( CFBundleRef bundle )
{
    return NullIfThrown( [&] { return bundle != nullptr ? bundle->LocalInfo() : nullptr; } );
}

CFURLRef CFBundleCopyResourceURL(
    CFBundleRef bundle, CFStringRef resourceName, CFStringRef resourceType, CFStringRef subDirName )
{
    return NullIfThrown(
        [&]() -> CFURLRef
        {
            std::optional<std::string> const name = PathBytes( resourceName );
            std::string const type = PathBytes( resourceType ).value_or( "" );
            std::string const subfolder = PathBytes( subDirName ).value_or( "" );
            if ( bundle == nullptr || bundle->folder.empty() || !name || name->empty() )
            {
                return nullptr;
            }
            std::string file = subfolder.empty() ? subfolder : WithDirectoryForm( subfolder, true );
            file += *name;
            if ( !type.empty() )
            {
                file.append( "." ).append( type );
            }
            for ( std::string const& language : LanguageFolders() )
            {
                std::string path = bundle->folder;
                path.append( language ).append( file );
                struct stat status = {};
                if ( stat( path.c_str(), &status ) == 0 )
                {
                    return CreateFileURL( path, S_ISDIR( status.st_mode ) );
                }
            }
            return nullptr;
        } );
}
