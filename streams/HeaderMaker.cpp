#include "streams/HeaderMaker.h"

#include "foundation/Ascii.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace
{

// Bytes that are worked on at once. The compiler does it with what the processor has.
using Block [[gnu::vector_size( 16 )]] = unsigned char;
using HalfBlock [[gnu::vector_size( 8 )]] = unsigned char;
using Pairs [[gnu::vector_size( 16 )]] = std::uint16_t;

constexpr unsigned kBlock = sizeof( Block );

Block LowerCase( Block bytes )
{
    Block const isUpper = reinterpret_cast<Block>( bytes - 'A' < 26 );
    return bytes | ( isUpper & ( 'a' - 'A' ) );
}

// How many bytes stand before the first ':'; all if there is none.
unsigned BytesBeforeColon( Block bytes )
{
    // Half of each byte is enough, and then all fit into a word.
    auto const pairs = reinterpret_cast<Pairs>( bytes == ':' ) >> 4;
    auto const isColon =
        std::bit_cast<std::uint64_t>( __builtin_convertvector( pairs, HalfBlock ) );
    int const bits = std::endian::native == std::endian::little ? std::countr_zero( isColon )
                                                                : std::countl_zero( isColon );
    return static_cast<unsigned>( bits ) / 4;
}

unsigned char LowerCase( unsigned char c )
{
    return 'A' <= c && c <= 'Z' ? c + ( 'a' - 'A' ) : c;
}

} // namespace

HeaderMaker::HeaderMaker()
    : mLinearWhiteSpace( Ascii::LinearWhiteSpace() ), mValue( &DataReceiver::Ignore() )
{
    EmptyName();
}

HeaderMaker::HeaderMaker( MessageReceiver& target ) : HeaderMaker()
{
    mTarget = &target;
}

HeaderMaker& HeaderMaker::operator()( MessageReceiver& target )
{
    mTarget = &target;
    return *this;
}

void HeaderMaker::Start( unsigned long long position )
{
    EmptyName();
    mValue = &DataReceiver::Ignore();
    mHandler = &HeaderMaker::StartHeaderLine;
    mFieldIsOpen = false;
    mLastBreakStart = position;
    mLineStart = position;
}

// With all handlers in one piece, so that a whole line is taken in one pass: it pays more than
// anything else here.
[[gnu::flatten]] void HeaderMaker::Handle( ConstData text )
{
    if ( mHandler == &HeaderMaker::StartHeaderLine )
    {
        ConstData line = text; // nobody has its address, so it can stay in registers
        StartHeaderLine( line );
    }
    else
        ( this->*mHandler )( text );
}

void HeaderMaker::ReceiveEnd( unsigned long long position )
{
    mValue->ReceiveEnd();
    SendFieldEnd( position == mLineStart ? mLastBreakStart : position );
}

void HeaderMaker::StartHeaderLine( ConstData& text )
{
    if ( Ascii::IsMember( mLinearWhiteSpace, text[0] ) )
    {
        mValue->Receive( ConstData( " " ) );
        mHandler = &HeaderMaker::EatWhiteSpace;
        EatWhiteSpace( text );
        return;
    }
    mValue->ReceiveEnd();
    mValue = &DataReceiver::Ignore();
    EmptyName();
    mHandler = &HeaderMaker::HandleFieldName;
    SendFieldEnd( mLastBreakStart );
    HandleFieldName( text );
}

void HeaderMaker::HandleFieldName( ConstData& text )
{
    if ( !TakeNameInBlocks( text ) && !TakeNameInBytes( text ) )
        return;
    text = ConstData( text.begin() + 1, text.end() );
    if ( !mName.IsFull() )
        StartValue();
    mHandler = &HeaderMaker::EatWhiteSpace;
    EatWhiteSpace( text );
}

void HeaderMaker::EatWhiteSpace( ConstData& text )
{
    while ( !text.IsEmpty() && Ascii::IsMember( mLinearWhiteSpace, text[0] ) )
        text = ConstData( text.begin() + 1, text.end() );
    if ( text.IsEmpty() )
        return;
    mHandler = &HeaderMaker::PassText;
    PassText( text );
}

void HeaderMaker::PassText( ConstData& text )
{
    mValue->Receive( text );
    text = ConstData();
}

// Whether it met the ':', which it leaves. Stops short of it when there is no whole block of bytes
// or of room.
bool HeaderMaker::TakeNameInBlocks( ConstData& text )
{
    Buffer name = mName;
    unsigned count = kBlock;
    while ( count == kBlock && text.Length() >= kBlock && name.Room().Length() >= kBlock )
    {
        Block bytes;
        std::memcpy( &bytes, text.begin(), kBlock );
        count = BytesBeforeColon( bytes );
        bytes = LowerCase( bytes );
        std::memcpy( name.Next(), &bytes, kBlock );
        name.Advance( count );
        text = ConstData( text.begin() + count, text.end() );
    }
    mName = name;
    return count != kBlock;
}

// Whether it met the ':', which it leaves. Drops what there is no room for.
bool HeaderMaker::TakeNameInBytes( ConstData& text )
{
    unsigned char const* next = text.begin();
    Buffer name = mName;
    for ( ; next != text.end() && *next != ':' && !name.IsFull(); ++next )
        name.Put( LowerCase( *next ) );
    mName = name;
    if ( name.IsFull() )
        next = std::find( next, text.end(), ':' );
    text = ConstData( next, text.end() );
    return !text.IsEmpty();
}

void HeaderMaker::EmptyName()
{
    mName = Buffer( Data( mNameStorage, mNameStorage + sizeof mNameStorage ) );
}

void HeaderMaker::StartValue()
{
    mValue = &mTarget->ReceiveField( mLineStart, mName.Filled() );
    mFieldIsOpen = true;
    mValue->Start();
}

void HeaderMaker::SendFieldEnd( unsigned long long position )
{
    if ( mFieldIsOpen )
        mTarget->ReceiveFieldEnd( position );
    mFieldIsOpen = false;
}
