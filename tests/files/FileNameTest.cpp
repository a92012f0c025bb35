#include "files/mac/FileName.h"

#include "encoding/InvalidTextEncoding.h"
#include "files/FileNameErrors.h"
#include "platform/CFErrors.h"
#include "platform/CFStrings.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace
{

using MacintoshPlatform::FileName;
using namespace std::string_literals;
constexpr auto kUTF8 = kCFStringEncodingUTF8;

FileName Named( std::u16string const& text )
{
    FileName name;
    std::vector<UniChar> const units( text.begin(), text.end() );
    name.Set( MakeCFString( units.data(), std::ssize( units ) ).Get() );
    return name;
}

FileName OnDisk( std::string const& bytes )
{
    return FileName::FromFileSystem( ConstData( bytes ) );
}

std::u16string Text( FileName const& name )
{
    return { name.Units().begin(), name.Units().end() };
}

} // namespace

TEST( Name, IsRefusedWhenItIsNoneAndLeavesTheOldOne )
{
    FileName name = Named( u"old" );
    EXPECT_THROW( name.Set( nullptr ), IllegalFileName );
    EXPECT_THROW( name.Set( ConstData( "a/b" ), kUTF8 ), IllegalFileName );
    EXPECT_THROW( name.Set( ConstData(), kUTF8 ), IllegalFileNameLength );
    EXPECT_THROW( name.Set( ConstData( "\xff" ), kUTF8 ), CFStringCreateError );
    EXPECT_EQ( u"old", Text( name ) );
    EXPECT_THROW( OnDisk( "a/b" ), IllegalFileName );
    EXPECT_THROW( OnDisk( "" ), IllegalFileNameLength );
    EXPECT_THROW( Named( std::u16string( 65536 + 3, u'a' ) ), IllegalFileNameLength );
    std::string const tooLong( 256, 'a' );
    EXPECT_THROW( name.Set( ConstData( tooLong ), kUTF8 ), IllegalFileNameLength );
    EXPECT_THROW( OnDisk( tooLong ), IllegalFileNameLength );
    EXPECT_TRUE( name.Length() == 256 && name.Units().empty() );
    EXPECT_EQ( 255, FileName( &tooLong[1], kUTF8 ).Length() );
    EXPECT_EQ( u"a:b\0\xD800"s, Text( Named( u"a:b\0\xD800"s ) ) );
}

TEST( Name, ReadsFromTheFileSystemAsUTF8DoesAndReplacesOtherBytes )
{
    for ( char const* const text : { "a", "\xC2\x80", "\xE0\xA0\x80", "\xED\x9F\xBF",
              "\xEE\x80\x80", "\xF0\x90\x80\x80z", "\xF4\x8F\xBF\xBF", "\xEF\xBB\xBF\x61" } )
        EXPECT_EQ( Text( FileName( text, kUTF8 ) ), Text( OnDisk( text ) ) ) << text;
    for ( std::string const text : { "\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xE2\x82",
              "\xE2\xFF\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF9\x80\x80\x80", "\xFF" } )
        EXPECT_EQ( u'a' + std::u16string( text.size(), u'\xFFFD' ), Text( OnDisk( 'a' + text ) ) );
}

TEST( Name, IsTestedAtItsEnds )
{
    // Has it the prefix, suffix and extension, and has it them ignoring case?
    for ( auto const& [name, other, expected] :
        { std::tuple( "Abc", "ab", "--- ---" ), { "xBc", "xb", "--- p--" },
            { "yz", "YZ", "--- ps-" }, { "{", "[", "--- ---" }, { "a.txt", "txt", "-se -se" },
            { "a.txt", ".tXT", "--- -se" }, { "a.txt", "xt", "-s- -s-" },
            { "txt", "txt", "ps- ps-" }, { ".txt", ".txt", "pse pse" }, { "a.", "", "pse pse" },
            { "a", "aa", "--- ---" }, { "\xC3\xA9", "\xE9", "--- ---" } } )
    {
        FileName const tested = OnDisk( name );
        auto const answers = [&tested]( auto const& end, bool ignoreCase )
        {
            return std::string() + ( tested.HasPrefix( end, ignoreCase ) ? 'p' : '-' ) +
                   ( tested.HasSuffix( end, ignoreCase ) ? 's' : '-' ) +
                   ( tested.HasExtension( end, ignoreCase ) ? 'e' : '-' );
        };
        EXPECT_EQ( expected, answers( other, false ) + ' ' + answers( other, true ) ) << name;
        FileName const end = *other == '\0' ? FileName() : OnDisk( other );
        EXPECT_EQ( expected, answers( end, false ) + ' ' + answers( end, true ) ) << name;
    }
}

TEST( Name, GivesPartsOfItselfAndItselfAsUTF8 )
{
    EXPECT_EQ( u"20\u0131", Text( Named( u"20\u0131:7" ).PrefixDigits() ) );
    FileName const name = Named( u"b.txt" );
    EXPECT_EQ( u"b", Text( name.NameBeforeExtension( Named( u".tXT" ), true ) ) );
    EXPECT_EQ( u"txt", Text( name.NameAfterPrefix( Named( u"B." ), true ) ) );
    EXPECT_THROW( name.NameBeforeExtension( "tXT", true ), ExtensionDoesNotMatch );
    EXPECT_THROW( name.NameAfterPrefix( "B", true ), PrefixDoesNotMatch );
    EXPECT_THROW( Named( u".txt" ).NameBeforeExtension( ".txt", false ), IllegalFileName );
    EXPECT_THROW( name.NameAfterPrefix( name, false ), IllegalFileName );
    FileName const half = Named( std::u16string( 128, u'x' ) );
    EXPECT_THROW( half.Concatenate( half ), IllegalFileName );
    EXPECT_STREQ( "\xC3\xA9\xF0\x9F\x98\x80", Named( u"\xE9\xD83D\xDE00" ).MakeStringy().Text() );
    EXPECT_TRUE( FileName().MakeStringy().IsNull() );
    EXPECT_THROW( Named( u"\xD800" ).MakeStringy(), InvalidTextEncoding );
    EXPECT_EQ( AdviceFileTypes::Text(), Named( u".Txt" ).ExtensionType() );
}

TEST( Name, ComparesByUnits )
{
    for ( auto const& [a, b, difference, ignoringCase] : { std::tuple( u"ab"s, u"abc"s, -1, -1 ),
              { u"b", u"a", 1, 'B' - 'a' }, { u"a", u"A", 32, 32 }, { u"z", u"Z", 32, 0 },
              { u"\xFFFF", u"\1", -2, -2 }, { u"a", u"a", 0, 0 }, { u"b\0"s, u"b", 1, 1 } } )
    {
        EXPECT_EQ( difference, FileName::StrCmp( Named( a ), Named( b ) ) );
        EXPECT_EQ( ignoringCase, FileName::CompareIgnoreCase( Named( a ), Named( b ) ) );
        EXPECT_EQ( a == b, FileName::Equal( Named( a ), Named( b ) ) );
    }
}

TEST( WildCard, MatchesUnitByUnitWithinABoundedTime )
{
    for ( auto const& [name, pattern, expected] :
        { std::tuple( "", "", true ), { "", "*", true }, { "a", "", false }, { "a", "a**", true },
            { "*", "?", true }, { "*a", "*", false }, { "ab", "a*b*", true }, { "ab", "*?b", true },
            { "ab", "?", false }, { "aab", "*ab", true }, { "a\xFF.txt", "a?.t*", true } } )
    {
        FileName const tested = *name == '\0' ? FileName() : OnDisk( name );
        EXPECT_EQ( expected, tested.MatchesWildCard( pattern ) ) << name << ' ' << pattern;
    }
    EXPECT_FALSE( Named( u"a\0"s ).MatchesWildCard( "a" ) );
    std::string const hostile = "*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*ab"; // trying would not end
    EXPECT_FALSE( OnDisk( std::string( 255, 'a' ) ).MatchesWildCard( hostile.c_str() ) );
}

TEST( FileType, GoesWithTheFirstRowOfItsExtension )
{
    using namespace AdviceFileTypes;
    char const* const extensions[] = { nullptr, ".qzm", ".qzg", ".qzf", ".htm", ".txt", ".log",
        ".bkg", ".dylib", ".dat", "", "", "", nullptr, nullptr };
    for ( int number = 0; number <= 14; ++number )
        EXPECT_STREQ( extensions[number], ExtensionOfType( MorvekFileType( number ) ) );
    for ( auto const& [extension, type] : { std::pair( ".HTML", HTML() ), { "", Site() },
              { ".Qzf", Advice() }, { ".qna", Miscellany() }, { "qzf", Miscellany() } } )
        EXPECT_EQ( type, TypeOfExtension( extension ) ) << extension;
    int number = 0;
    for ( auto* const kind : { Masthead, Pool, Advice, HTML, Text, Log, BackLog, Inspector,
              Notation, Site, Profile, Preferences, Miscellany } )
        EXPECT_EQ( MorvekFileType( ++number ), kind() );
}
