#pragma once

#include "foundation/ConstData.h"
#include "streams/DataFilter.h"

#include <string>

/// What `filter` makes of `data`, flushed. Exceptions of the filter pass through.
std::string ApplyFilter( ConstData data, DataFilter& filter );
