#pragma once

#include "streams/LineBreakKernels.h"

#include <immintrin.h>

/// With 64 bytes in a vector, and the compression of vectors.
LineBreakFunction LineBreaksByAVX512;
bool IsLineBreakAVX512Supported();

/// With 32 bytes in a vector.
LineBreakFunction LineBreaksByAVX2;
bool IsLineBreakAVX2Supported();

inline constexpr unsigned kSmallBlock = 16;

/// A bit for each of 16 bytes, which every processor of this kind can find at once.
inline std::uint32_t BreaksOf16( unsigned char const* text )
{
    __m128i const bytes = _mm_loadu_si128( reinterpret_cast<__m128i const*>( text ) );
    __m128i const breaks = _mm_or_si128( _mm_cmpeq_epi8( bytes, _mm_set1_epi8( '\r' ) ),
        _mm_cmpeq_epi8( bytes, _mm_set1_epi8( '\n' ) ) );
    return static_cast<std::uint32_t>( _mm_movemask_epi8( breaks ) );
}
