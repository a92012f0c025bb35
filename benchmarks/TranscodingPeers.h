#pragma once

#include "encoding/UTextReceiver.h"

#include <iconv.h>
#include <QStringConverter>
#include <unicode/ucnv.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <stdexcept>
#include <string>

// Transcoders like ours that work by other libraries.

/// What the transcoders of all peers have in common.
template<typename To, typename From>
class Peer : public UTextReceiver<From>
{
  public:
    explicit Peer( UTextReceiver<To>& downstream ) : mDownstream( downstream ) {}

    void Start( From ) override { mDownstream.Start( To() ); }

    void ReceiveEnd() override { mDownstream.ReceiveEnd(); }

  protected:
    /// Where the units put by a library, which knows bytes, begin.
    char* Bytes() { return reinterpret_cast<char*>( mUnits ); }

    void PushUpTo( char const* endOfBytes )
    {
        auto const size = static_cast<std::size_t>( endOfBytes - Bytes() );
        mDownstream.Receive( { mUnits, mUnits + size / sizeof( typename To::Unit ) } );
    }

    static constexpr std::size_t kSize = 4096;

  private:
    UTextReceiver<To>& mDownstream;
    typename To::Unit mUnits[kSize / sizeof( typename To::Unit )];
};

[[noreturn]] inline void Fail()
{
    throw std::runtime_error( "a library refuses the text" );
}

template<typename To, typename From>
class ByIconv : public Peer<To, From>
{
  public:
    explicit ByIconv( UTextReceiver<To>& downstream ) : Peer<To, From>( downstream ) {}

    ~ByIconv() override { iconv_close( mConversion ); }

    void Receive( ConstArrayOf<typename From::Unit> units ) override
    {
        // It keeps nothing of a character that is cut.
        auto const* next = units.begin();
        while ( !mPending.empty() && next != units.end() )
        {
            mPending += *next++;
            mPending.erase( 0, Convert( mPending.data(), mPending.data() + mPending.size() ) );
        }
        next += Convert( next, units.end() );
        mPending.append( next, units.end() );
    }

  private:
    /// Returns how many units it took.
    std::size_t Convert( typename From::Unit const* begin, typename From::Unit const* end )
    {
        auto* next = reinterpret_cast<char*>( const_cast<typename From::Unit*>( begin ) );
        auto left = static_cast<std::size_t>( end - begin ) * sizeof( typename From::Unit );
        std::size_t const size = left;
        while ( left != 0 )
        {
            char* out = this->Bytes();
            std::size_t room = this->kSize;
            std::size_t const result = iconv( mConversion, &next, &left, &out, &room );
            bool const isFull = result == static_cast<std::size_t>( -1 ) && errno == E2BIG;
            if ( result == static_cast<std::size_t>( -1 ) && errno == EILSEQ )
                Fail();
            this->PushUpTo( out );
            if ( !isFull )
                break;
        }
        return ( size - left ) / sizeof( typename From::Unit );
    }

    static constexpr bool kIsDecoder = sizeof( typename From::Unit ) == 1;

    iconv_t mConversion =
        kIsDecoder ? iconv_open( "UTF-32LE", "UTF-8" ) : iconv_open( "UTF-8", "UTF-16LE" );
    std::basic_string<typename From::Unit> mPending;
};

using IcuConverter = std::unique_ptr<UConverter, decltype( &ucnv_close )>;

inline IcuConverter OpenIcuConverter( char const* name )
{
    UErrorCode error = U_ZERO_ERROR;
    IcuConverter converter( ucnv_open( name, &error ), ucnv_close );
    if ( U_FAILURE( error ) )
        Fail();
    return converter;
}

template<typename To, typename From>
class ByIcu : public Peer<To, From>
{
  public:
    using Peer<To, From>::Peer;

    void Receive( ConstArrayOf<typename From::Unit> units ) override
    {
        auto const* next = units.begin();
        UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
        while ( error == U_BUFFER_OVERFLOW_ERROR )
        {
            error = U_ZERO_ERROR;
            char* out = this->Bytes();
            Convert( &out, out + this->kSize, &next, units.end(), error );
            this->PushUpTo( out );
        }
        if ( U_FAILURE( error ) )
            Fail();
    }

  private:
    void Convert( char** out, char* outEnd, char const** next, char const* end, UErrorCode& error )
    {
        ucnv_convertEx( mUtf32.get(), mUtf8.get(), out, outEnd, next, end, mPivot, &mPivotNext,
            &mPivotEnd, mPivot + std::size( mPivot ), false, false, &error );
    }

    void Convert( char** out, char* outEnd, UTF16::Unit const** next, UTF16::Unit const* end,
        UErrorCode& error )
    {
        auto const* unit = reinterpret_cast<UChar const*>( *next );
        ucnv_fromUnicode( mUtf8.get(), out, outEnd, &unit, reinterpret_cast<UChar const*>( end ),
            nullptr, false, &error );
        *next = reinterpret_cast<UTF16::Unit const*>( unit );
    }

    IcuConverter mUtf8 = OpenIcuConverter( "UTF-8" );
    IcuConverter mUtf32 = OpenIcuConverter( "UTF-32LE" );
    UChar mPivot[1024];
    UChar* mPivotNext = mPivot;
    UChar* mPivotEnd = mPivot;
};

template<typename To, typename From>
class ByQt : public Peer<To, From>
{
  public:
    using Peer<To, From>::Peer;

    void Receive( ConstArrayOf<typename From::Unit> units ) override
    {
        constexpr std::size_t kMost = Peer<To, From>::kSize / 4 - 8; // what they ask room for
        for ( auto const* next = units.begin(); next != units.end(); )
        {
            auto const* const end =
                next + std::min( kMost, static_cast<std::size_t>( units.end() - next ) );
            Convert( next, end );
            next = end;
        }
    }

  private:
    void Convert( char const* next, char const* end )
    {
        QChar const* const outEnd = mFromUtf8.appendToBuffer( mUtf16, QByteArrayView( next, end ) );
        Encode( QStringView( mUtf16, outEnd ), mToUtf32 );
    }

    void Convert( UTF16::Unit const* next, UTF16::Unit const* end )
    {
        Encode( QStringView( reinterpret_cast<char16_t const*>( next ), end - next ), mToUtf8 );
    }

    void Encode( QStringView text, QStringEncoder& encoder )
    {
        this->PushUpTo( encoder.appendToBuffer( this->Bytes(), text ) );
        if ( encoder.hasError() || mFromUtf8.hasError() )
            Fail();
    }

    QStringDecoder mFromUtf8{ QStringConverter::Utf8 };
    QStringEncoder mToUtf8{ QStringConverter::Utf8 };
    QStringEncoder mToUtf32{ QStringConverter::Utf32LE };
    QChar mUtf16[2048];
};
