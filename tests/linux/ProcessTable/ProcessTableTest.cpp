#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <list>
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

std::vector<int> const kTable = { 1, 14, 0 };

// The error number of a call.
int Sysctl( std::vector<int> name, void* table, size_t* length, void* newValue = nullptr )
{
    auto const nameLength = static_cast<unsigned>( name.size() );
    int const result = sysctl( name.data(), nameLength, table, length, newValue, 0 );
    EXPECT_TRUE( result == 0 || result == -1 );
    return result == 0 ? 0 : errno;
}

std::vector<kinfo_proc> Fetch()
{
    size_t length = 0;
    EXPECT_EQ( Sysctl( kTable, nullptr, &length ), 0 );
    // Other tests may start any number of processes: more room than what is asked for.
    std::vector<kinfo_proc> table( 4 * length / kRecord );
    length = table.size() * kRecord;
    EXPECT_EQ( Sysctl( kTable, table.data(), &length ), 0 );
    EXPECT_EQ( length % kRecord, 0U );
    table.resize( length / kRecord );
    return table;
}

// The short names under which a process is listed: one, or none.
std::vector<std::string> NamesOf( pid_t pid, std::vector<kinfo_proc> const& table = Fetch() )
{
    std::vector<std::string> names;
    for ( kinfo_proc const& process : table )
    {
        if ( process.kp_proc.p_pid == pid )
            names.emplace_back( process.kp_proc.p_comm );
    }
    return names;
}

// A child that has taken a short name and then does `work` for ever.
class Child
{
  public:
    explicit Child(
        char const* name, void ( *work )() = [] { pause(); } )
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
                work();
        }
        close( ready[1] );
        char nothing;
        EXPECT_EQ( read( ready[0], &nothing, 1 ), 0 );
        close( ready[0] );
    }

    ~Child()
    {
        kill( mPID, SIGKILL );
        waitpid( mPID, nullptr, 0 );
    }

    Child( Child const& ) = delete;

    pid_t PID() const { return mPID; }

  private:
    pid_t mPID = -1;
};
} // namespace

TEST( ProcessTable, ListsShortNamesAsTheyAreOnceEachInTheOrderOfProc )
{
    char const* const names[] = { "", " ", "WUXAgent", "fifteen letters", ") S 1 (", "two\nlines",
        "\n", "end\n", "\xff\xfe\x01", " tab\tand blank ", "12345", "sixteen letters and more" };
    std::list<Child> children;
    for ( char const* name : names )
        children.emplace_back( name );
    std::vector<kinfo_proc> const table = Fetch();
    for ( char const* name : names )
    {
        std::string const kept = std::string( name ).substr( 0, 15 );
        EXPECT_EQ( NamesOf( children.front().PID(), table ), std::vector{ kept } );
        children.pop_front();
    }
    EXPECT_EQ( NamesOf( getpid(), table ).size(), 1U );
    auto const later = []( kinfo_proc const& a, kinfo_proc const& b )
    { return a.kp_proc.p_pid >= b.kp_proc.p_pid; };
    EXPECT_EQ( std::adjacent_find( table.begin(), table.end(), later ), table.end() );
}

TEST( ProcessTable, ListsAProcessUntilItHasBeenWaitedFor )
{
    pid_t const child = fork();
    if ( child == 0 )
        _exit( 0 );
    siginfo_t end;
    ASSERT_EQ( waitid( P_PID, static_cast<id_t>( child ), &end, WEXITED | WNOWAIT ), 0 );
    EXPECT_EQ( NamesOf( child ).size(), 1U );
    waitpid( child, nullptr, 0 );
    EXPECT_EQ( NamesOf( child ).size(), 0U );
}

TEST( ProcessTable, NeverMissesAProcessThatStaysWhileOthersComeAndGo )
{
    std::list<Child> staying;
    for ( int i = 0; i < 40; ++i )
        staying.emplace_back( "staying" );
    std::list<Child> churning;
    for ( int i = 0; i < 3; ++i )
    {
        churning.emplace_back( "churning",
            []
            {
                pid_t const child = fork();
                if ( child == 0 )
                    _exit( 0 );
                waitpid( child, nullptr, 0 );
            } );
    }
    int fetches = 0;
    auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds( 1500 );
    for ( ; std::chrono::steady_clock::now() < end; ++fetches )
    {
        std::vector<kinfo_proc> const table = Fetch();
        for ( Child const& child : staying )
            ASSERT_EQ( NamesOf( child.PID(), table ).size(), 1U );
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

TEST( ProcessTable, ABufferThatIsTooSmallIsFilledWithWholeRecordsAndNoMore )
{
    for ( size_t capacity : { size_t( 0 ), kRecord - 1, kRecord, 2 * kRecord - 1 } )
    {
        std::vector<char> table( 2 * kRecord, '\x5A' );
        size_t length = capacity;
        EXPECT_EQ( Sysctl( kTable, table.data(), &length ), ENOMEM );
        EXPECT_EQ( length, capacity / kRecord * kRecord );
        EXPECT_EQ( std::string( table.data() + length, table.data() + 2 * kRecord ),
            std::string( 2 * kRecord - length, '\x5A' ) );
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
    auto const firstFree = []
    {
        int const descriptor = dup( 0 );
        close( descriptor );
        return descriptor;
    };
    rlimit before;
    ASSERT_EQ( getrlimit( RLIMIT_NOFILE, &before ), 0 );
    int const free = firstFree();
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
    EXPECT_EQ( firstFree(), free );
}

TEST( ProcessTable, ReportsThatNoTableIsMountedOnProc )
{
    pid_t const child = fork();
    if ( child == 0 )
    {
        if ( unshare( CLONE_NEWUSER | CLONE_NEWNS ) == -1 ||
             mount( "none", "/proc", "tmpfs", 0, nullptr ) == -1 )
            _exit( 77 );
        size_t length = 0;
        _exit( Sysctl( kTable, nullptr, &length ) == ENOENT ? 0 : 1 );
    }
    int status = 0;
    ASSERT_EQ( waitpid( child, &status, 0 ), child );
    if ( WIFEXITED( status ) && WEXITSTATUS( status ) == 77 )
        GTEST_SKIP() << "SKIPPED: this machine makes no mount namespaces";
    EXPECT_EQ( status, 0 );
}
