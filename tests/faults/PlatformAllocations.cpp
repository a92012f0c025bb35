#include "linux/AdministratorRights/AdministratorCommand.h"
#include "linux/AdministratorRights/CommandWords.h"
#include "platform/CFBytes.h"
#include "platform/CFDictionaries.h"
#include "platform/CFStrings.h"
#include "platform/CFURLs.h"
#include "platform/FSRefs.h"
#include "Shared/Portable/Processes/Mac/AgentProcess.h"
#include "tests/faults/AllocationTable.h"
#include "tests/linux/CoreFoundation/Held.h"
#include "tests/support/TemporaryFolder.h"

#include <CoreServices/CoreServices.h>
#include <CoreServices/POSIXResults.h>

#include <cerrno>
#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace std::string_view_literals;

namespace
{

constexpr CFStringEncoding kUTF8 = kCFStringEncodingUTF8;
constexpr CFStringEncoding kUTF16 = kCFStringEncodingUTF16;
constexpr CFStringEncoding kMacRoman = kCFStringEncodingMacRoman;
constexpr CFStringEncoding kLatin2 = 0x0202; // goes through iconv

// What the wrappers throw when a call gives nothing; the calls do not tell why.
constexpr char kNothingMade[] = "(CF|DictionaryCreate).*(Failed|CreateError|ErrorCode)";

std::string Show( Held<CFTypeRef> const& object )
{
    return Describe( Made( object.get() ) );
}

template<class Reference>
std::string Show( AutoCF<Reference> const& object )
{
    return Describe( object.Get() );
}

std::string Show( AutoCFURL const& url )
{
    return Text( CFURLGetString( Made( url.Get() ) ) );
}

std::string Show( FSRef const& ref )
{
    return ref.path;
}

// A bundle, and the user's folders.
struct Files
{
    Files()
    {
        Shell(
            folder.Path(), "mkdir en.lproj docs; echo '<dict><key>k</key><true/></dict>' | tee "
                           "Info.plist > en.lproj/InfoPlist.strings; echo 'XDG_DOCUMENTS_DIR=\"" +
                               folder.Path() + "/docs\"' > user-dirs.dirs" );
        setenv( "XDG_CONFIG_HOME", folder.Path().c_str(), 1 );
        FSGetCatalogInfo( &ref, 0, nullptr, nullptr, &spec, nullptr );
    }

    ~Files() { unsetenv( "XDG_CONFIG_HOME" ); }

    AutoCFURL URL( std::string const& name ) const
    {
        return MakeURLFromFileSystemBytes( ConstData( folder.Path( name ) ), false );
    }

    Held<CFBundleRef> Bundle() const
    {
        return Held<CFBundleRef>( Made( CFBundleCreate( nullptr, url.Get() ) ) );
    }

    TemporaryFolder folder;
    AutoCFURL url = URL( "" );
    FSRef ref = MakeFSRef( url.Get() );
    FSSpec spec;
};

std::string Parse( std::string const& list, CFOptionFlags option )
{
    AutoCFData const data = MakeCFData( ConstData( list ) );
    CFStringRef error = nullptr;
    Held<CFTypeRef> const result(
        CFPropertyListCreateFromXMLData( nullptr, data.Get(), option, &error ) );
    Held<CFStringRef> const owner( error );
    EXPECT_EQ( result == nullptr, error != nullptr );
    std::string const text = result != nullptr ? Show( result ) : Text( error );
    return text != "Out of memory" ? text : throw std::bad_alloc();
}

std::string Convert( CFStringEncoding from, CFStringEncoding to )
{
    return MakeString( MakeCFString( "a text of some length", from ).Get(), to, '?' );
}

std::string Extract( CFDataRef data )
{
    std::unique_ptr<unsigned char[]> const bytes( ExtractCFData( data ).begin() );
    return std::string( bytes.get(), bytes.get() + CFDataGetLength( data ) );
}

std::string Find( OSType type )
{
    FSRef found;
    return Code( FSFindFolder( kUserDomain, type, false, &found ) ) + found.path;
}

} // namespace

TEST( Allocation, CoreFoundation )
{
    char const list[] = "<plist><dict><key>k</key><array><integer>5</integer><real>2.5</real>"
                        "<true/><date>2001-01-01T00:00:05Z</date><data>YWJj</data><string>"
                        "a\xC3\xA9&lt;<![CDATA[b]]></string></array></dict></plist>";
    char const latin[] = "<?xml version='1.0' encoding='ISO-8859-2'?><string>a\xB1</string>";
    std::string const text = "a text of some length with \xC3\xA9";
    UniChar const units[40] = { 'a', 0xE9 };
    AutoCFString const string = MakeCFString( text, kUTF8 ), path = MakeCFString( "/a/e", kUTF8 );
    AutoCFData const data = MakeCFData( ConstData( "<dict><key>k</key><true/></dict>"sv ) );
    AutoCFURL const url = MakeURLFromFileSystemBytes( "/a/b"sv, true );
    CFStringRef const added = string.Get();
    void const* values[] = { added };
    auto const* const keyCalls = &kCFTypeDictionaryKeyCallBacks;
    auto const* const valueCalls = &kCFTypeDictionaryValueCallBacks;
    FailEachAllocation(
        {
            TRY( EmptyCFString() ),
            TRY( Parse( list, 0 ) ),
            TRY( Parse( list, 2 ) ),
            // The C library does not say why it could not load an encoding.
            TRY( Parse( latin, 0 ), "=Line 1: unknown encoding" ),
            TRY( Parse( "<plist><dict><key>", 0 ) ),
            TRY( DictionaryCreateFromXMLData( data.Get(), 0 ) ),
            TRY( Held<CFTypeRef>(
                CFDictionaryCreate( nullptr, values, values, 1, keyCalls, valueCalls ) ) ),
            TRY( Held<CFTypeRef>( CFDictionaryCreateMutable( nullptr, 0, keyCalls, valueCalls ) ) ),
            CHANGE( Parsed( "<array/>", 2 ),
                CFArrayAppendValue( As<CFMutableArrayRef>( it.get() ), added ), "=" ),
            CHANGE( Parsed( "<dict/>", 2 ),
                CFDictionarySetValue( As<CFMutableDictionaryRef>( it.get() ), added, added ), "=" ),
            CHANGE( Parsed( "<string>12345678</string>", 2 ),
                CFStringAppend( As<CFMutableStringRef>( it.get() ), added ), "=" ),
            TRY( MakeCFData( ConstData( text ) ) ),
            TRY( Extract( data.Get() ) ),
            TRY( MakeCFString( UStringRef<UTF8>( text ) ) ),
            TRY( MakeCFString( ConstData( text ), kUTF8 ) ),
            TRY( MakeCFString( units, 40 ) ),
            TRY( Convert( kLatin2, kUTF8 ) ),
            TRY( Convert( kUTF8, kLatin2 ), "=" ),
            TRY( Convert( kMacRoman, kUTF16 ) ),
            TRY( MakeURL( CFURLGetString( url.Get() ) ) ),
            TRY( MakeURLFromFileSystemPath( path.Get(), 0, true ) ),
            TRY( MakeURLFromFileSystemBytes( "/a\xFF"sv, true ) ),
            TRY( MakeURLFromFileSystemPathRelativeToBase( added, 0, true, url.Get() ) ),
            TRY( AutoCFURL( CFURLCreateWithString( nullptr, path.Get(), url.Get() ) ) ),
            TRY( CreateCopyAppendingPathComponent( url.Get(), added, true ) ),
            TRY( CreateCopyDeletingLastPathComponent( url.Get() ) ),
            TRY( CopyLastPathComponent( url.Get() ) ),
            TRY( FileSystemPath( url.Get(), 0 ) ),
        },
        kNothingMade );
    EXPECT_EQ( 1, CFGetRetainCount( added ) );
}

TEST( Allocation, CoreServicesAndProcesses )
{
    Files const files;
    AutoCFString const info = MakeCFString( "Info", kUTF8 ), plist = MakeCFString( "plist", kUTF8 );
    FailEachAllocation(
        {
            TRY( Made( CFBundleGetMainBundle() ) != nullptr ),
            TRY( BundleGetInfoDictionary( files.Bundle().get() ) ),
            TRY( BundleGetLocalInfoDictionary( files.Bundle().get() ) ),
            TRY( AutoCFURL( CFBundleCopyResourceURL(
                files.Bundle().get(), info.Get(), plist.Get(), nullptr ) ) ),
            TRY( GetData( files.URL( "Info.plist" ).Get() ) ),
            TRY( MakeFSRef( files.url.Get() ) ),
            TRY( MakeFSRef( files.spec ) ),
            TRY( MakeURL( files.ref ) ),
            TRY( MakeURL( files.spec ) ),
            TRY( Find( kDocumentsFolderType ) ),
            TRY( Find( kPreferencesFolderType ) ),
            TRY( Code( FSResultOfError( EROFS, "/tmp" ) ) ),
            TRY( getPID(), "=0" ),
            TRY( SplitIntoWords( "/bin/a 'b c' \"a rather long word\"" )->at( 2 ) ),
            TRY( RunWithAdministratorRights( "a command line without a path" ) ),
        },
        kNothingMade );
}

TEST( Allocation, AdministratorCommand )
{
    if ( geteuid() != 0 )
    {
        GTEST_SKIP() << "SKIPPED: others than root would be asked for a password";
    }
    FailEachAllocation( { TRY( RunWithAdministratorRights( "/bin/true and long words" ) ) } );
}
