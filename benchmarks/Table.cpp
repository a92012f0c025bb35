#include "benchmarks/Table.h"

#include <cstdarg>
#include <cstdio>
#include <fstream>

namespace
{

[[gnu::format( printf, 1, 2 )]] std::string Format( char const* format, ... )
{
    char text[512];
    va_list arguments;
    va_start( arguments, format );
    std::vsnprintf( text, sizeof text, format, arguments );
    va_end( arguments );
    return text;
}

// Three significant digits, without an exponent.
std::string Digits( double ratio )
{
    return Format( ratio < 10 ? "%.2f" : ratio < 100 ? "%.1f" : "%.0f", ratio );
}

std::string const& Name( Result const& result, std::size_t contender )
{
    return result.contest.contenders.at( contender ).name;
}

bool Reaches( Result const& result, Goal const& goal, double figure )
{
    std::string const& against = goal.against.empty() ? Name( result, 0 ) : goal.against;
    double const ratio = result.Ratio( Name( result, 1 ), against ).median;
    return result.contest.lowerIsBetter ? ratio <= figure : ratio >= figure;
}

// One goal: "must 12 (reached), want 20 (not reached)".
std::string Describe( Result const& result, Goal const& goal )
{
    std::string text;
    auto const add = [&]( char const* kind, double figure )
    {
        if ( figure == 0 )
            return;
        text += text.empty() ? "" : ", ";
        text += kind + Digits( figure ) +
                ( Reaches( result, goal, figure ) ? " reached" : " **not reached**" );
    };
    add( "must ", goal.must );
    add( "want ", goal.want );
    return goal.against.empty() ? text : "beside " + goal.against + ": " + text;
}

std::string Goals( Result const& result, char const* separator )
{
    std::string text;
    for ( Goal const& goal : result.contest.goals )
        text += ( text.empty() ? "" : separator ) + Describe( result, goal );
    return text;
}

std::string Processor()
{
    std::ifstream file( "/proc/cpuinfo" );
    for ( std::string line; std::getline( file, line ); )
        if ( line.starts_with( "model name" ) )
            return line.substr( line.find( ':' ) + 2 );
    return "unknown processor";
}

std::string Row( Result const& result )
{
    Spread const ours = result.Ratio( Name( result, 1 ), Name( result, 0 ) );
    std::string row = "| " + result.maker->job + " | " + result.maker->variant + " | **" +
                      Digits( ours.median ) + "** | " + Digits( ours.low ) + " to " +
                      Digits( ours.high ) + " | ";
    std::string const best = result.BestPeer();
    if ( !best.empty() )
        row += best + " " + Digits( result.Ratio( best, Name( result, 0 ) ).median );
    return row + " | " + Goals( result, "; " ) + " |\n";
}

} // namespace

std::string Details( Result const& result )
{
    std::string text = result.maker->job + ", " + result.maker->variant + "\n";
    for ( Contender const& contender : result.contest.contenders )
    {
        Spread const ratio = result.Ratio( contender.name, Name( result, 0 ) );
        text += Format( "    %-36s %8s  (%s to %s)\n", contender.name.c_str(),
            Digits( ratio.median ).c_str(), Digits( ratio.low ).c_str(),
            Digits( ratio.high ).c_str() );
    }
    std::string const goals = Goals( result, "; " );
    return goals.empty() ? text : text + "    " + goals + "\n";
}

std::string Table( std::vector<Result> const& results )
{
    std::string table = "Measured on: " + Processor() + "\n\n" +
                        "| job | variant | ours | 10th to 90th percentile | best peer | goals |\n" +
                        "|---|---|---|---|---|---|\n";
    for ( Result const& result : results )
        table += Row( result );
    return table;
}
