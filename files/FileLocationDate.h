#pragma once

#include "files/FileLocation.h"

/// Reads the date at the start of the location's name, as in "20240131_x". The eight bytes are
/// taken for digits unseen, by the low 8 bits of their distance from "0": others give meaningless
/// numbers. Throws IllegalFileName unless the name has more than 8 bytes in UTF-8, and what
/// FileLocation::Name throws.
void GetDateFromNameInFileLocation(
    FileLocation const& location, unsigned& year, unsigned& month, unsigned& day );
