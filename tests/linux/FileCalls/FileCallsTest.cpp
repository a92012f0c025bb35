#include "tests/support/TemporaryFolder.h"

#include <copyfile.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

std::function<ssize_t()> gKernel; // what it answers is the kernel's answer, unless that is 1

class CopyingContent : public testing::Test
{
  protected:
    int Copy( std::string const& path )
    {
        int const source = open( path.c_str(), O_RDONLY | O_CLOEXEC );
        int const copy = open( mCopy.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600 );
        lseek( source, 2, SEEK_SET );
        int const result = fcopyfile( source, copy, nullptr, COPYFILE_DATA ) == 0 ? 0 : errno;
        close( source );
        close( copy );
        stat( mCopy.c_str(), &mStatus );
        return result;
    }

    /// Data, a hole, data, and a hole at the end.
    void MakeFileWithHoles( off_t hole )
    {
        std::ofstream file( mFile, std::ios::binary );
        ( file << std::string( 100000, 'a' ) ).seekp( hole ) << std::string( 50000, 'b' );
        file.close();
        EXPECT_EQ( 0, truncate( mFile.c_str(), hole + 1000000 ) );
    }

    TemporaryFolder const mFolder;
    std::string const mFile = mFolder.Path( "file" );
    std::string const mCopy = mFolder.Path( "copy" );
    struct stat mStatus = {}; // of the copy
};

/// Two megabytes of it.
std::string Content( std::string const& path, off_t from = 0 )
{
    std::string text( 1 << 21, '\0' );
    std::ifstream( path, std::ios::binary ).seekg( from ).read( text.data(), 1 << 21 );
    return text;
}

} // namespace

extern "C" decltype( copy_file_range ) __real_copy_file_range;

extern "C" ssize_t __wrap_copy_file_range(
    int from, off_t* fromAt, int to, off_t* toAt, std::size_t count, unsigned flags )
{
    ssize_t const answer = gKernel ? gKernel() : 1;
    return answer == 1 ? __real_copy_file_range( from, fromAt, to, toAt, count, flags ) : answer;
}

TEST_F( CopyingContent, EndsWhereTheFileEndsWhateverSizeItTells )
{
    std::ofstream file( mFile );
    for ( std::string const path : { mFile.c_str(), "/proc/version", "/sys/kernel/mm/ksm/run" } )
    {
        EXPECT_EQ( access( path.c_str(), R_OK ) == 0 ? 0 : EBADF, Copy( path ) );
        EXPECT_EQ( Content( path ), Content( mCopy ) ) << path;
    }
    EXPECT_EQ( EISDIR, Copy( mFolder.Path() ) );
    EXPECT_EQ( -1, fcopyfile( 0, 1, nullptr, COPYFILE_DATA | 1 ) );
}

TEST_F( CopyingContent, KeepsHolesInFilesOverFourGigabytesWhereTheKernelDoesNotCopyToo )
{
    off_t const hole = ( off_t( 1 ) << 32 ) + 5000;
    MakeFileWithHoles( hole );
    for ( int const error : { 0, EXDEV, EIO, -1 } ) // -1: the kernel does copy
    {
        int calls = error == -1 ? 4 : 0;
        if ( error != -1 )
            gKernel = [&] { return ( errno = ++calls < 4 ? EINTR : error ) == 0 ? 0 : -1; };
        EXPECT_EQ( 0, Copy( mFile ) ) << error;
        EXPECT_EQ( 4, calls ) << error;
        EXPECT_EQ( hole + 1000000, mStatus.st_size );
        EXPECT_GT( 1000, mStatus.st_blocks );
        for ( off_t const at : { off_t( 0 ), hole - 1000000 } )
            EXPECT_TRUE( Content( mFile, at ) == Content( mCopy, at ) ) << error;
        gKernel = nullptr;
    }
}

TEST_F( CopyingContent, AddsNothingToAFileThatIsCutMeanwhile )
{
    for ( off_t const left : { 0, 50000, 100000, 200000 } )
    {
        MakeFileWithHoles( 1 << 20 );
        gKernel = [&] { return 1 + truncate( mFile.c_str(), left ); };
        EXPECT_EQ( 0, Copy( mFile ) ) << left;
        EXPECT_EQ( left, mStatus.st_size );
    }
    gKernel = nullptr;
}
