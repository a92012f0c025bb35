#include "foundation/MakeString.h"
#include "platform/CFBytes.h"
#include "platform/CFDictionaries.h"
#include "platform/CFErrors.h"
#include "platform/CFStrings.h"
#include "platform/CFURLs.h"
#include "platform/FSRefs.h"
#include "platform/OSError.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFURLAccess.h>
#include <fstream>
#include <memory>

namespace
{

using namespace std::string_literals;

constexpr char kList[] =
    "<plist><dict><key>CFBundleVersion</key><string>9.1.2</string></dict></plist>";

std::string Text( CFStringRef string )
{
    return MakeString( string, kCFStringEncodingUTF8, 0 );
}

AutoCFString String( std::string const& text )
{
    return MakeCFString( text, kCFStringEncodingUTF8 );
}

AutoCFURL URLOf( std::string const& path, bool isDirectory = true )
{
    return MakeURLFromFileSystemPath( String( path ).Get(), kCFURLPOSIXPathStyle, isDirectory );
}

std::string Text( AutoCFURL const& url )
{
    return Text( MakeCFString( url.Get() ).Get() );
}

std::string Text( AutoCFData const& data )
{
    Data const bytes = ExtractCFData( data.Get() );
    std::unique_ptr<unsigned char[]> const owner( bytes.begin() );
    return MakeString( bytes );
}

} // namespace

TEST( Holders, CountTheirReferences )
{
    AutoCFString string = String( "a" );
    auto const count = [object = string.Get()] { return CFGetRetainCount( object ); };
    {
        AutoCFString shared = Duplicate( string.Get() );
        AutoCFString moved( std::move( shared ) );
        EXPECT_EQ( nullptr, shared.Get() );
        AutoCFString other = Duplicate( string.Get() );
        EXPECT_EQ( 3, count() ) << "retained, but moved as it is";
        other = std::move( moved );
        EXPECT_EQ( 2, count() ) << "move-assigned over the same object";
        AutoCFString& alias = other;
        other = std::move( alias );
        EXPECT_EQ( string.Get(), other.Get() ) << "move-assigned to itself";
        other.Reset();
        EXPECT_EQ( 1, count() ) << "emptied";
        EXPECT_EQ( nullptr, Duplicate( other.Get() ).Get() );
        other = Duplicate( string.Get() );
    }
    EXPECT_EQ( 1, count() ) << "destroyed";
    AutoCFString::DisposeCFStringRef( nullptr );
    AutoCFString::DisposeCFStringRef( Duplicate( string.Get() ).GiveUp() );
    EXPECT_EQ( 1, count() ) << "released";
    AutoCFData const bytes = Duplicate( MakeCFData( ConstData( "a"s ) ).Get() );
    AutoCFData::DisposeCFDataRef( Duplicate( bytes.Get() ).GiveUp() );
    AutoCFURL const url = URLOf( "/" );
    AutoCFURL::DisposeCFURLRef( Duplicate( url.Get() ).GiveUp() );
    AutoCFDictionary const entries =
        DictionaryCreateFromXMLData( MakeCFData( std::string_view( kList ) ).Get(), 2 );
    AutoCFDictionary::DisposeCFDictionaryRef( Duplicate( entries.Get() ).GiveUp() );
    for ( CFTypeRef const object :
        { CFTypeRef( bytes.Get() ), CFTypeRef( url.Get() ), CFTypeRef( entries.Get() ) } )
        EXPECT_EQ( 1, CFGetRetainCount( object ) );
}

TEST( Bytes, GoInAndComeOut )
{
    EXPECT_EQ( "a\0b"s, Text( MakeCFData( ConstData( "a\0b"s ) ) ) );
    long const before = AllocationCount();
    EXPECT_EQ( nullptr, ExtractCFData( nullptr ).begin() );
    EXPECT_EQ( before, AllocationCount() );
}

TEST( Dictionaries, AreReadFromPropertyListsWithADictionaryRootOnly )
{
    AutoCFDictionary const dictionary =
        DictionaryCreateFromXMLData( MakeCFData( std::string_view( kList ) ).Get(), 2 );
    CFTypeRef const value =
        GetDictionaryValue( dictionary.Get(), String( "CFBundleVersion" ).Get() );
    EXPECT_EQ( "9.1.2", Text( static_cast<CFStringRef>( value ) ) );
    EXPECT_EQ( 1, CFGetRetainCount( value ) );
    EXPECT_THROW( GetDictionaryValue( dictionary.Get(), String( "Other" ).Get() ),
        CFDictionaryGetValueIfPresentFailed );
    for ( std::string_view const text : { "<array><string>a</string></array>", "no list" } )
    {
        long const before = LiveAllocations();
        EXPECT_THROW( DictionaryCreateFromXMLData( MakeCFData( text ).Get(), 2 ),
            DictionaryCreateFromXMLDataFailed );
        EXPECT_EQ( before, LiveAllocations() ) << text;
    }
}

TEST( Dictionaries, OfABundleAreShared )
{
    TemporaryFolder const folder;
    CFBundleRef const bundle = CFBundleCreate( nullptr, URLOf( folder.Path() ).Get() );
    AutoCFDictionary const info = BundleGetInfoDictionary( bundle );
    EXPECT_EQ( 2, CFGetRetainCount( info.Get() ) );
    EXPECT_THROW( BundleGetLocalInfoDictionary( bundle ), CFBundleGetInfoDictionaryFailed );
    CFRelease( bundle );
    EXPECT_EQ( 1, CFGetRetainCount( info.Get() ) );
    EXPECT_THROW( BundleGetInfoDictionary( nullptr ), CFBundleGetInfoDictionaryFailed );
}

TEST( Strings, AreMadeFromEveryFormOrRefused )
{
    CFStringEncoding const latin1 = kCFStringEncodingISOLatin1;
    UniChar const units[] = { 'x', 0xe9 };
    AutoCFURL const url = MakeURL( String( "x%C3%A9" ).Get() );
    AutoCFString const made[] = { MakeCFString( units, 2 ), MakeCFString( "x\xe9", latin1 ),
        MakeCFString( UStringRef<UTF8>( "x\xc3\xa9" ) ),
        MakeCFString( ConstData( "x\xe9"s ), latin1 ), MakeCFString( "x\xe9"s, latin1 ) };
    for ( AutoCFString const& string : made )
        EXPECT_EQ( "x\xc3\xa9", Text( string.Get() ) );
    EXPECT_EQ( "a\0b"s, Text( String( "a\0b"s ).Get() ) );
    AutoCFString const ofURL = MakeCFString( url.Get() );
    EXPECT_EQ( CFURLGetString( url.Get() ), ofURL.Get() );
    EXPECT_EQ( 2, CFGetRetainCount( ofURL.Get() ) ) << "the URL's own and this one";
    EXPECT_THROW( String( "\xff" ), CFStringCreateError );
    EXPECT_THROW( MakeCFString( "a", kCFStringEncodingInvalidId ), CFStringCreateError );
    EXPECT_THROW( MakeCFString( UStringRef<UTF8>( "\xc0\x80" ) ), CFStringCreateError );
    EXPECT_THROW( MakeCFString( CFURLRef() ), CFStringCreateError );
}

TEST( Strings, AreWrittenUpToWhatTheEncodingLacks )
{
    AutoCFString const text = String( "a\xc3\xa9z" );
    EXPECT_EQ( "a", MakeString( text.Get(), kCFStringEncodingASCII, 0 ) );
    EXPECT_EQ( "a?z", MakeString( text.Get(), kCFStringEncodingASCII, '?' ) );
    AutoCFString const empty = EmptyCFString();
    EXPECT_EQ( empty.Get(), EmptyCFString().Get() );
    EXPECT_EQ( "", Text( empty.Get() ) );
    EXPECT_EQ( 2, CFGetRetainCount( empty.Get() ) ) << "the process's own and this one";
}

TEST( URLs, AreMadeAndTakenApartOrRefusedWithAnErrorNamedAfterTheCall )
{
    CFURLPathStyle const style = kCFURLPOSIXPathStyle;
    AutoCFURL const url = URLOf( "/a b/c" );
    AutoCFString const d = String( "d" );
    EXPECT_EQ( "file:///a%20b/c/", Text( url ) );
    EXPECT_EQ( "file:///a%20b/c", Text( URLOf( "/a b/c", false ) ) );
    EXPECT_EQ( "c", Text( CopyLastPathComponent( url.Get() ).Get() ) );
    EXPECT_EQ( "/a b/c", Text( FileSystemPath( url.Get(), style ).Get() ) );
    EXPECT_EQ( "file:///a%20b/", Text( CreateCopyDeletingLastPathComponent( url.Get() ) ) );
    EXPECT_EQ( "file:///a%20b/c/d",
        Text( CreateCopyAppendingPathComponent( url.Get(), d.Get(), false ) ) );
    AutoCFURL const relative =
        MakeURLFromFileSystemPathRelativeToBase( d.Get(), style, true, url.Get() );
    EXPECT_EQ( "d/", Text( relative ) );
    EXPECT_FALSE( CFEqual( relative.Get(), URLOf( "d" ).Get() ) ) << "other base";
    AutoCFString const badOwner = String( "a \0b"s );
    CFStringRef const bad = badOwner.Get();
    AutoCFURL const mailOwner = MakeURL( String( "mailto:a" ).Get() );
    CFURLRef const mail = mailOwner.Get();
    EXPECT_THROW( MakeURL( bad ), CFURLCreateWithStringFailed );
    EXPECT_THROW( MakeURL( FSRef() ), CFURLCreateFromFSRefFailed );
    EXPECT_THROW(
        MakeURLFromFileSystemPath( bad, style, true ), CFURLCreateWithFileSystemPathFailed );
    EXPECT_THROW( MakeURLFromFileSystemPathRelativeToBase( bad, style, true, mail ),
        CFURLCreateWithFileSystemPathRelativeToBaseFailed );
    EXPECT_THROW( CreateCopyAppendingPathComponent( mail, bad, true ),
        CFURLCreateCopyAppendingPathComponentFailed );
    EXPECT_THROW( CreateCopyDeletingLastPathComponent( mail ),
        CFURLCreateCopyDeletingLastPathComponentFailed );
    EXPECT_THROW( CopyLastPathComponent( mail ), CFURLCopyLastPathComponentFailed );
    EXPECT_THROW( FileSystemPath( mail, style ), CFURLCopyFileSystemPathFailed );
}

TEST( Items, AreFoundAndReadOrRefusedWithTheReportedCode )
{
    TemporaryFolder const folder;
    std::ofstream( folder.Path( "a" ) ) << "text";
    AutoCFURL const there = URLOf( folder.Path( "a" ) );
    AutoCFURL const missing = URLOf( folder.Path( "b" ) );
    FSRef const ref = MakeFSRef( there.Get() );
    FSSpec spec;
    ASSERT_EQ( 0, FSGetCatalogInfo( &ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr ) );
    EXPECT_EQ( "file://" + folder.Path( "a" ), Text( MakeURL( ref ) ) );
    EXPECT_EQ( "file://" + folder.Path( "a" ), Text( MakeURL( spec ) ) );
    EXPECT_EQ( "text", Text( GetData( there.Get() ) ) );
    EXPECT_THROW( MakeFSRef( missing.Get() ), CFURLGetFSRefFailed );
    spec.name = folder.Path( "b" );
    using namespace ::testing;
    EXPECT_THAT( [&] { MakeURL( spec ); }, Throws<OSError>( Property( &OSError::GetCode, -43 ) ) );
    EXPECT_THAT( [&] { GetData( missing.Get() ); },
        Throws<CFURLErrorCode>(
            Property( &CFURLErrorCode::GetCode, kCFURLResourceNotFoundError ) ) );
}
