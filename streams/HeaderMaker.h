#pragma once

#include "foundation/Buffer.h"
#include "streams/DataReceiver.h"
#include "streams/LineReceiver.h"
#include "streams/MessageReceiver.h"

#include <cstdint>

/// Parses the header lines of a message into fields, which it pushes into a MessageReceiver.
///
/// A field is a line of a name, ':' and a value. It goes on over the lines after it that begin with
/// a space or a tab: one space replaces the line break and the white space behind it. The name is
/// delivered in lower case, otherwise as it stands before the first ':', blanks included; it may be
/// empty. The white space behind the ':' is left out, that at the end of a line is not. Lines
/// without ':', names of more than 47 bytes and lines that continue either are passed over.
///
/// Values are not held: their text goes on in the pieces it came in. So lines may be of any length,
/// and nothing is allocated. An empty line is nothing special here; MessageMaker finds the one that
/// ends the headers.
///
/// Of the MessageReceiver only ReceiveField and ReceiveFieldEnd are called. A field's end is known,
/// and reported, with the next line that does not continue it, or with the end of the headers.
/// Nothing is thrown but what the receivers throw; after that only Start may follow.
class HeaderMaker : public LineReceiver
{
  public:
    /// Must be aimed before it is started.
    HeaderMaker();

    explicit HeaderMaker( MessageReceiver& target );

    HeaderMaker( HeaderMaker const& ) = delete; // the cursor points into the maker
    HeaderMaker& operator=( HeaderMaker const& ) = delete;

    /// Aims at `target`, which must outlive the use of this maker, and returns this maker.
    HeaderMaker& operator()( MessageReceiver& target );

    void Start( unsigned long long position ) override;

    void Receive( ConstData text ) override
    {
        if ( text.IsEmpty() )
            return;
        if ( mHandler == &HeaderMaker::PassText )
            mValue->Receive( text );
        else
            Handle( text );
    }

    void ReceiveLineBreak( Range<unsigned long long> where ) override
    {
        mLastBreakStart = where.first;
        mLineStart = where.last;
        mHandler = &HeaderMaker::StartHeaderLine;
    }

    void ReceiveEnd( unsigned long long position ) override;

  private:
    // Takes its part from the front of a text that is not empty. Where that ends within the text,
    // it makes the next handler the current one and hands it the rest.
    using Handler = void ( HeaderMaker::* )( ConstData& text );

    void StartHeaderLine( ConstData& text );
    void EatWhiteSpace( ConstData& text );
    void HandleFieldName( ConstData& text );
    void PassText( ConstData& text );

    void Handle( ConstData text );
    bool TakeNameInBlocks( ConstData& text );
    bool TakeNameInBytes( ConstData& text );
    void EmptyName();
    void StartValue();
    void SendFieldEnd( unsigned long long position );

    MessageReceiver* mTarget = nullptr;
    std::uint32_t const* mLinearWhiteSpace;
    Handler mHandler = &HeaderMaker::StartHeaderLine;
    Buffer mName; // in the storage; full when the name is too long
    unsigned char mNameStorage[48] = {};
    DataReceiver* mValue; // Ignore while no field is open
    unsigned long long mLastBreakStart = 0;
    unsigned long long mLineStart = 0; // where the last break ended
    bool mFieldIsOpen = false;
};
