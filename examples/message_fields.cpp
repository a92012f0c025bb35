// message_fields FILE: what a message consists of, and where in the file it stands.
//
// FILE is anything made like a mail: header fields, an empty line, a body. A saved HTTP response is
// one too. For each field the program prints the position of its first byte, its name in lower
// case, its value and the position of its end; then the body's extent and its number of lines:
//
//     field at 0, "subject": "Meeting", to 16
//     body from 18 to 2048: 37 lines
//
// Lines without a colon are no fields and leave no trace, such as the "HTTP/1.1 200 OK" that a
// response begins with. The "From " line at the beginning of a mailbox holds a time of day, so it
// comes out as a field: its name has blanks and ends at the first colon, within the time.
//
// The file may be of any size. It flows through in pieces of a few kilobytes; nothing is kept of
// it.

#include "files/FileReader.h"
#include "files/MakeFileLocation.h"
#include "foundation/Ascii.h"
#include "platform/CFErrors.h"
#include "streams/MessageReceiver.h"
#include "streams/ReadReader.h"

#include <exception>
#include <iostream>

namespace
{

// Prints text so that no byte of a strange file reaches the terminal but plain ASCII.
void PrintQuotable( ConstData text )
{
    for ( unsigned char const c : text )
        if ( c == '"' || c == '\\' )
            std::cout << '\\' << c;
        else if ( Ascii::IsMember( Ascii::PlainText(), c ) )
            std::cout << c;
        else
            std::cout << "\\x" << Ascii::HexDigit( c / 16U ) << Ascii::HexDigit( c % 16U );
}

// A value comes as a stream of bytes: a Start, the pieces as they were read, an end. Here each
// piece is printed when it comes, so values may be of any length.
class ValuePrinter : public DataReceiver
{
  public:
    using DataReceiver::Receive;

    void Start() override { std::cout << '"'; }

    void Receive( ConstData piece ) override { PrintQuotable( piece ); }

    void ReceiveEnd() override { std::cout << '"'; }
};

// The body comes as lines: pieces of text, and between them the line breaks with their positions.
// What stands in the lines doesn't matter here.
class BodyPrinter : public LineReceiver
{
  public:
    void Start( unsigned long long position ) override
    {
        std::cout << "body from " << position;
        mLines = 0;
        mAtLineStart = true;
    }

    void Receive( ConstData ) override
    {
        mLines += mAtLineStart;
        mAtLineStart = false;
    }

    // An empty line has no text, only its break. The last line may have no break.
    void ReceiveLineBreak( Range<unsigned long long> ) override
    {
        mLines += mAtLineStart;
        mAtLineStart = true;
    }

    void ReceiveEnd( unsigned long long position ) override
    {
        std::cout << " to " << position << ": " << mLines << ( mLines == 1 ? " line" : " lines" )
                  << '\n';
    }

  private:
    unsigned long long mLines = 0;
    bool mAtLineStart = true;
};

// The message itself: says where each value and the body are to go.
class MessagePrinter : public MessageReceiver
{
  public:
    void Start( unsigned long long ) override {}

    DataReceiver& ReceiveField( unsigned long long position, ConstData name ) override
    {
        std::cout << "field at " << position << ", \"";
        PrintQuotable( name );
        std::cout << "\": ";
        return mValue;
    }

    void ReceiveFieldEnd( unsigned long long position ) override
    {
        std::cout << ", to " << position << '\n';
    }

    LineReceiver& ReceiveBody( unsigned long long ) override { return mBody; }

    void ReceiveEnd( unsigned long long ) override {}

  private:
    ValuePrinter mValue;
    BodyPrinter mBody;
};

} // namespace

int main( int argumentCount, char* arguments[] )
{
    if ( argumentCount != 2 )
    {
        std::cerr << "usage: message_fields FILE\n";
        return 2;
    }
    try
    {
        FileReader file( MakeFileLocationOfBytes( ConstData( arguments[1] ) ) );
        MessagePrinter message;
        ReadReader( file, message );
        if ( !std::cout.flush() )
        {
            std::cerr << "message_fields: the output cannot be written\n";
            return 1;
        }
    }
    catch ( std::exception const& error )
    {
        std::cout << std::flush;
        std::cerr << "message_fields: " << arguments[1] << ": " << error.what() << '\n';
        return 1;
    }
    catch ( CFURLCreateWithFileSystemPathFailed const& )
    {
        std::cerr << "message_fields: " << arguments[1]
                  << ": the folder that the name counts from is gone\n";
        return 1;
    }
    return 0;
}
