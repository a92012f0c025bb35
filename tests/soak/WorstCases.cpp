// worst_cases CASE N FOLDER: one worst case of size N for the script of the same name, which
// measures it. Prints the most memory that it took. Fails unless the answer is the right one.
// FOLDER is empty and may be written to.

#include "files/FileLoop.h"
#include "files/MakeFileLocation.h"
#include "files/TreeOperations.h"
#include "foundation/ExceptionPL.h"
#include "platform/CFDictionaries.h"
#include "platform/CFErrors.h"
#include "platform/CFURLs.h"
#include "Shared/Portable/Processes/Mac/AgentProcess.h"
#include "Shared/Portable/Processes/Mac/BSDProcessList.h"
#include "streams/StringHTTPReceiver.h"
#include "tests/soak/Soak.h"

#include <CoreFoundation/CFPropertyList.h>
#include <CoreFoundation/CFURLAccess.h>

#include <fcntl.h>
#include <list>
#include <map>
#include <set>

namespace
{

std::string Repeated( size_t n, std::string const& text )
{
    std::string all;
    for ( size_t i = 0; i < n; ++i )
        all += text;
    return all;
}

/// A property list of `n` bytes, nearly all of them a hole.
void ReadVersionFile( size_t n, std::string const& folder )
{
    std::string const path = folder + "/version.plist";
    std::ofstream( path ) << "<plist>";
    Require( truncate( path.c_str(), static_cast<off_t>( n ) ) == 0, "the file" );
    SInt32 code = 0;
    try
    {
        GetData( MakeURLFromFileSystemBytes( ConstData( path ), false ).Get() );
    }
    catch ( CFURLErrorCode const& error )
    {
        code = static_cast<SInt32>( error.GetCode() );
    }
    Require( code == kCFURLUnknownError, "a file that is too long is refused" );
}

/// `n` elements, each in the one before.
void ReadNestedElements( size_t n, std::string const& )
{
    for ( auto const* const element : { "<array>", "<dict><key>k</key>", "<string>", "<a>" } )
    {
        std::string const document = Repeated( n, element );
        AutoCFData const data( CFDataCreate(
            nullptr, reinterpret_cast<UInt8 const*>( document.data() ), std::ssize( document ) ) );
        CFStringRef error = nullptr;
        CFTypeRef const list = CFPropertyListCreateFromXMLData( nullptr, data.Get(), 0, &error );
        Require( list == nullptr && error != nullptr, "elements too deep are refused" );
        CFRelease( error );
    }
}

/// A pattern of `n` stars that fits no name of 255 units, and nearly does.
void MatchStars( size_t n, std::string const& )
{
    std::string const text( MacintoshPlatform::FileName::kMaximumLength, 'a' );
    auto const name = MacintoshPlatform::FileName::FromFileSystem( ConstData( text ) );
    std::string const stars( n, '*' ), pairs = Repeated( n, "*a" );
    Require( name.MatchesWildCard( stars.c_str() ), "stars match all" );
    Require( !name.MatchesWildCard( ( stars + 'b' ).c_str() ), "but for another end" );
    Require( name.MatchesWildCard( pairs.substr( 0, 510 ).c_str() ), "255 pairs match as many" );
    Require( !name.MatchesWildCard( ( pairs + 'b' ).c_str() ), "pairs do not match another end" );
    Require( !name.MatchesWildCard( pairs.c_str() ), "more pairs are too many" );
}

/// A folder of `n` items: gone through, walked, emptied.
void GoThroughFolder( size_t n, std::string const& folder )
{
    for ( size_t i = 0; i < n; ++i )
        std::ofstream( folder + "/item " + std::to_string( i ) );
    FileLocation const location = MakeFileLocation( ConstData( folder ) );
    size_t count = 0;
    for ( FileLoop loop( location, "*e* *" ); loop.Next(); )
        ++count;
    Require( count == n, "every item comes once" );

    struct Counter : TreeVisitor
    {
        void VisitItem( MacintoshPlatform::ItemPlace const&, struct stat const& ) override
        {
            ++items;
        }

        size_t items = 0;
    } counter;

    WalkTree( location, counter );
    Require( counter.items == n, "every item is visited once" );
    ForceDeleteContents( location );
    Require( !FileLoop( location ).Next(), "no item is left" );
}

/// A message of `n` bytes that is to be collected.
void CollectMessage( size_t n, std::string const& )
{
    std::string const piece( 4096, 'x' );
    std::string collected;
    StringHTTPReceiver bounded( collected, 1 << 20 );
    bounded.Start();
    size_t sent = 0;
    try
    {
        for ( ; sent < n; sent += piece.size() )
            bounded.Receive( ConstData( piece ) );
    }
    catch ( ExceptionPL const& )
    {
        n = sent;
    }
    Require( n == 1 << 20 && collected.size() == n, "no more than the maximum is collected" );
}

/// A table with `n` processes more.
void LookUpAmongProcesses( size_t n, std::string const& )
{
    std::list<Child> children;
    while ( children.size() < n )
        children.emplace_back( "staying" );
    kinfo_proc* list = nullptr;
    size_t count = 0;
    Require( GetBSDProcessList( &list, &count ) == 0, "there is no table" );
    std::set<pid_t> listed;
    for ( size_t i = 0; i < count; ++i )
        listed.insert( list[i].kp_proc.p_pid );
    std::free( list );
    for ( Child const& child : children )
        Require( listed.contains( child.pid ), "every process is listed" );
    for ( int i = 0; i < 10; ++i )
        getPID();
}

std::map<std::string, void ( * )( size_t n, std::string const& folder )> const kCases = {
    { "version file", ReadVersionFile }, { "nested elements", ReadNestedElements },
    { "stars", MatchStars }, { "folder", GoThroughFolder }, { "message", CollectMessage },
    { "processes", LookUpAmongProcesses } };

} // namespace

int main( int, char** arguments )
try
{
    kCases.at( arguments[1] )( std::stoul( arguments[2] ), arguments[3] );
    std::printf( "%ld\n", PeakMemory() );
    return EXIT_SUCCESS;
}

catch ( std::exception const& error )
{
    std::fprintf( stderr, "FAILED: %s\n", error.what() );
    return EXIT_FAILURE;
}
