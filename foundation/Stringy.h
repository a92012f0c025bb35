#pragma once

#include "foundation/ConstData.h"

#include <compare>
#include <cstdint>
#include <string_view>
#include <vector>

/// An owning 8-bit text, always followed by a zero byte. It may also be null, which some operations
/// tell from the empty text "" and others do not; each says which.
///
/// Texts of up to 127 characters lie inside the object, longer ones in an array of exactly
/// Size() bytes; there is never spare capacity, so appending n times copies the text n times. Zero
/// bytes inside a text are kept, but the operations that use the C library's functions see the text
/// only up to the first of them.
///
/// Whatever makes the text longer throws StringyLengthTooLong if the length and its terminator do
/// not fit in 32 bits, and passes on std::bad_alloc. A change that throws leaves the text as it
/// was, except that assigning one Stringy to another, which frees the old text first, leaves null.
///
/// A pointer or range given to an operation may point into the text of the object itself.
class Stringy
{
  public:
    /// Null.
    Stringy() {}

    /// A copy of the zero-terminated `text`; null for a null pointer, empty for "".
    Stringy( char const* text );

    /// A copy of `text`; null if it is empty.
    explicit Stringy( ConstData const& text );

    /// A copy of `length` bytes; null for none, whatever the pointer.
    Stringy( char const* bytes, unsigned int length );
    Stringy( unsigned char const* bytes, unsigned int length );

    Stringy( Stringy const& other );

    /// The number in decimal: digits, with a '-' before those of a negative one.
    explicit Stringy( int value );
    explicit Stringy( unsigned int value );
    explicit Stringy( unsigned long long value );

    ~Stringy();

    /// Copies `other`; an empty one gives null.
    Stringy& operator=( Stringy const& other );

    /// Copies `text` as the constructor does.
    Stringy& operator=( char const* text );

    /// Appends; nothing happens if there is nothing to append (zero, null or empty).
    Stringy& operator+=( char c );
    Stringy& operator+=( char const* text );
    Stringy& operator+=( Stringy const& other );
    Stringy& operator+=( ConstData const& text );

    /// The text with its terminator, or a null pointer; valid until the object is changed or
    /// destroyed.
    char const* Text() const { return mData; }

    /// The length with the terminator; 0 if null.
    std::uint32_t Size() const { return mSize; }

    /// The length without the terminator; 0 if null.
    std::uint32_t Length() const { return mSize == 0 ? 0 : mSize - 1; }

    bool IsNull() const { return mData == nullptr; }

    /// Whether it is null or "".
    bool IsEmpty() const { return mSize < 2; }

    /// The text without its terminator; valid as long as Text().
    operator ConstData() const;

    /// The character at `index`, 0 for the terminator. 0 too if this is null or `index` is greater
    /// than Size(). An `index` equal to Size() is not caught and reads the byte behind the
    /// terminator: do not ask for it, it may not be there.
    signed char operator[]( unsigned int index ) const;

    /// The index of the first (last) `c`, or -1; the terminator is never found. Throws
    /// std::length_error if the index is beyond 2,147,483,647.
    std::int32_t Find( char c ) const;
    std::int32_t FindFromRight( char c ) const;

    /// Whether `needle` occurs. Only null contains a null pointer, and null contains nothing else,
    /// not even "".
    bool Contains( char const* needle ) const;

    /// Replaces every `from` and returns how many there were.
    std::uint32_t Replace( char from, char to );

    /// Changes the case of every character as the C library's `tolower` and `toupper` do, so bytes
    /// of 128 and above change as the program's locale says.
    void MakeLower();
    void MakeUpper();

    /// Whether the text begins with `prefix`; true for a null or empty one. Ignoring case means
    /// that of ASCII letters.
    bool StartsWith( char const* prefix ) const;
    bool StartsWithIgnoringCase( char const* prefix ) const;
    bool StartsWithIgnoringCase( Stringy const& prefix ) const;

    /// Whether the texts differ at most in the case of ASCII letters. Null equals nothing, not even
    /// null.
    bool EqualIgnoringCase( Stringy const& other ) const;

    /// Negative, 0 or positive as this text comes before, equals or comes after `other` in the
    /// order of the C library's `strcmp`. Null and empty are equal, and come first with -1 or 1.
    std::int32_t Compare( Stringy const& other ) const;

    /// The same in the order of Ascii::CompareUppercase. Null equals null only, and comes before
    /// the empty text.
    std::int32_t CompareNoCase( Stringy const& other ) const;

    /// The first (last) `count` characters, or as many as there are; null if that is none. A
    /// negative count is 0.
    Stringy Left( int count ) const;
    Stringy Right( int count ) const;

    /// `count` characters from index `start` on, or as many as there are, all of them without a
    /// `count`; null if that is none. Negative arguments are 0.
    Stringy Mid( int start, int count ) const;
    Stringy Mid( int start ) const;

    /// What follows the last `separator`, stripped of white space at both ends; null if there is no
    /// separator or nothing is left.
    Stringy SubstringAfterLastSeparator( char separator ) const;

    /// Drops leading white space (Ascii::WhiteSpace). A text of white space only becomes null; ""
    /// stays.
    void TrimLeft();

    /// Drops white space at both ends. A text of white space only and "" become null.
    void StripLeadingAndTrailingWhite();

    /// Appends the fields of the zero-terminated `text` between separators to `out`, at most
    /// `maxCount` of them, and returns how many it appended. None for a null or empty `text`.
    ///
    /// Empty fields, also one behind a trailing separator, are kept as null strings. With `strip`
    /// fields lose the white space at both ends.
    ///
    /// With a `separator` of zero, `text` is `maxCount` zero-terminated strings one behind the
    /// other: the number must be exact, nothing else ends the reading.
    ///
    /// `text` must not belong to an element of `out`. If there is no memory, the fields appended so
    /// far stay.
    static unsigned int SplitSeparatedStringsIntoArray( char const* text, char separator,
        std::vector<Stringy>& out, unsigned int maxCount, bool strip );

  private:
    static constexpr std::uint32_t kInlineSize = 128;

    std::string_view View() const { return { mData, Length() }; }

    ConstData WithTerminator() const;
    std::uint32_t LimitForAppending() const;
    void Set( std::uint32_t keptLength, std::string_view added, std::uint32_t inlineLimit );
    void Keep( ConstData part );
    void Release();
    bool BeginsIgnoringCase( std::string_view prefix ) const;
    Stringy Part( std::int64_t start, std::int64_t count ) const;

    char* mData = nullptr;
    std::uint32_t mSize = 0;
    char mInline[kInlineSize];
};

/// The text of `a` followed by `b`. A null or empty `b` gives a copy of `a`.
Stringy operator+( Stringy const& a, char b );
Stringy operator+( Stringy const& a, Stringy const& b );

/// These two give all six comparisons, also with a `char const*` on either side: as
/// Stringy::Compare says, so a null pointer, null and "" are all equal.
bool operator==( Stringy const& a, Stringy const& b );
std::weak_ordering operator<=>( Stringy const& a, Stringy const& b );
