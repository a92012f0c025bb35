#include <sys/stdio.h>

#include <cerrno>
#include <cstdio>

int renameatx_np(
    int fromFolder, char const* from, int toFolder, char const* to, unsigned int flags )
{
    if ( flags == 0 )
    {
        return renameat( fromFolder, from, toFolder, to );
    }
    if ( flags != RENAME_EXCL )
    {
        errno = EINVAL;
        return -1;
    }
    int const result = renameat2( fromFolder, from, toFolder, to, RENAME_NOREPLACE );
    if ( result != 0 && ( errno == EINVAL || errno == ENOSYS ) )
    {
        errno = ENOTSUP;
    }
    return result;
}
