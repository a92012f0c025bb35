#include "benchmarks/Contest.h"
#include "Shared/Portable/Processes/Mac/AgentProcess.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <libproc2/pids.h>
#include <memory>
#include <signal.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

// One look for the agent among many processes; the digest is its identifier.

namespace
{

constexpr char kAgent[] = "WUXAgent";

void BecomeAgent( int )
{
    prctl( PR_SET_NAME, kAgent );
    // pidof asks for the first word of the command line, too.
    std::strcpy( program_invocation_name, kAgent );
}

// A number of processes that do nothing. The one that is listed last is the agent.
class Crowd
{
  public:
    explicit Crowd( std::size_t size )
    {
        AllowAsManyAsPossible();
        while ( mChildren.size() < size )
        {
            pid_t const child = Start();
            if ( child == -1 )
                GiveUp( "this machine does not allow " + std::to_string( size ) + " processes" );
            mChildren.push_back( child );
        }
        MakeLastOneTheAgent();
    }

    ~Crowd() { End(); }

    Crowd( Crowd const& ) = delete;
    Crowd& operator=( Crowd const& ) = delete;

  private:
    static void AllowAsManyAsPossible()
    {
        rlimit limit;
        getrlimit( RLIMIT_NPROC, &limit );
        limit.rlim_cur = limit.rlim_max;
        setrlimit( RLIMIT_NPROC, &limit );
    }

    static pid_t Start()
    {
        pid_t const parent = getpid();
        // Set here, so that the signal cannot come before it.
        auto* const before = signal( SIGUSR1, BecomeAgent );
        pid_t const child = fork();
        if ( child == 0 )
        {
            prctl( PR_SET_PDEATHSIG, SIGKILL );
            prctl( PR_SET_NAME, "bystander" );
            while ( getppid() == parent )
                pause();
            _exit( 0 );
        }
        signal( SIGUSR1, before );
        return child;
    }

    void MakeLastOneTheAgent()
    {
        pid_t const last = *std::max_element( mChildren.begin(), mChildren.end() );
        for ( int tries = 0; getPID() != last; ++tries )
        {
            if ( tries == 500 )
                GiveUp( "another agent runs on this machine" );
            kill( last, SIGUSR1 );
            usleep( 10000 );
        }
    }

    [[noreturn]] void GiveUp( std::string const& reason )
    {
        End();
        throw std::runtime_error( reason );
    }

    void End()
    {
        for ( pid_t const child : mChildren )
            kill( child, SIGKILL );
        for ( pid_t const child : mChildren )
            waitpid( child, nullptr, 0 );
    }

    std::vector<pid_t> mChildren;
};

pid_t Number( std::string const& text )
{
    pid_t number = 0;
    std::from_chars( text.data(), text.data() + text.size(), number );
    return number;
}

pid_t FindWithStreams()
{
    for ( std::filesystem::directory_entry const& entry :
        std::filesystem::directory_iterator( "/proc" ) )
    {
        pid_t const pid = Number( entry.path().filename().string() );
        if ( pid == 0 )
            continue;
        std::ifstream file( entry.path() / "comm" );
        std::string name;
        if ( std::getline( file, name ) && name == kAgent )
            return pid;
    }
    return 0;
}

pid_t FindWithLibproc2()
{
    pids_item items[] = { PIDS_ID_PID, PIDS_CMD };
    pids_info* info = nullptr;
    if ( procps_pids_new( &info, items, 2 ) < 0 )
        return 0;
    pid_t pid = 0;
    while ( pids_stack* const process = procps_pids_get( info, PIDS_FETCH_TASKS_ONLY ) )
    {
        if ( std::strcmp( process->head[1].result.str, kAgent ) == 0 )
        {
            pid = process->head[0].result.s_int;
            break;
        }
    }
    procps_pids_unref( &info );
    return pid;
}

// Runs a program and returns the number that it prints.
pid_t FindWithProgram( std::vector<char const*> words )
{
    int ends[2];
    if ( pipe2( ends, O_CLOEXEC ) != 0 )
        return 0;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init( &actions );
    posix_spawn_file_actions_adddup2( &actions, ends[1], STDOUT_FILENO );
    words.push_back( nullptr );
    pid_t child = 0;
    int const error = posix_spawnp(
        &child, words[0], &actions, nullptr, const_cast<char* const*>( words.data() ), environ );
    posix_spawn_file_actions_destroy( &actions );
    close( ends[1] );
    char text[64] = {};
    ssize_t const length = error == 0 ? read( ends[0], text, sizeof text ) : 0;
    close( ends[0] );
    if ( error == 0 )
        waitpid( child, nullptr, 0 );
    return length > 0 ? Number( std::string( text, static_cast<std::size_t>( length ) ) ) : 0;
}

template<typename Find>
Contender Finder( std::string name, std::shared_ptr<Crowd const> crowd, Find find )
{
    return { std::move( name ), [crowd, find] { return static_cast<std::uint64_t>( find() ); } };
}

Contest MakeContest( std::size_t size, double must )
{
    auto const crowd = std::make_shared<Crowd const>( size );
    return { { Finder( "directory_iterator and ifstream", crowd, FindWithStreams ),
                 Finder( "getPID", crowd, getPID ), Finder( "libproc2", crowd, FindWithLibproc2 ),
                 Finder( "pgrep -x", crowd,
                     [] {
                         return FindWithProgram( { "pgrep", "-x", kAgent } );
                     } ),
                 Finder( "pidof", crowd,
                     [] {
                         return FindWithProgram( { "pidof", kAgent } );
                     } ) },
        { { "", must, 1.8 }, { "libproc2", 4, 0 }, { "pgrep -x", 10, 0 } } };
}

} // namespace

std::vector<ContestMaker> ProcessContests()
{
    return { { "process table", "100 processes", [] { return MakeContest( 100, 1.5 ); } },
        { "process table", "1,000 processes", [] { return MakeContest( 1000, 1.5 ); } },
        { "process table", "10,000 processes", [] { return MakeContest( 10000, 1.3 ); }, 9 } };
}
