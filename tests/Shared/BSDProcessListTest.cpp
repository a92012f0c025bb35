// The kernel is replaced at link time: sysctl below answers from a script.

#include "Shared/Portable/Processes/Mac/BSDProcessList.h"
#include "Shared/Portable/Processes/Mac/AgentProcess.h"
#include "tests/support/AllocationFailure.h"

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
long gFailingBlock = 0; // none

// Calls `ask` with the kernel's `answers`, all of which must be asked for; it must leave `blocks`.
template<typename Ask>
auto Watch( Answers const& answers, long blocks, Ask ask )
{
    gAnswers = answers;
    gCalls = 0;
    long const before = LiveBlocks();
    AllocationFailure const failure( gFailingBlock );
    auto const result = ask();
    EXPECT_EQ( LiveBlocks() - before, blocks );
    EXPECT_EQ( gCalls, answers.size() );
    return result;
}
} // namespace

extern "C"
{
    int sysctl( int* name, unsigned int nameLength, void* table, size_t* length, void* newValue,
        size_t newLength )
    {
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
        { "no memory for the block", { { kRecord } }, ENOMEM, 0 } };
    gTable = { { "init", 1 } };
    for ( auto const& [name, answers, error, expectedCount] : rows )
    {
        SCOPED_TRACE( name );
        kinfo_proc* list = nullptr;
        size_t count = 77;
        gFailingBlock = name == std::string_view( "no memory for the block" ) ? 1 : 0;
        EXPECT_EQ( Watch( answers, error == 0 ? 1 : 0,
                       [&] { return GetBSDProcessList( &list, &count ); } ),
            error );
        EXPECT_EQ( count, expectedCount );
        EXPECT_EQ( list != nullptr, error == 0 );
        free( list );
        EXPECT_EQ( Watch( answers, 0, getPID ), 0 );
    }
    gFailingBlock = 0;
}

TEST( AgentProcess, IsTheFirstWithExactlyTheAgentsShortName )
{
    std::pair<Table, int32_t> const rows[] = { { { { "WUXAgent", 9 } }, 9 },
        { { { "init", 1 }, { "WUXAgent", 9 }, { "WUXAgent", 4 } }, 9 },
        { { { "WUXAgentControlP", 3 }, { "xWUXAgent", 4 }, { "WUXAgen", 5 }, { "wuxagent", 6 } },
            0 } };
    for ( auto const& [table, pid] : rows )
    {
        gTable = table;
        size_t const bytes = gTable.size() * kRecord;
        EXPECT_EQ( Watch( { { bytes }, { bytes } }, 0, getPID ), pid );
    }
    gTable = { { "init", 1 }, { "WUXAgent", 9 } }; // the second is behind what was fetched
    EXPECT_EQ( Watch( { { 2 * kRecord }, { kRecord } }, 0, getPID ), 0 );
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
