// The input is a length, a name of that many characters, and a pattern.

#include "files/mac/FileName.h"
#include "fuzz/FuzzInput.h"

#include <optional>
#include <string>
#include <vector>

namespace
{

using MacintoshPlatform::FileName;

/// Tries every way in which a pattern can describe a name, as FileName.h says what it means.
class EveryWay
{
  public:
    EveryWay( std::string_view name, std::string_view pattern )
        : mName( name ), mPattern( pattern ), mKnown( ( name.size() + 1 ) * ( pattern.size() + 1 ) )
    {
    }

    /// Whether the pattern from `p` on describes the name from `n` on.
    bool Matches( std::size_t n, std::size_t p )
    {
        std::optional<bool>& known = mKnown[n * ( mPattern.size() + 1 ) + p];
        if ( !known )
            known = Tries( n, p );
        return *known;
    }

  private:
    bool Tries( std::size_t n, std::size_t p )
    {
        bool const nameEnds = n == mName.size();
        if ( p == mPattern.size() )
            return nameEnds;
        if ( !nameEnds && ( mPattern[p] == '?' || mPattern[p] == mName[n] ) )
            return Matches( n + 1, p + 1 );
        if ( mPattern[p] != '*' )
            return false;
        if ( nameEnds )
            return Matches( n, p + 1 );
        if ( p + 1 == mPattern.size() )
            return true;
        while ( n < mName.size() && !Matches( n, p + 1 ) )
            ++n;
        return n < mName.size();
    }

    std::string_view mName;
    std::string_view mPattern;
    std::vector<std::optional<bool>> mKnown;
};

/// Few characters, so that they meet their equals; no zero, no slash, one byte each.
std::string Characters( std::string_view bytes )
{
    std::string text;
    for ( char const byte : bytes )
        text += "ab*?.*a?"[byte & 7];
    return text;
}

} // namespace

int LLVMFuzzerTestOneInput( std::uint8_t const* data, std::size_t size )
{
    FuzzInput input( data, size );
    std::string const name = Characters( input.TakeText( 1 + input.TakeUpTo( 40 ) ) );
    std::string pattern = Characters( input.TakeText( 40 ) );
    if ( name.empty() )
        return 0;
    FileName const tested = FileName::FromFileSystem( ConstData( name ) );
    Require( tested.MatchesWildCard( pattern.c_str() ) == EveryWay( name, pattern ).Matches( 0, 0 ),
        "the matcher and every way agree" );
    Require( tested.MatchesWildCard( name.c_str() ), "a name matches itself" );
    return 0;
}
