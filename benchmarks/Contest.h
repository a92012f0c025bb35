#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// One way of doing a job.
struct Contender
{
    std::string name;

    /// Does the job once over all inputs of the contest and returns a digest of the answers. Before
    /// anything is timed, the digests of all contenders must be the same. May be empty if there is
    /// a cost.
    std::function<std::uint64_t()> run;

    /// Does the job once and returns what it cost, in any unit, where the time of `run` is not the
    /// figure: the start of another program, say, or memory.
    std::function<double()> cost = {};
};

/// A ratio that is aimed at.
struct Goal
{
    /// Beside which contender; the reference if empty.
    std::string against;

    /// Our ratio is to be at least this, or at most where lower is better; 0 if there is none.
    double must = 0;

    /// The same, as far as simple code reaches it.
    double want = 0;
};

/// A job and all ways of doing it that are compared with each other.
struct Contest
{
    /// The first is the naive reference, the second ours, the others peers.
    std::vector<Contender> contenders;

    std::vector<Goal> goals;

    /// The figure is ours divided by the reference's, not the other way round.
    bool lowerIsBetter = false;
};

/// Makes a contest when its turn comes, so that its inputs last no longer than it does.
struct ContestMaker
{
    std::string job;
    std::string variant;
    std::function<Contest()> make;

    /// How often all contenders take their turn, 0 for as often as the program is told. For jobs
    /// that take long.
    unsigned rounds = 0;
};

std::vector<ContestMaker> ChecksumContests();
std::vector<ContestMaker> LineContests();
std::vector<ContestMaker> TranscodingContests();
std::vector<ContestMaker> MessageContests();
std::vector<ContestMaker> SearchContests();
std::vector<ContestMaker> ProcessContests();
std::vector<ContestMaker> PropertyListContests();
std::vector<ContestMaker> PanelStartContests();
