#include "linux/CoreFoundation/PropertyListBuilder.h"

#include "linux/CoreFoundation/CFDataObject.h"
#include "linux/CoreFoundation/CFDateObject.h"
#include "linux/CoreFoundation/TextEncodings.h"

#include <CoreFoundation/CFPropertyList.h>

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

PropertyListBuilder::Element PropertyListBuilder::ElementNamed( std::string_view name )
{
    static constexpr std::pair<std::string_view, Element> kElements[] = {
        { "plist", Element::kPlist }, { "dict", Element::kDict }, { "array", Element::kArray },
        { "key", Element::kKey }, { "string", Element::kString }, { "integer", Element::kInteger },
        { "real", Element::kReal }, { "date", Element::kDate }, { "data", Element::kData },
        { "true", Element::kTrue }, { "false", Element::kFalse } };
    for ( auto const& [known, element] : kElements )
    {
        if ( name == known )
        {
            return element;
        }
    }
    throw PropertyListError( "unknown element" );
}

bool PropertyListBuilder::IsInLeaf() const
{
    return !mLevels.empty() && mLevels.back().element > Element::kArray;
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
    if ( !IsInLeaf() ||
         ( mLevels.back().element != Element::kString && mLevels.back().element != Element::kKey ) )
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
    bool const isInDictionary = !mLevels.empty() && mLevels.back().dictionary != nullptr;
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

void PropertyListBuilder::StartElement( std::string_view name )
{
    Element const element = ElementNamed( name );
    CheckPlace( element );
    Level level{ element };
    if ( element == Element::kDict )
    {
        Owned<CFDictionaryObject> dictionary( new CFDictionaryObject );
        level.dictionary = dictionary.get();
        Add( std::move( dictionary ) );
    }
    else if ( element == Element::kArray )
    {
        Owned<CFArrayObject> array( new CFArrayObject );
        level.array = array.get();
        Add( std::move( array ) );
    }
    mLevels.push_back( std::move( level ) );
}

void PropertyListBuilder::Add( Owned<CFObject const> object )
{
    if ( mLevels.empty() || mLevels.back().element == Element::kPlist )
    {
        mRoot = std::move( object );
    }
    else if ( Level& top = mLevels.back(); top.array != nullptr )
    {
        top.array->values.push_back( std::move( object ) );
    }
    else
    {
        top.dictionary->Set( std::move( top.key ), std::move( object ) );
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
    switch ( mLevels.back().element )
    {
    case Element::kKey:
    case Element::kString:
        if ( !AppendUTF8( text, mUnits ) )
        {
            throw PropertyListError( "invalid UTF-8" );
        }
        break;
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
    Level level = std::move( mLevels.back() );
    mLevels.pop_back();
    switch ( level.element )
    {
    case Element::kPlist:
        if ( !mRoot )
        {
            throw PropertyListError( "<plist> is empty" );
        }
        mIsPlistClosed = true;
        return;
    case Element::kDict:
        if ( level.key )
        {
            throw PropertyListError( "a key without a value" );
        }
        return;
    case Element::kArray:
        return;
    case Element::kKey:
        mLevels.back().key = MakeString( CFStringObject::Mutability::kImmutable );
        return;
    default:
        // An empty number or date is an error in any form.
        if ( isShortForm && level.element == Element::kData )
        {
            throw PropertyListError( "<data/> has no value" );
        }
        Add( MakeLeaf( level.element ) );
    }
}

Owned<CFObject const> PropertyListBuilder::MakeString( CFStringObject::Mutability mutability )
{
    return Owned<CFObject const>(
        new CFStringObject( std::exchange( mUnits, std::u16string() ), mutability ) );
}

Owned<CFObject const> PropertyListBuilder::MakeLeaf( Element element )
{
    std::string const text = std::exchange( mText, std::string() );
    switch ( element )
    {
    case Element::kInteger:
        return Owned<CFObject const>(
            new CFNumberObject( Expect( ParseInteger( text ), "invalid <integer>" ) ) );
    case Element::kReal:
        return Owned<CFObject const>(
            new CFNumberObject( Expect( ParseReal( text ), "invalid <real>" ) ) );
    case Element::kDate:
        return Owned<CFObject const>(
            new CFDateObject( Expect( ParseDate( text ), "invalid <date>" ) ) );
    case Element::kData:
        return Owned<CFObject const>(
            new CFDataObject( Expect( mData.Finish(), "incomplete base64" ) ) );
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
