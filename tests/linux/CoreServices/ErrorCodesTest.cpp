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
    for ( auto const& [error, code, codeThen] :
        { std::tuple( 0, 0, 0 ), { ENOENT, -43, -120 }, { ENOTDIR, -120, -120 },
            { EACCES, -5000, -5000 }, { EPERM, -5000, -45 }, { EEXIST, -48, -48 },
            { EBUSY, -47, -47 }, { ETXTBSY, -47, -47 }, { ENOTEMPTY, -47, -47 },
            { ENAMETOOLONG, -37, -37 }, { EILSEQ, -37, -37 }, { EROFS, -46, -44 },
            { ENOSPC, -34, -34 }, { EDQUOT, -34, -34 }, { ENOMEM, -108, -108 },
            { EMFILE, -42, -42 }, { ENFILE, -42, -42 }, { EINVAL, -36, -36 } } )
    {
        ErrorCircumstances const then = { error == ENOENT, error == EPERM, error == EROFS };
        EXPECT_EQ( code, ResultCode( error, { !then.folderIsMissing, !then.itemIsImmutable,
                                                !then.deviceIsReadOnly } ) )
            << strerror( error );
        EXPECT_EQ( codeThen, ResultCode( error, then ) ) << strerror( error );
    }
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
