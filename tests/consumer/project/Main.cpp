// consumer FILE: checksum and number of line breaks of a property list, and the version that it
// holds.

#include "files/MakeFileLocation.h"
#include "files/ReadFile.h"
#include "foundation/Ascii.h"
#include "platform/CFBytes.h"
#include "platform/CFDictionaries.h"
#include "platform/CFStrings.h"
#include "streams/ChecksumReceiver.h"
#include "streams/LineMaker.h"

#include <CoreFoundation/CFPropertyList.h>

#include <cstdio>
#include <string>

namespace
{

class LineCounter : public LineReceiver
{
  public:
    void Start( unsigned long long ) override {}

    void Receive( ConstData ) override {}

    void ReceiveLineBreak( Range<unsigned long long> ) override { ++mCount; }

    void ReceiveEnd( unsigned long long ) override {}

    int Count() const { return mCount; }

  private:
    int mCount = 0;
};

std::string VersionIn( FileLocation const& file )
{
    AutoCFData const data = MakeCFData( ConstData( ReadFile( file, 1000 ) ) );
    AutoCFDictionary const list =
        DictionaryCreateFromXMLData( data.Get(), kCFPropertyListImmutable );
    AutoCFString const key = MakeCFString( "CFBundleVersion", kCFStringEncodingUTF8 );
    CFTypeRef const version = GetDictionaryValue( list.Get(), key.Get() );
    return MakeString( static_cast<CFStringRef>( version ), kCFStringEncodingISOLatin1, '?' );
}

} // namespace

int main( int, char** argv )
{
    FileLocation const file = MakeFileLocationOfBytes( ConstData( argv[1] ) );
    ChecksumReceiver checksum;
    ReadFile( file, checksum );
    LineCounter lines;
    LineMaker maker( lines );
    ReadFile( file, maker );
    std::printf( "%08X %d %s\n", checksum.checksum, lines.Count(),
        Ascii::RaiseCase( ConstData( VersionIn( file ) ) ).c_str() );
}
