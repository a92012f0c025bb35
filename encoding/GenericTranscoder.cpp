#include "encoding/GenericTranscoder.h"

#include "encoding/InvalidTextEncoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace
{

/// Gathers units and pushes them on in large pieces.
template<typename E, std::size_t Size>
class Output
{
  public:
    explicit Output( UTextReceiver<E>& downstream ) : mDownstream( downstream ) {}

    /// Afterwards `count` units can be put.
    void MakeRoom( std::size_t count )
    {
        if ( Size - mCount < count )
            Push();
    }

    void Put( std::uint32_t unit ) { mUnits[mCount++] = static_cast<typename E::Unit>( unit ); }

    void Push()
    {
        if ( mCount == 0 )
            return;
        mDownstream.Receive( { mUnits, mUnits + mCount } );
        mCount = 0;
    }

  private:
    UTextReceiver<E>& mDownstream;
    std::size_t mCount = 0;
    typename E::Unit mUnits[Size];
};

/// How many bytes the UTF-8 form that this lead byte begins takes, 0 if it begins none.
constexpr unsigned LengthOfForm( unsigned char lead )
{
    return lead < 0x80   ? 1
           : lead < 0xC0 ? 0
           : lead < 0xE0 ? 2
           : lead < 0xF0 ? 3
           : lead < 0xF8 ? 4
                         : 0;
}

/// Decodes the character at the front of `count` bytes (at least one) and returns its length; 0 if
/// they do not begin with a whole character.
unsigned Decode( char const* bytes, std::size_t count, std::uint32_t& codePoint )
{
    auto const lead = static_cast<unsigned char>( bytes[0] );
    unsigned const length = LengthOfForm( lead );
    if ( length == 1 )
    {
        codePoint = lead;
        return 1;
    }
    if ( length == 0 || length > count )
        return 0;
    codePoint = lead & ( 0x7Fu >> length );
    for ( unsigned i = 1; i < length; ++i )
    {
        auto const continuation = static_cast<unsigned char>( bytes[i] );
        if ( ( continuation & 0xC0u ) != 0x80u )
            return 0;
        codePoint = codePoint << 6 | ( continuation & 0x3Fu );
    }
    return length;
}

constexpr bool IsSurrogate( std::uint32_t unit )
{
    return ( unit & 0xF800u ) == 0xD800u;
}

constexpr bool IsHighSurrogate( std::uint32_t unit )
{
    return ( unit & 0xFC00u ) == 0xD800u;
}

constexpr bool IsLowSurrogate( std::uint32_t unit )
{
    return ( unit & 0xFC00u ) == 0xDC00u;
}

using UTF8Output = Output<UTF8, 4096>;

void PutContinuation( UTF8Output& output, std::uint32_t codePoint, unsigned shift )
{
    output.Put( 0x80u | ( codePoint >> shift & 0x3Fu ) );
}

void PutUnit( UTF8Output& output, std::uint32_t unit )
{
    if ( unit < 0x80 )
        return output.Put( unit );
    if ( unit < 0x800 )
    {
        output.Put( 0xC0u | unit >> 6 );
        return PutContinuation( output, unit, 0 );
    }
    output.Put( 0xE0u | unit >> 12 );
    PutContinuation( output, unit, 6 );
    PutContinuation( output, unit, 0 );
}

void PutPair( UTF8Output& output, std::uint32_t high, std::uint32_t low )
{
    std::uint32_t const codePoint = 0x10000u + ( ( high - 0xD800u ) << 10 ) + ( low - 0xDC00u );
    output.Put( 0xF0u | codePoint >> 18 );
    PutContinuation( output, codePoint, 12 );
    PutContinuation( output, codePoint, 6 );
    PutContinuation( output, codePoint, 0 );
}

} // namespace

template<typename To, typename From>
GenericTranscoder<To, From>::GenericTranscoder( UTextReceiver<To>& downstream )
    : mDownstream( &downstream )
{
}

template<typename To, typename From>
void GenericTranscoder<To, From>::Start( From )
{
    mPendingCount = 0;
    mDownstream->Start( To() );
}

template<>
void GenericTranscoder<UTF32, UTF8>::Receive( ConstArrayOf<UTF8::Unit> units )
{
    constexpr std::size_t kLongest = UTF8::kLongestCharacter;
    Output<UTF32, 1024> output( *mDownstream );
    std::uint32_t codePoint = 0;
    char const* next = units.begin();

    // One byte after the other joins the pending ones: they never hold a whole character.
    while ( mPendingCount != 0 && next != units.end() )
    {
        char character[kLongest];
        *std::copy_n( mPending, mPendingCount, character ) = *next;
        unsigned const count = mPendingCount + 1;
        if ( Decode( character, count, codePoint ) != 0 )
        {
            output.Put( codePoint );
            mPendingCount = 0;
        }
        else if ( count == kLongest )
            throw InvalidTextEncoding();
        else
            mPending[mPendingCount++] = *next;
        ++next;
    }

    while ( next != units.end() )
    {
        output.MakeRoom( 1 );
        auto const count = static_cast<std::size_t>( units.end() - next );
        unsigned const length = Decode( next, count, codePoint );
        if ( length != 0 )
        {
            output.Put( codePoint );
            next += length;
        }
        else if ( count >= kLongest )
            throw InvalidTextEncoding();
        else
        {
            std::copy_n( next, count, mPending );
            mPendingCount = static_cast<unsigned>( count );
            next = units.end();
        }
    }
    output.Push();
}

template<>
void GenericTranscoder<UTF8, UTF16>::Receive( ConstArrayOf<UTF16::Unit> units )
{
    UTF8Output output( *mDownstream );
    for ( UTF16::Unit const unit : units )
    {
        output.MakeRoom( UTF8::kLongestCharacter );
        if ( mPendingCount != 0 )
        {
            if ( !IsHighSurrogate( mPending[0] ) || !IsLowSurrogate( unit ) )
                throw InvalidTextEncoding();
            PutPair( output, mPending[0], unit );
            mPendingCount = 0;
        }
        else if ( IsSurrogate( unit ) )
        {
            mPending[0] = unit;
            mPendingCount = 1;
        }
        else
            PutUnit( output, unit );
    }
    output.Push();
}

template<typename To, typename From>
void GenericTranscoder<To, From>::ReceiveEnd()
{
    if ( mPendingCount != 0 )
        throw InvalidTextEncoding();
    mDownstream->ReceiveEnd();
}

template class GenericTranscoder<UTF32, UTF8>;
template class GenericTranscoder<UTF8, UTF16>;
