// What the indexing engines get to read: the lines of a peak file, between cards made of the
// parameters of a run.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "workspace/lines.h"
#include "workspace/workspace.h"

// The numbers in the first ten columns, up to the first line that holds none, a value above 180 or
// one not above `least`; at most 200 of them.
std::vector<float> ReadPeakLines(LineReader& file, float least);

// The records of ito.inp and treor90.tre.
std::vector<std::string> ItoInput(std::span<const float> lines, const Indexing& parameters);
std::vector<std::string> TreorInput(std::span<const float> lines, const Indexing& parameters);
