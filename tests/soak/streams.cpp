// streams GIB: pushes streams of that length through every maker. The script `streams` says what it
// proves.

#include "encoding/StreamTranscoder.h"
#include "files/FileReader.h"
#include "files/MakeFileLocation.h"
#include "streams/AsciiCaseFilters.h"
#include "streams/ChecksumReceiver.h"
#include "streams/DataFilterer.h"
#include "streams/LineMaker.h"
#include "streams/MessageMaker.h"
#include "streams/ReadReader.h"
#include "tests/soak/Sink.h"

#include <sys/mman.h>
#include <vector>

namespace
{

// A head, `length` bytes of a repeated text, and a tail.
struct Stream
{
    std::string head;
    std::string text;
    std::string tail;
    Position start = 0; // its own position in a larger stream
    Position length = 0;

    void PushTo( DataReceiver& to ) const
    {
        to.Receive( ConstData( head ) );
        Pattern( text ).ForEachPiece( length, [&]( ConstData piece ) { to.Receive( piece ); } );
        to.Receive( ConstData( tail ) );
        to.ReceiveEnd();
    }
};

void Lines( Stream const& from, LineReceiver& to )
{
    LineMaker maker( to );
    maker.Start( from.start );
    from.PushTo( maker );
}

void ToLines( Stream const& from, Sink& to )
{
    Lines( from, to );
}

void ToMessage( Stream const& from, Sink& to )
{
    MessageMaker maker( to );
    Lines( from, maker );
}

template<typename Filter>
void ToFilter( Stream const& from, Sink& to )
{
    Filter filter;
    DataFilterer filterer;
    filterer( to, filter ).Start();
    from.PushTo( filterer );
}

template<typename To, typename From>
void ToText( Stream const& from, Sink& to )
{
    using Unit = typename From::Unit;
    TextSink<To> sink( to );
    StreamTranscoder<To, From> transcoder( sink );
    transcoder.Start( From() );
    Pattern( from.text )
        .ForEachPiece( from.length,
            [&]( ConstData piece )
            {
                transcoder.Receive( { reinterpret_cast<Unit const*>( piece.begin() ),
                    reinterpret_cast<Unit const*>( piece.end() ) } );
            } );
    transcoder.ReceiveEnd();
}

void ToChecksum( Stream const& from, Sink& )
{
    ChecksumReceiver receiver;
    from.PushTo( receiver );
    auto const* const table = ChecksumReceiver::Table();
    std::uint32_t expected = 0xFFFFFFFF;
    for ( Position i = 0; i < from.length; ++i )
    {
        auto const c = static_cast<unsigned char>( from.text[i % from.text.size()] );
        expected = expected << 8 ^ table[c ^ expected >> 24];
    }
    Require( receiver.checksum == expected, "the checksum" );
}

// Zeros, which take no memory, and a line break.
class LongArray
{
  public:
    explicit LongArray( Position length )
        : mLength( length ),
          mBegin( static_cast<unsigned char*>( mmap( nullptr, mLength, PROT_READ | PROT_WRITE,
              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0 ) ) )
    {
        std::copy_n( "\r\n", 2, mBegin + mLength - 2 );
    }

    ~LongArray() { munmap( mBegin, mLength ); }

    LongArray( LongArray const& ) = delete;

    unsigned char const* begin() const { return mBegin; }

    unsigned char const* end() const { return mBegin + mLength; }

  private:
    Position mLength;
    unsigned char* mBegin;
};

void OnePiece( Stream const& from, Sink& to )
{
    LongArray const array( std::min<Position>( from.length, UINT32_MAX ) );
    LineMaker maker( to );
    maker.Start( from.start );
    maker.Receive( { array.begin(), array.end() } );
    maker.ReceiveEnd();
}

void OneArray( Stream const& from, Sink& to )
{
    LongArray const array( from.length );
    TextSink<UTF32> sink( to );
    StreamTranscoder<UTF32, UTF8> transcoder( sink );
    transcoder.Start( UTF8() );
    transcoder.Receive( { reinterpret_cast<char const*>( array.begin() ),
        reinterpret_cast<char const*>( array.end() - 2 ) } );
    transcoder.ReceiveEnd();
}

// Of a file without room for its zeros.
void FromFile( Stream const& from, Sink& to )
{
    std::string const end = "end";
    Position const length = from.start + from.length;
    int const descriptor = memfd_create( "long", MFD_CLOEXEC );
    Require( pwrite( descriptor, end.data(), end.size(), static_cast<off_t>( length ) ) == 3,
        "the file" );
    std::string const path = "/proc/self/fd/" + std::to_string( descriptor );
    FileLocation const file = MakeFileLocation( ConstData( path ) );
    FileReader zeros( file, from.start, from.length );
    ReadReader( zeros, static_cast<DataReceiver&>( to ) );
    FileReader rest( file, length, end.size() );
    Require( ReadReader( rest ) == end, "the end of the file" );
    close( descriptor );
}

std::string const kLine = std::string( 62, 'x' ) + "\r\n";
std::string const kZero( 1, '\0' );
std::string const kUTF8 = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";

// The bytes of the same in other encodings, those of this machine.
template<typename Text>
std::string BytesOf( Text const& text )
{
    return { reinterpret_cast<char const*>( text.data() ), text.size() * sizeof text[0] };
}

std::string const kUTF16 = BytesOf( std::u16string( u"a\u00E9\u20AC\U0001F600" ) );
std::string const kUTF32 = BytesOf( std::u32string( U"a\u00E9\u20AC\U0001F600" ) );

// What stream, pushed through which maker, arrives as what.
struct Row
{
    char const* name;
    void ( *push )( Stream const& from, Sink& to );
    Stream from;
    std::string text; // that arrives, again and again
    Seen expected;
};

std::vector<Row> Rows( Position n )
{
    Position const piece = std::min<Position>( n, UINT32_MAX );
    return {
        { "lines", ToLines, { "", kLine, "" }, "x", { n / 64 * 62, n / 64, n } },
        { "one line", ToLines, { "", "x", "\nx" }, "x", { n + 1, 1, n + 2 } },
        { "one value", ToMessage, { "a: ", "v", "\nb:v\n\nv\n" }, "v",
            { n + 2, 1, n + 11, 2, n + 4, n + 7, n + 9 } },
        { "one folded value", ToMessage, { "a:v\n", " vvv\n v\n", "\n" }, "v vvv ",
            { n / 8 * 6 + 1, 0, n + 5, 1, 0, n + 3, n + 5 } },
        { "many fields", ToMessage, { "", "Name:v\r\n", "\r\n" }, "v",
            { n / 8, 0, n + 2, n / 8, n - 8, n - 2, n + 2 } },
        { "one name", ToMessage, { "", "n", ":v\nb:v\n\n" }, "v",
            { 1, 0, n + 8, 1, n + 3, n + 6, n + 8 } },
        { "a body of lines", ToMessage, { "a:v\n\n", "vvv\n", "" }, "v",
            { n / 4 * 3 + 1, n / 4, n + 5, 1, 0, 3, 5 } },
        { "a body of one line", ToMessage, { "a:v\n\n", "v", "\n" }, "v",
            { n + 1, 1, n + 6, 1, 0, 3, 5 } },
        { "checksum", ToChecksum, { "", kLine, "" }, "x", {} },
        { "copy", ToFilter<DataFilter>, { "", "mIxEd", "" }, "mIxEd", { n } },
        { "lower case", ToFilter<Ascii::CaseLoweringFilter>, { "", "mIxEd", "" }, "mixed", { n } },
        { "upper case", ToFilter<Ascii::CaseRaisingFilter>, { "", "mIxEd", "" }, "MIXED", { n } },
        { "UTF-8 to UTF-32", ToText<UTF32, UTF8>, { "", kUTF8, "" }, kUTF32, { n / 10 * 16 } },
        { "UTF-16 to UTF-8", ToText<UTF8, UTF16>, { "", kUTF16, "" }, kUTF8, { n } },
        { "a file", FromFile, {}, kZero, { n } },
        { "one piece", OnePiece, {}, kZero, { piece - 2, 1, piece } },
        { "one array", OneArray, {}, kZero, { 4 * ( n - 2 ) } },
    };
}

// The memory of this process afterwards.
long Run( Row row, Position length )
{
    constexpr Position kFourGiB = Position{ 1 } << 32;
    row.from.length = length;
    row.from.start = length > kFourGiB ? 0 : kFourGiB - length / 2; // across it
    Sink to( row.text, row.from.start );
    row.push( row.from, to );
    Require( to.seen == row.expected, row.name + std::string( ": other positions" ) );
    return PeakMemory();
}

} // namespace

int main( int, char** arguments )
try
{
    constexpr Position kUnit = 640, kShort = 100 * kUnit; // whole lines, folds and characters
    auto const length =
        static_cast<Position>( std::stod( arguments[1] ) * ( 1 << 30 ) ) / kUnit * kUnit;
    auto const rows = Rows( length ), shortRows = Rows( kShort );
    for ( std::size_t i = 0; i < rows.size(); ++i )
    {
        long const peak = Run( shortRows[i], kShort );
        long const more = Run( rows[i], length ) - peak;
        std::printf( "%s: %ld KiB more than for a short one\n", rows[i].name, more );
        std::fflush( stdout );
        Require( more <= 4096, "more memory for a longer stream" );
    }
    return EXIT_SUCCESS;
}

catch ( std::exception const& error )
{
    std::fprintf( stderr, "FAILED: %s\n", error.what() );
    return EXIT_FAILURE;
}
