#include "files/FileErrors.h"
#include "files/mac/FileErrors.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace std::literals;

TEST( FileIOError, NamesTypeFilesAndCode )
{
    std::pair<FileNotFoundError, std::string> const rows[] = { { FileNotFoundError(), "" },
        { FileNotFoundError( -43 ), ": Unknown error: 4294967253" },
        { FileNotFoundError( "a"sv, "b"sv, 1 ), " on \"a\" and \"b\": Unknown error: 1" },
        { FileNotFoundError( ""sv, "b"sv, 0 ), " and \"b\"" } };
    for ( auto const& [error, message] : rows )
    {
        EXPECT_EQ( "File error \"17FileNotFoundError\"" + message, error.MakeErrorMessage() );
        EXPECT_EQ( error.MakeErrorMessage(), error.what() );
    }
    EXPECT_STREQ( "File error \"N17MacintoshPlatform14FullPathFailedE\"",
        MacintoshPlatform::FullPathFailed().what() );
}

TEST( FileIOError, CopiesCodeAndNamesDeeplyButNotTheMessage )
{
    auto original = std::make_unique<FileBusyError>( "a"sv, "b"sv, -47 );
    std::string const message = original->what();
    FileBusyError const copy( *original );
    FileBusyError assigned( "c"sv, 1 );
    char const* const before = assigned.what();
    assigned = *original;
    EXPECT_STREQ( before, "File error \"13FileBusyError\" on \"c\": Unknown error: 1" );
    original.reset();
    assigned = *&assigned;
    EXPECT_EQ( message, copy.what() );
    EXPECT_EQ( message, assigned.what() );
    EXPECT_EQ( -47, assigned.GetCode() );
}
