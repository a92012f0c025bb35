#pragma once

#include "foundation/SearchKernels.h"

SearchFunction SearchAVX512;
SearchFunction SearchAVX2;
