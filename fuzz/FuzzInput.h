#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

/// A target's input, from which it takes what it decides by, and then the text it tries. An input
/// that has run out gives zeros and empty texts.
class FuzzInput
{
  public:
    FuzzInput( std::uint8_t const* data, std::size_t size )
        : mRest( reinterpret_cast<char const*>( data ), size )
    {
    }

    bool IsEmpty() const { return mRest.empty(); }

    /// The next sizeof( Number ) bytes as a number.
    template<class Number>
    Number Take()
    {
        Number number{};
        std::string_view const bytes = TakeText( sizeof number );
        if ( !bytes.empty() )
            std::memcpy( &number, bytes.data(), bytes.size() );
        return number;
    }

    /// A number from 0 to `most`.
    std::size_t TakeUpTo( std::size_t most )
    {
        return most < 0xFF ? Take<std::uint8_t>() % ( most + 1 )
                           : Take<std::uint32_t>() % ( most + 1 );
    }

    /// The next `length` bytes, or those that are left.
    std::string_view TakeText( std::size_t length )
    {
        std::string_view const text = mRest.substr( 0, length );
        mRest.remove_prefix( text.size() );
        return text;
    }

    std::string_view TakeRest() { return TakeText( mRest.size() ); }

  private:
    std::string_view mRest;
};

/// Ends the program, as a crash does, if the program and its oracle differ.
inline void Require( bool condition, char const* what )
{
    if ( condition )
        return;
    std::fprintf( stderr, "FAILED: %s\n", what );
    std::abort();
}

/// A copy in memory that ends where the text ends, so that reading beyond it is noticed.
inline std::vector<char> ExactCopy( std::string_view text )
{
    return { text.begin(), text.end() };
}

/// Hands `text` to `action` in exact copies: pieces of the lengths that the bytes of `lengths` say,
/// which may be 0, and then the rest.
template<class Action>
void ForEachPiece( std::string_view text, std::string_view lengths, Action action )
{
    for ( char const length : lengths )
    {
        std::vector<char> const piece =
            ExactCopy( text.substr( 0, static_cast<unsigned char>( length ) ) );
        text.remove_prefix( piece.size() );
        action( std::string_view( piece.data(), piece.size() ) );
    }
    std::vector<char> const rest = ExactCopy( text );
    action( std::string_view( rest.data(), rest.size() ) );
}

extern "C" int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size );
