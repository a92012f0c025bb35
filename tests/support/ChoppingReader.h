#pragma once

#include "foundation/Buffer.h"
#include "streams/DataReader.h"

#include <cstdint>
#include <string>
#include <utility>

/// Yields a text in pieces of at most so many bytes. With 0 the reader delivers nothing on every
/// other call and a single byte on the rest.
class ChoppingReader : public DataReader
{
  public:
    ChoppingReader( std::string text, std::uint32_t atMost )
        : mText( std::move( text ) ), mAtMost( atMost )
    {
    }

    using DataReader::operator>>;

    void Reset() override { mNext = 0; }

    bool Finished() const override { return mNext == mText.size(); }

    DataReader& operator>>( Buffer& to ) override
    {
        ++mCalls;
        std::uint32_t const atMost = mAtMost != 0 ? mAtMost : mCalls % 2;
        ConstBuffer from( ConstData( std::string_view( mText ).substr( mNext, atMost ) ) );
        to << from;
        mNext += from.Consumed().Length();
        return *this;
    }

    /// How often bytes were asked for.
    std::uint32_t Calls() const { return mCalls; }

  private:
    std::string mText;
    std::size_t mNext = 0;
    std::uint32_t mAtMost;
    std::uint32_t mCalls = 0;
};
