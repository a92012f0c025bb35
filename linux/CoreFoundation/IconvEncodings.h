#pragma once

// Encodings that are left to iconv. Internal to linux/.

#include <CoreFoundation/CFString.h>

#include <algorithm>
#include <iterator>

/// An encoding that is left to iconv, and iconv's name for it.
struct IconvEncoding
{
    CFStringEncoding encoding;
    char const* name;
};

inline constexpr IconvEncoding kIconvEncodings[] = { { 0x0007, "MAC-CYRILLIC" },
    { 0x0202, "ISO-8859-2" }, { 0x0203, "ISO-8859-3" }, { 0x0204, "ISO-8859-4" },
    { 0x0205, "ISO-8859-5" }, { 0x0206, "ISO-8859-6" }, { 0x0207, "ISO-8859-7" },
    { 0x0208, "ISO-8859-8" }, { 0x0209, "ISO-8859-9" }, { 0x020A, "ISO-8859-10" },
    { 0x020B, "ISO-8859-11" }, { 0x020D, "ISO-8859-13" }, { 0x020E, "ISO-8859-14" },
    { 0x020F, "ISO-8859-15" }, { 0x0210, "ISO-8859-16" }, { 0x0400, "CP437" }, { 0x0410, "CP850" },
    { 0x0420, "CP932" }, { 0x0501, "CP1250" }, { 0x0502, "CP1251" }, { 0x0503, "CP1253" },
    { 0x0504, "CP1254" }, { 0x0505, "CP1255" }, { 0x0506, "CP1256" }, { 0x0507, "CP1257" },
    { 0x0508, "CP1258" }, { 0x0632, "GB18030" }, { 0x0920, "EUC-JP" }, { 0x0930, "EUC-CN" },
    { 0x0931, "EUC-TW" }, { 0x0940, "EUC-KR" }, { 0x0A01, "SHIFT_JIS" }, { 0x0A02, "KOI8-R" },
    { 0x0A03, "BIG5" }, { 0x0A08, "KOI8-U" }, { kCFStringEncodingUTF32BE, "UTF-32BE" },
    { kCFStringEncodingUTF32LE, "UTF-32LE" } };

/// iconv's name for an encoding; one that it does not know when the encoding is none of the above.
inline char const* IconvName( CFStringEncoding encoding )
{
    auto const* const found =
        std::ranges::find( kIconvEncodings, encoding, &IconvEncoding::encoding );
    return found == std::end( kIconvEncodings ) ? "unknown" : found->name;
}
