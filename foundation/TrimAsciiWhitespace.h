#pragma once

#include "foundation/ConstData.h"

/// The part of `text` that is left when the ASCII white space (Ascii::WhiteSpace) at its front is
/// dropped. It points into the same bytes.
ConstData TrimLeadingAsciiWhitespace( ConstData text );

/// The same for both ends. A text of white space only leaves an empty range at its end.
ConstData TrimAsciiWhitespace( ConstData text );
