// The kernel and the heap are replaced at link time: sysctl below answers from a script, malloc and
// free are wrapped.

#include "Shared/Portable/Processes/Mac/BSDProcessList.h"
#include "Shared/Portable/Processes/Mac/AgentProcess.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace
{
constexpr size_t kRecord = 492;

// What one call of sysctl hands back as the length, returns, and leaves in errno.
struct Answer
{
    size_t bytes;
    int result = 0;
    int error = 0;
};

using Answers = std::vector<Answer>;
using Table = std::vector<std::pair<char const*, pid_t>>;

Answers gAnswers;
Table gTable;
size_t gCalls = 0;
bool gMallocFails = false;
bool gWatching = false;
std::vector<void*> gBlocks; // taken and not freed while watching

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
        Answer const answer = gCalls < gAnswers.size() ? gAnswers[gCalls] : Answer{ 0, EPROTO };
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
        outgrown.insert( outgrown.end(), { { pass * kRecord }, { kRecord, -1, ENOMEM } } );
    outgrown.insert( outgrown.end(), { { 200 * kRecord }, { 150 * kRecord } } );
    std::tuple<char const*, Answers, int, size_t> const rows[] = {
        { "a byte more", { { 5 * kRecord }, { 2 * kRecord + 1 } }, 0, 2 },
        { "a byte less", { { 5 * kRecord }, { 3 * kRecord - 1 } }, 0, 2 },
        { "outgrown a hundred times", outgrown, 0, 150 },
        { "no memory for the size is not retried", { { 0, -1, ENOMEM } }, ENOMEM, 0 },
        { "a result other than -1 is the error itself", { { 0, 5, EPERM } }, 5, 0 },
        { "no table", { { kRecord }, { kRecord, -1, EFAULT } }, EFAULT, 0 },
        { "too small, the error as the result",
            { { kRecord }, { 0, ENOMEM, 0 }, { kRecord }, { kRecord, 9, 0 } }, 9, 0 },
        { "no size again", { { kRecord }, { 0, ENOMEM, 0 }, { 0, -1, EMFILE } }, EMFILE, 0 },
        { "no memory for the block", { { kRecord } }, 12, 0 } };
    gTable = { { "init", 1 } };
    for ( auto const& [name, answers, error, expectedCount] : rows )
    {
        SCOPED_TRACE( name );
        kinfo_proc* list = nullptr;
        size_t count = 77;
        gMallocFails = error == 12 && answers.back().result == 0;
        EXPECT_EQ( Watch( answers, [&] { return GetBSDProcessList( &list, &count ); } ), error );
        EXPECT_EQ( count, expectedCount );
        EXPECT_EQ( list != nullptr, error == 0 );
        EXPECT_EQ( gBlocks.size(), error == 0 ? 1U : 0U ) << "a block was lost";
        free( list );
        EXPECT_EQ( AgentAmong( answers ), 0 );
    }
    gMallocFails = false;
}

TEST( AgentProcess, IsTheFirstWithExactlyTheAgentsShortName )
{
    std::pair<Table, int32_t> const rows[] = {
        { { { "init", 1 }, { "WUXAgent", 9 }, { "WUXAgent", 4 } }, 9 },
        { { { "WUXAgentControlP", 3 }, { "xWUXAgent", 4 }, { "WUXAgen", 5 }, { "wuxagent", 6 } },
            0 } };
    for ( auto const& [table, pid] : rows )
    {
        gTable = table;
        size_t const bytes = gTable.size() * kRecord;
        EXPECT_EQ( AgentAmong( { { bytes }, { bytes } } ), pid );
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
        continue;
    ASSERT_GT( lines.size(), 107U );
    EXPECT_NE( lines[53].find( "ASSERT_ALWAYS( result == NULL )" ), std::string::npos );
    EXPECT_NE( lines[107].find( "( ( err == 0 ) == ( *procList != NULL ) )" ), std::string::npos );
}
