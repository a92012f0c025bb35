#pragma once

/// Numbers and the two truth values.
///
/// A number comes from a property list and is an integer from -2^63 to 2^64 - 1 or a double.
/// CFEqual compares exact values: the integer 1 equals the real 1.0, a NaN equals a NaN. No number
/// equals a truth value. A null reference is a programming error and traps.

#include <CoreFoundation/CFBase.h>

extern "C"
{

    typedef CFIndex CFNumberType;

    enum : CFNumberType
    {
        kCFNumberSInt8Type = 1,
        kCFNumberSInt16Type = 2,
        kCFNumberSInt32Type = 3,
        kCFNumberSInt64Type = 4,
        kCFNumberFloat32Type = 5,
        kCFNumberFloat64Type = 6,
        kCFNumberCharType = 7,
        kCFNumberShortType = 8,
        kCFNumberIntType = 9,
        kCFNumberLongType = 10,
        kCFNumberLongLongType = 11,
        kCFNumberFloatType = 12,
        kCFNumberDoubleType = 13,
        kCFNumberCFIndexType = 14
    };

    CFTypeID CFNumberGetTypeID( void );

    /// How the number is kept: `kCFNumberSInt64Type` or `kCFNumberFloat64Type`.
    CFNumberType CFNumberGetType( CFNumberRef number );

    /// Stores the number at `value` as the C type that `type` names, and returns whether nothing
    /// was lost.
    ///
    /// Something is stored in any case: an integer too wide loses its upper bits; a real loses its
    /// fraction, becomes the nearer end of the type's range beyond it, and 0 when it is NaN. For an
    /// unknown type nothing is stored and the answer is false.
    Boolean CFNumberGetValue( CFNumberRef number, CFNumberType type, void* value );

    /// The only two objects of their type. They ignore releases.
    extern CFBooleanRef const kCFBooleanTrue;
    extern CFBooleanRef const kCFBooleanFalse;

    CFTypeID CFBooleanGetTypeID( void );

    Boolean CFBooleanGetValue( CFBooleanRef boolean );
}
