// The kernel and the heap are replaced at link time: sysctl below answers from a script, malloc and
// free are wrapped.

#include "Shared/Portable/Processes/Mac/BSDProcessList.h"
#include "Shared/Portable/Processes/Mac/AgentProcess.h"

#include <cerrno>
#include <cstring>
#include <deque>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace
{
struct Answer
{
    int result;   // what sysctl returns
    int error;    // what it leaves in errno
    size_t bytes; // the length that it hands back
};

struct Row
{
    char const* name;
    pid_t pid;
};

std::deque<Answer> gAnswers;
std::vector<Row> gTable;
size_t gCalls = 0;
bool gMallocFails = false;
bool gWatching = false;
std::vector<void*> gBlocks; // taken and not freed while watching

constexpr size_t kRecord = 492;

Answer Size( size_t bytes )
{
    return { 0, 0, bytes };
}

Answer Fetch( size_t bytes )
{
    return { 0, 0, bytes };
}

Answer Fails( int error )
{
    return { -1, error, 0 };
}

class ProcessListTest : public testing::Test
{
  protected:
    void SetUp() override
    {
        gAnswers.clear();
        gTable.clear();
        gBlocks.clear();
        gCalls = 0;
        gMallocFails = false;
    }

    // Asks with the script `answers`, and checks what holds after every call.
    int Ask( std::deque<Answer> answers )
    {
        gAnswers = std::move( answers );
        size_t const expectedCalls = gAnswers.size();
        mCount = 77;
        gWatching = true;
        int const error = GetBSDProcessList( &mList, &mCount );
        gWatching = false;
        EXPECT_EQ( gCalls, expectedCalls );
        EXPECT_EQ( error == 0, mList != nullptr );
        EXPECT_EQ( gBlocks.size(), error == 0 ? 1U : 0U ) << "a block was lost";
        EXPECT_TRUE( error == 0 || mCount == 0 );
        return error;
    }

    void TearDown() override { free( mList ); }

    kinfo_proc* mList = nullptr;
    size_t mCount = 0;
};

std::int32_t AgentAmong( std::vector<Row> const& table )
{
    gTable = table;
    gAnswers = { Size( table.size() * kRecord ), Fetch( table.size() * kRecord ) };
    gWatching = true;
    std::int32_t const pid = getPID();
    gWatching = false;
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
        if ( !gWatching )
            return __real_malloc( size );
        gWatching = false;
        void* const block = gMallocFails ? nullptr : __real_malloc( size );
        if ( block != nullptr )
            gBlocks.push_back( block );
        gWatching = true;
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
        ++gCalls;
        bool const wholeTable = nameLength == 3 && name[0] == 1 && name[1] == 14 && name[2] == 0;
        EXPECT_TRUE( wholeTable && newValue == nullptr && newLength == 0 );
        EXPECT_TRUE( table != nullptr || *length == 0 ) << "the length is not reset for the size";
        Answer answer = Fails( EPROTO );
        EXPECT_FALSE( gAnswers.empty() ) << "more calls than expected";
        if ( !gAnswers.empty() )
        {
            answer = gAnswers.front();
            gAnswers.pop_front();
        }
        if ( table != nullptr && answer.result == 0 )
        {
            EXPECT_LE( answer.bytes, *length );
            std::memset( table, 0, answer.bytes );
            for ( size_t i = 0; i < gTable.size(); ++i )
            {
                kinfo_proc& process = static_cast<kinfo_proc*>( table )[i];
                process.kp_proc.p_pid = gTable[i].pid;
                std::strcpy( process.kp_proc.p_comm, gTable[i].name );
            }
        }
        *length = answer.bytes;
        errno = answer.error;
        gWatching = true;
        return answer.result;
    }
}

TEST_F( ProcessListTest, HandsOutTheFetchedRecordsInOrder )
{
    gTable = { { "init", 1 }, { "WUXAgent", 44 }, { "sixteen-letters-", 7 } };
    ASSERT_EQ( Ask( { Size( 5 * kRecord ), Fetch( 3 * kRecord ) } ), 0 );
    ASSERT_EQ( mCount, 3U );
    for ( size_t i = 0; i < mCount; ++i )
    {
        EXPECT_EQ( mList[i].kp_proc.p_pid, gTable[i].pid );
        EXPECT_STREQ( mList[i].kp_proc.p_comm, gTable[i].name );
    }
}

TEST_F( ProcessListTest, CountsWholeRecordsOnly )
{
    for ( size_t surplus : { size_t( 0 ), size_t( 1 ), kRecord - 1 } )
    {
        SCOPED_TRACE( surplus );
        SetUp();
        ASSERT_EQ( Ask( { Size( 4 * kRecord ), Fetch( 2 * kRecord + surplus ) } ), 0 );
        EXPECT_EQ( mCount, 2U );
        free( mList );
        mList = nullptr;
    }
}

TEST_F( ProcessListTest, StartsAgainAsOftenAsTheTableOutgrowsItsBlock )
{
    std::deque<Answer> answers;
    for ( size_t pass = 1; pass <= 100; ++pass )
    {
        answers.push_back( Size( pass * kRecord ) );
        answers.push_back( Fails( ENOMEM ) );
    }
    answers.push_back( Size( 200 * kRecord ) );
    answers.push_back( Fetch( 150 * kRecord ) );
    ASSERT_EQ( Ask( answers ), 0 );
    EXPECT_EQ( mCount, 150U );
}

TEST_F( ProcessListTest, EndsWithTheErrorOfTheKernel )
{
    struct Case
    {
        char const* name;
        std::deque<Answer> answers;
        int error;
    };

    Case const cases[] = {
        { "no size", { Fails( EPERM ) }, EPERM },
        { "no memory for the size is not retried", { Fails( ENOMEM ) }, ENOMEM },
        { "a result other than -1 is the error itself", { { 5, EPERM, 0 } }, 5 },
        { "no table", { Size( kRecord ), Fails( EFAULT ) }, EFAULT },
        { "no table, the error as the result", { Size( kRecord ), { 9, 0, 0 } }, 9 },
        { "too small, the error as the result",
            { Size( kRecord ), { ENOMEM, 0, 0 }, Size( kRecord ), Fails( EIO ) }, EIO },
        { "no size in the second pass", { Size( kRecord ), Fails( ENOMEM ), Fails( EMFILE ) },
            EMFILE },
    };
    for ( Case const& row : cases )
    {
        SCOPED_TRACE( row.name );
        SetUp();
        EXPECT_EQ( Ask( row.answers ), row.error );
    }
}

TEST_F( ProcessListTest, ReportsThatThereIsNoMemoryForTheBlock )
{
    gMallocFails = true;
    EXPECT_EQ( Ask( { Size( kRecord ) } ), 12 );
    gAnswers = { Size( kRecord ) };
    EXPECT_EQ( getPID(), 0 );
    gWatching = false;
}

TEST_F( ProcessListTest, FindsTheAgentByItsExactShortName )
{
    struct Case
    {
        char const* name;
        std::vector<Row> table;
        std::int32_t pid;
    };

    Case const cases[] = {
        { "nobody", { { "init", 1 }, { "sh", 2 } }, 0 },
        { "alone", { { "WUXAgent", 2147483647 } }, 2147483647 },
        { "last", { { "init", 1 }, { "WUXAgent", 9 } }, 9 },
        { "two: the first in the table, not the lowest", { { "WUXAgent", 9 }, { "WUXAgent", 4 } },
            9 },
        { "longer names", { { "WUXAgentControlP", 3 }, { "WUXAgent ", 4 }, { "xWUXAgent", 5 } },
            0 },
        { "a shorter name", { { "WUXAgen", 3 }, { "", 4 } }, 0 },
        { "other letter case", { { "wuxagent", 3 }, { "WUXAGENT", 4 }, { "WuxAgent", 5 } }, 0 },
    };
    for ( Case const& row : cases )
    {
        SCOPED_TRACE( row.name );
        EXPECT_EQ( AgentAmong( row.table ), row.pid );
    }
}

TEST_F( ProcessListTest, FindsNoAgentInATableThatCannotBeRead )
{
    gTable = { { "WUXAgent", 5 } };
    gAnswers = { Fails( EACCES ) };
    EXPECT_EQ( getPID(), 0 );
    gWatching = false;
}

using ProcessListDeathTest = ProcessListTest;

TEST_F( ProcessListDeathTest, MistakenArgumentsEndTheProcessWithTheirLine )
{
    std::string const where = "Shared/Portable/Processes/Mac/BSDProcessList:";
    auto const message = [&where]( int line, std::string const& condition )
    {
        return where + std::to_string( line ) + ": GetBSDProcessList: Assertion `" + condition +
               "' failed";
    };
    kinfo_proc block;
    kinfo_proc* list = nullptr;
    kinfo_proc* taken = &block;
    size_t count = 0;
    testing::KilledBySignal const aborted( SIGABRT );
    EXPECT_EXIT( GetBSDProcessList( nullptr, &count ), aborted, message( 34, "procList != NULL" ) );
    EXPECT_EXIT( GetBSDProcessList( &taken, &count ), aborted, message( 35, ".procList == NULL" ) );
    EXPECT_EXIT( GetBSDProcessList( &list, nullptr ), aborted, message( 36, "procCount != NULL" ) );
}

// Those inside the function cannot be provoked from outside.
TEST( ProcessListSource, AssertionsStandOnTheLinesThatTheirMessagesNameForever )
{
    std::ifstream source( PROCESS_LIST_SOURCE );
    std::vector<std::string> lines = { "" };
    for ( std::string line; std::getline( source, line ); )
        lines.push_back( line );
    ASSERT_GT( lines.size(), 107U );
    EXPECT_NE( lines[53].find( "( result == NULL )" ), std::string::npos );
    EXPECT_NE( lines[107].find( "( ( err == 0 ) == ( *procList != NULL ) )" ), std::string::npos );
}
