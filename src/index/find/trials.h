// What all searches share: the lines as they see them, and the list of the best metrics met.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <vector>

#include "index/find/form.h"
#include "index/find/limits.h"
#include "index/find/lines.h"

// A lattice of the conventional setting of its system.
struct TrialLattice {
  Form reciprocal;
  char centering;
  int hits, positions;  // among the lines of the second check
  double score;
};

// How unlikely chance hits are: the lines of the second check times the divergence of their share
// that is hit from the share that so many positions would hit by chance.
class ChanceTable {
 public:
  explicit ChanceTable(const HitTable& table);
  double Score(int hits, int positions) const {
    return scores_[static_cast<std::size_t>(positions)][static_cast<std::size_t>(hits)];
  }

 private:
  std::array<std::array<double, kLinesOfSecondCheck + 1>, kMostPositions + 1> scores_{};
};

// What a search reads.
struct SearchLines {
  SearchLines(std::span<const ObservedLine> lines, double shift, const PhaseModel& model);

  std::vector<double> q;  // of all lines, shifted
  HitTable first, second;
  ChanceTable chance;
  int leastoffirst, leastofsecond;  // hits in the checks
};

// The best candidates that differ from each other.
class TrialList {
 public:
  void Add(const TrialLattice& candidate);
  const std::vector<TrialLattice>& All() const { return all_; }

 private:
  std::vector<TrialLattice> all_;
  std::size_t worst_ = 0;
};

// Positions and lines hit, by the parities of the indices: bit 2 for h, 1 for k, 0 for l.
struct ParityCounts {
  std::array<std::uint32_t, 8> lines{};
  std::array<int, 8> positions{};

  void Add(unsigned parity, std::uint32_t line) {
    lines[parity] |= line;
    ++positions[parity];
  }
};

struct CenteringClasses {
  char letter;
  unsigned parities;  // bits of the classes that it allows
};
inline constexpr CenteringClasses kP{'P', 0xFF}, kC{'C', 0b11000011}, kA{'A', 0b10011001},
    kB{'B', 0b10100101}, kI{'I', 0b01101001}, kF{'F', 0b10000001};

// Adds the metric with each centering that passes the second check.
void AddCentered(const SearchLines& lines, const Form& reciprocal, const ParityCounts& counts,
                 std::span<const CenteringClasses> centerings, TrialList& list);
