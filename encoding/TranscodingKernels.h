#pragma once

#include "encoding/Encodings.h"
#include "foundation/Kernel.h"

#include <cstddef>
#include <span>

/// How far a conversion came.
template<typename To, typename From>
struct Transcoded
{
    typename From::Unit const* next; ///< the first unit that was not converted
    typename To::Unit* out;          ///< where the next unit of output goes
};

/// Converts characters from the front of [next, end) into the units from `out` on. Stops once `out`
/// has reached `limit`, and else only where the rest of the input does not begin with a whole
/// character.
///
/// The output may end beyond `limit`; kTranscodingSlack units behind `limit` may be overwritten.
template<typename To, typename From>
using TranscodeFunction = Transcoded<To, From>( typename From::Unit const* next,
    typename From::Unit const* end, typename To::Unit* out, typename To::Unit const* limit );

constexpr std::size_t kTranscodingSlack = 128;

/// The ways of converting, best first, TranscodePortably last. There are lists for UTF8 to UTF32,
/// where only bit patterns are checked, and for UTF16 to UTF8.
template<typename To, typename From>
std::span<Kernel<TranscodeFunction<To, From>> const> TranscodingKernels();

template<>
std::span<Kernel<TranscodeFunction<UTF32, UTF8>> const> TranscodingKernels<UTF32, UTF8>();

template<>
std::span<Kernel<TranscodeFunction<UTF8, UTF16>> const> TranscodingKernels<UTF8, UTF16>();

// For processors without wide instructions; these define the answers.

Transcoded<UTF32, UTF8> TranscodePortably(
    UTF8::Unit const* next, UTF8::Unit const* end, UTF32::Unit* out, UTF32::Unit const* limit );

Transcoded<UTF8, UTF16> TranscodePortably(
    UTF16::Unit const* next, UTF16::Unit const* end, UTF8::Unit* out, UTF8::Unit const* limit );
