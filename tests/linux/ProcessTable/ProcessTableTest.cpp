#include "tests/support/InChild.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <list>
#include <map>
#include <span>
#include <string>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{
constexpr size_t kRecord = 492;

// What the kernel names as the links of a file, unless this is 0.
nlink_t gLinks = 0;

std::vector<int> const kTable = { 1, 14, 0 };

// The error number of a call.
int Sysctl( std::vector<int> name, void* table, size_t* length, void* newValue = nullptr )
{
    auto const nameLength = static_cast<unsigned>( name.size() );
    int const result = sysctl( name.data(), nameLength, table, length, newValue, 0 );
    EXPECT_TRUE( result == 0 || result == -1 );
    return result == 0 ? 0 : errno;
}

// The short names by their PIDs, which come once each and in ascending order.
std::map<pid_t, std::string> Fetch()
{
    size_t length = 0;
    EXPECT_EQ( Sysctl( kTable, nullptr, &length ), 0 );
    // Other tests may start any number of processes: more room than what is asked for.
    std::vector<kinfo_proc> table( 4 * length / kRecord );
    length = table.size() * kRecord;
    EXPECT_EQ( Sysctl( kTable, table.data(), &length ), 0 );
    EXPECT_EQ( length % kRecord, 0U );
    std::map<pid_t, std::string> names;
    for ( kinfo_proc const& process : std::span( table ).first( length / kRecord ) )
    {
        EXPECT_TRUE( names.empty() || names.rbegin()->first < process.kp_proc.p_pid );
        names[process.kp_proc.p_pid] = process.kp_proc.p_comm;
    }
    return names;
}

// A child that has taken a short name and stopped. When it is continued, it starts other processes
// for ever.
struct Child
{
    explicit Child( char const* name ) : pid( fork() )
    {
        if ( pid == 0 )
        {
            prctl( PR_SET_PDEATHSIG, SIGKILL );
            prctl( PR_SET_NAME, name );
            for ( raise( SIGSTOP );; waitpid( -1, nullptr, 0 ) )
                if ( fork() == 0 )
                    _exit( 0 );
        }
        waitpid( pid, nullptr, WUNTRACED );
    }

    ~Child()
    {
        kill( pid, SIGKILL );
        waitpid( pid, nullptr, 0 );
    }

    Child( Child const& ) = delete;

    pid_t const pid;
};
} // namespace

// Replaced at link time.
extern "C"
{
    int __real_fstat( int file, struct stat* status );
    int __wrap_fstat( int file, struct stat* status );

    int __wrap_fstat( int file, struct stat* status )
    {
        int const result = __real_fstat( file, status );
        if ( gLinks != 0 )
            status->st_nlink = gLinks;
        return result;
    }
}

TEST( ProcessTable, ListsShortNamesAsTheyAre )
{
    char const* const names[] = { "", " ", "WUXAgent", "fifteen letters", ") S 1 (", "two\nlines",
        "\n", "end\n", "\xff\xfe\x01", " tab\tand blank ", "12345", "sixteen letters and more" };
    for ( char const* name : names )
    {
        Child const child( name );
        EXPECT_EQ( Fetch().at( child.pid ), std::string( name ).substr( 0, 15 ) );
    }
    EXPECT_TRUE( Fetch().contains( getpid() ) );
}

TEST( ProcessTable, ListsAProcessUntilItHasBeenWaitedFor )
{
    pid_t const child = fork();
    if ( child == 0 )
        _exit( 0 );
    siginfo_t end;
    ASSERT_EQ( waitid( P_PID, static_cast<id_t>( child ), &end, WEXITED | WNOWAIT ), 0 );
    EXPECT_TRUE( Fetch().contains( child ) );
    waitpid( child, nullptr, 0 );
    EXPECT_FALSE( Fetch().contains( child ) );
}

TEST( ProcessTable, NeverMissesAProcessThatStaysWhileOthersComeAndGo )
{
    std::list<Child> staying;
    for ( int i = 0; i < 40; ++i )
        staying.emplace_back( "staying" );
    std::list<Child> churning;
    for ( int i = 0; i < 3; ++i )
        kill( churning.emplace_back( "churning" ).pid, SIGCONT );
    int fetches = 0;
    auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds( 1500 );
    for ( ; std::chrono::steady_clock::now() < end; ++fetches )
    {
        std::map<pid_t, std::string> const table = Fetch();
        for ( Child const& child : staying )
            ASSERT_TRUE( table.contains( child.pid ) );
    }
    EXPECT_GT( fetches, 10 );
}

TEST( ProcessTable, NamesASizeWithRoomForProcessesThatStartMeanwhile )
{
    size_t length = 0;
    ASSERT_EQ( Sysctl( kTable, nullptr, &length ), 0 );
    std::list<Child> started;
    for ( int i = 0; i < 8; ++i )
        started.emplace_back( "started" );
    std::vector<char> table( length );
    EXPECT_EQ( Sysctl( kTable, table.data(), &length ), 0 );
}

TEST( ProcessTable, NamesARightSizeWhenTheKernelCountsLessThanItLists )
{
    std::list<Child> crowd;
    for ( int i = 0; i < 40; ++i )
        crowd.emplace_back( "crowd" );
    gLinks = 2;
    for ( int const error : { ENOMEM, 0 } )
    {
        size_t length = 0;
        EXPECT_EQ( Sysctl( kTable, nullptr, &length ), 0 );
        std::vector<char> table( length );
        EXPECT_EQ( Sysctl( kTable, table.data(), &length ), error );
    }
    gLinks = 0;
}

TEST( ProcessTable, ABufferThatIsTooSmallIsFilledWithWholeRecordsAndNoMore )
{
    for ( size_t capacity : { size_t( 0 ), kRecord - 1, kRecord, 2 * kRecord - 1 } )
    {
        std::string table( 2 * kRecord, '\x5A' );
        size_t length = capacity;
        EXPECT_EQ( Sysctl( kTable, table.data(), &length ), ENOMEM );
        EXPECT_EQ( length, capacity / kRecord * kRecord );
        EXPECT_EQ( table.substr( length ), std::string( 2 * kRecord - length, '\x5A' ) );
    }
}

TEST( ProcessTable, RefusesWhatItDoesNotHave )
{
    int value = 1;
    size_t length = 0;
    for ( std::vector<int> const& name :
        { std::vector{ 2, 14, 0 }, { 1, 1, 0 }, { 1, 14, 1 }, { 1, 14 }, { 1, 14, 0, 0 } } )
        EXPECT_EQ( Sysctl( name, nullptr, &length ), ENOENT ) << testing::PrintToString( name );
    EXPECT_EQ( Sysctl( kTable, nullptr, nullptr ), EFAULT );
    EXPECT_EQ( Sysctl( {}, nullptr, &length ), EFAULT );
    EXPECT_EQ( Sysctl( kTable, nullptr, &length, &value ), EPERM );
}

TEST( ProcessTable, ReportsThatNoDescriptorIsLeftAndLosesNone )
{
    rlimit before;
    ASSERT_EQ( getrlimit( RLIMIT_NOFILE, &before ), 0 );
    int const free = dup( 0 );
    close( free );
    std::vector<char> table( 1 << 20 );
    for ( int spare : { 0, 1 } )
    {
        rlimit const tight = { static_cast<rlim_t>( free + spare ), before.rlim_max };
        setrlimit( RLIMIT_NOFILE, &tight );
        size_t length = table.size();
        int const error = Sysctl( kTable, table.data(), &length );
        setrlimit( RLIMIT_NOFILE, &before );
        EXPECT_EQ( error, EMFILE ) << spare;
    }
    EXPECT_EQ( dup( 0 ), free );
    close( free );
}

TEST( ProcessTable, ReportsThatNoTableIsMountedOnProc )
{
    size_t length = 0;
    std::string const error = InChild(
        [&length]() -> std::string
        {
            return MountPrivately( "/proc", "4k" )
                       ? std::to_string( Sysctl( kTable, nullptr, &length ) )
                       : "";
        } );
    if ( error.empty() )
        GTEST_SKIP() << "SKIPPED: this machine makes no mount namespaces";
    EXPECT_EQ( error, std::to_string( ENOENT ) );
}
