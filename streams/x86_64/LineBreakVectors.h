#pragma once

#include "streams/LineBreakKernels.h"

/// With 64 bytes in a vector, and the compression of vectors.
LineBreakFunction LineBreaksByAVX512;
bool IsLineBreakAVX512Supported();

/// With 32 bytes in a vector.
LineBreakFunction LineBreaksByAVX2;
bool IsLineBreakAVX2Supported();
