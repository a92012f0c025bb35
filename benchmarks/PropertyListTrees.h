#pragma once

// Property lists, and what the reference and the project make of them.

#include <CoreFoundation/CoreFoundation.h>

#include <charconv>
#include <cstdint>
#include <ctime>
#include <expat.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace PropertyListTrees
{

using Path = std::vector<std::string>;

struct ReleaseObject
{
    using pointer = CFTypeRef;

    void operator()( CFTypeRef object ) const { CFRelease( object ); }
};

using HeldObject = std::unique_ptr<void const, ReleaseObject>;

// A property list, and the keys that lead to what is looked up in it.
struct Document
{
    Document( std::string itsText, std::vector<Path> itsStrings, std::vector<Path> itsIntegers )
        : text( std::move( itsText ) ),
          data( CFDataCreate( nullptr, reinterpret_cast<UInt8 const*>( text.data() ),
              static_cast<CFIndex>( text.size() ) ) ),
          strings( std::move( itsStrings ) ),
          integers( std::move( itsIntegers ) )
    {
    }

    std::string text;
    HeldObject data;
    std::vector<Path> strings;
    std::vector<Path> integers;
};

using Documents = std::vector<Document>;

// Text, data and keys in UTF-8 strings, numbers and dates decoded.
struct Node
{
    std::string text;
    std::vector<std::pair<std::string, Node>> children; // of an array, without keys

    union
    {
        std::int64_t integer = 0; // a truth value too
        double real;              // the seconds of a date too
    };
};

// The reference: expat, and nodes of one type. Nothing is checked but that it is XML.
class SimpleTree
{
  public:
    explicit SimpleTree( Document const& document )
    {
        std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype( &XML_ParserFree )> const
            parser( XML_ParserCreate( nullptr ), &XML_ParserFree );
        XML_SetUserData( parser.get(), this );
        XML_SetElementHandler( parser.get(), OnStart, OnEnd );
        XML_SetCharacterDataHandler( parser.get(), OnText );
        if ( XML_Parse( parser.get(), document.text.data(),
                 static_cast<int>( document.text.size() ), XML_TRUE ) != XML_STATUS_OK )
            throw std::runtime_error( "expat refuses the document" );
    }

    Node const* Root() const { return &mRoot; }

    static std::size_t Count( Node const* node ) { return node->children.size(); }

    static std::size_t Length( Node const* node ) { return node->text.size(); }

    static std::uint64_t Integer( Node const* node )
    {
        return static_cast<std::uint64_t>( node->integer );
    }

    static Node const* Child( Node const* node, std::string const& key )
    {
        for ( auto const& [name, child] : node->children )
            if ( name == key )
                return &child;
        throw std::runtime_error( "no such key" );
    }

  private:
    static bool IsContainer( std::string_view name )
    {
        return name == "dict" || name == "array" || name == "plist";
    }

    static void OnStart( void* userData, XML_Char const* name, XML_Char const** )
    {
        SimpleTree& tree = *static_cast<SimpleTree*>( userData );
        if ( name == std::string_view( "plist" ) )
            return;
        tree.mIsInLeaf = !IsContainer( name );
        if ( !tree.mIsInLeaf )
            tree.mOpen.push_back( tree.Add( {} ) );
    }

    static void OnText( void* userData, XML_Char const* text, int length )
    {
        SimpleTree& tree = *static_cast<SimpleTree*>( userData );
        if ( tree.mIsInLeaf )
            tree.mText.append( text, static_cast<std::size_t>( length ) );
    }

    static void OnEnd( void* userData, XML_Char const* name )
    {
        SimpleTree& tree = *static_cast<SimpleTree*>( userData );
        tree.mIsInLeaf = false;
        std::string_view const element = name;
        if ( element == "key" )
            tree.mKey = std::move( tree.mText );
        else if ( !IsContainer( element ) )
            tree.Add( Leaf( element, std::move( tree.mText ) ) );
        else if ( element != "plist" )
            tree.mOpen.pop_back();
        tree.mText.clear();
    }

    Node* Add( Node&& node )
    {
        if ( mOpen.empty() )
            return &( mRoot = std::move( node ) );
        return &mOpen.back()->children.emplace_back( std::move( mKey ), std::move( node ) ).second;
    }

    static Node Leaf( std::string_view element, std::string&& text )
    {
        Node node;
        if ( element == "string" )
            node.text = std::move( text );
        else if ( element == "integer" )
            std::from_chars( text.data(), text.data() + text.size(), node.integer );
        else if ( element == "real" )
            std::from_chars( text.data(), text.data() + text.size(), node.real );
        else if ( element == "date" )
            node.real = Seconds( text );
        else if ( element == "data" )
            node.text = Decoded( text );
        else
            node.integer = element == "true";
        return node;
    }

    static double Seconds( std::string const& date )
    {
        std::tm time{};
        strptime( date.c_str(), "%Y-%m-%dT%H:%M:%SZ", &time );
        return static_cast<double>( timegm( &time ) );
    }

    static std::string Decoded( std::string const& base64 )
    {
        static std::string const alphabet =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        static std::vector<signed char> const values = []
        {
            std::vector<signed char> table( 256, -1 );
            for ( std::size_t i = 0; i < alphabet.size(); ++i )
                table[static_cast<unsigned char>( alphabet[i] )] = static_cast<signed char>( i );
            return table;
        }();
        std::string bytes;
        unsigned bits = 0;
        unsigned count = 0;
        for ( char const character : base64 )
        {
            int const value = values[static_cast<unsigned char>( character )];
            if ( value < 0 )
                continue;
            bits = bits << 6 | static_cast<unsigned>( value );
            count += 6;
            if ( count >= 8 )
                bytes += static_cast<char>( bits >> ( count -= 8 ) );
        }
        return bytes;
    }

    Node mRoot;
    std::vector<Node*> mOpen;
    std::string mKey;
    std::string mText;
    bool mIsInLeaf = false;
};

class CoreFoundationTree
{
  public:
    explicit CoreFoundationTree( Document const& document )
        : mRoot( CFPropertyListCreateFromXMLData(
              nullptr, static_cast<CFDataRef>( document.data.get() ), 2, nullptr ) )
    {
    }

    CFTypeRef Root() const { return mRoot.get(); }

    static std::size_t Count( CFTypeRef node )
    {
        return static_cast<std::size_t>(
            CFDictionaryGetCount( static_cast<CFDictionaryRef>( node ) ) );
    }

    static std::size_t Length( CFTypeRef node )
    {
        return static_cast<std::size_t>( CFStringGetLength( static_cast<CFStringRef>( node ) ) );
    }

    static std::uint64_t Integer( CFTypeRef node )
    {
        std::uint64_t value = 0;
        CFNumberGetValue( static_cast<CFNumberRef>( node ), kCFNumberSInt64Type, &value );
        return value;
    }

    static CFTypeRef Child( CFTypeRef node, std::string const& key )
    {
        HeldObject const name(
            CFStringCreateWithCString( nullptr, key.c_str(), kCFStringEncodingUTF8 ) );
        return CFDictionaryGetValue( static_cast<CFDictionaryRef>( node ), name.get() );
    }

  private:
    HeldObject const mRoot;
};

} // namespace PropertyListTrees
