#include "Shared/Portable/Processes/Mac/AgentProcess.h"

#include "Shared/Portable/Processes/Mac/BSDProcessList.h"

#include <stdlib.h>
#include <string.h>

int32_t getPID() noexcept
{
    struct kinfo_proc* list = NULL;
    size_t count = 0;
    if ( GetBSDProcessList( &list, &count ) != 0 )
        return 0;

    int32_t pid = 0;
    char const name[] = "WUXAgent";
    for ( size_t i = 0; i < count; ++i )
    {
        if ( strcmp( list[i].kp_proc.p_comm, name ) == 0 )
        {
            pid = list[i].kp_proc.p_pid;
            break;
        }
    }
    free( list );
    return pid;
}
