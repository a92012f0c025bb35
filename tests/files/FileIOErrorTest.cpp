#include "files/FileIOError.h"
#include "files/FileErrors.h"
#include "files/mac/FileErrors.h"
#include "tests/support/AllocationFailure.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <utility>

namespace
{

using namespace std::literals;

} // namespace

TEST( FileIOErrorMessage, NamesTypeFilesAndCode )
{
    std::pair<FileNotFoundError, std::string> const rows[] = { { FileNotFoundError(), "" },
        { FileNotFoundError( -43 ), ": Unknown error: 4294967253" },
        { FileNotFoundError( "/tmp/a"sv, -43 ), " on \"/tmp/a\": Unknown error: 4294967253" },
        { FileNotFoundError( "a"sv, "b"sv, 1 ), " on \"a\" and \"b\": Unknown error: 1" },
        { FileNotFoundError( ""sv, "b"sv, 0 ), " and \"b\"" } };
    for ( auto const& [error, message] : rows )
    {
        EXPECT_EQ( "File error \"17FileNotFoundError\"" + message, error.MakeErrorMessage() );
        std::exception const& base = error;
        EXPECT_EQ( error.MakeErrorMessage(), base.what() );
    }
    EXPECT_STREQ( "File error \"N17MacintoshPlatform14FullPathFailedE\"",
        MacintoshPlatform::FullPathFailed().what() );
    EXPECT_EQ( "Unknown error: 0", MakeErrorString( 0 ) );
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

TEST( FileIOError, LeaksNothingWhenItCannotBeMadeAndThenHasItsTypeNameOnly )
{
    std::string const text( 100, 'n' );
    EXPECT_LT( 2, FailEachAllocation(
                      [name = std::string_view( text )]
                      {
                          FileIOError const error( name, name, 1 );
                          FileIOError const copy( error );
                      } ) );
    FilePermissionError const error( "a name"sv, -5000 );
    AllocationFailure const failure( 1 );
    EXPECT_STREQ( "19FilePermissionError", error.what() );
}
