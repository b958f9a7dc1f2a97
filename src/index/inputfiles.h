// What the indexing engines get to read: the lines of a peak file, between cards made of the fields
// of the Workspace.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "workspace/lines.h"

// The numbers in the first ten columns, up to the first line that holds none, a value above 180 or
// one not above `least`; at most 200 of them.
std::vector<float> ReadPeakLines(LineReader& file, float least);

// The records of ito.inp and treor90.tre.
std::vector<std::string> ItoInput(std::span<const float> lines);
std::vector<std::string> TreorInput(std::span<const float> lines);
