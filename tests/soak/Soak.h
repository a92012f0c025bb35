#pragma once

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

inline void Require( bool condition, std::string_view what )
{
    if ( !condition )
        throw std::runtime_error( std::string( what ) );
}

/// The most memory that this process has had so far, in KiB.
inline long PeakMemory()
{
    std::ifstream status( "/proc/self/status" );
    std::string word;
    while ( word != "VmHWM:" )
        status >> word;
    long peak = 0;
    status >> peak;
    return peak;
}

/// A child with a name of its own, until the end of this object. It does its work again and again.
class Child
{
  public:
    explicit Child(
        char const* name, void ( *work )() = [] { pause(); } )
        : pid( fork() )
    {
        if ( pid < 0 )
        {
            std::puts( "SKIPPED: this machine allows no more processes" );
            std::exit( 77 );
        }
        if ( pid == 0 )
        {
            prctl( PR_SET_PDEATHSIG, SIGKILL );
            prctl( PR_SET_NAME, name );
            raise( SIGSTOP );
            for ( ;; )
                work();
        }
        waitpid( pid, nullptr, WUNTRACED ); // until it has its name
        kill( pid, SIGCONT );
    }

    ~Child()
    {
        kill( pid, SIGKILL );
        waitpid( pid, nullptr, 0 );
    }

    Child( Child const& ) = delete;

    pid_t const pid;
};
