// The start of the panel beside that of an empty window: until the window is mapped, until it is
// painted, and what the process then holds. Needs an X server without a window manager (xvfb-run).

#include "benchmarks/Contest.h"

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{ 20 };

template<typename T>
using FromMalloc = std::unique_ptr<T, decltype( &std::free )>;

template<typename T>
FromMalloc<T> Held( T* fromMalloc )
{
    return { fromMalloc, &std::free };
}

// Sees what is mapped and painted on the display's first screen.
class Screen
{
  public:
    Screen() : mConnection( xcb_connect( nullptr, nullptr ) )
    {
        if ( xcb_connection_has_error( mConnection ) != 0 )
            throw std::runtime_error( "no X server" );
        mRoot = xcb_setup_roots_iterator( xcb_get_setup( mConnection ) ).data->root;
        std::uint32_t const mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes( mConnection, mRoot, XCB_CW_EVENT_MASK, &mask );

        auto const* const extension = xcb_get_extension_data( mConnection, &xcb_damage_id );
        if ( extension == nullptr || extension->present == 0 )
            throw std::runtime_error( "the X server does not report what is painted" );
        mDamageEvent = extension->first_event + XCB_DAMAGE_NOTIFY;
        Held( xcb_damage_query_version_reply(
            mConnection, xcb_damage_query_version( mConnection, 1, 1 ), nullptr ) );
        xcb_damage_create( mConnection, xcb_generate_id( mConnection ), mRoot,
            XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES );
    }

    Screen( Screen const& ) = delete;
    Screen& operator=( Screen const& ) = delete;

    ~Screen() { xcb_disconnect( mConnection ); }

    /// Forgets what has happened so far.
    void Clear()
    {
        Held(
            xcb_get_input_focus_reply( mConnection, xcb_get_input_focus( mConnection ), nullptr ) );
        while ( Held( xcb_poll_for_event( mConnection ) ) != nullptr )
        {
        }
    }

    struct Times
    {
        double mapped = 0;
        double painted = 0;
    };

    /// When a window was mapped, and then painted for the first time: nanoseconds after `from`.
    Times WaitForPaint( Clock::time_point from )
    {
        Times times;
        while ( times.painted == 0 )
        {
            int const type = NextEvent( from + kPatience )->response_type & 0x7f;
            double const now =
                std::chrono::duration<double, std::nano>( Clock::now() - from ).count();
            if ( type == XCB_MAP_NOTIFY )
                times.mapped = now;
            else if ( type == mDamageEvent && times.mapped != 0 )
                times.painted = now;
        }
        return times;
    }

  private:
    FromMalloc<xcb_generic_event_t> NextEvent( Clock::time_point deadline )
    {
        while ( true )
        {
            if ( auto event = Held( xcb_poll_for_event( mConnection ) ) )
                return event;
            auto const left =
                std::chrono::ceil<std::chrono::milliseconds>( deadline - Clock::now() );
            pollfd ready{ xcb_get_file_descriptor( mConnection ), POLLIN, 0 };
            if ( xcb_connection_has_error( mConnection ) != 0 || left.count() <= 0 ||
                 poll( &ready, 1, static_cast<int>( left.count() ) ) != 1 )
                throw std::runtime_error( "no window appeared" );
        }
    }

    xcb_connection_t* mConnection;
    xcb_window_t mRoot = 0;
    int mDamageEvent = 0;
};

class Program
{
  public:
    explicit Program( char const* path )
    {
        char* const arguments[] = { const_cast<char*>( path ), nullptr };
        if ( posix_spawn( &mProcess, path, nullptr, nullptr, arguments, environ ) != 0 )
            throw std::runtime_error( std::string( "cannot start " ) + path );
    }

    Program( Program const& ) = delete;
    Program& operator=( Program const& ) = delete;

    ~Program()
    {
        kill( mProcess, SIGKILL );
        waitpid( mProcess, nullptr, 0 );
    }

    double PeakMemory() const
    {
        std::ifstream status = File( "status" );
        std::string word;
        while ( status >> word )
        {
            double kilobytes = 0;
            if ( word == "VmHWM:" && status >> kilobytes )
                return kilobytes;
        }
        throw std::runtime_error( "the process has no peak memory" );
    }

    double Libraries() const
    {
        std::ifstream maps = File( "maps" );
        std::set<std::string> libraries;
        std::string word;
        while ( maps >> word )
            if ( word.starts_with( '/' ) && word.find( ".so" ) != std::string::npos )
                libraries.insert( word );
        return static_cast<double>( libraries.size() );
    }

  private:
    std::ifstream File( char const* name ) const
    {
        return std::ifstream( "/proc/" + std::to_string( mProcess ) + "/" + name );
    }

    pid_t mProcess = 0;
};

struct Start
{
    double mapped = 0;  // in nanoseconds
    double painted = 0; // the same
    double memory = 0;  // in kilobytes
    double libraries = 0;
};

// One connection for all: a server that nobody is connected to any more starts anew.
Screen& TheScreen()
{
    static Screen screen;
    return screen;
}

Start Measure( char const* path )
{
    Screen& screen = TheScreen();
    screen.Clear();
    auto const from = Clock::now();
    Program const program( path );
    auto const [mapped, painted] = screen.WaitForPaint( from );
    return { mapped, painted, program.PeakMemory(), program.Libraries() };
}

Contest StartContest( double Start::*figure, std::vector<Goal> goals )
{
    auto const contender = [figure]( char const* name, char const* path ) {
        return Contender{ name, {}, [=] { return Measure( path ).*figure; } };
    };
    return { { contender( "empty window", EMPTY_WINDOW_PROGRAM ),
                 contender( "panel", PANEL_PROGRAM ), contender( "GTK 3", GTK_WINDOW_PROGRAM ) },
        std::move( goals ), true };
}

// As a ratio, three libraries more than an empty window has.
Contest LibrariesContest()
{
    double const least = Measure( EMPTY_WINDOW_PROGRAM ).libraries;
    return StartContest( &Start::libraries, { { {}, ( least + 3 ) / least, 0 } } );
}

} // namespace

std::vector<ContestMaker> PanelStartContests()
{
    auto const maker = []( char const* variant, double Start::*figure, Goal const& goal )
    {
        return ContestMaker{
            "panel start", variant, [=] { return StartContest( figure, { goal } ); } };
    };
    return {
        maker( "window mapped", &Start::mapped, { {}, 1.25, 1.1 } ),
        maker( "first paint", &Start::painted, { {}, 1.3, 1.1 } ),
        maker( "peak memory", &Start::memory, { {}, 1.15, 1.1 } ),
        { "panel start", "libraries", LibrariesContest },
    };
}
