// lookups AGENT LOOKUPS RESTARTS: looks for processes while two others fork and execute without a
// pause, in a PID namespace that nobody else uses. The script `lookups` says what it proves.

#include "Shared/Portable/Processes/Mac/AgentProcess.h"
#include "Shared/Portable/Processes/Mac/BSDProcessList.h"
#include "tests/soak/Soak.h"

#include <atomic>
#include <chrono>
#include <list>
#include <memory>
#include <set>
#include <thread>
#include <vector>

namespace
{

constexpr auto kAgentName = "WUXAgent";

void Churn()
{
    pid_t const child = fork();
    if ( child == 0 )
    {
        execl( "/bin/true", "true", nullptr );
        _exit( 1 );
    }
    waitpid( child, nullptr, 0 );
}

// All names that processes of this namespace can have. Kernels from 6.14 on change a name without a
// lock, the end after the beginning, so it can be seen as a mixture.
std::set<std::string> const kNames = {
    "bwrap", "soak_lookups", "staying", "churning", "true", "truening", kAgentName };

// Everyone of `staying` is in the table, once and under its name. Returns how many were about to
// end.
size_t LookAtTable( std::set<pid_t> const& staying )
{
    kinfo_proc* list = nullptr;
    size_t count = 0;
    Require( GetBSDProcessList( &list, &count ) == 0, "there is no table" );
    size_t stayed = 0, passing = 0;
    pid_t last = 0;
    for ( size_t i = 0; i < count; ++i )
    {
        pid_t const pid = list[i].kp_proc.p_pid;
        std::string const name = list[i].kp_proc.p_comm;
        Require( pid > last, "a PID comes twice" );
        Require( kNames.contains( name ), "a name that nobody has: " + name );
        Require( ( name == "staying" ) == staying.contains( pid ), "a name with another's PID" );
        stayed += name == "staying";
        passing += name == "true";
        last = pid;
    }
    std::free( list );
    Require( stayed == staying.size(), "a process that stays was missed" );
    return passing;
}

// Half of the lookups look at the whole table, half for the agent. Returns how often one was seen
// that was about to end.
size_t LookUp( long lookups, int crowd )
{
    std::list<Child> children;
    std::set<pid_t> staying;
    for ( int i = 0; i < crowd; ++i )
        staying.insert( children.emplace_back( "staying" ).pid );
    Child const agent( kAgentName );
    size_t passing = 0;
    for ( long i = 0; i < lookups; i += 2 )
    {
        passing += LookAtTable( staying );
        Require( getPID() == agent.pid, "the agent that stays was missed" );
    }
    std::printf( "%ld lookups among %d that stay and %zu that ended: none missed, none invented\n",
        lookups, crowd, passing );
    return passing;
}

char const* gAgent = nullptr;

void BeAgent()
{
    execl( gAgent, gAgent, nullptr );
}

struct Answer
{
    size_t before;
    size_t after;
    pid_t pid;
};

// Each answer is the agent that stood or, during a restart, one of those around it or none. Stages:
// the restarts so far, twice, and one more from an agent's end until the next one stands.
void LookUpDuringRestarts( size_t restarts )
{
    std::atomic<size_t> stage = 0;
    auto agent = std::make_unique<Child>( kAgentName, BeAgent );
    std::vector<pid_t> pids = { agent->pid };
    std::vector<Answer> answers;
    std::jthread looking(
        [&]
        {
            while ( stage < 2 * restarts )
            {
                size_t const before = stage;
                pid_t const pid = getPID();
                answers.push_back( { before, stage, pid } );
            }
        } );
    while ( pids.size() <= restarts )
    {
        std::this_thread::sleep_for( std::chrono::milliseconds( pids.size() % 4 ) );
        ++stage;
        agent = nullptr;
        agent = std::make_unique<Child>( kAgentName, BeAgent );
        pids.push_back( agent->pid );
        ++stage;
    }
    looking.join();

    size_t sure = 0;
    for ( auto const& [before, after, pid] : answers )
    {
        bool const stood = before == after && before % 2 == 0;
        bool isRight = !stood && pid == 0;
        for ( size_t i = before / 2; i <= ( after + 1 ) / 2; ++i )
            isRight = isRight || pid == pids[i];
        Require( isRight, "the PID of no agent of that moment: " + std::to_string( pid ) );
        sure += stood;
    }
    std::printf( "%zu lookups during %zu restarts, %zu of them while an agent stood\n",
        answers.size(), restarts, sure );
}

} // namespace

int main( int, char** arguments )
try
{
    gAgent = arguments[1];
    long const lookups = std::stol( arguments[2] );
    Child const churning[] = { Child( "churning", Churn ), Child( "churning", Churn ) };
    Require( LookUp( lookups, 20 ) > 0, "nobody came and went" );
    LookUp( lookups / 100, 800 ); // more than are listed at once
    LookUpDuringRestarts( std::stoul( arguments[3] ) );
    return EXIT_SUCCESS;
}

catch ( std::exception const& error )
{
    std::fprintf( stderr, "FAILED: %s\n", error.what() );
    return EXIT_FAILURE;
}
