#pragma once

#include "encoding/UTextReceiver.h"

/// Converts a stream of text in the encoding `From` and pushes it into a receiver of the encoding
/// `To`, which it borrows.
///
/// However the input is cut into calls, the output is the same. Nothing is allocated. Malformed
/// input throws InvalidTextEncoding, from Receive or, for a text that ends inside a character, from
/// ReceiveEnd; what was pushed before that stays with the receiver, and only Start may follow.
///
/// There are two instances.
///
/// From UTF8 to UTF32, in pieces of at most 1024 code points: only the bit patterns of lead and
/// continuation bytes are checked. Overlong forms, encoded surrogates and values up to 0x1FFFFF
/// pass. Bytes that form no character are rejected once four of them are at hand; fewer are held
/// back until more input or the end comes.
///
/// From UTF16 to UTF8, in pieces of at most 4096 bytes: surrogates must come in pairs, high before
/// low. A surrogate is held back until the next unit or the end comes.
template<typename To, typename From>
class GenericTranscoder : public UTextReceiver<From>
{
  public:
    /// `downstream` must outlive the stream.
    explicit GenericTranscoder( UTextReceiver<To>& downstream );

    void Start( From encoding ) override;

    void Receive( ConstArrayOf<typename From::Unit> units ) override;

    void ReceiveEnd() override;

  private:
    UTextReceiver<To>* mDownstream;
    unsigned mPendingCount = 0;
    typename From::Unit mPending[From::kLongestCharacter - 1];
};

extern template class GenericTranscoder<UTF32, UTF8>;
extern template class GenericTranscoder<UTF8, UTF16>;
