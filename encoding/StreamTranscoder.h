#pragma once

#include "encoding/GenericTranscoder.h"

/// The class through which a GenericTranscoder is held.
template<typename To, typename From>
class StreamTranscoder : public GenericTranscoder<To, From>
{
  public:
    using GenericTranscoder<To, From>::GenericTranscoder;
};
