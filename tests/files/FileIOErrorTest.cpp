#include "files/FileIOError.h"
#include "files/FileErrors.h"
#include "files/FileNameErrors.h"
#include "files/mac/FileErrors.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <type_traits>

namespace
{

using namespace std::literals;

// Whether the classes derive from `Base` and add nothing.
template<typename Base, typename... Tags>
constexpr bool
    AreTagsOf = ( ( std::is_base_of_v<Base, Tags> && sizeof( Tags ) == sizeof( Base ) ) && ... );

static_assert( sizeof( FileIOError ) == 2 * sizeof( void* ) );
static_assert( AreTagsOf<FileIOError, FileExists, DirectoryExists, FileFoundError,
    FileNotFoundError, DirectoryNotFoundError, DirectoryNotEmpty, FileCreateFailed,
    DirectoryCreateFailed, FileDeleteFailed, DirectoryDeleteFailed, FileCopyFailed, FileMoveFailed,
    FileNotOpenError, FileBusyError, FileLockError, FileItemError, FilePermissionError,
    DiskFullError, EndOfFileError, RootHasNoParent, EmptyFileLocationError,
    CreateUniqueFileLocationFailed, MacintoshPlatform::FullPathFailed,
    MacintoshPlatform::InvalidParentURL, MacintoshPlatform::CannotCreateSpecialFolder> );
static_assert( AreTagsOf<DebuggableException, IllegalFileName, IllegalFileNameLength,
    BadFileNameError, PrefixDoesNotMatch, ExtensionDoesNotMatch, FileReadingLoopEndOfFileError> );
static_assert(
    std::is_empty_v<FSIteratorCreateError> && std::is_empty_v<MacintoshPlatform::FileLoopFailed> );

} // namespace

TEST( FileIOErrorMessage, NamesTypeFilesAndCode )
{
    struct
    {
        FileNotFoundError error;
        char const* message;
    } const rows[] = { { FileNotFoundError(), "" },
        { FileNotFoundError( -43 ), ": Unknown error: 4294967253" },
        { FileNotFoundError( "/tmp/a"sv, -43 ), " on \"/tmp/a\": Unknown error: 4294967253" },
        { FileNotFoundError( "a"sv, "b"sv, 1 ), " on \"a\" and \"b\": Unknown error: 1" },
        { FileNotFoundError( ""sv, "b"sv, 0 ), " and \"b\"" } };

    for ( auto const& row : rows )
    {
        std::string const message = "File error \"17FileNotFoundError\""s + row.message;
        EXPECT_EQ( message, row.error.MakeErrorMessage() );
        std::exception const& base = row.error;
        EXPECT_EQ( message, base.what() );
    }
    EXPECT_STREQ( "File error \"N17MacintoshPlatform14FullPathFailedE\"",
        MacintoshPlatform::FullPathFailed().what() );
    EXPECT_EQ( "Unknown error: 0", MakeErrorString( 0 ) );
}

TEST( FileIOErrorMessage, GivesWayToTheTypeNameWhenMemoryRunsOut )
{
    FilePermissionError const error( "a name"sv, -5000 );
    AllocationFailure const failure( 1 );
    EXPECT_STREQ( "19FilePermissionError", error.what() );
}

TEST( FileIOError, CopiesCodeAndNamesDeeplyButNotTheMessage )
{
    auto* const original = new FileBusyError( "a"sv, "b"sv, -47 );
    std::string const message = original->what();
    FileBusyError const copy( *original );
    FileBusyError assigned( "c"sv, 1 );
    char const* const before = assigned.what();
    assigned = *original;
    EXPECT_STREQ( before, "File error \"13FileBusyError\" on \"c\": Unknown error: 1" );
    FileBusyError& alias = assigned;
    assigned = alias;
    delete original;
    EXPECT_EQ( message, copy.what() );
    EXPECT_EQ( message, assigned.what() );
    EXPECT_EQ( -47, assigned.GetCode() );
}

TEST( FileIOError, LeaksNothingWhenItCannotBeMade )
{
    std::string const text( 100, 'n' );
    EXPECT_LT( 2, FailEachAllocation(
                      [name = std::string_view( text )]
                      {
                          FileIOError const error( name, name, 1 );
                          FileIOError const copy( error );
                      } ) );
}
