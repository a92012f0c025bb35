#include "tests/faults/SystemCallFault.h"

#ifdef __x86_64__

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cxxabi.h>
#include <filesystem>
#include <iterator>
#include <map>
#include <set>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr long kMarker = 100000; // no system call; made where the action begins and ends

constexpr int kCallsOfSanitizer = 4; // pipe, write and two times close

std::set<long> const kIgnored = { SYS_mmap, SYS_munmap, SYS_mremap, SYS_mprotect, SYS_madvise,
    SYS_brk, SYS_rt_sigaction, SYS_rt_sigprocmask, SYS_rt_sigreturn, SYS_sigaltstack, SYS_futex,
    SYS_set_robust_list, SYS_rseq, SYS_sched_yield, SYS_getpid, SYS_gettid, SYS_getppid, SYS_getuid,
    SYS_geteuid, SYS_umask, SYS_restart_syscall, SYS_exit, SYS_exit_group, kMarker };

std::string Perform( std::function<std::string()> const& action )
{
    try
    {
        return action();
    }
    catch ( ... )
    {
        char const* const type = abi::__cxa_current_exception_type()->name();
        char* const name = abi::__cxa_demangle( type, nullptr, nullptr, nullptr );
        std::string const full = name;
        std::free( name );
        return full.substr( full.rfind( ':' ) + 1 );
    }
}

[[noreturn]] void BeTraced( std::function<std::string()> const& action )
{
    alarm( 10 );
    if ( ptrace( PTRACE_TRACEME, 0, nullptr, nullptr ) != 0 )
    {
        _exit( 1 );
    }
    raise( SIGSTOP );
    syscall( kMarker, nullptr, 0 );
    std::string const result = Perform( action );
    syscall( kMarker, result.data(), result.size() );
    _exit( 0 );
}

std::ptrdiff_t CountDescriptors( pid_t pid )
{
    std::filesystem::directory_iterator const all( "/proc/" + std::to_string( pid ) + "/fd" );
    return std::distance( all, {} );
}

class Tracer
{
  public:
    Tracer( pid_t child, SystemCallFault const& fault ) : mChild( child ), mFault( fault ) {}

    TracedRun Run()
    {
        int status = 0;
        waitpid( mChild, &status, 0 );
        ptrace( PTRACE_SETOPTIONS, mChild, nullptr,
            PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL | PTRACE_O_TRACEFORK | PTRACE_O_TRACEEXEC );
        pid_t pid = mChild;
        while ( WIFSTOPPED( status ) || pid != mChild )
        {
            WIFSTOPPED( status ) ? HandleStop( Find( pid ), status ) : void();
            pid = waitpid( -1, &status, __WALL );
        }
        for ( auto const& [other, tracee] : mTracees ) // what it has left running
        {
            kill( other, SIGKILL );
            waitpid( other, nullptr, __WALL );
        }
        if ( WIFSIGNALED( status ) )
        {
            mRun.result = "killed by signal " + std::to_string( WTERMSIG( status ) );
        }
        return mRun;
    }

  private:
    struct Tracee
    {
        pid_t pid = 0;
        std::size_t process = 0;
        int failure = 0; // what the call that is under way is to answer
        int ignored = 0; // how many of the next calls
    };

    Tracee& Find( pid_t pid )
    {
        auto const found = mTracees.try_emplace( pid, Tracee{ pid, mTracees.size() } ).first;
        mRun.calls.resize( mTracees.size() );
        return found->second;
    }

    void HandleStop( Tracee& tracee, int status )
    {
        pid_t const pid = tracee.pid;
        int const signal = WSTOPSIG( status );
        bool isLast = status >> 8 == ( SIGTRAP | PTRACE_EVENT_EXEC << 8 );
        if ( status >> 8 == ( SIGTRAP | PTRACE_EVENT_FORK << 8 ) )
        {
            unsigned long child = 0;
            ptrace( PTRACE_GETEVENTMSG, pid, nullptr, &child );
            Find( static_cast<pid_t>( child ) ); // so that it is known should this one end first
        }
        if ( signal == ( SIGTRAP | 0x80 ) )
        {
            __ptrace_syscall_info info = {};
            ptrace( PTRACE_GET_SYSCALL_INFO, pid, sizeof info, &info );
            if ( info.op == PTRACE_SYSCALL_INFO_ENTRY )
            {
                auto const number = static_cast<long>( info.entry.nr );
                isLast = number == kMarker && HandleMarker( info.entry.args );
                HandleCall( tracee, number, info.entry.args );
            }
            else if ( tracee.failure != 0 )
            {
                Set( pid, offsetof( user_regs_struct, rax ), -tracee.failure );
                tracee.failure = 0;
            }
        }
        bool const isOurs = signal == SIGSTOP || ( signal & 0x7F ) == SIGTRAP;
        ptrace( isLast ? PTRACE_DETACH : PTRACE_SYSCALL, pid, nullptr, isOurs ? 0L : signal );
    }

    template<class Arguments>
    bool HandleMarker( Arguments const& arguments )
    {
        std::ptrdiff_t const open = CountDescriptors( mChild );
        if ( mDescriptors == 0 )
        {
            mDescriptors = open;
            return false;
        }
        mRun.result.resize( arguments[1] );
        iovec const here = { mRun.result.data(), arguments[1] };
        iovec const there = { reinterpret_cast<void*>( arguments[0] ), arguments[1] };
        process_vm_readv( mChild, &here, 1, &there, 1, 0 );
        std::string const left = std::to_string( open - mDescriptors );
        mRun.result += left == "0" ? "" : ", " + left + " descriptors left";
        return true;
    }

    template<class Arguments>
    void HandleCall( Tracee& tracee, long number, Arguments const& arguments )
    {
        // A sanitizer sees whether memory can be read by having a pipe of its own read it.
        bool const isSanitizers = number == SYS_pipe2 && arguments[1] == 0;
        tracee.ignored = isSanitizers ? kCallsOfSanitizer : tracee.ignored;
        if ( tracee.ignored > 0 )
        {
            --tracee.ignored;
        }
        else if ( mDescriptors != 0 && kIgnored.count( number ) == 0 )
        {
            Disturb( tracee, number, arguments[2] );
        }
    }

    void Disturb( Tracee& tracee, long number, unsigned long long third )
    {
        std::vector<long>& calls = mRun.calls[tracee.process];
        bool const isIt = tracee.process == mFault.process && calls.size() == mFault.call;
        mHasBegun = mHasBegun || isIt;
        calls.push_back( number );
        if ( mFault.isOldSystem && ( number == SYS_copy_file_range || number == SYS_renameat2 ) )
        {
            Fail( tracee, number, number == SYS_renameat2 ? EINVAL : EXDEV );
        }
        if ( isIt && mFault.kind == SystemCallFault::Killed )
        {
            kill( tracee.pid, SIGKILL );
        }
        if ( isIt && mFault.kind == SystemCallFault::Half )
        {
            Set( tracee.pid, offsetof( user_regs_struct, rdx ),
                static_cast<long>( ( third + 1 ) / 2 ) );
        }
        if ( ( isIt && mFault.kind == SystemCallFault::Error ) ||
             ( mHasBegun && mFault.kind == SystemCallFault::Errors ) )
        {
            Fail( tracee, number, mFault.error );
        }
    }

    static void Fail( Tracee& tracee, long number, int error )
    {
        if ( number == SYS_wait4 && error != EINTR )
        {
            return; // with a child that is there, this cannot happen
        }
        tracee.failure = error;
        if ( number != SYS_close )
        {
            Set( tracee.pid, offsetof( user_regs_struct, orig_rax ), -1 );
        }
    }

    static void Set( pid_t pid, std::size_t where, long value )
    {
        ptrace( PTRACE_POKEUSER, pid, where, value );
    }

    pid_t mChild;
    SystemCallFault const& mFault;
    std::map<pid_t, Tracee> mTracees;
    std::ptrdiff_t mDescriptors = 0; // what is open when the action begins
    TracedRun mRun = { {}, "ended" };
    bool mHasBegun = false;
};

} // namespace

TracedRun RunWithFault( std::function<std::string()> const& action, SystemCallFault const& fault )
{
    pid_t const child = fork();
    if ( child == 0 )
    {
        BeTraced( action );
    }
    return Tracer( child, fault ).Run();
}

#else

TracedRun RunWithFault( std::function<std::string()> const&, SystemCallFault const& )
{
    return {};
}

#endif
