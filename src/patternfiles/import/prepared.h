// A measured scan as the workbench can hold it: rising two-theta, 20000 points at most, 32 bits.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "patternfiles/import/measured.h"

struct PreparedPattern {
  std::vector<float> tth, counts;
  std::vector<float> esd;  // of the counts; as many, or none
  std::string note;        // what has been done to the points, as "3 points left out; uneven steps"
};

// Whether the positions are in d or Q and the file does not say of which wavelength.
bool NeedsWavelength(const MeasuredScan& scan);

// With the wavelength of the scan, or `wavelength` (angstrom) where it states none. Positions that
// no two-theta belongs to, and all but the first of equal ones, are left out; of too many points
// each so many are one, at their mean position with their sum of counts. Empty if no point is left.
PreparedPattern Prepared(const MeasuredScan& scan, double wavelength, std::size_t mostpoints);

// The counts of all scans at the same positions, added. Throws NotReadable, with the end of a
// sentence, if the positions differ by more than a tenth of a step.
MeasuredScan SumOf(std::span<const MeasuredScan> scans);

// Numbers from 1 to `most` by a text like "1-3, 5", each once in the order given; none at all if
// it is something else.
std::vector<std::size_t> ScanNumbers(std::string_view text, std::size_t most);
