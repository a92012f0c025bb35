#include "linux/CoreFoundation/RegularFile.h"

#include <CoreFoundation/CFURLAccess.h>

#include "linux/Descriptor.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr std::size_t kLimit = kCFURLMaximumResourceLength;

// Reads to the end of the file, or until there are more bytes than the limit. Answers 0 or an
// errno value.
int ReadToEnd( int file, std::size_t expected, std::vector<UInt8>& bytes )
{
    bytes.resize( std::clamp<std::size_t>( expected, 4095, kLimit ) + 1 );
    std::size_t used = 0;
    while ( used <= kLimit )
    {
        if ( used == bytes.size() )
        {
            bytes.resize( std::min( 2 * used, kLimit + 1 ) );
        }
        ssize_t const count = read( file, bytes.data() + used, bytes.size() - used );
        if ( count == 0 )
        {
            bytes.resize( used );
            return 0;
        }
        if ( count < 0 && errno != EINTR )
        {
            return errno;
        }
        used += static_cast<std::size_t>( std::max<ssize_t>( count, 0 ) );
    }
    return EFBIG;
}

} // namespace

// The item is first held without opening it, so that its kind is known and stays the same before
// anything that may have an effect is done to it.
int ReadRegularFile( std::string const& path, std::vector<UInt8>& bytes )
{
    Descriptor const item( open( path.c_str(), O_PATH | O_CLOEXEC ) );
    struct stat status = {};
    if ( item.Get() < 0 || fstat( item.Get(), &status ) != 0 )
    {
        return errno;
    }
    if ( !S_ISREG( status.st_mode ) )
    {
        return EINVAL;
    }
    auto const size = static_cast<std::size_t>( std::max<off_t>( status.st_size, 0 ) );
    if ( size > kLimit )
    {
        return EFBIG;
    }
    std::string const itself = "/proc/self/fd/" + std::to_string( item.Get() );
    int opened = -1;
    do
    {
        opened = open( itself.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC );
    } while ( opened < 0 && errno == EINTR );
    Descriptor const file( opened );
    return file.Get() < 0 ? errno : ReadToEnd( file.Get(), size, bytes );
}
