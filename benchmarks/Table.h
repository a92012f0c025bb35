#pragma once

#include "benchmarks/Referee.h"

#include <string>
#include <vector>

/// The ratios of all contenders of a contest, a line each, and how its goals stand.
std::string Details( Result const& result );

/// All results as a table in Markdown, a row for each contest, with the name of the processor.
std::string Table( std::vector<Result> const& results );
