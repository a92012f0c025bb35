#include "linux/CoreFoundation/PropertyListBuilder.h"

#include "linux/CoreFoundation/CFDataObject.h"
#include "linux/CoreFoundation/CFDateObject.h"
#include "linux/CoreFoundation/TextEncodings.h"

#include <CoreFoundation/CFPropertyList.h>

#include <cstring>
#include <utility>

namespace
{

// What a parse gave, or the error that it gave nothing.
template<class Value>
Value Expect( std::optional<Value>&& value, char const* complaint )
{
    if ( !value )
    {
        throw PropertyListError( complaint );
    }
    return *std::move( value );
}

} // namespace

// Reserves what a small document needs.
PropertyListBuilder::PropertyListBuilder( CFStringObject::Mutability strings ) : mStrings( strings )
{
    mLevels.reserve( 8 );
    mEntries.reserve( 64 );
    mText.reserve( 128 );
}

PropertyListBuilder::Element PropertyListBuilder::ElementNamed( char const* name )
{
    // The most frequent ones come first.
    static constexpr std::pair<char const*, Element> kElements[] = { { "key", Element::kKey },
        { "string", Element::kString }, { "integer", Element::kInteger },
        { "dict", Element::kDict }, { "array", Element::kArray }, { "plist", Element::kPlist },
        { "real", Element::kReal }, { "date", Element::kDate }, { "data", Element::kData },
        { "true", Element::kTrue }, { "false", Element::kFalse } };
    for ( auto const& [known, element] : kElements )
    {
        if ( *name == *known && std::strcmp( name, known ) == 0 )
        {
            return element;
        }
    }
    throw PropertyListError( "unknown element" );
}

void PropertyListBuilder::AllowOnlyOutsideLeaves() const
{
    if ( IsInLeaf() )
    {
        throw PropertyListError( "only text may stand inside a value" );
    }
}

void PropertyListBuilder::StartCData() const
{
    if ( mLeaf != Element::kString && mLeaf != Element::kKey )
    {
        throw PropertyListError( "CDATA outside of a string or key" );
    }
}

// Whether the element may begin here, before anything is made of it.
void PropertyListBuilder::CheckPlace( Element element ) const
{
    AllowOnlyOutsideLeaves();
    if ( mLevels.size() == static_cast<std::size_t>( kCFPropertyListMaximumDepth ) )
    {
        throw PropertyListError( "elements are nested too deeply" );
    }
    bool const isInDictionary = !mLevels.empty() && mLevels.back().element == Element::kDict;
    if ( element == Element::kKey )
    {
        if ( !isInDictionary )
        {
            throw PropertyListError( "a key outside of a dictionary" );
        }
        if ( mLevels.back().key )
        {
            throw PropertyListError( "a key without a value" );
        }
        return;
    }
    if ( element == Element::kPlist )
    {
        if ( !mLevels.empty() )
        {
            throw PropertyListError( "<plist> inside another element" );
        }
        return;
    }
    if ( isInDictionary && !mLevels.back().key )
    {
        throw PropertyListError( "a value without a key" );
    }
    if ( mRoot && mLevels.size() == 1 && mLevels.back().element == Element::kPlist )
    {
        throw PropertyListError( "more than one object in <plist>" );
    }
}

void PropertyListBuilder::StartElement( char const* name )
{
    Element const element = ElementNamed( name );
    CheckPlace( element );
    if ( element > Element::kArray )
    {
        mLeaf = element;
        return;
    }
    mLevels.push_back( { element, mEntries.size() } );
}

void PropertyListBuilder::Add( Owned<CFObject const> object )
{
    if ( mLevels.empty() || mLevels.back().element == Element::kPlist )
    {
        mRoot = std::move( object );
    }
    else
    {
        mEntries.push_back( { std::move( mLevels.back().key ), std::move( object ) } );
    }
}

void PropertyListBuilder::Text( std::string_view text )
{
    if ( !IsInLeaf() )
    {
        if ( !IsBlank( text ) )
        {
            throw PropertyListError( "text outside of a value" );
        }
        return;
    }
    switch ( *mLeaf )
    {
    case Element::kData:
        if ( !mData.Append( text ) )
        {
            throw PropertyListError( "invalid base64" );
        }
        break;
    case Element::kTrue:
    case Element::kFalse:
        throw PropertyListError( "text inside a truth value" );
    default:
        mText.append( text );
    }
}

void PropertyListBuilder::EndElement( bool isShortForm )
{
    if ( !mLeaf )
    {
        EndContainer();
        return;
    }
    Element const leaf = *std::exchange( mLeaf, std::nullopt );
    // An empty number or date is an error in any form.
    if ( isShortForm && leaf == Element::kData )
    {
        throw PropertyListError( "<data/> has no value" );
    }
    if ( leaf == Element::kKey )
    {
        mLevels.back().key = MakeString( CFStringObject::Mutability::kImmutable );
    }
    else
    {
        Add( MakeLeaf( leaf ) );
    }
    mText.clear();
}

void PropertyListBuilder::EndContainer()
{
    Level const level = std::move( mLevels.back() );
    mLevels.pop_back();
    if ( level.key )
    {
        throw PropertyListError( "a key without a value" );
    }
    if ( level.element != Element::kPlist )
    {
        Owned<CFObject const> container =
            MakeContainer( level.element, std::span( mEntries ).subspan( level.firstEntry ) );
        mEntries.resize( level.firstEntry );
        Add( std::move( container ) );
        return;
    }
    if ( !mRoot )
    {
        throw PropertyListError( "<plist> is empty" );
    }
    mIsPlistClosed = true;
}

Owned<CFObject const> PropertyListBuilder::MakeContainer(
    Element element, std::span<Entry> entries )
{
    if ( element == Element::kDict )
    {
        Owned<CFDictionaryObject> dictionary( new ( mPool ) CFDictionaryObject );
        dictionary->Fill( entries );
        return dictionary;
    }
    Owned<CFArrayObject> array( new ( mPool ) CFArrayObject );
    array->values.reserve( entries.size() );
    for ( Entry& entry : entries )
    {
        array->values.push_back( std::move( entry.value ) );
    }
    return array;
}

Owned<CFObject const> PropertyListBuilder::MakeString( CFStringObject::Mutability mutability )
{
    CFStringObject::Making const making{ .mutability = mutability, .pool = &mPool };
    if ( IsASCII( mText ) )
    {
        return Owned<CFObject const>( CFStringObject::Create( mText, making ) );
    }
    std::u16string units;
    if ( !AppendUTF8( mText, units ) )
    {
        throw PropertyListError( "invalid UTF-8" );
    }
    return Owned<CFObject const>( CFStringObject::Create( units, making ) );
}

Owned<CFObject const> PropertyListBuilder::MakeLeaf( Element element )
{
    switch ( element )
    {
    case Element::kInteger:
        return Owned<CFObject const>(
            new ( mPool ) CFNumberObject( Expect( ParseInteger( mText ), "invalid <integer>" ) ) );
    case Element::kReal:
        return Owned<CFObject const>(
            new ( mPool ) CFNumberObject( Expect( ParseReal( mText ), "invalid <real>" ) ) );
    case Element::kDate:
        return Owned<CFObject const>(
            new ( mPool ) CFDateObject( Expect( ParseDate( mText ), "invalid <date>" ) ) );
    case Element::kData:
        return Owned<CFObject const>(
            new ( mPool ) CFDataObject( Expect( mData.Finish(), "incomplete base64" ) ) );
    case Element::kTrue:
        return RetainedObject( kCFBooleanTrue );
    case Element::kFalse:
        return RetainedObject( kCFBooleanFalse );
    default:
        return MakeString( mStrings );
    }
}

Owned<CFObject const> PropertyListBuilder::TakeRoot()
{
    return std::move( mRoot );
}
