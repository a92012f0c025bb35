#include "linux/AdministratorRights/CleanChild.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
struct Limit
{
    int resource;
    rlim_t value;
};

// What the system starts its services with.
constexpr Limit kUsualLimits[] = {
    { RLIMIT_AS, RLIM_INFINITY },
    { RLIMIT_CORE, 0 },
    { RLIMIT_CPU, RLIM_INFINITY },
    { RLIMIT_DATA, RLIM_INFINITY },
    { RLIMIT_FSIZE, RLIM_INFINITY },
    { RLIMIT_NOFILE, 1024 },
    { RLIMIT_STACK, 8 * 1024 * 1024 },
};

// pkexec ends at once when a variable that it passes on looks like an attack.
bool IsPlainLocale( std::string_view value )
{
    auto const isPlain = []( char c )
    {
        return ( c >= 'A' && c <= 'Z' ) || ( c >= 'a' && c <= 'z' ) || ( c >= '0' && c <= '9' ) ||
               std::string_view( "_-.@:" ).find( c ) != std::string_view::npos;
    };
    return value.size() <= 128 && value.find( ".." ) == std::string_view::npos &&
           std::all_of( value.begin(), value.end(), isPlain );
}

std::vector<std::string> CleanEnvironment()
{
    std::vector<std::string> environment = { "PATH=/usr/sbin:/usr/bin:/sbin:/bin" };
    for ( char const* name : { "LANG", "LANGUAGE", "LC_ALL" } )
    {
        char const* const value = getenv( name );
        if ( value != nullptr && IsPlainLocale( value ) )
            environment.push_back( std::string( name ) + "=" + value );
    }
    return environment;
}

std::vector<char*> Pointers( std::vector<std::string>& strings )
{
    std::vector<char*> pointers;
    for ( std::string& string : strings )
        pointers.push_back( string.data() );
    pointers.push_back( nullptr );
    return pointers;
}

// Between fork and execve only calls that are safe in a signal handler may be made: the functions
// from here to ExecuteCleanly keep to them.

void RestoreSignals()
{
    struct sigaction byDefault = {};
    byDefault.sa_handler = SIG_DFL;
    for ( int signal = 1; signal < NSIG; ++signal )
        sigaction( signal, &byDefault, nullptr ); // fails for KILL and STOP, which need it not

    sigset_t none;
    sigemptyset( &none );
    sigprocmask( SIG_SETMASK, &none, nullptr );
}

void RestoreLimits()
{
    for ( Limit const& usual : kUsualLimits )
    {
        rlimit limit;
        if ( getrlimit( usual.resource, &limit ) == -1 )
            continue;
        rlimit const wanted = { usual.value, std::max( usual.value, limit.rlim_max ) };
        if ( setrlimit( usual.resource, &wanted ) == 0 )
            continue;
        limit.rlim_cur = std::min( usual.value, limit.rlim_max );
        setrlimit( usual.resource, &limit );
    }
}

bool RestoreDescriptors()
{
    int const null = open( "/dev/null", O_RDWR );
    if ( null == -1 )
        return false;
    bool const hasError = fcntl( STDERR_FILENO, F_GETFD ) != -1;
    return dup2( null, STDIN_FILENO ) != -1 && dup2( null, STDOUT_FILENO ) != -1 &&
           ( hasError || dup2( null, STDERR_FILENO ) != -1 ) &&
           close_range( STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC ) == 0;
}

[[noreturn]] void ExecuteCleanly( char* const* arguments, char* const* environment, int report )
{
    RestoreSignals();
    umask( 022 );
    if ( setsid() != -1 && chdir( "/" ) != -1 && RestoreDescriptors() )
    {
        RestoreLimits();
        execve( arguments[0], arguments, environment );
    }
    char const failed = 1;
    while ( write( report, &failed, 1 ) == -1 && errno == EINTR )
    {
    }
    _exit( EXIT_FAILURE );
}

// A pipe whose ends are none of the three standard descriptors, which the child makes anew, and
// which the execution of a program closes.
class ReportPipe
{
  public:
    ReportPipe()
    {
        int ends[2];
        if ( pipe2( ends, O_CLOEXEC ) == -1 )
            return;
        for ( size_t i = 0; i < mEnds.size(); ++i )
        {
            mEnds[i] = fcntl( ends[i], F_DUPFD_CLOEXEC, STDERR_FILENO + 1 );
            close( ends[i] );
        }
    }

    ~ReportPipe()
    {
        Close( 0 );
        Close( 1 );
    }

    ReportPipe( ReportPipe const& ) = delete;
    ReportPipe& operator=( ReportPipe const& ) = delete;

    bool IsOpen() const { return mEnds[0] != -1 && mEnds[1] != -1; }

    int WriteEnd() const { return mEnds[1]; }

    // True if all copies of the write end were closed without a report.
    bool EndsSilently()
    {
        Close( 1 );
        char reported = 0;
        ssize_t length = 0;
        do
        {
            length = read( mEnds[0], &reported, 1 );
        } while ( length == -1 && errno == EINTR );
        return length == 0;
    }

  private:
    void Close( size_t end )
    {
        if ( mEnds[end] != -1 )
            close( mEnds[end] );
        mEnds[end] = -1;
    }

    std::array<int, 2> mEnds = { -1, -1 };
};
} // namespace

pid_t StartCleanChild( std::vector<std::string> words )
{
    std::vector<std::string> environment = CleanEnvironment();
    std::vector<char*> const argumentPointers = Pointers( words );
    std::vector<char*> const environmentPointers = Pointers( environment );
    ReportPipe report;
    if ( !report.IsOpen() )
        return -1;

    // No handler of this process may run in the child.
    sigset_t all;
    sigset_t before;
    sigfillset( &all );
    pthread_sigmask( SIG_SETMASK, &all, &before );
    pid_t const child = fork();
    if ( child == 0 )
        ExecuteCleanly( argumentPointers.data(), environmentPointers.data(), report.WriteEnd() );
    pthread_sigmask( SIG_SETMASK, &before, nullptr );

    if ( child == -1 || report.EndsSilently() )
        return child;
    while ( waitpid( child, nullptr, 0 ) == -1 && errno == EINTR )
    {
    }
    return -1;
}
