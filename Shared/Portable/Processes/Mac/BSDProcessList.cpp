#include "Shared/Portable/Processes/Mac/BSDProcessList.h"

// The assertions stay in release builds.
#undef NDEBUG
#include <assert.h>
#include <errno.h>
#include <stdlib.h>

// Unlike assert, this names the function by its plain name and the source by its place in the
// shared tree, wherever it was built. The line numbers belong to the messages, too: a test sees
// that edits do not move them.
#define ASSERT_ALWAYS( condition )                                                                 \
    ( ( condition ) ? (void)0 : __assert_fail( #condition, kSourcePath, __LINE__, __func__ ) )

namespace
{
char const kSourcePath[] = "Shared/Portable/Processes/Mac/BSDProcessList";

// The error number in what sysctl returned: -1 leaves it in errno, anything else is it.
int ErrorNumber( int sysctlResult )
{
    return sysctlResult == -1 ? errno : sysctlResult;
}
} // namespace

// The table can grow between asking for its size and fetching it. The fetch then fails with ENOMEM
// and everything starts again with the size that is needed by then, as often as it takes: a limit
// would only turn a busy machine into one without an agent.

int GetBSDProcessList( struct kinfo_proc** procList, size_t* procCount )
{
    // The list is handed over by pointer, so a block that is already there would be lost.

    ASSERT_ALWAYS( procList != NULL );
    ASSERT_ALWAYS( *procList == NULL );
    ASSERT_ALWAYS( procCount != NULL );

    *procCount = 0;

    int name[] = { CTL_KERN, KERN_PROC, KERN_PROC_ALL };
    unsigned int const nameLength = sizeof name / sizeof name[0];

    struct kinfo_proc* result = NULL;
    size_t length = 0;
    int err = 0;
    bool grown = false;

    do
    {
        // Each pass starts with no block in hand: the one that proved too small is gone.

        grown = false;
        ASSERT_ALWAYS( result == NULL );

        // Without a buffer the call tells the size that the table needs now.

        length = 0;
        err = ErrorNumber( sysctl( name, nameLength, NULL, &length, NULL, 0 ) );

        // Room for as many bytes as it named. That is never none, for which malloc may return null
        // without any shortage: at least this process is in the table, and a record for it.

        if ( err == 0 )
        {
            result = static_cast<struct kinfo_proc*>( malloc( length ) );
            if ( result == NULL )
                err = ENOMEM;
        }

        // The fetch, which leaves in `length` how many bytes it wrote: fewer than it has room for
        // when processes have ended since.
        //
        // Only its own ENOMEM means that the table has grown. One that came with the size, or from
        // malloc, is final and must not bring another pass.

        if ( err == 0 )
        {
            err = ErrorNumber( sysctl( name, nameLength, result, &length, NULL, 0 ) );
            if ( err == ENOMEM )
            {
                free( result );
                result = NULL;
                grown = true;
            }
        }
    } while ( grown );

    // A table that could not be fetched for another reason leaves its block behind.

    if ( err != 0 && result != NULL )
    {
        free( result );
        result = NULL;
    }

    *procList = result;

    // The count stays 0 after an error. A part of a record at the end of the block is not counted;
    // the rest of the block is whole records, since they lie back to back.

    if ( err == 0 )
        *procCount = length / sizeof( struct kinfo_proc );

    // Success and a block go together: the caller of a failure has nothing to free, and the caller
    // of a success walks the block without looking at it first.

    ASSERT_ALWAYS( ( err == 0 ) == ( *procList != NULL ) );
    return err;
}
