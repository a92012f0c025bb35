#include "encoding/GenericTranscoder.h"

#include "encoding/TranscodingLoop.h"

namespace
{

template<typename E>
constexpr std::size_t kLongestPiece = 0;

template<>
constexpr std::size_t kLongestPiece<UTF32> = 1024;

template<>
constexpr std::size_t kLongestPiece<UTF8> = 4096;

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

template<typename To, typename From>
void GenericTranscoder<To, From>::Receive( ConstArrayOf<typename From::Unit> units )
{
    static auto* const transcode = FirstSupported( TranscodingKernels<To, From>() );
    PendingUnits<From> const pending{ mPendingCount, mPending };
    TranscodePiece<To, kLongestPiece<To>, From>( units, pending, *mDownstream, transcode );
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
