#pragma once

#include "foundation/MakeString.h"
#include "streams/LineReceiver.h"

#include <string>
#include <vector>

/// Writes down what is done to it: "Start:0", "Text:" with the bytes, "Break:2-4", "End:6".
class RecordingLineReceiver : public LineReceiver
{
  public:
    void Start( unsigned long long position ) override { Add( "Start:", position ); }

    void Receive( ConstData text ) override
    {
        bool const goesOn = !mJoined.empty() && mJoined.back().starts_with( "Text:" );
        mEvents.push_back( "Text:" + MakeString( text ) );
        if ( goesOn )
            mJoined.back() += MakeString( text );
        else
            mJoined.push_back( mEvents.back() );
    }

    void ReceiveLineBreak( Range<unsigned long long> where ) override
    {
        Add( "Break:" + std::to_string( where.first ) + "-", where.last );
    }

    void ReceiveEnd( unsigned long long position ) override { Add( "End:", position ); }

    /// Every call.
    std::vector<std::string> const& Events() const { return mEvents; }

    /// The same with adjacent pieces of text joined: they do not depend on how the input was cut.
    std::vector<std::string> const& JoinedEvents() const { return mJoined; }

  private:
    void Add( std::string const& event, unsigned long long position )
    {
        mEvents.push_back( event + std::to_string( position ) );
        mJoined.push_back( mEvents.back() );
    }

    std::vector<std::string> mEvents;
    std::vector<std::string> mJoined;
};
