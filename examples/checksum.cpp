// checksum FILE...: the CRC-32/MPEG-2, the number of lines and the number of bytes of each file.
//
// Shows how receivers are put together. The bytes of a file are pushed once, piece by piece, and
// every piece reaches the checksum and the line counter in turn: no file is held in memory,
// whatever its size.

#include "files/MakeFileLocation.h"
#include "files/ReadFile.h"
#include "platform/CFErrors.h"
#include "streams/ChecksumReceiver.h"
#include "streams/LineMaker.h"

#include <cstdio>
#include <exception>

namespace
{

/// Passes a stream on to two receivers.
class ReceiverPair : public DataReceiver
{
  public:
    ReceiverPair( DataReceiver& first, DataReceiver& second ) : mFirst( first ), mSecond( second )
    {
    }

    using DataReceiver::Receive;

    void Start() override
    {
        mFirst.Start();
        mSecond.Start();
    }

    void Receive( ConstData data ) override
    {
        mFirst.Receive( data );
        mSecond.Receive( data );
    }

    void ReceiveEnd() override
    {
        mFirst.ReceiveEnd();
        mSecond.ReceiveEnd();
    }

  private:
    DataReceiver& mFirst;
    DataReceiver& mSecond;
};

/// Counts lines. A line ends with CR, LF or the two together; the last one may have no end.
class LineCounter : public LineReceiver
{
  public:
    void Start( unsigned long long ) override
    {
        mLines = 0;
        mInLine = false;
    }

    void Receive( ConstData ) override { mInLine = true; }

    void ReceiveLineBreak( Range<unsigned long long> ) override
    {
        ++mLines;
        mInLine = false;
    }

    void ReceiveEnd( unsigned long long position ) override
    {
        mLines += mInLine;
        mBytes = position;
    }

    unsigned long long Lines() const { return mLines; }

    unsigned long long Bytes() const { return mBytes; }

  private:
    unsigned long long mLines = 0;
    unsigned long long mBytes = 0;
    bool mInLine = false;
};

void PrintChecksum( char const* path )
{
    ChecksumReceiver checksum;
    LineCounter counter;
    LineMaker lineMaker( counter );
    ReceiverPair both( checksum, lineMaker );
    ReadFile( MakeFileLocationOfBytes( ConstData( path ) ), both );
    std::printf(
        "0x%08X %llu %llu %s\n", checksum.checksum, counter.Lines(), counter.Bytes(), path );
}

} // namespace

int main( int argc, char** argv )
{
    if ( argc < 2 )
    {
        std::fprintf( stderr, "usage: checksum FILE...\nprints checksum, lines, bytes and name\n" );
        return 2;
    }
    int status = 0;
    for ( int i = 1; i < argc; ++i )
    {
        try
        {
            PrintChecksum( argv[i] );
        }
        catch ( std::exception const& error )
        {
            std::fprintf( stderr, "checksum: %s: %s\n", argv[i], error.what() );
            status = 1;
        }
        catch ( CFURLCreateWithFileSystemPathFailed const& )
        {
            std::fprintf(
                stderr, "checksum: %s: the folder that the name counts from is gone\n", argv[i] );
            status = 1;
        }
    }
    if ( std::fflush( stdout ) != 0 || std::ferror( stdout ) != 0 )
    {
        std::perror( "checksum: standard output" );
        status = 1;
    }
    return status;
}
