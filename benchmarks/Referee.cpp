#include "benchmarks/Referee.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <stdexcept>

namespace
{

constexpr double kSecondsToMeasure = 0.005;

// Notes the cost of each benchmark that is run.
class CostReporter : public benchmark::BenchmarkReporter
{
  public:
    explicit CostReporter( Result& result ) : mResult( result ) {}

    bool ReportContext( Context const& ) override { return true; }

    void ReportRuns( std::vector<Run> const& runs ) override
    {
        for ( Run const& run : runs )
        {
            if ( run.error_occurred )
                throw std::runtime_error( run.run_name.function_name + ": " + run.error_message );
            mResult.costs[run.run_name.function_name].push_back( run.GetAdjustedRealTime() );
        }
    }

  private:
    Result& mResult;
};

void CheckAnswers( Contest const& contest )
{
    Contender const& reference = contest.contenders.at( 0 );
    if ( !reference.run )
        return;
    std::uint64_t const answer = reference.run();
    for ( Contender const& contender : contest.contenders )
        if ( contender.run() != answer )
            throw std::runtime_error( contender.name + " has another answer" );
}

void Register( Contender const& contender )
{
    if ( contender.cost )
    {
        auto const measure = [&contender]( benchmark::State& state )
        {
            for ( auto iteration : state )
                state.SetIterationTime( contender.cost() );
        };
        benchmark::RegisterBenchmark( contender.name.c_str(), measure )
            ->UseManualTime()
            ->Iterations( 1 );
        return;
    }
    auto const repeat = [&contender]( benchmark::State& state )
    {
        for ( auto iteration : state )
            benchmark::DoNotOptimize( contender.run() );
    };
    benchmark::RegisterBenchmark( contender.name.c_str(), repeat )
        ->UseRealTime()
        ->MinTime( kSecondsToMeasure );
}

double Quantile( std::vector<double> const& sorted, double fraction )
{
    double const place = fraction * static_cast<double>( sorted.size() - 1 );
    auto const below = static_cast<std::size_t>( place );
    std::size_t const above = std::min( below + 1, sorted.size() - 1 );
    double const rest = place - static_cast<double>( below );
    return sorted[below] * ( 1 - rest ) + sorted[above] * rest;
}

} // namespace

Spread Result::Ratio( std::string const& name, std::string const& against ) const
{
    std::vector<double> const& own = costs.at( name );
    std::vector<double> const& other = costs.at( against );
    std::vector<double> ratios;
    for ( std::size_t i = 0; i < std::min( own.size(), other.size() ); ++i )
        ratios.push_back( contest.lowerIsBetter ? own[i] / other[i] : other[i] / own[i] );
    std::ranges::sort( ratios );
    return { Quantile( ratios, 0.1 ), Quantile( ratios, 0.5 ), Quantile( ratios, 0.9 ) };
}

std::string Result::BestPeer() const
{
    std::string best;
    double bestRatio = 0;
    for ( std::size_t i = 2; i < contest.contenders.size(); ++i )
    {
        std::string const& peer = contest.contenders[i].name;
        if ( peer.starts_with( contest.contenders[1].name ) )
            continue; // ours again, at another job
        double const ratio = Ratio( peer, contest.contenders[0].name ).median;
        if ( best.empty() || ( contest.lowerIsBetter ? ratio < bestRatio : ratio > bestRatio ) )
        {
            best = peer;
            bestRatio = ratio;
        }
    }
    return best;
}

Result Judge( ContestMaker const& maker, unsigned rounds )
{
    Contest const contest = maker.make();
    CheckAnswers( contest );

    Result result{ &maker, { {}, contest.goals, contest.lowerIsBetter }, {} };
    for ( Contender const& contender : contest.contenders )
    {
        result.contest.contenders.push_back( { contender.name, {}, {} } );
        Register( contender );
    }
    CostReporter reporter( result );
    for ( unsigned round = 0; round < rounds; ++round )
        benchmark::RunSpecifiedBenchmarks( &reporter, "." );
    benchmark::ClearRegisteredBenchmarks();
    return result;
}
