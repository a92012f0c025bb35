// Runs all contests, or those whose title contains a word, and prints what came out.
//
//     performance [--rounds=N] [--only=TEXT] [--table=FILE]
//
// The table, in Markdown, is what docs/performance.md shows.

#include "benchmarks/Referee.h"
#include "benchmarks/Table.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <exception>
#include <fstream>
#include <string_view>

namespace
{

struct Options
{
    unsigned rounds = 21;
    std::string_view only;
    char const* table = nullptr;
};

bool ReadOption( std::string_view argument, Options& options )
{
    auto const value = [argument]( std::string_view name )
    { return argument.starts_with( name ) ? argument.data() + name.size() : nullptr; };

    if ( char const* const text = value( "--rounds=" ) )
        return std::from_chars( text, argument.data() + argument.size(), options.rounds ).ec ==
                   std::errc() &&
               options.rounds > 0;
    if ( char const* const text = value( "--only=" ) )
        options.only = text;
    else if ( char const* const file = value( "--table=" ) )
        options.table = file;
    else
        return false;
    return true;
}

std::vector<ContestMaker> AllContests()
{
    std::vector<ContestMaker> all;
    // The panel comes first: a crowd of processes leaves the machine busy for a while.
    for ( auto const contests :
        { PanelStartContests, ChecksumContests, LineContests, TranscodingContests, MessageContests,
            SearchContests, PropertyListContests, ProcessContests } )
        for ( ContestMaker& maker : contests() )
            all.push_back( std::move( maker ) );
    return all;
}

} // namespace

int main( int argc, char** argv )
{
    Options options;
    for ( int i = 1; i < argc; ++i )
    {
        if ( !ReadOption( argv[i], options ) )
        {
            std::fprintf(
                stderr, "usage: %s [--rounds=N] [--only=TEXT] [--table=FILE]\n", argv[0] );
            return 2;
        }
    }
    int noArguments = 1;
    benchmark::Initialize( &noArguments, argv );

    int status = 0;
    std::vector<ContestMaker> const makers = AllContests();
    std::vector<Result> results;
    std::string notMeasured;
    for ( ContestMaker const& maker : makers )
    {
        std::string const title = maker.job + ", " + maker.variant;
        if ( title.find( options.only ) == std::string::npos )
            continue;
        try
        {
            results.push_back( Judge( maker, maker.rounds != 0 ? maker.rounds : options.rounds ) );
            std::fputs( Details( results.back() ).c_str(), stdout );
            std::fflush( stdout );
        }
        catch ( std::exception const& e )
        {
            std::fprintf( stderr, "%s: %s\n", title.c_str(), e.what() );
            notMeasured += "\nNot measured: " + title + ", because " + e.what() + ".\n";
            status = 1;
        }
    }
    if ( options.table != nullptr )
    {
        std::ofstream file( options.table );
        file << Table( results ) << notMeasured;
        if ( !file.flush() )
            return 1;
    }
    return status;
}
