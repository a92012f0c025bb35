#pragma once

#include "encoding/TranscodingKernels.h"

// These need AVX-512 with BW, CD, VBMI and VBMI2, and POPCNT.

Transcoded<UTF32, UTF8> TranscodeByAVX512(
    UTF8::Unit const* next, UTF8::Unit const* end, UTF32::Unit* out, UTF32::Unit const* limit );

Transcoded<UTF8, UTF16> TranscodeByAVX512(
    UTF16::Unit const* next, UTF16::Unit const* end, UTF8::Unit* out, UTF8::Unit const* limit );
