#include "linux/CoreFoundation/TextEncodings.h"

#include "linux/CoreFoundation/EightBitTables.h"
#include "linux/CoreFoundation/IconvEncodings.h"
#include "linux/CoreFoundation/TextConverter.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace
{

constexpr char16_t kByteOrderMark = 0xFEFF;
constexpr char16_t kSwappedByteOrderMark = 0xFFFE;

bool IsHighSurrogate( char32_t unit )
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLowSurrogate( char32_t unit )
{
    return unit >= 0xDC00 && unit < 0xE000;
}

bool IsSurrogate( char32_t character )
{
    return character >= 0xD800 && character < 0xE000;
}

void AppendCharacter( char32_t character, std::u16string& units )
{
    if ( character >= 0x10000 )
    {
        units.push_back( static_cast<char16_t>( 0xD800 + ( ( character - 0x10000 ) >> 10 ) ) );
        units.push_back( static_cast<char16_t>( 0xDC00 + ( character & 0x3FF ) ) );
    }
    else
    {
        units.push_back( static_cast<char16_t>( character ) );
    }
}

// Reads one sequence beyond ASCII at the front of `text` and takes it off; false if it is invalid.
bool TakeLongSequence( std::string_view& text, std::u16string& units )
{
    auto const lead = static_cast<unsigned char>( text[0] );
    std::size_t const length = static_cast<std::size_t>( std::countl_one( lead ) );
    if ( length < 2 || length > 4 || length > text.size() )
    {
        return false;
    }
    char32_t character = lead & ( 0x7FU >> length );
    for ( std::size_t i = 1; i < length; ++i )
    {
        auto const next = static_cast<unsigned char>( text[i] );
        if ( ( next & 0xC0U ) != 0x80 )
        {
            return false;
        }
        character = character << 6 | ( next & 0x3FU );
    }
    constexpr char32_t kSmallest[] = { 0, 0, 0x80, 0x800, 0x10000 };
    if ( character < kSmallest[length] || character > 0x10FFFF || IsSurrogate( character ) )
    {
        return false;
    }
    AppendCharacter( character, units );
    text.remove_prefix( length );
    return true;
}

std::u16string DecodeUTF16( std::string_view bytes, std::endian order )
{
    std::u16string units( bytes.size() / 2, u'\0' );
    if ( !units.empty() )
    {
        std::memcpy( units.data(), bytes.data(), units.size() * 2 );
    }
    if ( order != std::endian::native )
    {
        for ( char16_t& unit : units )
        {
            unit = static_cast<char16_t>( unit << 8 | unit >> 8 );
        }
    }
    return units;
}

std::u16string DecodeUnorderedUTF16( std::string_view bytes, bool isExternal )
{
    if ( !isExternal )
    {
        return DecodeUTF16( bytes, std::endian::native );
    }
    std::u16string const mark = DecodeUTF16( bytes.substr( 0, 2 ), std::endian::big );
    if ( mark.empty() || ( mark[0] != kByteOrderMark && mark[0] != kSwappedByteOrderMark ) )
    {
        return DecodeUTF16( bytes, std::endian::big );
    }
    return DecodeUTF16(
        bytes.substr( 2 ), mark[0] == kByteOrderMark ? std::endian::big : std::endian::little );
}

bool IsUnicode( CFStringEncoding encoding )
{
    return encoding == kCFStringEncodingUTF8 || encoding == kCFStringEncodingUTF16 ||
           encoding == kCFStringEncodingUTF16BE || encoding == kCFStringEncodingUTF16LE;
}

bool IsEightBit( CFStringEncoding encoding )
{
    return encoding == kCFStringEncodingASCII || encoding == kCFStringEncodingISOLatin1 ||
           encoding == kCFStringEncodingMacRoman || encoding == kCFStringEncodingWindowsLatin1;
}

char16_t DecodeByte( unsigned char byte, CFStringEncoding encoding )
{
    if ( encoding == kCFStringEncodingMacRoman && byte >= 0x80 )
    {
        return kMacRoman[byte - 0x80U];
    }
    if ( encoding == kCFStringEncodingWindowsLatin1 && byte >= 0x80 && byte < 0xA0 )
    {
        return kWindowsLatin1[byte - 0x80U];
    }
    return byte;
}

std::optional<std::u16string> DecodeThroughIconv( std::string_view bytes, char const* name )
{
    TextConverter converter( HostUTF16Name(), name );
    if ( !converter.IsKnown() )
    {
        return std::nullopt;
    }
    std::optional<std::string> const converted = converter.Convert( bytes );
    if ( !converted )
    {
        return std::nullopt;
    }
    return DecodeUTF16( *converted, std::endian::native );
}

// The bytes of one character.
struct EncodedCharacter
{
    unsigned char bytes[16];
    std::size_t length = 0;

    void Add( char32_t byte ) { bytes[length++] = static_cast<unsigned char>( byte ); }
};

// Turns characters, unpaired surrogates among them, into bytes; no bytes where the encoding lacks
// the character.
class CharacterEncoder
{
  public:
    explicit CharacterEncoder( CFStringEncoding encoding ) : mEncoding( encoding )
    {
        if ( !IsUnicode( encoding ) && !IsEightBit( encoding ) )
        {
            mConverter.emplace( IconvName( encoding ), HostUTF16Name() );
        }
    }

    bool IsKnown() const { return !mConverter || mConverter->IsKnown(); }

    EncodedCharacter Encode( char32_t character )
    {
        switch ( mEncoding )
        {
        case kCFStringEncodingUTF8:
            return EncodeUTF8( character );
        case kCFStringEncodingUTF16:
            return EncodeUTF16( character, std::endian::native );
        case kCFStringEncodingUTF16BE:
            return EncodeUTF16( character, std::endian::big );
        case kCFStringEncodingUTF16LE:
            return EncodeUTF16( character, std::endian::little );
        default:
            return mConverter ? EncodeThroughIconv( character ) : EncodeByte( character );
        }
    }

  private:
    static EncodedCharacter EncodeUTF8( char32_t character )
    {
        EncodedCharacter result;
        if ( IsSurrogate( character ) )
        {
            return result;
        }
        if ( character < 0x80 )
        {
            result.Add( character );
            return result;
        }
        int const more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
        result.Add( ( 0xFF00U >> ( more + 1 ) & 0xFFU ) | character >> 6 * more );
        for ( int i = more - 1; i >= 0; --i )
        {
            result.Add( 0x80U | ( character >> 6 * i & 0x3FU ) );
        }
        return result;
    }

    static EncodedCharacter EncodeUTF16( char32_t character, std::endian order )
    {
        std::u16string units;
        AppendCharacter( character, units );
        EncodedCharacter result;
        for ( char16_t const unit : units )
        {
            result.Add( order == std::endian::big ? unit >> 8 : unit & 0xFF );
            result.Add( order == std::endian::big ? unit & 0xFF : unit >> 8 );
        }
        return result;
    }

    EncodedCharacter EncodeByte( char32_t character ) const
    {
        EncodedCharacter result;
        char32_t const limit = mEncoding == kCFStringEncodingASCII ? 0x80 : 0x100;
        char32_t byte = character < 0x80 ? character : 0x80;
        while ( byte < limit &&
                DecodeByte( static_cast<unsigned char>( byte ), mEncoding ) != character )
        {
            ++byte;
        }
        if ( byte < limit )
        {
            result.Add( byte );
        }
        return result;
    }

    EncodedCharacter EncodeThroughIconv( char32_t character )
    {
        EncodedCharacter result;
        std::u16string units;
        AppendCharacter( character, units );
        auto const converted = mConverter->Convert(
            { reinterpret_cast<char const*>( units.data() ), units.size() * 2 } );
        if ( converted && converted->size() <= sizeof result.bytes )
        {
            result.length =
                converted->copy( reinterpret_cast<char*>( result.bytes ), converted->size() );
        }
        return result;
    }

    CFStringEncoding const mEncoding;
    std::optional<TextConverter> mConverter;
};

struct Character
{
    char32_t value;
    std::size_t units;
};

// The character at an index: a pair, or one unit, which may be an unpaired surrogate.
template<class Units>
Character CharacterAt( Units units, std::size_t index )
{
    auto const unitAt = [units]( std::size_t i ) { return static_cast<char32_t>( units[i] ); };
    char32_t const first = unitAt( index );
    if ( !IsHighSurrogate( first ) || index + 1 == units.size() ||
         !IsLowSurrogate( unitAt( index + 1 ) ) )
    {
        return { first, 1 };
    }
    return { 0x10000 + ( ( first & 0x3FF ) << 10 | ( unitAt( index + 1 ) & 0x3FF ) ), 2 };
}

// Appends a whole character to the buffer if it fits, or only counts it.
bool Put( EncodedCharacter const& character, EncodingRequest const& request, std::size_t& used )
{
    if ( request.buffer != nullptr )
    {
        if ( character.length > request.bufferLength - used )
        {
            return false;
        }
        std::memcpy( request.buffer + used, character.bytes, character.length );
    }
    used += character.length;
    return true;
}

template<class Units>
EncodingResult Encode( Units units, EncodingRequest const& request )
{
    EncodingResult result;
    CharacterEncoder encoder( request.encoding );
    if ( !encoder.IsKnown() )
    {
        return result;
    }
    if ( request.isExternal && request.encoding == kCFStringEncodingUTF16 &&
         !Put( encoder.Encode( kByteOrderMark ), request, result.bytes ) )
    {
        return result;
    }
    while ( result.units < units.size() )
    {
        auto const [character, taken] = CharacterAt( units, result.units );
        EncodedCharacter encoded = encoder.Encode( character );
        if ( encoded.length == 0 )
        {
            if ( request.lossByte == 0 || request.encoding == kCFStringEncodingUTF8 )
            {
                break;
            }
            encoded.length = taken;
            std::fill_n( encoded.bytes, taken, request.lossByte );
        }
        if ( !Put( encoded, request, result.bytes ) )
        {
            break;
        }
        result.units += taken;
    }
    return result;
}

} // namespace

bool AppendUTF8( std::string_view text, std::u16string& units )
{
    while ( !text.empty() )
    {
        auto const end = std::ranges::find_if(
            text, []( char byte ) { return static_cast<unsigned char>( byte ) >= 0x80; } );
        auto const plain = static_cast<std::size_t>( end - text.begin() );
        std::size_t const old = units.size();
        units.resize( old + plain );
        std::copy_n( text.data(), plain, units.begin() + static_cast<std::ptrdiff_t>( old ) );
        text.remove_prefix( plain );
        while ( !text.empty() && static_cast<unsigned char>( text[0] ) >= 0x80 )
        {
            if ( !TakeLongSequence( text, units ) )
            {
                return false;
            }
        }
    }
    return true;
}

std::optional<std::u16string> DecodeText(
    std::string_view bytes, CFStringEncoding encoding, bool isExternal )
{
    std::u16string units;
    if ( IsEightBit( encoding ) )
    {
        units.resize( bytes.size() );
        std::ranges::transform( bytes, units.begin(),
            [encoding]( char byte )
            { return DecodeByte( static_cast<unsigned char>( byte ), encoding ); } );
        return units;
    }
    switch ( encoding )
    {
    case kCFStringEncodingUTF8:
        if ( bytes.starts_with( "\xEF\xBB\xBF" ) )
        {
            bytes.remove_prefix( 3 );
        }
        if ( !AppendUTF8( bytes, units ) )
        {
            return std::nullopt;
        }
        return units;
    case kCFStringEncodingUTF16:
        return DecodeUnorderedUTF16( bytes, isExternal );
    case kCFStringEncodingUTF16BE:
        return DecodeUTF16( bytes, std::endian::big );
    case kCFStringEncodingUTF16LE:
        return DecodeUTF16( bytes, std::endian::little );
    default:
        return DecodeThroughIconv( bytes, IconvName( encoding ) );
    }
}

EncodingResult EncodeText( std::u16string_view units, EncodingRequest const& request )
{
    return Encode( units, request );
}

EncodingResult EncodeText( std::string_view units, EncodingRequest const& request )
{
    return Encode( units, request );
}
