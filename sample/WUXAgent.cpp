// A small agent for trying the panel: it does nothing, at no cost, until it is told to end.

#include <csignal>
#include <cstdlib>

int main()
{
    // TERM and INT are what ends a daemon; blocked, they wait for sigwait, however early they come.
    sigset_t endings;
    sigemptyset( &endings );
    sigaddset( &endings, SIGINT );
    sigaddset( &endings, SIGTERM );
    if ( sigprocmask( SIG_BLOCK, &endings, nullptr ) != 0 )
        return EXIT_FAILURE;

    int ending = 0;
    return sigwait( &endings, &ending ) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
