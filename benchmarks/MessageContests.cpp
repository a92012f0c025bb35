#include "benchmarks/Contest.h"
#include "streams/LineMaker.h"
#include "streams/MessageMaker.h"
#include "tests/support/ByteMessageMaker.h"

#include <boost/beast/http/basic_parser.hpp>
#include <gmime/gmime.h>
#include <http_parser.h>

#include <algorithm>
#include <memory>
#include <random>

namespace
{

namespace http = boost::beast::http;

using Messages = std::vector<std::string>;
using Random = std::mt19937;

// What all contenders note about what they find: the lengths, and the ends of the values, so that
// it costs the same however a value is cut.
struct Tally
{
    void AddField( std::size_t nameLength, std::size_t valueLength, unsigned char valueEnd )
    {
        std::size_t const field = nameLength * 1'000'003 + valueLength * 257 + valueEnd;
        fields = ( fields + field ) * 0x9E3779B97F4A7C15;
    }

    std::uint64_t Digest() const { return fields + bodyLength; }

    std::uint64_t fields = 0;
    std::size_t bodyLength = 0;
};

// Takes the place of a program's own receivers.
class TallyingReceiver : public MessageReceiver
{
  public:
    void Start( unsigned long long ) override {}

    DataReceiver& ReceiveField( unsigned long long, ConstData name ) override
    {
        mNameLength = name.Length();
        return mValue;
    }

    void ReceiveFieldEnd( unsigned long long ) override
    {
        mTally.AddField( mNameLength, mValue.length, mValue.end );
    }

    LineReceiver& ReceiveBody( unsigned long long ) override { return mBody; }

    void ReceiveEnd( unsigned long long ) override {}

    std::uint64_t Digest() const { return mTally.Digest() + mBody.length; }

  private:
    struct Value : DataReceiver
    {
        void Start() override { length = 0; }

        void Receive( ConstData text ) override
        {
            length += text.Length();
            end = text.end()[-1];
        }

        void ReceiveEnd() override {}

        std::size_t length = 0;
        unsigned char end = 0;
    };

    struct Body : LineReceiver
    {
        void Start( unsigned long long ) override {}

        void Receive( ConstData text ) override { length += text.Length(); }

        void ReceiveLineBreak( Range<unsigned long long> ) override {}

        void ReceiveEnd( unsigned long long ) override {}

        std::size_t length = 0;
    };

    Tally mTally;
    Value mValue;
    Body mBody;
    std::size_t mNameLength = 0;
};

// Pushes each message in pieces of `pieceSize` bytes.
void PushAll( DataReceiver& receiver, Messages const& messages, std::size_t pieceSize )
{
    for ( std::string_view text : messages )
    {
        receiver.Start();
        for ( ; !text.empty(); text.remove_prefix( std::min( text.size(), pieceSize ) ) )
            receiver.Receive( text.substr( 0, pieceSize ) );
        receiver.ReceiveEnd();
    }
}

std::uint64_t RunPlain( Messages const& messages, std::size_t pieceSize )
{
    TallyingReceiver receiver;
    ByteMessageMaker maker( receiver );
    PushAll( maker, messages, pieceSize );
    return receiver.Digest();
}

std::uint64_t RunOurs( Messages const& messages, std::size_t pieceSize )
{
    TallyingReceiver receiver;
    MessageMaker maker( receiver );
    LineMaker lines( maker );
    PushAll( lines, messages, pieceSize );
    return receiver.Digest();
}

// What the callbacks of http-parser share.
struct HttpState
{
    Tally tally;
    std::size_t nameLength = 0;
    std::size_t valueLength = 0;
    unsigned char valueEnd = 0;
    bool inValue = false;

    void EndField()
    {
        tally.AddField( nameLength, valueLength, valueEnd );
        nameLength = valueLength = 0;
        inValue = false;
    }
};

HttpState& StateOf( http_parser* parser )
{
    return *static_cast<HttpState*>( parser->data );
}

http_parser_settings HttpSettings()
{
    http_parser_settings settings;
    http_parser_settings_init( &settings );
    settings.on_header_field = []( http_parser* parser, char const*, std::size_t length )
    {
        HttpState& state = StateOf( parser );
        if ( state.inValue )
            state.EndField();
        state.nameLength += length;
        return 0;
    };
    settings.on_header_value = []( http_parser* parser, char const* text, std::size_t length )
    {
        HttpState& state = StateOf( parser );
        state.inValue = true;
        state.valueLength += length;
        if ( length > 0 )
            state.valueEnd = static_cast<unsigned char>( text[length - 1] );
        return 0;
    };
    settings.on_headers_complete = []( http_parser* parser )
    {
        StateOf( parser ).EndField();
        return 0;
    };
    settings.on_body = []( http_parser* parser, char const*, std::size_t length )
    {
        StateOf( parser ).tally.bodyLength += length;
        return 0;
    };
    return settings;
}

std::uint64_t RunHttpParser( Messages const& messages, std::size_t pieceSize )
{
    static http_parser_settings const settings = HttpSettings();
    HttpState state;
    for ( std::string_view text : messages )
    {
        http_parser parser;
        http_parser_init( &parser, HTTP_RESPONSE );
        parser.data = &state;
        for ( ; !text.empty(); text.remove_prefix( std::min( text.size(), pieceSize ) ) )
            http_parser_execute(
                &parser, &settings, text.data(), std::min( text.size(), pieceSize ) );
    }
    return state.tally.Digest();
}

// Notes the fields as they are found; nothing is stored.
class BeastParser : public http::basic_parser<false>
{
  public:
    explicit BeastParser( Tally& tally ) : mTally( tally ) { eager( true ); }

  private:
    using Error = boost::beast::error_code;
    using Text = boost::beast::string_view;

    void on_request_impl( http::verb, Text, Text, int, Error& ) override {}

    void on_response_impl( int, Text, int, Error& ) override {}

    void on_field_impl( http::field, Text name, Text value, Error& ) override
    {
        mTally.AddField( name.size(), value.size(), static_cast<unsigned char>( value.back() ) );
    }

    void on_header_impl( Error& ) override {}

    void on_body_init_impl( boost::optional<std::uint64_t> const&, Error& ) override {}

    std::size_t on_body_impl( Text text, Error& ) override
    {
        mTally.bodyLength += text.size();
        return text.size();
    }

    void on_chunk_header_impl( std::uint64_t, Text, Error& ) override {}

    std::size_t on_chunk_body_impl( std::uint64_t, Text text, Error& ) override
    {
        return text.size();
    }

    void on_finish_impl( Error& ) override {}

    Tally& mTally;
};

// The parser takes a head only when it is complete; what it has not taken is shown to it again,
// longer, as a read into a buffer would do.
std::uint64_t RunBeast( Messages const& messages, std::size_t pieceSize )
{
    Tally tally;
    for ( std::string const& text : messages )
    {
        BeastParser parser( tally );
        std::size_t taken = 0;
        for ( std::size_t arrived = 0; arrived < text.size(); )
        {
            arrived = std::min( text.size(), arrived + pieceSize );
            boost::beast::error_code error;
            taken += parser.put(
                boost::asio::const_buffer( text.data() + taken, arrived - taken ), error );
        }
    }
    return tally.Digest();
}

// The library keeps the values as they are written; here each fold is a break and one blank, for
// which we count one.
void TallyHeaders( GMimeObject* part, Tally& tally )
{
    GMimeHeaderList* const headers = g_mime_object_get_header_list( part );
    for ( int i = 0; i < g_mime_header_list_get_count( headers ); ++i )
    {
        GMimeHeader* const header = g_mime_header_list_get_header_at( headers, i );
        std::string_view value = g_mime_header_get_raw_value( header );
        value.remove_prefix( value.find_first_not_of( " \t" ) );
        value.remove_suffix( value.size() - value.find_last_not_of( "\r\n" ) - 1 );
        std::size_t length = value.size();
        for ( std::size_t at = 0; ( at = value.find( '\r', at ) ) != value.npos; ++at )
            length -= 2;
        tally.AddField( std::string_view( g_mime_header_get_name( header ) ).size(), length,
            static_cast<unsigned char>( value.back() ) );
    }
}

// Reads by itself, so there are no pieces.
std::uint64_t RunGMime( Messages const& messages, std::size_t )
{
    g_mime_init();
    Tally tally;
    for ( std::string const& text : messages )
    {
        GMimeStream* const stream = g_mime_stream_mem_new_with_buffer( text.data(), text.size() );
        GMimeParser* const parser = g_mime_parser_new_with_stream( stream );
        GMimeObject* const part = g_mime_parser_construct_part( parser, nullptr );
        TallyHeaders( part, tally );
        GMimeDataWrapper* const body = g_mime_part_get_content( GMIME_PART( part ) );
        auto const length = g_mime_stream_length( g_mime_data_wrapper_get_stream( body ) );
        tally.bodyLength += static_cast<std::size_t>( length );
        g_object_unref( part );
        g_object_unref( parser );
        g_object_unref( stream );
    }
    return tally.Digest();
}

std::string Words( Random& random, std::size_t length )
{
    static constexpr std::string_view kLetters =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/;=,.-_:()  ";
    std::string text( length, 'x' );
    for ( std::size_t i = 1; i + 1 < length; ++i )
        text[i] = kLetters[random() % kLetters.size()];
    return text;
}

template<std::size_t count>
std::string AnyOf( char const* const ( &names )[count], Random& random )
{
    return names[random() % count];
}

std::string HttpMessage( Random& random )
{
    static constexpr char const* kNames[] = { "Date", "Server", "Content-Type", "ETag", "Vary",
        "Cache-Control", "Last-Modified", "Expires", "Accept-Ranges", "Set-Cookie", "Age", "Via",
        "Strict-Transport-Security", "X-Content-Type-Options", "x-request-id", "X-Frame-Options",
        "Content-Security-Policy", "access-control-allow-origin", "Location", "Pragma", "P3P",
        "Content-Language", "Alt-Svc", "x-cache", "X-Served-By", "Referrer-Policy", "Link" };
    std::string text = "HTTP/1.1 200 OK\r\n";
    for ( int field = 1; field < 12; ++field )
        text += AnyOf( kNames, random ) + ": " + Words( random, 2 + random() % 70 ) + "\r\n";
    std::size_t const bodyLength = 1 + random() % 40;
    text += "Content-Length: " + std::to_string( bodyLength ) + "\r\n\r\n";
    return text + std::string( bodyLength, 'b' );
}

std::string MailMessage( Random& random )
{
    static constexpr char const* kNames[] = { "Received", "Return-Path", "Delivered-To", "From",
        "DKIM-Signature", "Message-ID", "Date", "Subject", "To", "Cc", "Reply-To", "In-Reply-To",
        "References", "List-Id", "List-Unsubscribe", "Authentication-Results", "Received-SPF",
        "X-Spam-Status", "X-Mailer", "X-Originating-IP", "Precedence", "ARC-Seal", "X-Received",
        "ARC-Authentication-Results", "Sender", "User-Agent", "Errors-To", "x-virus-scanned" };
    std::string text;
    for ( int field = 0; field < 40; ++field )
    {
        text += AnyOf( kNames, random ) + ": " + Words( random, 2 + random() % 70 );
        for ( auto folds = std::max( 0, static_cast<int>( random() % 8 ) - 4 ); folds > 0; --folds )
            text +=
                ( random() % 2 == 0 ? "\r\n " : "\r\n\t" ) + Words( random, 10 + random() % 65 );
        text += "\r\n";
    }
    return text + "\r\n" + std::string( 1 + random() % 40, 'b' );
}

std::shared_ptr<Messages const> Make( std::string ( *message )( Random& ) )
{
    Random random( 1 );
    auto const messages = std::make_shared<Messages>();
    while ( messages->size() < 2048 )
        messages->push_back( message( random ) );
    return messages;
}

struct Cut
{
    char const* name;
    std::size_t pieceSize;
    Goal goal;
};

Contest MakeContest( bool isMail, Cut const& cut )
{
    auto const messages = Make( isMail ? MailMessage : HttpMessage );
    Contest contest{ {}, { cut.goal } };
    auto const add = [&]( char const* name, auto run )
    {
        auto const bound = [=, size = cut.pieceSize] { return run( *messages, size ); };
        contest.contenders.push_back( { name, bound } );
    };
    add( "byte machine", RunPlain );
    add( "MessageMaker", RunOurs );
    if ( !isMail )
    {
        add( "http-parser", RunHttpParser );
        add( "Boost.Beast", RunBeast );
    }
    else if ( cut.pieceSize == SIZE_MAX )
        add( "GMime", RunGMime );
    return contest;
}

} // namespace

std::vector<ContestMaker> MessageContests()
{
    static Cut const cuts[] = { { "whole", SIZE_MAX, { "", 3, 5 } },
        { "64-byte pieces", 64, { "", 3, 0 } }, { "16-byte pieces", 16, { "", 1.5, 0 } },
        { "1-byte pieces", 1, { "", 0.6, 0 } } };
    std::vector<ContestMaker> makers;
    for ( bool const isMail : { false, true } )
        for ( Cut const& cut : cuts )
            makers.push_back( { "MessageMaker",
                ( isMail ? "40-field mail heads, " : "12-field HTTP heads, " ) +
                    std::string( cut.name ),
                [=, &cut] { return MakeContest( isMail, cut ); } } );
    return makers;
}
