#include "Shared/Portable/Processes/Mac/AgentProcess.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/sysctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{
constexpr size_t kRecord = 492;

int Sysctl( std::vector<int> name, void* table, size_t* length, void* newValue = nullptr )
{
    return sysctl( name.data(), static_cast<unsigned>( name.size() ), table, length, newValue, 0 );
}

std::vector<int> const kTable = { CTL_KERN, KERN_PROC, KERN_PROC_ALL };

std::vector<kinfo_proc> Fetch()
{
    size_t length = 0;
    EXPECT_EQ( Sysctl( kTable, nullptr, &length ), 0 );
    EXPECT_EQ( length % kRecord, 0U );
    // Other tests may start any number of processes: more room than what is asked for.
    std::vector<kinfo_proc> table( 4 * length / kRecord );
    length = table.size() * kRecord;
    EXPECT_EQ( Sysctl( kTable, table.data(), &length ), 0 );
    EXPECT_EQ( length % kRecord, 0U );
    table.resize( length / kRecord );
    return table;
}

std::vector<std::string> NamesOf( pid_t pid )
{
    std::vector<std::string> names;
    for ( kinfo_proc const& process : Fetch() )
    {
        if ( process.kp_proc.p_pid == pid )
            names.emplace_back( process.kp_proc.p_comm );
    }
    return names;
}

// A child process with a short name of its own that sleeps until it is ended.
class Sleeper
{
  public:
    explicit Sleeper( char const* name )
    {
        int ready[2];
        EXPECT_EQ( pipe( ready ), 0 );
        mPID = fork();
        if ( mPID == 0 )
        {
            prctl( PR_SET_PDEATHSIG, SIGKILL );
            prctl( PR_SET_NAME, name );
            close( ready[0] );
            close( ready[1] );
            for ( ;; )
                pause();
        }
        close( ready[1] );
        char nothing;
        EXPECT_EQ( read( ready[0], &nothing, 1 ), 0 );
        close( ready[0] );
    }

    ~Sleeper()
    {
        kill( mPID, SIGKILL );
        waitpid( mPID, nullptr, 0 );
    }

    Sleeper( Sleeper const& ) = delete;

    pid_t PID() const { return mPID; }

    // It has ended then, and nobody has waited for it.
    void BecomeZombie() const
    {
        kill( mPID, SIGKILL );
        siginfo_t end;
        EXPECT_EQ( waitid( P_PID, static_cast<id_t>( mPID ), &end, WEXITED | WNOWAIT ), 0 );
    }

  private:
    pid_t mPID = -1;
};

// Starts and ends processes as fast as it can.
void Churn()
{
    prctl( PR_SET_PDEATHSIG, SIGKILL );
    for ( ;; )
    {
        pid_t const child = fork();
        if ( child == 0 )
            _exit( 0 );
        waitpid( child, nullptr, 0 );
    }
}
} // namespace

TEST( ProcessTable, ListsThisProcessAndEveryOtherOnceInTheOrderOfProc )
{
    std::vector<kinfo_proc> const table = Fetch();
    auto const later = []( kinfo_proc const& a, kinfo_proc const& b )
    { return a.kp_proc.p_pid >= b.kp_proc.p_pid; };
    EXPECT_EQ( std::adjacent_find( table.begin(), table.end(), later ), table.end() );
    char own[17];
    prctl( PR_GET_NAME, own );
    EXPECT_EQ( NamesOf( getpid() ), std::vector<std::string>{ own } );
}

TEST( ProcessTable, GivesShortNamesAsTheyAreWhateverTheyHold )
{
    char const* const names[] = { "", " ", "WUXAgent", "fifteen letters", ") S 1 (", "two\nlines",
        "\n", "end\n", "\xff\xfe\x01", " tab\tand blank ", "12345" };
    for ( char const* name : names )
    {
        SCOPED_TRACE( name );
        Sleeper const sleeper( name );
        EXPECT_EQ( NamesOf( sleeper.PID() ), std::vector<std::string>{ name } );
    }
    Sleeper const sleeper( "sixteen letters and more" );
    EXPECT_EQ( NamesOf( sleeper.PID() ), std::vector<std::string>{ "sixteen letters" } );
}

TEST( ProcessTable, ListsAProcessUntilItHasBeenWaitedFor )
{
    pid_t ended = 0;
    {
        Sleeper const sleeper( "ended" );
        ended = sleeper.PID();
        sleeper.BecomeZombie();
        EXPECT_EQ( NamesOf( ended ), std::vector<std::string>{ "ended" } );
    }
    EXPECT_TRUE( NamesOf( ended ).empty() );
}

TEST( ProcessTable, NamesASizeWithRoomForProcessesThatStartMeanwhile )
{
    size_t length = 0;
    ASSERT_EQ( Sysctl( kTable, nullptr, &length ), 0 );
    std::vector<std::unique_ptr<Sleeper>> started;
    for ( int i = 0; i < 8; ++i )
        started.push_back( std::make_unique<Sleeper>( "started" ) );
    std::vector<char> table( length );
    EXPECT_EQ( Sysctl( kTable, table.data(), &length ), 0 );
}

TEST( ProcessTable, NeverMissesAProcessThatStaysWhileOthersComeAndGo )
{
    std::vector<std::unique_ptr<Sleeper>> staying;
    for ( int i = 0; i < 40; ++i )
        staying.push_back( std::make_unique<Sleeper>( "staying" ) );
    pid_t churners[3];
    for ( pid_t& churner : churners )
    {
        churner = fork();
        if ( churner == 0 )
            Churn();
    }

    auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds( 1500 );
    int missed = 0;
    int fetches = 0;
    for ( ; std::chrono::steady_clock::now() < end; ++fetches )
    {
        std::vector<kinfo_proc> const table = Fetch();
        for ( auto const& sleeper : staying )
        {
            auto const isSleeper = [&]( kinfo_proc const& process )
            { return process.kp_proc.p_pid == sleeper->PID(); };
            missed += std::count_if( table.begin(), table.end(), isSleeper ) == 1 ? 0 : 1;
        }
    }
    for ( pid_t churner : churners )
    {
        kill( churner, SIGKILL );
        waitpid( churner, nullptr, 0 );
    }
    EXPECT_EQ( missed, 0 );
    EXPECT_GT( fetches, 10 );
}

TEST( ProcessTable, ABufferThatIsTooSmallIsFilledWithWholeRecordsAndNoMore )
{
    for ( size_t capacity : { size_t( 0 ), kRecord - 1, kRecord, 2 * kRecord - 1 } )
    {
        SCOPED_TRACE( capacity );
        std::vector<unsigned char> table( 2 * kRecord, 0xA5 );
        size_t length = capacity;
        errno = 0;
        EXPECT_EQ( Sysctl( kTable, table.data(), &length ), -1 );
        EXPECT_EQ( errno, ENOMEM );
        EXPECT_EQ( length, capacity / kRecord * kRecord );
        auto const isUntouched = []( unsigned char byte ) { return byte == 0xA5; };
        EXPECT_TRUE(
            std::all_of( table.begin() + static_cast<long>( length ), table.end(), isUntouched ) );
    }
}

TEST( ProcessTable, RefusesWhatItDoesNotHave )
{
    int value = 1;
    size_t length = 0;

    struct Case
    {
        char const* name;
        std::vector<int> request;
        size_t* length;
        void* newValue;
        int error;
    };

    Case const cases[] = {
        { "another name at the first level", { 2, 14, 0 }, &length, nullptr, ENOENT },
        { "another name at the second level", { 1, 1, 0 }, &length, nullptr, ENOENT },
        { "one process", { 1, 14, 1 }, &length, nullptr, ENOENT },
        { "a name too short", { 1, 14 }, &length, nullptr, ENOENT },
        { "a name too long", { 1, 14, 0, 0 }, &length, nullptr, ENOENT },
        { "no length", { 1, 14, 0 }, nullptr, nullptr, EFAULT },
        { "no name", {}, &length, nullptr, EFAULT },
        { "a new value", { 1, 14, 0 }, &length, &value, EPERM },
    };
    for ( Case const& row : cases )
    {
        SCOPED_TRACE( row.name );
        errno = 0;
        EXPECT_EQ( Sysctl( row.request, nullptr, row.length, row.newValue ), -1 );
        EXPECT_EQ( errno, row.error );
    }
}

TEST( ProcessTable, ReportsThatNoDescriptorIsLeftAndLosesNone )
{
    rlimit before;
    ASSERT_EQ( getrlimit( RLIMIT_NOFILE, &before ), 0 );
    int const firstFree = dup( 0 );
    close( firstFree );
    std::vector<char> table( 1 << 20 );
    for ( int spare : { 0, 1 } )
    {
        SCOPED_TRACE( spare );
        rlimit const tight = { static_cast<rlim_t>( firstFree + spare ), before.rlim_max };
        ASSERT_EQ( setrlimit( RLIMIT_NOFILE, &tight ), 0 );
        size_t length = table.size();
        int const result = Sysctl( kTable, table.data(), &length );
        int const error = errno;
        EXPECT_EQ( getPID(), 0 );
        setrlimit( RLIMIT_NOFILE, &before );
        EXPECT_EQ( result, -1 );
        EXPECT_EQ( error, EMFILE );
    }
    int const stillFree = dup( 0 );
    close( stillFree );
    EXPECT_EQ( stillFree, firstFree );
}

TEST( ProcessTable, ReportsThatNothingIsMountedOnProc )
{
    pid_t const child = fork();
    if ( child == 0 )
    {
        if ( unshare( CLONE_NEWUSER | CLONE_NEWNS ) == -1 ||
             mount( "none", "/proc", "tmpfs", 0, nullptr ) == -1 )
            _exit( 77 );
        size_t length = 0;
        _exit( Sysctl( kTable, nullptr, &length ) == -1 && errno == ENOENT ? 0 : 1 );
    }
    int status = 0;
    ASSERT_EQ( waitpid( child, &status, 0 ), child );
    if ( WIFEXITED( status ) && WEXITSTATUS( status ) == 77 )
        GTEST_SKIP() << "SKIPPED: this machine makes no mount namespaces";
    EXPECT_EQ( status, 0 );
}

// An agent outside the test may come earlier in the table.
TEST( AgentProcess, TheFirstOfTwoAgentsInTheTableIsTheAgent )
{
    Sleeper const one( "WUXAgent" );
    Sleeper const other( "WUXAgent" );
    std::int32_t const pid = getPID();
    EXPECT_GT( pid, 0 );
    EXPECT_LE( pid, std::min( one.PID(), other.PID() ) );
}
