// The kernel and the heap are replaced at link time: sysctl below answers from a script, malloc and
// free are wrapped.

#include "Shared/Portable/Processes/Mac/BSDProcessList.h"
#include "Shared/Portable/Processes/Mac/AgentProcess.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace
{
constexpr size_t kRecord = 492;

// What one call of sysctl returns, leaves in errno, and hands back as the length.
struct Answer
{
    int result;
    int error;
    size_t bytes;
};

using Answers = std::vector<Answer>;
using Table = std::vector<std::pair<char const*, pid_t>>;

Answers gAnswers;
Table gTable;
size_t gCalls = 0;
bool gMallocFails = false;
bool gWatching = false;
std::vector<void*> gBlocks; // taken and not freed while watching

Answer Gives( size_t bytes )
{
    return { 0, 0, bytes };
}

Answer Fails( int error )
{
    return { -1, error, kRecord };
}

// Calls `ask` with the kernel's `answers`; all of them must be asked for.
template<typename Ask>
auto Watch( Answers const& answers, Ask ask )
{
    gAnswers = answers;
    gBlocks.clear();
    gCalls = 0;
    gWatching = true;
    auto const result = ask();
    gWatching = false;
    EXPECT_EQ( gCalls, answers.size() );
    return result;
}

int32_t AgentAmong( Answers const& answers )
{
    int32_t const pid = Watch( answers, getPID );
    EXPECT_TRUE( gBlocks.empty() ) << "the list was not freed";
    return pid;
}
} // namespace

extern "C"
{
    void* __real_malloc( size_t size );
    void __real_free( void* block );
    void* __wrap_malloc( size_t size );
    void __wrap_free( void* block );

    void* __wrap_malloc( size_t size )
    {
        bool const watched = std::exchange( gWatching, false );
        void* const block = watched && gMallocFails ? nullptr : __real_malloc( size );
        if ( watched && block != nullptr )
            gBlocks.push_back( block );
        gWatching = watched;
        return block;
    }

    void __wrap_free( void* block )
    {
        if ( gWatching )
            std::erase( gBlocks, block );
        __real_free( block );
    }

    int sysctl( int* name, unsigned int nameLength, void* table, size_t* length, void* newValue,
        size_t newLength )
    {
        gWatching = false;
        bool const wholeTable = nameLength == 3 && name[0] == 1 && name[1] == 14 && name[2] == 0;
        EXPECT_TRUE( wholeTable && newValue == nullptr && newLength == 0 );
        EXPECT_TRUE( table != nullptr || *length == 0 ) << "the length is not reset for the size";
        Answer const answer = gCalls < gAnswers.size() ? gAnswers[gCalls] : Fails( EPROTO );
        ++gCalls;
        if ( table != nullptr && answer.result == 0 )
        {
            EXPECT_LE( answer.bytes, *length );
            std::memset( table, 0, answer.bytes );
            for ( size_t i = 0; i < gTable.size(); ++i )
            {
                extern_proc& process = static_cast<kinfo_proc*>( table )[i].kp_proc;
                process.p_pid = gTable[i].second;
                std::strcpy( process.p_comm, gTable[i].first );
            }
        }
        *length = answer.bytes;
        errno = answer.error;
        gWatching = true;
        return answer.result;
    }
}

TEST( ProcessList, HandsOutWholeRecordsOrAnErrorAndNothingElse )
{
    Answers outgrown;
    for ( size_t pass = 1; pass <= 100; ++pass )
        outgrown.insert( outgrown.end(), { Gives( pass * kRecord ), Fails( ENOMEM ) } );
    outgrown.insert( outgrown.end(), { Gives( 200 * kRecord ), Gives( 150 * kRecord ) } );

    struct Case
    {
        char const* name;
        Answers answers;
        int error;
        size_t count;
        bool noMemory = false;
    };

    Case const cases[] = {
        { "fewer than announced", { Gives( 5 * kRecord ), Gives( 3 * kRecord ) }, 0, 3 },
        { "a byte more", { Gives( 5 * kRecord ), Gives( 2 * kRecord + 1 ) }, 0, 2 },
        { "a byte less", { Gives( 5 * kRecord ), Gives( 3 * kRecord - 1 ) }, 0, 2 },
        { "outgrown a hundred times", outgrown, 0, 150 },
        { "no size", { Fails( EPERM ) }, EPERM, 0 },
        { "no memory for the size is not retried", { Fails( ENOMEM ) }, ENOMEM, 0 },
        { "a result other than -1 is the error itself", { { 5, EPERM, 0 } }, 5, 0 },
        { "no table", { Gives( kRecord ), Fails( EFAULT ) }, EFAULT, 0 },
        { "no table, the error as the result", { Gives( kRecord ), { 9, 0, 0 } }, 9, 0 },
        { "too small, the error as the result",
            { Gives( kRecord ), { ENOMEM, 0, 0 }, Gives( kRecord ), Fails( EIO ) }, EIO, 0 },
        { "no size again", { Gives( kRecord ), Fails( ENOMEM ), Fails( EMFILE ) }, EMFILE, 0 },
        { "no memory for the block", { Gives( kRecord ) }, 12, 0, true },
    };
    gTable = { { "init", 1 }, { "sixteen-letters-", 44 } };
    for ( Case const& row : cases )
    {
        SCOPED_TRACE( row.name );
        kinfo_proc* list = nullptr;
        size_t count = 77;
        gMallocFails = row.noMemory;
        EXPECT_EQ(
            Watch( row.answers, [&] { return GetBSDProcessList( &list, &count ); } ), row.error );
        EXPECT_EQ( count, row.count );
        EXPECT_EQ( list != nullptr, row.error == 0 );
        EXPECT_EQ( gBlocks.size(), row.error == 0 ? 1U : 0U ) << "a block was lost";
        for ( size_t i = 0; list != nullptr && i < gTable.size(); ++i )
        {
            EXPECT_STREQ( list[i].kp_proc.p_comm, gTable[i].first );
            EXPECT_EQ( list[i].kp_proc.p_pid, gTable[i].second );
        }
        free( list );
        EXPECT_TRUE( row.error == 0 || AgentAmong( row.answers ) == 0 );
        gMallocFails = false;
    }
}

TEST( AgentProcess, IsTheFirstWithExactlyTheAgentsShortName )
{
    struct Case
    {
        char const* name;
        Table table;
        int32_t pid;
    };

    Case const cases[] = {
        { "nobody", { { "init", 1 }, { "sh", 2 } }, 0 },
        { "alone", { { "WUXAgent", 2147483647 } }, 2147483647 },
        { "last", { { "init", 1 }, { "WUXAgent", 9 } }, 9 },
        { "not the lowest of two", { { "WUXAgent", 9 }, { "WUXAgent", 4 } }, 9 },
        { "longer", { { "WUXAgentControlP", 3 }, { "WUXAgent ", 4 }, { "xWUXAgent", 5 } }, 0 },
        { "shorter", { { "WUXAgen", 3 }, { "", 4 } }, 0 },
        { "other letter case", { { "wuxagent", 3 }, { "WUXAGENT", 4 }, { "WuxAgent", 5 } }, 0 },
    };
    for ( Case const& row : cases )
    {
        SCOPED_TRACE( row.name );
        gTable = row.table;
        size_t const bytes = gTable.size() * kRecord;
        EXPECT_EQ( AgentAmong( { Gives( bytes ), Gives( bytes ) } ), row.pid );
    }
}

// Those inside the function cannot be provoked from outside: their lines are looked up.
TEST( ProcessListDeathTest, AssertionsNameTheirLine )
{
    kinfo_proc* list = nullptr;
    kinfo_proc* taken = static_cast<kinfo_proc*>( static_cast<void*>( &list ) );
    size_t count = 0;
    testing::KilledBySignal const aborted( SIGABRT );
#define MESSAGE( line, condition )                                                                 \
    "Shared/Portable/Processes/Mac/BSDProcessList:" #line                                          \
    ": GetBSDProcessList: Assertion `" condition "' failed"
    EXPECT_EXIT( GetBSDProcessList( nullptr, &count ), aborted, MESSAGE( 34, "procList != NULL" ) );
    EXPECT_EXIT( GetBSDProcessList( &taken, &count ), aborted, MESSAGE( 35, ".procList == NULL" ) );
    EXPECT_EXIT( GetBSDProcessList( &list, nullptr ), aborted, MESSAGE( 36, "procCount != NULL" ) );

    std::ifstream source( PROCESS_LIST_SOURCE );
    std::vector<std::string> lines( 1 );
    while ( std::getline( source, lines.emplace_back() ) )
    {
    }
    ASSERT_GT( lines.size(), 107U );
    EXPECT_NE( lines[53].find( "ASSERT_ALWAYS( result == NULL )" ), std::string::npos );
    EXPECT_NE( lines[107].find( "( ( err == 0 ) == ( *procList != NULL ) )" ), std::string::npos );
}
