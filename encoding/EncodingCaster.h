#pragma once

#include "encoding/UStringRef.h"

#include <string>

/// Turns a text into another type for the same units, without converting them.
template<typename To, typename From>
class EncodingCaster;

/// To a string of the same bytes.
template<>
class EncodingCaster<std::string, UStringRef<UTF8>>
{
  public:
    /// The bytes of `text`, unchanged.
    static std::string Cast( UStringRef<UTF8> text ) { return { text.begin(), text.end() }; }
};
