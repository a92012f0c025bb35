#include "linux/CoreServices/ErrorCodes.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <tuple>
#include <unistd.h>

namespace
{

using namespace std::string_literals;

// Sets or clears the immutable attribute; false where that is not possible.
bool SetImmutable( std::string const& path, bool isImmutable )
{
    int const file = open( path.c_str(), O_RDONLY | O_CLOEXEC );
    int flags = 0;
    bool isSet = ioctl( file, FS_IOC_GETFLAGS, &flags ) == 0;
    flags = isImmutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
    isSet = isSet && ioctl( file, FS_IOC_SETFLAGS, &flags ) == 0;
    close( file );
    return isSet;
}

} // namespace

TEST( ResultCodes, FollowTheTable )
{
    for ( auto const& [error, code] : { std::pair( 0, 0 ), { ENOENT, -43 }, { ENOTDIR, -120 },
              { EACCES, -5000 }, { EPERM, -5000 }, { EEXIST, -48 }, { EBUSY, -47 },
              { ETXTBSY, -47 }, { ENOTEMPTY, -47 }, { EIO, -36 }, { ENAMETOOLONG, -37 },
              { EILSEQ, -37 }, { EROFS, -46 }, { ENOSPC, -34 }, { EDQUOT, -34 }, { ENOMEM, -108 },
              { EMFILE, -42 }, { ENFILE, -42 }, { ELOOP, -36 }, { EINVAL, -36 } } )
    {
        EXPECT_EQ( code, ResultCode( error ) ) << strerror( error );
        int const codeThen = error == ENOENT  ? -120
                             : error == EPERM ? -45
                             : error == EROFS ? -44
                                              : code;
        EXPECT_EQ( codeThen, ResultCode( error, { true, true, true } ) ) << strerror( error );
    }
    EXPECT_EQ( fnfErr, ResultCode( ENOENT, { false, true, true } ) );
    EXPECT_EQ( afpAccessDenied, ResultCode( EPERM, { true, false, true } ) );
    EXPECT_EQ( vLckdErr, ResultCode( EROFS, { true, true, false } ) );
}

TEST( ResultCodes, DependOnWhatIsAtThePath )
{
    TemporaryFolder const folder;
    std::string const file = folder.Path( "file" );
    std::ofstream( file ) << "x";

    for ( auto const& [error, path, code] : { std::tuple( ENOENT, "/missing"s, fnfErr ),
              { ENOENT, "/missing/item", dirNFErr }, { ENOENT, file + "/item", dirNFErr },
              { EPERM, file, afpAccessDenied }, { EPERM, "/missing", afpAccessDenied },
              { EROFS, "/proc/self/status", vLckdErr }, { EROFS, "/missing/item", vLckdErr } } )
        EXPECT_EQ( code, ResultCodeForPath( error, path ) ) << path;
    if ( !SetImmutable( file, true ) )
        GTEST_SKIP() << "SKIPPED: the immutable attribute cannot be set here";
    int const error = unlink( file.c_str() ) == 0 ? 0 : errno;
    OSErr const code = ResultCodeForPath( error, file );
    SetImmutable( file, false );
    EXPECT_EQ( fLckdErr, code );
}
