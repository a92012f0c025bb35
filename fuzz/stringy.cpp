// A program of operations on three Stringys and on three std::strings that may be missing.

#include "foundation/Stringy.h"
#include "foundation/MakeString.h"
#include "fuzz/FuzzInput.h"

#include <array>
#include <climits>
#include <optional>
#include <string>

using std::string_view;

namespace
{

using Model = std::optional<std::string>;

constexpr std::size_t kLongest = 600;

void RequireEqual( Stringy const& text, Model const& model, char const* what )
{
    Require( text.IsNull() == !model.has_value(), what );
    Require( text.IsEmpty() == model.value_or( "" ).empty(), what );
    Require( text.Size() == ( model ? model->size() + 1 : 0 ), what );
    Require( !model || string_view( text.Text(), text.Size() ) == *model + '\0', what );
    // Up to 127 characters lie inside; exactly 127 need not.
    auto const place = reinterpret_cast<std::uintptr_t>( text.Text() );
    bool const isInside = place - reinterpret_cast<std::uintptr_t>( &text ) < sizeof text;
    Require( text.IsNull() || text.Size() == 128 || isInside == ( text.Size() < 128 ), what );
}

Model NullIfEmpty( string_view text )
{
    return text.empty() ? Model() : Model( text );
}

string_view Trimmed( string_view text, bool alsoBehind = true )
{
    constexpr string_view kWhite = "\t\n\r ";
    text.remove_prefix( std::min( text.find_first_not_of( kWhite ), text.size() ) );
    return alsoBehind ? text.substr( 0, text.find_last_not_of( kWhite ) + 1 ) : text;
}

string_view Cut( string_view text, std::int64_t start, std::int64_t count )
{
    auto const from = std::clamp<std::int64_t>( start, 0, std::ssize( text ) );
    return text.substr( static_cast<std::size_t>( from ),
        static_cast<std::size_t>( std::max<std::int64_t>( count, 0 ) ) );
}

std::string InCase( std::string text, char first, char last )
{
    for ( char& c : text )
        c = c >= first && c <= last ? static_cast<char>( c ^ 0x20 ) : c;
    return text;
}

int Sign( int number )
{
    return ( number > 0 ) - ( number < 0 );
}

struct Pair
{
    Stringy text;
    Model model;
};

// What is asked of one text, and of it together with another and a zero-terminated one.
void Ask( Pair const& a, Pair const& b, char const* word, FuzzInput& input )
{
    std::string const text = a.model.value_or( "" ), other = b.model.value_or( "" );
    std::string const upper = InCase( text, 'a', 'z' ), otherUpper = InCase( other, 'a', 'z' );
    char const c = input.Take<char>();
    Require( a.text.Find( c ) == static_cast<int>( text.find( c ) ), "Find" );
    Require( a.text.FindFromRight( c ) == static_cast<int>( text.rfind( c ) ), "from the right" );
    auto const index = unsigned{ input.Take<std::uint8_t>() };
    if ( index != a.text.Size() )
        Require( a.text[index] == ( index < text.size() ? text[index] : 0 ), "[]" );

    char const* const cText = text.c_str();
    Require( a.text.Contains( word ) ==
                 ( word == nullptr ? !a.model : a.model && std::strstr( cText, word ) ),
        "Contains" );
    Require(
        a.text.StartsWith( word ) == ( word == nullptr || text.starts_with( word ) ), "prefix" );
    std::string const wordUpper = InCase( word == nullptr ? "" : word, 'a', 'z' );
    Require( a.text.StartsWithIgnoringCase( word ) == upper.starts_with( wordUpper ), "any case" );
    Require(
        a.text.StartsWithIgnoringCase( b.text ) == upper.starts_with( otherUpper ), "Stringy" );
    Require( a.text.EqualIgnoringCase( b.text ) == ( a.model && b.model && upper == otherUpper ),
        "EqualIgnoringCase" );
    int const order = text.empty() || other.empty() ? other.empty() - text.empty()
                                                    : Sign( std::strcmp( cText, other.c_str() ) );
    Require( Sign( a.text.Compare( b.text ) ) == order, "Compare" );
    Require(
        ( a.text < b.text ) == ( order < 0 ) && ( a.text == b.text ) == ( order == 0 ), "<, ==" );
    int const inCase = a.model && b.model ? Sign( upper.compare( otherUpper ) )
                                          : a.model.has_value() - b.model.has_value();
    Require( Sign( a.text.CompareNoCase( b.text ) ) == inCase, "CompareNoCase" );

    auto const start = input.Take<std::int16_t>(), count = input.Take<std::int16_t>();
    auto const length = static_cast<std::int64_t>( text.size() );
    RequireEqual( a.text.Left( count ), NullIfEmpty( Cut( text, 0, count ) ), "Left" );
    RequireEqual(
        a.text.Right( count ), NullIfEmpty( Cut( text, length - count, count ) ), "Right" );
    RequireEqual( a.text.Mid( start, count ), NullIfEmpty( Cut( text, start, count ) ), "Mid" );
    RequireEqual(
        a.text.Mid( start ), NullIfEmpty( Cut( text, start, length ) ), "Mid to the end" );
    bool const isThere = text.find( c ) != text.npos;
    RequireEqual( a.text.SubstringAfterLastSeparator( c ),
        NullIfEmpty( isThere ? Trimmed( string_view( text ).substr( text.rfind( c ) + 1 ) ) : "" ),
        "SubstringAfterLastSeparator" );
    Require( MakeString( a.text ) == text, "as a range" );
    RequireEqual( a.text + b.text, other.empty() ? a.model : text + other, "+" );
    RequireEqual( a.text + c, c == 0 ? a.model : text + c, "+ a character" );
}

void Split( char const* word, FuzzInput& input )
{
    char const separator = std::max( input.Take<char>(), '\1' );
    auto const most = static_cast<unsigned>( input.TakeUpTo( 9 ) );
    bool const strip = input.TakeUpTo( 1 ) == 1;
    std::vector<Stringy> fields;
    unsigned const count =
        Stringy::SplitSeparatedStringsIntoArray( word, separator, fields, most, strip );
    std::vector<Model> expected;
    string_view rest = word == nullptr ? "" : word;
    for ( bool isMore = !rest.empty(); isMore && expected.size() < most; )
    {
        string_view const field = rest.substr( 0, rest.find( separator ) );
        expected.push_back( NullIfEmpty( strip ? Trimmed( field ) : field ) );
        isMore = field.size() < rest.size();
        rest.remove_prefix( field.size() + isMore );
    }
    Require( count == expected.size() && fields.size() == count, "how many fields" );
    for ( unsigned i = 0; i < count; ++i )
        RequireEqual( fields[i], expected[i], "a field" );
}

// Does one thing to a text and its model.
void Change( Pair& a, Pair const& b, char const* word, FuzzInput& input )
{
    std::string const text = a.model.value_or( "" ), other = b.model.value_or( "" );
    Model const wordOrNone = word == nullptr ? Model() : Model( word );
    char const c = input.Take<char>(), d = input.Take<char>();
    int const number = input.Take<std::int8_t>() * 16'777'215;
    auto const part = static_cast<unsigned>( input.Take<std::uint8_t>() % ( text.size() + 1 ) );
    auto const append = [&]( string_view added )
    { a.model = added.empty() ? a.model : text + std::string( added ); };
    switch ( input.TakeUpTo( 15 ) )
    {
    case 0:
        a.text = b.text;
        a.model = &a == &b ? a.model : NullIfEmpty( other );
        break;
    case 1:
        a.text = word;
        a.model = wordOrNone;
        break;
    case 2:
        a.text += c;
        append( string_view( &c, c != 0 ) );
        break;
    case 3:
        a.text += word;
        append( wordOrNone.value_or( "" ) );
        break;
    case 4:
        a.text += b.text;
        append( other );
        break;
    case 5:
        a.text += ConstData( string_view( b.text.Text(), b.text.Length() ) );
        append( other );
        break;
    case 6: // a part of its own, from within
        a.text += ConstData( string_view( a.text.Text(), a.text.Length() ).substr( part ) );
        append( string_view( text ).substr( part ) );
        break;
    case 7: // its own end, which is zero-terminated
        if ( a.model && part > 0 )
        {
            a.text = a.text.Text() + part;
            a.model = text.c_str() + part;
        }
        break;
    case 8:
        Require( a.text.Replace( c, d ) == std::ranges::count( text, c ), "how many are replaced" );
        if ( a.model )
            std::ranges::replace( *a.model, c, d );
        break;
    case 9:
        a.text.MakeLower();
        a.model = a.model ? Model( InCase( text, 'A', 'Z' ) ) : a.model;
        break;
    case 10:
        a.text.MakeUpper();
        a.model = a.model ? Model( InCase( text, 'a', 'z' ) ) : a.model;
        break;
    case 11:
        a.text.TrimLeft();
        a.model = text.empty() ? a.model : NullIfEmpty( Trimmed( text, false ) );
        break;
    case 12:
        a.text.StripLeadingAndTrailingWhite();
        a.model = NullIfEmpty( Trimmed( text ) );
        break;
    case 13: // doubled, so that it gets long
        a.text += a.text;
        append( text );
        break;
    case 14:
        a.text = Stringy( b.text ).Left( INT_MAX );
        a.model = NullIfEmpty( other );
        break;
    default:
        a.text = Stringy( number );
        a.model = std::to_string( number );
    }
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    std::array<Pair, 3> pairs;
    for ( int steps = 0; steps < 20 && !input.IsEmpty(); ++steps )
    {
        std::size_t const choice = input.Take<std::uint8_t>();
        Pair& a = pairs[choice % 3];
        Pair const& b = pairs[choice / 3 % 3];
        std::string const bytes( input.TakeText( input.Take<std::uint8_t>() ) );
        std::vector<char> const word =
            ExactCopy( { bytes.c_str(), std::strlen( bytes.c_str() ) + 1 } );
        char const* const text = choice >= 250 ? nullptr : word.data();
        if ( a.text.Length() + b.text.Length() > kLongest )
            a = Pair();
        Change( a, b, text, input );
        RequireEqual( a.text, a.model, "after a change" );
        Ask( a, b, text, input );
        Split( text, input );
    }
    return 0;
}
