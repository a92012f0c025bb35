// The time from exec to the mapping of the window, of the panel and of an empty window. Needs an X
// server without a window manager (xvfb-run).

#include <benchmark/benchmark.h>
#include <xcb/xcb.h>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace
{

template<typename T>
using FromMalloc = std::unique_ptr<T, decltype( &std::free )>;

// Sees the windows that are mapped on the display's first screen.
class MapWatcher
{
  public:
    MapWatcher() : mConnection( xcb_connect( nullptr, nullptr ) )
    {
        if ( xcb_connection_has_error( mConnection ) != 0 )
        {
            throw std::runtime_error( "no X server" );
        }
        std::uint32_t const mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_window_t const root =
            xcb_setup_roots_iterator( xcb_get_setup( mConnection ) ).data->root;
        xcb_change_window_attributes( mConnection, root, XCB_CW_EVENT_MASK, &mask );
        Sync();
    }

    MapWatcher( MapWatcher const& ) = delete;
    MapWatcher& operator=( MapWatcher const& ) = delete;

    ~MapWatcher() { xcb_disconnect( mConnection ); }

    void WaitForMap()
    {
        while ( true )
        {
            FromMalloc<xcb_generic_event_t> const event(
                xcb_wait_for_event( mConnection ), &std::free );
            if ( event == nullptr )
            {
                throw std::runtime_error( "the X server ended" );
            }
            if ( ( event->response_type & 0x7f ) == XCB_MAP_NOTIFY )
            {
                return;
            }
        }
    }

    void DropEvents()
    {
        Sync();
        while ( FromMalloc<xcb_generic_event_t>( xcb_poll_for_event( mConnection ), &std::free ) )
        {
        }
    }

  private:
    void Sync()
    {
        FromMalloc<xcb_get_input_focus_reply_t> const reply(
            xcb_get_input_focus_reply( mConnection, xcb_get_input_focus( mConnection ), nullptr ),
            &std::free );
    }

    xcb_connection_t* mConnection;
};

void TimeToMappedWindow( benchmark::State& state, char const* program )
{
    MapWatcher watcher;
    for ( auto iteration : state )
    {
        watcher.DropEvents();
        char* const arguments[] = { const_cast<char*>( program ), nullptr };
        pid_t child = 0;
        auto const start = std::chrono::steady_clock::now();
        if ( posix_spawn( &child, program, nullptr, nullptr, arguments, environ ) != 0 )
        {
            state.SkipWithError( "cannot start the program" );
            return;
        }
        watcher.WaitForMap();
        std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
        state.SetIterationTime( elapsed.count() );
        kill( child, SIGKILL );
        waitpid( child, nullptr, 0 );
    }
}

BENCHMARK_CAPTURE( TimeToMappedWindow, Panel, PANEL_PROGRAM )
    ->UseManualTime()
    ->Iterations( 20 )
    ->Unit( benchmark::kMillisecond );
BENCHMARK_CAPTURE( TimeToMappedWindow, EmptyQtWindow, EMPTY_WINDOW_PROGRAM )
    ->UseManualTime()
    ->Iterations( 20 )
    ->Unit( benchmark::kMillisecond );

} // namespace
