#include "encoding/Transcoder.h"

#include "encoding/NativeUnicode.h"
#include "encoding/StreamTranscoder.h"
#include "encoding/UStringBuilder.h"

template<typename To, typename From>
AutoUString<To> Transcoder<To, From>::operator()( UStringRef<From> text ) const
{
    UStringBuilder<To> builder( text.Length() * To::kLongestCharacter );
    StreamTranscoder<To, From> transcoder( builder );
    transcoder.Start( From() );
    transcoder.Receive( text );
    transcoder.ReceiveEnd();
    return MakeUString( builder.begin(), builder.end(), To() );
}

template<>
AutoUString<Local8Bit> Transcoder<Local8Bit, UTF8>::operator()( UStringRef<UTF8> text ) const
{
    return MacintoshPlatform::FromNativeUnicode( Transcoder<UTF32, UTF8>()( text ) );
}

template class Transcoder<UTF32, UTF8>;
template class Transcoder<UTF8, UTF16>;
template class Transcoder<Local8Bit, UTF8>;
