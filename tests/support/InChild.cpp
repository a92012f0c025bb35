#include "tests/support/InChild.h"

#include <cerrno>
#include <exception>
#include <fcntl.h>
#include <fstream>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace
{

constexpr uid_t kOrdinaryUser = 65534;

// In a user namespace of its own an ordinary user may mount.
bool EnterMountNamespace()
{
    std::string const uid = std::to_string( geteuid() );
    std::string const gid = std::to_string( getegid() );
    if ( unshare( CLONE_NEWNS | ( geteuid() == 0 ? 0 : CLONE_NEWUSER ) ) != 0 )
        return false;
    if ( uid != "0" )
    {
        std::ofstream( "/proc/self/setgroups" ) << "deny";
        std::ofstream( "/proc/self/uid_map" ) << "0 " + uid + " 1";
        std::ofstream( "/proc/self/gid_map" ) << "0 " + gid + " 1";
    }
    return mount( nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr ) == 0;
}

} // namespace

std::string InChild( std::function<std::string()> const& action )
{
    int ends[2];
    if ( pipe2( ends, O_CLOEXEC ) != 0 )
        throw std::system_error( errno, std::generic_category(), "pipe2" );
    pid_t const child = fork();
    std::string result;
    if ( child == 0 )
    {
        try
        {
            result = action();
        }
        catch ( std::exception const& error )
        {
            result = std::string( "threw " ) + error.what();
        }
        _exit( write( ends[1], result.data(), result.size() ) < 0 );
    }
    close( ends[1] );
    for ( char byte; read( ends[0], &byte, 1 ) > 0; )
        result += byte;
    close( ends[0] );
    int status = 0;
    waitpid( child, &status, 0 );
    return WIFSIGNALED( status ) ? "killed by signal " + std::to_string( WTERMSIG( status ) )
                                 : result;
}

void BecomeOrdinaryUser()
{
    if ( geteuid() == 0 && ( setgroups( 0, nullptr ) != 0 || setgid( kOrdinaryUser ) != 0 ||
                               setuid( kOrdinaryUser ) != 0 ) )
        throw std::system_error( errno, std::generic_category(), "setuid" );
}

bool MountPrivately( std::string const& folder, std::string const& bytes )
{
    return EnterMountNamespace() &&
           mount( "tmpfs", folder.c_str(), "tmpfs", 0, ( "mode=777,size=" + bytes ).c_str() ) == 0;
}
