#pragma once

#include "foundation/ConstData.h"
#include "foundation/ConstDataRopeReference.h"

#include <string>

/// A string of the bytes of `text`.
std::string MakeString( ConstData text );

/// A string of the bytes of all pieces, allocated once.
std::string MakeString( ConstDataRopeReference text );
