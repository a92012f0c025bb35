#pragma once

#include "benchmarks/Contest.h"

#include <map>
#include <string>
#include <vector>

/// Some ratios, one of each round.
struct Spread
{
    double low = 0; ///< the 10th percentile
    double median = 0;
    double high = 0; ///< the 90th percentile
};

/// What a contest came to.
struct Result
{
    ContestMaker const* maker;
    Contest contest; ///< without the functions of its contenders

    /// For each contender, the costs that each round measured; times are in nanoseconds.
    std::map<std::string, std::vector<double>> costs;

    /// How the contender `name` does beside the contender `against`: the quotients of their costs
    /// in the same round, so that 2 is twice as good, or twice the cost where lower is better.
    Spread Ratio( std::string const& name, std::string const& against ) const;

    /// The peer that does best beside the reference; empty without peers.
    std::string BestPeer() const;
};

/// Makes the contest, checks that all contenders give the same answer, and measures each of them
/// once a round. Throws std::runtime_error if an answer differs or a measurement fails.
Result Judge( ContestMaker const& maker, unsigned rounds );
