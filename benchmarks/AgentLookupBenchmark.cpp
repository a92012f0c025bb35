// One lookup of the agent among many processes, beside pgrep as a whole program and, where it was
// found, beside the loop of the library that pgrep is built on.

#include "Shared/Portable/Processes/Mac/AgentProcess.h"

#include <benchmark/benchmark.h>

#ifdef HAVE_LIBPROC2
#include <libproc2/pids.h>
#endif

#include <cstring>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{
// A number of processes that do nothing, the last of which has the agent's short name.
class Crowd
{
  public:
    explicit Crowd( long size )
    {
        for ( long i = 1; i <= size; ++i )
        {
            pid_t const child = fork();
            if ( child == 0 )
                Wait( i == size ? "WUXAgent" : "bystander" );
            if ( child == -1 )
                return;
            mChildren.push_back( child );
        }
        while ( !mChildren.empty() && getPID() == 0 )
            usleep( 1000 );
    }

    ~Crowd()
    {
        for ( pid_t child : mChildren )
            kill( child, SIGKILL );
        for ( pid_t child : mChildren )
            waitpid( child, nullptr, 0 );
    }

    Crowd( Crowd const& ) = delete;
    Crowd& operator=( Crowd const& ) = delete;

    bool Has( long size ) const { return mChildren.size() == static_cast<size_t>( size ); }

  private:
    [[noreturn]] static void Wait( char const* name )
    {
        prctl( PR_SET_PDEATHSIG, SIGKILL );
        prctl( PR_SET_NAME, name );
        for ( ;; )
            pause();
    }

    std::vector<pid_t> mChildren;
};

template<typename Lookup>
void LookUpAgent( benchmark::State& state, Lookup lookup )
{
    Crowd const crowd( state.range( 0 ) );
    if ( !crowd.Has( state.range( 0 ) ) )
    {
        state.SkipWithError( "the system does not allow that many processes" );
        return;
    }
    for ( auto iteration : state )
    {
        if ( !lookup() )
        {
            state.SkipWithError( "the agent was not found" );
            return;
        }
    }
}

bool RunPgrep()
{
    static char* const arguments[] = { const_cast<char*>( "pgrep" ), const_cast<char*>( "-x" ),
        const_cast<char*>( "WUXAgent" ), nullptr };
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init( &actions );
    posix_spawn_file_actions_addopen( &actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0 );
    pid_t child = 0;
    bool const started =
        posix_spawnp( &child, arguments[0], &actions, nullptr, arguments, environ ) == 0;
    posix_spawn_file_actions_destroy( &actions );
    int status = 0;
    return started && waitpid( child, &status, 0 ) == child && status == 0;
}

void AgentLookup( benchmark::State& state )
{
    LookUpAgent( state, [] { return getPID() != 0; } );
}

void Pgrep( benchmark::State& state )
{
    LookUpAgent( state, RunPgrep );
}

BENCHMARK( AgentLookup )
    ->Arg( 100 )
    ->Arg( 1000 )
    ->Arg( 5000 )
    ->UseRealTime()
    ->Unit( benchmark::kMillisecond );
BENCHMARK( Pgrep )->Arg( 100 )->Arg( 1000 )->Arg( 5000 )->UseRealTime()->Unit(
    benchmark::kMillisecond );

#ifdef HAVE_LIBPROC2
bool WalkLibproc2()
{
    pids_item items[] = { PIDS_ID_PID, PIDS_CMD };
    pids_info* info = nullptr;
    if ( procps_pids_new( &info, items, 2 ) < 0 )
        return false;
    bool found = false;
    while ( pids_stack* const process = procps_pids_get( info, PIDS_FETCH_TASKS_ONLY ) )
    {
        if ( std::strcmp( process->head[1].result.str, "WUXAgent" ) == 0 )
        {
            found = true;
            break;
        }
    }
    procps_pids_unref( &info );
    return found;
}

void Libproc2( benchmark::State& state )
{
    LookUpAgent( state, WalkLibproc2 );
}

BENCHMARK( Libproc2 )
    ->Arg( 100 )
    ->Arg( 1000 )
    ->Arg( 5000 )
    ->UseRealTime()
    ->Unit( benchmark::kMillisecond );
#endif
} // namespace
