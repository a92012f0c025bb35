#include "tests/faults/AllocationTable.h"

#include "files/FileIOError.h"
#include "platform/OSError.h"
#include "tests/support/AllocationFailure.h"

#include <CoreServices/MacErrors.h>

#include <cxxabi.h>
#include <exception>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <regex>

// The C library's loader of encodings leaks when memory runs out.
extern "C" [[gnu::visibility( "default" )]] char const* __lsan_default_suppressions()
{
    return "leak:ld-linux\n";
}

namespace
{

long OpenDescriptors()
{
    long open = 0;
    for ( int number = 0; number < 256; ++number )
    {
        open += fcntl( number, F_GETFD ) != -1;
    }
    return open;
}

// Lack of memory that an error's code tells is as good as std::bad_alloc.
std::string ClassName( std::exception_ptr const& exception )
{
    std::int32_t code = noErr;
    try
    {
        std::rethrow_exception( exception );
    }
    catch ( FileIOError const& error )
    {
        code = error.GetCode();
    }
    catch ( OSError const& error )
    {
        code = error.GetCode();
    }
    catch ( ... )
    {
    }
    std::unique_ptr<char, void ( * )( void* )> const name(
        abi::__cxa_demangle( exception.__cxa_exception_type()->name(), nullptr, nullptr, nullptr ),
        std::free );
    return code == memFullErr ? "std::bad_alloc" : std::string( name.get() );
}

// The result with "=" before it, or the exception; and whether the run came to the allocation.
std::pair<std::string, bool> Run(
    Telling const& operation, long failing, AllocationFailure::Duration duration )
{
    std::string result;
    std::exception_ptr exception;
    std::optional<AllocationFailure> failure( std::in_place, failing, duration );
    try
    {
        result = operation();
    }
    catch ( ... )
    {
        exception = std::current_exception();
    }
    bool const hasFailed = failure->HasFailed();
    failure.reset();
    return { exception ? ClassName( exception ) : '=' + result, hasFailed };
}

class RowRunner
{
  public:
    RowRunner( Row const& row, std::string const& failures )
        : mRow( row ), mFailures( "std::bad_alloc|" + failures + '|' + row.allowed.failures )
    {
    }

    /// How many runs came to the failing allocation.
    long FailEach( AllocationFailure::Duration duration )
    {
        long failing = 1;
        while ( FailWithoutLeak( failing, duration ) )
        {
            ++failing;
        }
        return failing - 1;
    }

  private:
    // The C library keeps what it loads on first use, so that only what grows again is a leak.
    bool FailWithoutLeak( long failing, AllocationFailure::Duration duration )
    {
        SCOPED_TRACE( "allocation " + std::to_string( failing ) +
                      ( duration == AllocationFailure::kLasting ? " and all after it" : "" ) );
        long grown = 1;
        for ( int repetition = 0; repetition < 3 && grown > 0; ++repetition )
        {
            long const blocks = LiveBlocks();
            long const descriptors = OpenDescriptors();
            if ( !Fail( failing, duration ) )
            {
                return false;
            }
            EXPECT_EQ( descriptors, OpenDescriptors() );
            grown = LiveBlocks() - blocks;
        }
        EXPECT_GE( 0, grown ) << "blocks leaked";
        return true;
    }

    bool Fail( long failing, AllocationFailure::Duration duration )
    {
        bool isReached = false;
        mRow.use(
            [&]( Telling const& operation, Telling const& state )
            {
                std::string const before = state();
                auto const [outcome, hasFailed] = Run( operation, failing, duration );
                std::string const after = state();
                bool const isUndone =
                    after == before ||
                    ( duration == AllocationFailure::kLasting && after == mRow.allowed.state );
                bool const isAllowed = std::regex_match( outcome, mFailures );
                if ( !hasFailed || !isUndone || !isAllowed )
                {
                    ExpectSame( outcome, after );
                }
                isReached = hasFailed;
            } );
        return isReached;
    }

    // All runs that get through end in the same way, and the last one does.
    void ExpectSame( std::string const& outcome, std::string const& state )
    {
        EXPECT_NE( "std::bad_alloc", outcome ) << "with this state:\n" << state;
        if ( mOutcome.empty() )
        {
            mOutcome = outcome;
            mState = state;
        }
        EXPECT_EQ( mOutcome, outcome );
        EXPECT_EQ( mState, state );
    }

    Row const& mRow;
    std::regex const mFailures;
    std::string mOutcome;
    std::string mState;
};

} // namespace

std::string Code( long code )
{
    return code != memFullErr ? std::to_string( code ) : throw std::bad_alloc();
}

void FailEachAllocation( std::vector<Row> const& rows, std::string const& failures )
{
    long runs = 0;
    for ( Row const& row : rows )
    {
        SCOPED_TRACE( row.name );
        RowRunner runner( row, failures );
        long const once = runner.FailEach( AllocationFailure::kOnce );
        EXPECT_LT( 0, once ) << "allocates nothing";
        runs += once + runner.FailEach( AllocationFailure::kLasting );
    }
    printf( "%zu operations, %ld runs with a failed allocation\n", rows.size(), runs );
}
