// Commands that run directly, as effective user 0. An ordinary user is that in a user namespace.

#include "linux/AdministratorRights/AdministratorCommand.h"

#include "tests/support/InChild.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <sstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;
using namespace std::string_literals;

bool BecomeRoot()
{
    std::string const map = "0 " + std::to_string( geteuid() ) + " 1";
    if ( geteuid() != 0 && unshare( CLONE_NEWUSER ) == 0 )
        std::ofstream( "/proc/self/uid_map" ) << map << std::flush;
    return geteuid() == 0;
}

int FirstFreeDescriptor()
{
    int const descriptor = dup( 0 );
    close( descriptor );
    return descriptor;
}

bool IsReadable( int descriptor, int milliseconds )
{
    pollfd entry = { descriptor, POLLIN, 0 };
    return poll( &entry, 1, milliseconds ) == 1;
}

class AdministratorCommandTest : public testing::Test
{
  protected:
    void SetUp() override
    {
        if ( !BecomeRoot() )
            GTEST_SKIP() << "SKIPPED: needs root or a user namespace";
    }

    // No command may leave a child or a descriptor behind.
    void TearDown() override
    {
        EXPECT_EQ( waitpid( -1, nullptr, WNOHANG ), -1 );
        EXPECT_EQ( FirstFreeDescriptor(), mFirstFree );
    }

    // The quoted path of a new script.
    std::string Script( std::string const& commands, std::string const& shell = "/bin/sh" )
    {
        std::string const path = mFolder.Path( "My Panel.sh" );
        std::ofstream( path ) << "#!" << shell << '\n' << commands << '\n';
        fs::permissions( path, fs::perms::all );
        return "'" + path + "'";
    }

    TemporaryFolder const mFolder;
    std::string const mDone = mFolder.Path( "done" ); // a file for a script to make
    int const mFirstFree = FirstFreeDescriptor();
};

// Whether the command line runs without an error for a process that has made its surroundings so.
void ExpectToRunAfter( std::function<void()> const& prepare, std::string const& commandLine )
{
    EXPECT_EQ( "true", InChild(
                           [&]
                           {
                               prepare();
                               return RunWithAdministratorRights( commandLine ) ? "true" : "false";
                           } ) );
}

// What a process passes on unless it is kept from it.
void SoilSurroundings( std::string const& folder )
{
    open( ( folder + "/inherited" ).c_str(), O_RDWR | O_CREAT, 0600 );
    umask( 0077 );
    fs::current_path( folder );
    for ( int const ignored : { SIGTERM, SIGPIPE, SIGHUP } )
    {
        signal( ignored, SIG_IGN );
    }
    sigset_t blocked;
    sigfillset( &blocked );
    sigprocmask( SIG_BLOCK, &blocked, nullptr );
    rlimit const low = { 64, 4096 };
    setrlimit( RLIMIT_NOFILE, &low );
    for ( char const* variable : { "LANG=de_DE.UTF-8", "LANGUAGE=de:en", "LC_ALL=../../evil",
              "LD_LIBRARY_PATH=/tmp", "LD_PRELOAD=/tmp/a.so", "GCONV_PATH=/tmp", "IFS=/",
              "PATH=/tmp", "BASH_ENV=/tmp/a", "ENV=/tmp/a", "SHELLOPTS=xtrace", "PS4=$(/tmp/a)",
              "SHELL=/tmp/a", "TERM=../a", "XAUTHORITY=/tmp/a", "PKEXEC_UID=0" } )
        putenv( const_cast<char*>( variable ) );
}

char const kRecorder[] = R"sh(
out=$(readlink /proc/$$/fd/1)
fds=$(ls -l /proc/$$/fd)
exec >"$1"
echo "$#:$2 $(readlink /proc/$$/fd/0) $out $(umask) $(pwd) $(ulimit -n)"
case $fds in *inherited*) echo 'descriptor inherited' ;; esac
echo "session $(($(cut -d' ' -f6 /proc/$$/stat) == $$))"
grep -E '^Sig(Blk|Ign)' /proc/$$/status | tr -d '\t'
tr '\0' '\n' </proc/$$/environ | sort)sh";

char const kRecorded[] = R"(2:-stop /dev/null /dev/null 0022 / 1024
session 1
SigBlk:0000000000000000
SigIgn:0000000000000000
LANG=de_DE.UTF-8
LANGUAGE=de:en
PATH=/usr/sbin:/usr/bin:/sbin:/bin
)";
} // namespace

TEST_F( AdministratorCommandTest, OnlyStatus0IsSuccess )
{
    for ( char const* commands :
        { "exit 0", "exit 1", "exit 126", "exit 255", "kill -KILL $$", "kill -TERM $$" } )
    {
        bool const succeeded = RunWithAdministratorRights( Script( commands ) + " -stop" );
        EXPECT_EQ( succeeded, commands == std::string( "exit 0" ) ) << commands;
    }
}

TEST_F( AdministratorCommandTest, WhatCannotBeStartedIsAFailureOfStart )
{
    std::string const script = Script( "", "/nowhere/sh" );
    for ( std::string const& commandLine : { script, mFolder.Path( "missing" ), "/etc/passwd"s,
              mFolder.Path(), ""s, "true"s, "'/bin/true"s, "/bin/true; true"s, "\"\" /bin/true"s } )
    {
        AdministratorCommand command( commandLine );
        EXPECT_FALSE( command.Start() ) << commandLine;
        EXPECT_EQ( command.EndDescriptor(), -1 );
        EXPECT_FALSE( command.Finish() );
    }
}

TEST_F( AdministratorCommandTest, TheCommandFindsCleanSurroundings )
{
    std::string const commandLine = Script( kRecorder ) + " " + mDone + " -stop";
    ExpectToRunAfter( [this] { SoilSurroundings( mFolder.Path() ); }, commandLine );
    std::stringstream recorded;
    recorded << std::ifstream( mDone ).rdbuf();
    EXPECT_EQ( recorded.str(), kRecorded );
}

TEST_F( AdministratorCommandTest, ItsEndCanBeWaitedForInAnEventLoop )
{
    AdministratorCommand command( Script( "until [ -e " + mDone + " ]; do sleep 0.01; done" ) );
    EXPECT_EQ( command.EndDescriptor(), -1 );
    ASSERT_TRUE( command.Start() );
    EXPECT_FALSE( command.Start() ) << "one object runs one command once";
    EXPECT_FALSE( IsReadable( command.EndDescriptor(), 50 ) );
    std::ofstream( mDone ).close();
    EXPECT_TRUE( IsReadable( command.EndDescriptor(), 10000 ) );
    EXPECT_TRUE( command.Finish() );
    EXPECT_TRUE( command.Finish() );
    EXPECT_EQ( command.EndDescriptor(), -1 );
    EXPECT_FALSE( command.Start() );
}

TEST_F( AdministratorCommandTest, ACommandThatIsGivenUpStillRunsToItsEnd )
{
    EXPECT_TRUE( AdministratorCommand( Script( "sleep 0.2; : >" + mDone ) ).Start() );
    EXPECT_TRUE( fs::exists( mDone ) );
}

TEST_F( AdministratorCommandTest, RunsWithoutStandardDescriptors )
{
    ExpectToRunAfter(
        [] { close_range( 0, 2, 0 ); }, Script( "echo out && echo error >&2 && cat" ) );
}
