#include "tests/support/InChild.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>
#include <list>
#include <map>
#include <span>
#include <string>
#include <sys/prctl.h>
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

// Whether every other read is interrupted and the rest get three bytes at most: of the file or, if
// there is one, of an endless name.
bool gReadsAreCut = false;
char gEndlessName = 0;

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
    gReadsAreCut = true;
    EXPECT_EQ( Sysctl( kTable, table.data(), &length ), 0 );
    gReadsAreCut = false;
    EXPECT_EQ( length % kRecord, 0U );
    std::map<pid_t, std::string> names;
    for ( kinfo_proc const& process : std::span( table ).first( length / kRecord ) )
    {
        EXPECT_TRUE( names.empty() || names.rbegin()->first < process.kp_proc.p_pid );
        names[process.kp_proc.p_pid] = process.kp_proc.p_comm;
    }
    return names;
}

// A child that has taken a short name and stopped.
struct Child
{
    explicit Child( char const* name ) : pid( fork() )
    {
        if ( pid == 0 )
        {
            prctl( PR_SET_PDEATHSIG, SIGKILL );
            prctl( PR_SET_NAME, name );
            for ( ;; )
                raise( SIGSTOP );
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

    ssize_t __real_read( int file, void* bytes, size_t size );
    ssize_t __wrap_read( int file, void* bytes, size_t size );

    ssize_t __wrap_read( int file, void* bytes, size_t size )
    {
        static bool isCut = false;
        isCut = gReadsAreCut && !isCut;
        if ( isCut )
        {
            errno = EINTR;
            return -1;
        }
        size_t const length = gReadsAreCut ? std::min<size_t>( size, 3 ) : size;
        if ( !gReadsAreCut || gEndlessName == 0 )
            return __real_read( file, bytes, length );
        std::memset( bytes, gEndlessName, length );
        return static_cast<ssize_t>( length );
    }
}

TEST( ProcessTable, ListsShortNamesAsTheyAreUntilTheProcessHasBeenWaitedFor )
{
    char const* const names[] = { "", " ", "WUXAgent", "fifteen letters", ") S 1 (", "two\nlines",
        "\n", "end\n", "\xff\xfe\x01", " tab\tand blank ", "12345", "sixteen letters and more" };
    for ( char const* name : names )
    {
        pid_t pid = 0;
        {
            Child const child( name );
            pid = child.pid;
            EXPECT_EQ( Fetch().at( pid ), std::string( name ).substr( 0, 15 ) );
            kill( pid, SIGKILL );
            siginfo_t end;
            waitid( P_PID, static_cast<id_t>( pid ), &end, WEXITED | WNOWAIT );
            EXPECT_EQ( Fetch().at( pid ), std::string( name ).substr( 0, 15 ) );
        }
        EXPECT_FALSE( Fetch().contains( pid ) );
    }
    gEndlessName = 'k'; // threads of the kernel have names longer than there is room for
    EXPECT_EQ( Fetch().at( getpid() ), std::string( 16, 'k' ) );
    gEndlessName = 0;
}

TEST( ProcessTable, NamesASizeWithRoomForProcessesThatStartMeanwhile )
{
    std::list<Child> started;
    auto const fetch = [&started]( int startedMeanwhile )
    {
        size_t length = 0;
        EXPECT_EQ( Sysctl( kTable, nullptr, &length ), 0 );
        for ( int i = 0; i < startedMeanwhile; ++i )
            started.emplace_back( "started" );
        std::vector<char> table( length );
        return Sysctl( kTable, table.data(), &length );
    };
    EXPECT_EQ( fetch( 8 ), 0 );
    for ( int i = 0; i < 32; ++i )
        started.emplace_back( "crowd" );
    gLinks = 2; // the kernel counts less than it lists
    EXPECT_EQ( fetch( 0 ), ENOMEM );
    EXPECT_EQ( fetch( 0 ), 0 );
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
