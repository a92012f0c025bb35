#pragma once

#include "foundation/MakeString.h"

#include <cstddef>
#include <cstdint>
#include <string>
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

    void Add( std::string const& event )
    {
        if ( mCount == throwAfter )
            throw 7;
        ++mCount;
        mEvents += "|" + event;
        mLastIsText = false;
    }

    void Add( std::string const& event, unsigned long long position )
    {
        Add( event + std::to_string( position ) );
    }

    void AddText( std::string const& kind, ConstData text )
    {
        if ( inPieces || !mLastIsText )
            Add( kind );
        mEvents += MakeString( text );
        mLastIsText = true;
    }

  private:
    std::string mEvents;
    std::size_t mCount = 0;
    bool mLastIsText = false;
};
