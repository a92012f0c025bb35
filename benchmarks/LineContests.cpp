#include "benchmarks/Contest.h"
#include "streams/LineMaker.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <sstream>
#include <stdexcept>

namespace
{

constexpr std::size_t kTextSize = 4 << 20;
constexpr std::uint32_t kPush = 4096; // as much as a reader is pumped with

// Takes the place of a program's own receiver: counts, and notes where the breaks are in a way that
// does not depend on how long they are.
class CountingReceiver : public LineReceiver
{
  public:
    void Start( unsigned long long ) override {}

    void Receive( ConstData text ) override { mText += text.Length(); }

    void ReceiveLineBreak( Range<unsigned long long> where ) override
    {
        ++mBreaks;
        mPlaces += where.first - mBreakBytes;
        mBreakBytes += where.last - where.first;
    }

    void ReceiveEnd( unsigned long long position ) override { mEnd = position - mBreakBytes; }

    std::uint64_t Digest() const { return ( ( mText * 31 + mBreaks ) * 31 + mPlaces ) * 31 + mEnd; }

  private:
    std::uint64_t mText = 0;
    std::uint64_t mBreaks = 0;
    std::uint64_t mPlaces = 0;
    std::uint64_t mBreakBytes = 0;
    std::uint64_t mEnd = 0;
};

bool IsBreak( unsigned char byte )
{
    return byte == '\r' || byte == '\n';
}

// The plain state machine: looks at one byte after another.
class ByteLineMaker : public DataReceiver
{
  public:
    explicit ByteLineMaker( LineReceiver& target ) : mTarget( target ) {}

    void Start() override
    {
        mPosition = 0;
        mPendingBreak = 0;
        mTarget.Start( 0 );
    }

    void Receive( ConstData data ) override
    {
        unsigned char const* text = data.begin();
        for ( unsigned char const* cur = data.begin(); cur != data.end(); ++cur )
        {
            if ( mPendingBreak != 0 )
            {
                bool const isPair = IsBreak( *cur ) && *cur != mPendingBreak;
                ReportBreak( isPair ? 2 : 1 );
                text = cur + isPair;
                if ( isPair )
                    continue;
            }
            if ( IsBreak( *cur ) )
            {
                PassText( text, cur );
                mPendingBreak = *cur;
            }
        }
        if ( mPendingBreak == 0 )
            PassText( text, data.end() );
    }

    void ReceiveEnd() override
    {
        if ( mPendingBreak != 0 )
            ReportBreak( 1 );
        mTarget.ReceiveEnd( mPosition );
    }

  private:
    void PassText( unsigned char const* begin, unsigned char const* end )
    {
        if ( begin == end )
            return;
        mTarget.Receive( ConstData( begin, end ) );
        mPosition += static_cast<std::uint64_t>( end - begin );
    }

    void ReportBreak( unsigned length )
    {
        mTarget.ReceiveLineBreak( { mPosition, mPosition + length } );
        mPosition += length;
        mPendingBreak = 0;
    }

    LineReceiver& mTarget;
    std::uint64_t mPosition = 0;
    unsigned char mPendingBreak = 0;
};

// Looks for each of the two bytes with memchr, and again only when the last one found is passed.
class MemchrLineMaker : public DataReceiver
{
  public:
    explicit MemchrLineMaker( LineReceiver& target ) : mTarget( target ) {}

    void Start() override { mTarget.Start( 0 ); }

    void Receive( ConstData data ) override
    {
        unsigned char const* cur = data.begin();
        unsigned char const* const end = data.end();
        unsigned char const* cr = Find( '\r', cur, end );
        unsigned char const* lf = Find( '\n', cur, end );
        while ( cur != end )
        {
            if ( mPendingBreak != 0 )
            {
                bool const isPair = cur == ( mPendingBreak == '\r' ? lf : cr );
                ReportBreak( isPair ? 2 : 1 );
                cur += isPair;
            }
            if ( cr < cur )
                cr = Find( '\r', cur, end );
            if ( lf < cur )
                lf = Find( '\n', cur, end );
            unsigned char const* const textEnd = std::min( cr, lf );
            if ( textEnd != cur )
                mTarget.Receive( ConstData( cur, textEnd ) );
            mPosition += static_cast<std::uint64_t>( textEnd - cur );
            cur = textEnd;
            if ( textEnd != end )
                mPendingBreak = *cur++;
        }
    }

    void ReceiveEnd() override
    {
        if ( mPendingBreak != 0 )
            ReportBreak( 1 );
        mTarget.ReceiveEnd( mPosition );
    }

  private:
    static unsigned char const* Find(
        int byte, unsigned char const* begin, unsigned char const* end )
    {
        void const* const found =
            std::memchr( begin, byte, static_cast<std::size_t>( end - begin ) );
        return found != nullptr ? static_cast<unsigned char const*>( found ) : end;
    }

    void ReportBreak( unsigned length )
    {
        mTarget.ReceiveLineBreak( { mPosition, mPosition + length } );
        mPosition += length;
        mPendingBreak = 0;
    }

    LineReceiver& mTarget;
    std::uint64_t mPosition = 0;
    unsigned char mPendingBreak = 0;
};

template<typename Maker>
std::uint64_t Push( std::string const& text )
{
    CountingReceiver counts;
    Maker maker( counts );
    DataReceiver& receiver = maker;
    receiver.Start();
    for ( std::size_t i = 0; i < text.size(); i += kPush )
        receiver.Receive( std::string_view( text ).substr( i, kPush ) );
    receiver.ReceiveEnd();
    return counts.Digest();
}

// Passes on the lines that one of the functions of the C or C++ library finds, of which only LF
// ends one.
class LinePasser
{
  public:
    void Pass( std::string_view line )
    {
        std::size_t const breakSize =
            !line.ends_with( '\n' ) ? 0 : 1 + line.substr( 0, line.size() - 1 ).ends_with( '\r' );
        line.remove_suffix( breakSize );
        if ( !line.empty() )
            mTarget.Receive( line );
        mPosition += line.size();
        if ( breakSize != 0 )
            mTarget.ReceiveLineBreak( { mPosition, mPosition + breakSize } );
        mPosition += breakSize;
    }

    std::uint64_t Digest()
    {
        mTarget.ReceiveEnd( mPosition );
        return mCounts.Digest();
    }

  private:
    CountingReceiver mCounts;
    LineReceiver& mTarget = mCounts;
    std::uint64_t mPosition = 0;
};

std::uint64_t PosixGetline( std::string& text )
{
    LinePasser passer;
    std::FILE* const file = fmemopen( text.data(), text.size(), "r" );
    if ( file == nullptr )
        throw std::runtime_error( "fmemopen" );
    char* line = nullptr;
    std::size_t room = 0;
    for ( ssize_t length; ( length = getline( &line, &room, file ) ) > 0; )
        passer.Pass( { line, static_cast<std::size_t>( length ) } );
    std::free( line );
    std::fclose( file );
    return passer.Digest();
}

std::uint64_t StdGetline( std::istringstream& stream )
{
    LinePasser passer;
    stream.clear();
    stream.seekg( 0 );
    for ( std::string line; std::getline( stream, line ); )
    {
        if ( !stream.eof() )
            line += '\n';
        passer.Pass( line );
    }
    return passer.Digest();
}

// Lines of printable bytes, of half to one and a half of the mean length each.
std::string MakeText( unsigned meanLength, std::string_view lineBreak )
{
    std::mt19937 random( 20 );
    std::uniform_int_distribution<unsigned> length( meanLength / 2, meanLength + meanLength / 2 );
    std::uniform_int_distribution<int> byte( ' ', '~' );
    std::string text;
    for ( std::size_t made = 0; made < kTextSize; )
    {
        unsigned const lineLength = length( random );
        for ( unsigned i = 0; i < lineLength; ++i )
            text += static_cast<char>( byte( random ) );
        text += lineBreak;
        made += lineLength + 1; // the same lines for each kind of break
    }
    return text;
}

Contest MakeContest( unsigned meanLength, std::string_view lineBreak, std::vector<Goal> goals )
{
    auto const text = std::make_shared<std::string>( MakeText( meanLength, lineBreak ) );
    auto const stream = std::make_shared<std::istringstream>( *text );
    std::vector<Contender> contenders{
        { "byte state machine", [text] { return Push<ByteLineMaker>( *text ); } },
        { "LineMaker", [text] { return Push<LineMaker>( *text ); } },
        { "two memchr", [text] { return Push<MemchrLineMaker>( *text ); } },
        { "getline", [text] { return PosixGetline( *text ); } },
        { "std::getline", [stream] { return StdGetline( *stream ); } },
    };
    if ( lineBreak.size() == 2 )
    {
        auto const lfText = std::make_shared<std::string>( MakeText( meanLength, "\n" ) );
        contenders.push_back(
            { "LineMaker on LF", [lfText] { return Push<LineMaker>( *lfText ); } } );
        goals.push_back( { "LineMaker on LF", 0.85 } );
    }
    return { std::move( contenders ), std::move( goals ) };
}

} // namespace

std::vector<ContestMaker> LineContests()
{
    struct Row
    {
        unsigned meanLength;
        char const* lines;
        double must;
        double want;
    };

    std::vector<ContestMaker> contests;
    for ( Row const& row : { Row{ 80, "lines of 80", 5, 8 }, Row{ 2000, "lines of 2,000", 12, 20 },
              Row{ 8, "lines of 8", 3.5, 5 } } )
        for ( bool const isPair : { false, true } )
            contests.push_back(
                { "LineMaker", std::string( row.lines ) + ( isPair ? ", CRLF" : ", LF" ),
                    [row, isPair]
                    {
                        return MakeContest( row.meanLength, isPair ? "\r\n" : "\n",
                            isPair ? std::vector<Goal>()
                                   : std::vector<Goal>{ { "", row.must, row.want } } );
                    } } );
    return contests;
}
