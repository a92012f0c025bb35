#include <sys/sysctl.h>

#include "linux/Descriptor.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <iterator>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace
{
int const kWholeTable[] = { CTL_KERN, KERN_PROC, KERN_PROC_ALL };

// All functions below that return int return an error number, or 0.

template<typename Call>
auto Uninterrupted( Call call )
{
    auto result = call();
    while ( result == -1 && errno == EINTR )
        result = call();
    return result;
}

Descriptor Open( int directory, char const* path, int flags )
{
    return Descriptor(
        Uninterrupted( [=] { return openat( directory, path, O_RDONLY | O_CLOEXEC | flags ); } ) );
}

bool ParsePID( char const* name, pid_t& pid )
{
    char const* const end = name + std::strlen( name );
    return std::from_chars( name, end, pid ).ptr == end;
}

// Calls `visit` with the PID of each process, in ascending order, until it returns an error.
// The kernel finds its place again by PID and not by counting, so that processes which come and
// go between two reads of the directory make it neither miss nor repeat another one.
template<typename Visit>
int ForEachProcess( int procDirectory, Visit visit )
{
    alignas( dirent64 ) char entries[16384];
    for ( ;; )
    {
        ssize_t const length =
            Uninterrupted( [&] { return getdents64( procDirectory, entries, sizeof entries ); } );
        if ( length == -1 )
            return errno;
        if ( length == 0 )
            return 0;

        for ( ssize_t position = 0; position < length; )
        {
            auto const* entry = reinterpret_cast<dirent64 const*>( entries + position );
            position += entry->d_reclen;
            pid_t pid = 0;
            if ( !ParsePID( entry->d_name, pid ) )
                continue;
            if ( int const error = visit( pid ) )
                return error;
        }
    }
}

bool IsOutOfSight( int error )
{
    bool const ended = error == ENOENT || error == ESRCH;
    bool const hidden = error == EACCES || error == EPERM;
    return ended || hidden;
}

// A short name as the kernel tells it, without the newline that ends it. The name itself may hold
// any character, newlines too. Names of the kernel's own threads can be longer than there is room
// for in a record.
struct ShortName
{
    char text[MAXCOMLEN + 1];
    size_t length;
};

int ReadShortName( int procDirectory, pid_t pid, ShortName& name )
{
    char path[sizeof "/comm" + 10];
    char* const end = std::to_chars( path, path + 10, pid ).ptr;
    std::memcpy( end, "/comm", sizeof "/comm" );
    Descriptor const file = Open( procDirectory, path, 0 );
    if ( file.Get() == -1 )
        return errno;
    // A read that was cut short before the newline is continued: a part of one name may be
    // another's.
    size_t length = 0;
    ssize_t count = 1;
    while ( count != 0 && length < sizeof name.text &&
            ( length == 0 || name.text[length - 1] != '\n' ) )
    {
        count = Uninterrupted(
            [&] { return read( file.Get(), name.text + length, sizeof name.text - length ); } );
        if ( count == -1 )
            return errno;
        length += static_cast<size_t>( count );
    }
    if ( length == 0 )
        return ESRCH;
    name.length = length - 1;
    return 0;
}

// `record` need not be aligned.
void WriteRecord( char* record, pid_t pid, ShortName const& name )
{
    std::memset( record, 0, sizeof( kinfo_proc ) );
    std::memcpy( record + offsetof( kinfo_proc, kp_proc.p_pid ), &pid, sizeof pid );
    std::memcpy( record + offsetof( kinfo_proc, kp_proc.p_comm ), name.text, name.length );
}

// The kernel counts every process of the machine as a link to /proc, those that are kept from the
// caller too, so that nothing needs to be listed.
int EstimateCount( int procDirectory, size_t& count )
{
    struct stat status;
    if ( fstat( procDirectory, &status ) == -1 )
        return errno;
    count = status.st_nlink;
    return 0;
}

int CountProcesses( int procDirectory, size_t& count )
{
    count = 0;
    return ForEachProcess( procDirectory,
        [&count]( pid_t )
        {
            ++count;
            return 0;
        } );
}

size_t WithRoomToGrow( size_t count )
{
    return count + 16 + count / 8;
}

// Whether the links of /proc have been seen to be too few: another kernel, or a sandbox, may count
// something else. Processes are counted one by one from then on, or a caller who asks for the size
// again after each fetch that failed would never come to an end.
std::atomic<bool> gLinksAreTooFew = false;

void CompareLinks( int procDirectory, size_t tooSmallCapacity )
{
    size_t count = 0;
    if ( EstimateCount( procDirectory, count ) == 0 && WithRoomToGrow( count ) <= tooSmallCapacity )
        gLinksAreTooFew = true;
}

int MeasureTable( int procDirectory, size_t& length )
{
    size_t count = 0;
    int const error = gLinksAreTooFew ? CountProcesses( procDirectory, count )
                                      : EstimateCount( procDirectory, count );
    length = WithRoomToGrow( count ) * sizeof( kinfo_proc );
    return error;
}

int FetchTable( int procDirectory, void* table, size_t& length )
{
    size_t const capacity = length / sizeof( kinfo_proc );
    size_t count = 0;
    int const error = ForEachProcess( procDirectory,
        [&]( pid_t pid )
        {
            ShortName name;
            int const reason = ReadShortName( procDirectory, pid, name );
            if ( reason != 0 )
                return IsOutOfSight( reason ) ? 0 : reason;
            if ( count == capacity )
                return ENOMEM;
            WriteRecord( static_cast<char*>( table ) + count++ * sizeof( kinfo_proc ), pid, name );
            return 0;
        } );
    length = count * sizeof( kinfo_proc );
    if ( error == ENOMEM && count == capacity )
        CompareLinks( procDirectory, capacity );
    return error;
}

int ReadTable( void* table, size_t& length )
{
    Descriptor const directory = Open( AT_FDCWD, "/proc", O_DIRECTORY );
    struct statfs fileSystem;
    if ( directory.Get() == -1 || fstatfs( directory.Get(), &fileSystem ) == -1 )
        return errno;
    if ( fileSystem.f_type != PROC_SUPER_MAGIC )
        return ENOENT;
    return table == nullptr ? MeasureTable( directory.Get(), length )
                            : FetchTable( directory.Get(), table, length );
}

int Sysctl(
    int const* name, unsigned int nameLength, void* table, size_t* length, void const* newValue )
{
    if ( name == nullptr || length == nullptr )
        return EFAULT;
    if ( !std::equal(
             name, name + nameLength, std::begin( kWholeTable ), std::end( kWholeTable ) ) )
        return ENOENT;
    if ( newValue != nullptr )
        return EPERM;
    return ReadTable( table, *length );
}
} // namespace

extern "C" int sysctl(
    int* name, unsigned int namelen, void* oldp, size_t* oldlenp, void* newp, size_t /*newlen*/ )
{
    int const error = Sysctl( name, namelen, oldp, oldlenp, newp );
    if ( error == 0 )
        return 0;
    errno = error;
    return -1;
}
