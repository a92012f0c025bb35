#pragma once

#include "encoding/AutoUString.h"
#include "encoding/UStringRef.h"

/// Converts whole texts from the encoding `From` to the encoding `To`.
///
/// Throws InvalidTextEncoding for malformed text, as GenericTranscoder does, and std::bad_alloc;
/// nothing is kept then. The instances are from UTF8 to UTF32, from UTF16 to UTF8, and from UTF8 to
/// Local8Bit. The last converts through UTF32 and MacintoshPlatform::FromNativeUnicode: it also
/// throws MacintoshPlatform::WideToMultiByteConvertError, and stops at a zero unit.
template<typename To, typename From>
class Transcoder
{
  public:
    AutoUString<To> operator()( UStringRef<From> text ) const;
};

template<>
AutoUString<Local8Bit> Transcoder<Local8Bit, UTF8>::operator()( UStringRef<UTF8> text ) const;

extern template class Transcoder<UTF32, UTF8>;
extern template class Transcoder<UTF8, UTF16>;
extern template class Transcoder<Local8Bit, UTF8>;
