#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// One command line that runs with administrator rights, after the system's own authentication.
///
/// For use by a caller that has an event loop: Start, wait until EndDescriptor can be read, Finish.
///
/// The command line is split into words (see SplitIntoWords) and never given to a shell, so a path
/// in it that has a blank or a quote breaks the command. Its first word must be an absolute path.
/// Effective user 0 runs the words as they are; other users run them through pkexec, which asks for
/// authentication. pkexec looks for an authentication agent of its parent process or that process's
/// session: the process that calls Start. It works neither below a process with the attribute
/// "no new privileges" nor for a parent with process identifier 1.
///
/// The command finds nothing of this process but its standard error, on which reasons for a failure
/// appear: standard input and output are /dev/null, other descriptors are closed, the environment
/// is a fixed PATH and the language, signals have their default effects and none is blocked, the
/// umask is 022, the folder is "/", resource limits are the usual ones as far as they may be
/// raised, and it leads a session of its own, without a terminal.
///
/// The process must not ignore SIGCHLD, nor wait for children that are not its own.
/// Not safe for use by two threads at once.
class AdministratorCommand
{
  public:
    explicit AdministratorCommand( std::string const& commandLine );

    /// Waits for the end of a command that still runs, as Finish does: nobody but its own authority
    /// could end it.
    ~AdministratorCommand();

    AdministratorCommand( AdministratorCommand const& ) = delete;
    AdministratorCommand& operator=( AdministratorCommand const& ) = delete;

    /// Starts the command. False if it could not be started: the command line is broken, its
    /// program (or pkexec) cannot be executed, the system has no process or descriptor left, or
    /// this command has been started before. The authentication is not waited for.
    bool Start();

    /// A descriptor that can be read once the command has ended, for use in poll and its like; it
    /// stays this object's own. -1 before Start and after Finish, and when the system had none to
    /// give: then there is nothing to wait for but Finish.
    int EndDescriptor() const { return mEndDescriptor; }

    /// Waits for the end of the command and returns whether it succeeded: it was started and exited
    /// with status 0. A cancelled or refused authentication, another status and a death by signal
    /// are failures. Later calls return the same.
    bool Finish();

  private:
    std::vector<std::string> mWords;
    pid_t mChild = -1;
    int mEndDescriptor = -1;
    bool mStarted = false;
    bool mSucceeded = false;
};

/// Runs the command line as an AdministratorCommand and waits for its end; true when it ran without
/// an error. For callers without an event loop.
bool RunWithAdministratorRights( std::string const& commandLine );
