#pragma once

#include "streams/HeaderMaker.h"
#include "streams/LineReceiver.h"
#include "streams/MessageReceiver.h"

/// Takes the lines of a message, as in mail and HTTP: header lines, an empty line, a body. Pushes
/// the fields of the header and the lines of the body into a MessageReceiver.
///
/// HeaderMaker says what becomes of the header lines. The lines of the body, empty ones included,
/// reach the body's receiver as they came; the line break of the empty line reaches nobody. If the
/// first line is empty there are no fields. If none is, all lines are header lines and the body is
/// empty, at the end of the stream.
///
/// Nothing is held but a field's name, and nothing is allocated. Nothing is thrown but what the
/// receivers throw; after that only Start may follow.
class MessageMaker : public LineReceiver
{
  public:
    /// Must be aimed before it is started.
    MessageMaker() = default;

    explicit MessageMaker( MessageReceiver& target );

    MessageMaker( MessageMaker const& ) = delete; // may be taking lines in a part of itself
    MessageMaker& operator=( MessageMaker const& ) = delete;

    /// Aims at `target`, which must outlive the use of this maker, and returns this maker. Takes
    /// effect with the next Start.
    MessageMaker& operator()( MessageReceiver& target );

    void Start( unsigned long long position ) override;
    void Receive( ConstData text ) override;
    void ReceiveLineBreak( Range<unsigned long long> where ) override;
    void ReceiveEnd( unsigned long long position ) override;

  private:
    MessageReceiver* mTarget = nullptr;
    HeaderMaker mHeaderMaker;
    bool mAtLineStart = true;
    bool mInHeaders = true;
    LineReceiver* mLines = &mHeaderMaker; // then the body's receiver
};
