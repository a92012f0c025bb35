#include "files/FileRetry.h"

#include "files/FileErrors.h"
#include "files/MakeFileLocation.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <unistd.h>

static std::string gEvents;

// Takes the place of the real one in this program.
int MilliSecondSleep( unsigned milliSeconds )
{
    return gEvents += std::to_string( milliSeconds ) + " ", 0;
}

namespace
{

using At = FileLocation const*;

FileLocation gA, gB;
std::string gPlan; // one letter for each try
std::exception_ptr gThrown;

void Try( FileLocation const& )
{
    char const step = gPlan[0];
    gPlan.erase( 0, 1 );
    gEvents += step;
    if ( step == '.' )
        return;
    gThrown = step == 'i'   ? std::make_exception_ptr( 1 )
              : step == 'E' ? std::make_exception_ptr( EmptyFileLocationError( 0 ) )
                            : std::make_exception_ptr( FileNotFoundError( 0 ) );
    std::rethrow_exception( gThrown );
}

struct EventLog : FileRetryLog
{
    void LogRetrySuccess( char const* name, At a, At b, unsigned attempts ) const override
    {
        gEvents += a == &gA && ( b == nullptr || b == &gB ) ? "+" : "?";
        gEvents +=
            ( b == nullptr ? "" : "two " ) + std::string( name ) + std::to_string( attempts );
        if ( *name == 't' )
            throw 2;
    }

    void LogRetryFailure( char const* name, At a, At b, unsigned attempts ) const override
    {
        gEvents += "fail";
        LogRetrySuccess( name, a, b, attempts );
    }
} const kLog;

std::function<void()> On( void ( *operation )( FileLocation const&, FileRetryLog const& ) )
{
    return [operation] { operation( gA, kLog ); };
}

template<class Operation>
std::function<void()> OnTwo( Operation* operation )
{
    return [operation] { operation( gA, gB, kLog ); };
}

std::string EventsOf( std::function<void()> const& action )
{
    gEvents.clear();
    try
    {
        action();
        return gEvents;
    }
    catch ( ... )
    {
        return gEvents + ( std::current_exception() == gThrown ? "same" : "other" );
    }
}

} // namespace

TEST( FileRetry, TriesNineTimesWithGrowingPausesAndLogsWhatNeededMoreThanOneTry )
{
    std::string const nine = "x25 x50 x100 x200 x400 x800 x1600 x3200 ";
    std::string const rows[][3] = { { ".", "op", "." }, { "i.", "op", "i25 .+op2" },
        { "xi.", "op", "x25 i50 .+op3" }, { "xxxxxxxx.", "op", nine + ".+op9" },
        { "xxxxxxxxx", "op", nine + "xfail+op9same" },
        { "xxxxxxxxi", "op", nine + "ifail+op9same" }, { "E", "op", "Esame" },
        { "xE", "op", "x25 Esame" }, { "x.", "throw", "x25 .+throw2other" },
        { "xxxxxxxxx", "throw", nine + "xfail+throw9other" } };
    for ( auto const& [plan, operation, events] : rows )
    {
        gPlan = plan;
        char const* const name = operation.c_str();
        EXPECT_EQ( events, EventsOf( [=] { RetryOneFileFunc( Try, name, gA, kLog ); } ) );
        EXPECT_EQ( "", gPlan );
    }
}

TEST( FileRetry, RunsTheOperationThatEachWrapperIsNamedAfter )
{
    // The places are those of a run that succeeds and of one that fails, "n" for a name that is too
    // long and "p" for "p/q". There are the files "a", "b" and "d/x", and the folder "e".
    std::tuple<std::string, std::function<void()>, char const*, std::string> const rows[] = {
        { "DeleteRecursive", On( ForceDeleteRecursiveWithRetry ), "d n ", "a1 b2 e " },
        { "DeleteContents", On( ForceDeleteContents ), "d n ", "a1 b2 d e " },
        { "ForceNonexistence", On( ForceNonexistenceWithRetry ), "o d ", "a1 b2 d e x0 " },
        { "DeleteFile", On( DeleteFileWithRetry ), "a o ", "b2 d e x0 " },
        { "DeleteDirectory", On( DeleteDirectoryWithRetry ), "e d ", "a1 b2 d x0 " },
        { "two ForceCopyFile", OnTwo( ForceCopyFileWithRetry ), "abob", "a1 b1 d e x0 " },
        { "two ForceMoveFile", OnTwo( ForceMoveFileWithRetry ), "abob", "b1 d e x0 " },
        { "two CopyFile", OnTwo( CopyFileWithRetry ), "acab", "a1 b2 c1 d e x0 " },
        { "two MoveFile", OnTwo( MoveFileWithRetry ), "acab", "b2 c1 d e x0 " },
        { "ForceDirectoryExistence", On( ForceDirectoryExistenceWithRetry ), "p a ",
            "a1 b2 d e p q x0 " },
        { "ForceDirectoryExistenceWithInfo",
            [] { ForceDirectoryExistenceWithInfoWithRetry( gA, { 0500 }, kLog ); }, "p a ",
            "a1 b2 d e p qr x0 " },
        { "CreateDirectory", [] { CreateDirectoryWithRetry( gA, { 0500 }, kLog ); }, "c e ",
            "a1 b2 cr d e x0 " },
        { "CreateFile", [] { CreateFileWithRetry( gA, { 0400 }, kLog ); }, "c a ",
            "a1 b2 c0r d e x0 " } };
    for ( auto const& [log, run, places, world] : rows )
    {
        TemporaryFolder const folder;
        auto const at = [&]( char place )
        {
            std::string const name = place == 'n'   ? std::string( 256, 'n' )
                                     : place == 'p' ? "p/q"
                                                    : std::string( 1, place );
            return MakeFileLocation( folder.Path( name ).c_str() );
        };
        Shell( folder.Path(), "mkdir d e; printf A > a; printf BB > b; touch d/x" );
        gA = at( places[2] );
        gB = at( places[3] );
        EXPECT_EQ( "25 50 100 200 400 800 1600 3200 fail+" + log + "9other", EventsOf( run ) );
        gA = at( places[0] );
        gB = at( places[1] );
        EXPECT_EQ( "", EventsOf( run ) ) << log;
        // The names in order, with the sizes of files, and "r" if read-only.
        EXPECT_EQ(
            world, Shell( folder.Path(),
                       "find * -printf %f '(' -type d -o -printf %s ')' "
                       "'(' -perm -200 -o -printf r ')' -printf '\n' | sort | tr '\n' ' '" ) )
            << log;
    }
}
