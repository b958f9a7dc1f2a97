// Fuzz target: the bytes are ITO's input file. What is read goes through the zero check, and the
// trial lattices through their direct cells.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "fuzz/memoryfile.h"
#include "index/ito/directcell.h"
#include "index/ito/ito.h"
#include "index/ito/speciallattices.h"
#include "index/ito/zerocheck.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsUseful(const ItoLine& line) {
  return line.q > 0 && std::isfinite(line.q) && line.twotheta > 0 && line.twotheta < 180 &&
         std::isfinite(line.high) && std::isfinite(line.low) && line.label.size() == 2;
}

bool IsUseful(const LineCombination& c) {
  return c.q1 > 0 && c.q2 > 0 && std::isfinite(c.q1 * c.q2) && c.cross * c.cross < 4 * c.q1 * c.q2;
}

// What the search relies on.
void CheckProblem(const ItoProblem& problem) {
  Require(problem.lines.size() >= kItoLeastLines);
  Require(problem.eqtol >= 0.5f && problem.abclimit > 2 && problem.binwidth > 0);
  Require(problem.combinations.size() <= 40 && problem.trials.size() <= 150);
  Require(std::ranges::all_of(problem.combinations, [](auto& c) { return IsUseful(c); }));
  Require(std::all_of(problem.probability.begin() + 1, problem.probability.end(),
                      [](float p) { return p > 0 && p <= 0.5f; }));
}

void Use(const ItoProblem& problem, Listing& listing) {
  ZeroCheck(problem, listing);
  for (const Lattice& trial : problem.trials) {
    PutDirectCell(trial, problem.cards, listing);
    SpecialLattices(trial, problem.eqtol, listing);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const MemoryFile file;
  file.Hold(data, size);
  LineReader input(file.Path());
  Listing listing("/dev/null");
  ItoProblem problem;
  for (;;) {
    const ItoReading reading = ReadProblem(input, problem, listing);
    Require(problem.lines.size() <= kItoMostLines);
    Require(std::ranges::all_of(problem.lines, [](auto& line) { return IsUseful(line); }));
    Require(std::ranges::is_sorted(problem.lines, {}, &ItoLine::q));
    if (reading == ItoReading::End) return 0;
    if (reading == ItoReading::Skip) continue;
    CheckProblem(problem);
    Use(problem, listing);
  }
}
