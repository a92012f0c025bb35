#pragma once

#include "foundation/ConstData.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

/// What recording receivers write down, each event after a "|". A text that follows a text of the
/// same receiver is joined to it, unless the pieces are wanted.
class EventLog
{
  public:
    bool inPieces = false;
    std::size_t throwAfter = SIZE_MAX; ///< after so many events the int 7 is thrown instead

    std::string Take()
    {
        mCount = 0;
        return std::exchange( mEvents, "" );
    }

    /// An event of some texts and numbers, one behind the other.
    template<typename... Parts>
    void Add( Parts const&... parts )
    {
        if ( mCount == throwAfter )
            throw 7;
        ++mCount;
        mEvents += '|';
        ( Append( parts ), ... );
        mLastIsText = false;
    }

    template<typename... Parts>
    void AddText( ConstData text, Parts const&... kind )
    {
        if ( inPieces || !mLastIsText )
            Add( kind... );
        Append( text );
        mLastIsText = true;
    }

  private:
    void Append( std::string_view text ) { mEvents += text; }

    void Append( ConstData text )
    {
        mEvents.append( reinterpret_cast<char const*>( text.begin() ), text.Length() );
    }

    void Append( unsigned long long number ) { mEvents += std::to_string( number ); }

    std::string mEvents;
    std::size_t mCount = 0;
    bool mLastIsText = false;
};
