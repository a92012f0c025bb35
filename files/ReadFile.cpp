#include "files/ReadFile.h"

#include "files/FileErrors.h"
#include "files/FileReader.h"
#include "files/mac/OperationErrors.h"
#include "streams/ReadReader.h"
#include "streams/StringReceiver.h"

#include <cerrno>

namespace
{

/// Collects at most so many bytes of a file.
class LimitedReceiver : public StringReceiver
{
  public:
    LimitedReceiver( std::string& target, std::uint32_t maximum, FileLocation const& location )
        : StringReceiver( target ), mRoom( maximum ), mLocation( location )
    {
    }

    using StringReceiver::Receive;

    void Receive( ConstData data ) override
    {
        if ( data.Length() > mRoom )
        {
            std::string const path = mLocation.Platform().POSIXPath();
            throw FileItemError(
                ConstData( path ), MacintoshPlatform::FileErrorCode( EFBIG, path ) );
        }
        mRoom -= data.Length();
        StringReceiver::Receive( data );
    }

  private:
    std::uint32_t mRoom;
    FileLocation const& mLocation;
};

} // namespace

void ReadFile( FileLocation const& location, DataReceiver& receiver )
{
    FileReader reader( location );
    ReadReader( reader, receiver );
}

void ReadFile( FileLocation const& location, std::uint64_t offset, std::uint64_t length,
    DataReceiver& receiver )
{
    FileReader reader( location, offset, length );
    ReadReader( reader, receiver );
}

std::string ReadFile( FileLocation const& location, std::uint32_t maximum )
{
    std::string result;
    LimitedReceiver receiver( result, maximum, location );
    ReadFile( location, receiver );
    return result;
}
