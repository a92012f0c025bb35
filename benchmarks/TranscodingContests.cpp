#include "benchmarks/Contest.h"
#include "benchmarks/TranscodingPeers.h"
#include "benchmarks/TranscodingTexts.h"
#include "encoding/StreamTranscoder.h"
#include "encoding/TranscodingLoop.h"

#include <memory>
#include <string>

namespace
{

bool IsContinuation( char byte )
{
    return ( static_cast<unsigned char>( byte ) & 0xC0 ) == 0x80;
}

std::uint32_t Six( char byte )
{
    return static_cast<unsigned char>( byte ) & 0x3F;
}

Transcoded<UTF32, UTF8> TranscodePlainly(
    char const* next, char const* end, UTF32::Unit* out, UTF32::Unit const* limit )
{
    while ( next < end && out < limit )
    {
        std::ptrdiff_t const left = end - next;
        std::uint32_t const lead = static_cast<unsigned char>( next[0] );
        if ( lead < 0x80 )
        {
            *out++ = lead;
            next += 1;
        }
        else if ( ( lead & 0xE0 ) == 0xC0 && left >= 2 && IsContinuation( next[1] ) )
        {
            *out++ = ( lead & 0x1F ) << 6 | Six( next[1] );
            next += 2;
        }
        else if ( ( lead & 0xF0 ) == 0xE0 && left >= 3 && IsContinuation( next[1] ) &&
                  IsContinuation( next[2] ) )
        {
            *out++ = ( lead & 0x0F ) << 12 | Six( next[1] ) << 6 | Six( next[2] );
            next += 3;
        }
        else if ( ( lead & 0xF8 ) == 0xF0 && left >= 4 && IsContinuation( next[1] ) &&
                  IsContinuation( next[2] ) && IsContinuation( next[3] ) )
        {
            *out++ =
                ( lead & 0x07 ) << 18 | Six( next[1] ) << 12 | Six( next[2] ) << 6 | Six( next[3] );
            next += 4;
        }
        else
            break;
    }
    return { next, out };
}

Transcoded<UTF8, UTF16> TranscodePlainly(
    UTF16::Unit const* next, UTF16::Unit const* end, char* out, char const* limit )
{
    auto const put = [&out]( std::uint32_t bits ) { *out++ = static_cast<char>( bits ); };
    while ( next < end && out < limit )
    {
        std::uint32_t const unit = *next;
        if ( unit < 0x80 )
            put( unit );
        else if ( unit < 0x800 )
        {
            put( 0xC0 | unit >> 6 );
            put( 0x80 | ( unit & 0x3F ) );
        }
        else if ( unit < 0xD800 || unit > 0xDFFF )
        {
            put( 0xE0 | unit >> 12 );
            put( 0x80 | ( unit >> 6 & 0x3F ) );
            put( 0x80 | ( unit & 0x3F ) );
        }
        else if ( unit < 0xDC00 && end - next >= 2 && next[1] >= 0xDC00 && next[1] <= 0xDFFF )
        {
            std::uint32_t const c = 0x10000 + ( ( unit - 0xD800 ) << 10 ) + ( next[1] - 0xDC00u );
            put( 0xF0 | c >> 18 );
            put( 0x80 | ( c >> 12 & 0x3F ) );
            put( 0x80 | ( c >> 6 & 0x3F ) );
            put( 0x80 | ( c & 0x3F ) );
            ++next;
        }
        else
            break;
        ++next;
    }
    return { next, out };
}

/// A transcoder like ours, with another loop inside.
template<typename To, typename From>
class Streaming : public UTextReceiver<From>
{
  public:
    Streaming( UTextReceiver<To>& downstream, TranscodeFunction<To, From>* transcode )
        : mDownstream( downstream ), mTranscode( transcode )
    {
    }

    void Start( From ) override
    {
        mPendingCount = 0;
        mDownstream.Start( To() );
    }

    void Receive( ConstArrayOf<typename From::Unit> units ) override
    {
        constexpr std::size_t kSize = sizeof( typename To::Unit ) == 1 ? 4096 : 1024;
        TranscodePiece<To, kSize, From>(
            units, { mPendingCount, mPending }, mDownstream, mTranscode );
    }

    void ReceiveEnd() override { mDownstream.ReceiveEnd(); }

  private:
    UTextReceiver<To>& mDownstream;
    TranscodeFunction<To, From>* mTranscode;
    unsigned mPendingCount = 0;
    typename From::Unit mPending[From::kLongestCharacter - 1];
};

template<typename To, typename From>
class Arena
{
  public:
    explicit Arena( Script const& script ) : mInput( std::make_shared<Input<From>>( script ) ) {}

    /// A contender that converts by a `Stream`, made with a downstream receiver and `arguments`.
    template<typename Stream, typename... Arguments>
    Contender Enter( std::string name, Arguments... arguments ) const
    {
        auto const digest = std::make_shared<Digest<To>>();
        auto const stream = std::make_shared<Stream>( *digest, arguments... );
        auto const run = [input = mInput, digest, stream]
        {
            stream->Start( From() );
            for ( auto const& piece : input->pieces )
                stream->Receive( piece );
            stream->ReceiveEnd();
            return digest->Value();
        };
        return { std::move( name ), run };
    }

  private:
    std::shared_ptr<Input<From>> mInput;
};

template<typename To, typename From>
Contest MakeContest( Script const& script, Goal const& goal )
{
    Arena<To, From> const arena( script );
    TranscodeFunction<To, From>* const plain = TranscodePlainly;
    using Ours = StreamTranscoder<To, From>;
    using Other = Streaming<To, From>;
    return { { arena.template Enter<Other>( "branchy loop", plain ),
                 arena.template Enter<Ours>( "StreamTranscoder" ),
                 arena.template Enter<ByIconv<To, From>>( "iconv" ),
                 arena.template Enter<ByIcu<To, From>>( "ICU" ),
                 arena.template Enter<ByQt<To, From>>( "Qt" ) },
        { goal } };
}

template<typename To, typename From>
Contest MakePortableContest( Script const& script )
{
    Arena<To, From> const arena( script );
    TranscodeFunction<To, From>* const plain = TranscodePlainly;
    TranscodeFunction<To, From>* const portable = TranscodePortably;
    using Other = Streaming<To, From>;
    return { { arena.template Enter<Other>( "branchy loop", plain ),
                 arena.template Enter<Other>( "portable body", portable ) },
        {} };
}

} // namespace

std::vector<ContestMaker> TranscodingContests()
{
    std::vector<ContestMaker> makers;
    for ( Script const& script : kScripts )
        makers.push_back( { "UTF-8 to UTF-32", script.name,
            [&script] { return MakeContest<UTF32, UTF8>( script, script.decoding ); }, 7 } );
    for ( Script const& script : kScripts )
        makers.push_back( { "UTF-16 to UTF-8", script.name,
            [&script] { return MakeContest<UTF8, UTF16>( script, script.encoding ); }, 7 } );
    for ( std::size_t const i : { 0, 1, 2, 8, 12 } )
    {
        Script const& script = kScripts[i];
        std::string const variant = script.name + std::string( ", no wide instructions" );
        makers.push_back( { "UTF-8 to UTF-32", variant,
            [&script] { return MakePortableContest<UTF32, UTF8>( script ); }, 7 } );
        makers.push_back( { "UTF-16 to UTF-8", variant,
            [&script] { return MakePortableContest<UTF8, UTF16>( script ); }, 7 } );
    }
    return makers;
}
