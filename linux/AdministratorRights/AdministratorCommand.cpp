#include "linux/AdministratorRights/AdministratorCommand.h"

#include "linux/AdministratorRights/CleanChild.h"
#include "linux/AdministratorRights/CommandWords.h"

#include <cerrno>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
bool ExitedWithSuccess( pid_t child )
{
    int status = 0;
    pid_t ended = -1;
    do
    {
        ended = waitpid( child, &status, 0 );
    } while ( ended == -1 && errno == EINTR );
    return ended == child && WIFEXITED( status ) && WEXITSTATUS( status ) == 0;
}

int OpenProcess( pid_t child )
{
    return static_cast<int>( syscall( SYS_pidfd_open, child, 0 ) );
}
} // namespace

AdministratorCommand::AdministratorCommand( std::string const& commandLine )
    : mWords( SplitIntoWords( commandLine ).value_or( std::vector<std::string>() ) )
{
    bool const isAbsolute = !mWords.empty() && mWords.front().starts_with( '/' );
    if ( !isAbsolute )
        mWords.clear();
}

AdministratorCommand::~AdministratorCommand()
{
    Finish();
}

bool AdministratorCommand::Start()
{
    if ( mWords.empty() || mStarted )
        return false;
    mStarted = true;

    std::vector<std::string> words = mWords;
    if ( geteuid() != 0 )
        words.insert( words.begin(), { "/usr/bin/pkexec", "--disable-internal-agent" } );
    mChild = StartCleanChild( std::move( words ) );
    if ( mChild == -1 )
        return false;

    mEndDescriptor = OpenProcess( mChild );
    return true;
}

bool AdministratorCommand::Finish()
{
    if ( mChild != -1 )
        mSucceeded = ExitedWithSuccess( mChild );
    mChild = -1;
    if ( mEndDescriptor != -1 )
        close( mEndDescriptor );
    mEndDescriptor = -1;
    return mSucceeded;
}

bool RunWithAdministratorRights( std::string const& commandLine )
{
    AdministratorCommand command( commandLine );
    return command.Start() && command.Finish();
}
