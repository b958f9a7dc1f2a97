// Reads the solutions back from the listings of the indexing engines, by their texts and columns.
#include "index/listings.h"

#include <algorithm>

#include "workspace/record.h"

namespace {

// Reads on to a line that fits; false at the end of the file.
template <class Test>
bool FindLine(LineReader& listing, std::string& line, Test fits) {
  while (listing.Read(line))
    if (fits(line)) return true;
  return false;
}

auto StartsWith(std::string_view text) {
  return [text](const std::string& line) { return line.starts_with(text); };
}

// Behind the carriage control.
auto Holds(std::string_view text) {
  return [text](const std::string& line) { return line.find(text, 1) != std::string::npos; };
}

void ClearCell(SolutionTable& s, int row) { std::ranges::fill(s.row(row).first(solvolume), 0.0f); }

// ---- ITO ----
//
//     q(a)     q(b)     q(c)      q(d)     q(e)     q(f)   indexed   merit   pedigree  lattice
//    314.16   200.00   150.00     0.00     0.00     0.00      20.     35.2      11.        p
// 0                    the direct constants of these lattices
//
//     a        b        c       alfa     beta     gamma      volume
//     5.642    7.071    8.165   90.000   90.000   90.000      325.74

bool NextItoRow(LineReader& listing, std::string& line) {
  return listing.Read(line) && !line.starts_with('0');
}

}  // namespace

int ReadItoSolutions(LineReader& listing, SolutionTable& s) {
  std::string line;
  int n = 0;
  if (!FindLine(listing, line, Holds("q(a)"))) return 0;
  while (n < MaxSolutions && NextItoRow(listing, line)) {
    ++n;
    ClearCell(s, n);
    ReadRecord<"(59x,f5.0,3x,f6.1)">(line, s(n, solnix), s(n, solfom));
  }
  if (!FindLine(listing, line, Holds("a        b"))) return 0;
  for (int row = 1; row <= n && NextItoRow(listing, line); ++row)
    ReadRecord<"(1x,6f9.0,f12.0)">(line, s(row, sola), s(row, solb), s(row, solc), s(row, solalpha),
                                   s(row, solbeta), s(row, solgamma), s(row, solvolume));
  return n;
}

std::string ReadItoCenterings(LineReader& listing) {
  constexpr std::size_t kColumn = 90;
  std::string line, letters;
  if (!FindLine(listing, line, Holds("q(a)"))) return letters;
  while (letters.size() < MaxSolutions && NextItoRow(listing, line))
    letters += line.size() > kColumn ? line[kColumn] : ' ';
  return letters;
}

// ---- TREOR90 ----
//
//    A =  5.640200  0.000300 A   ALFA = 90.000000  0.000000 DEG
//    B =  5.640200  0.000300 A   BETA = 90.000000  0.000000 DEG
//    C =  5.640200  0.000300 A  GAMMA = 90.000000  0.000000 DEG
//    UNIT CELL VOLUME =    179.43 A**3
//  M-TEST=   96 UNINDEXED IN THE TEST=    0

namespace {

// The cell whose first line has been found; false if the listing ends in it.
bool ReadTreorCell(LineReader& listing, std::string& line, SolutionTable& s, int row) {
  ClearCell(s, row);
  for (int k = 0; k < 3; ++k) {
    ReadRecord<"(6x,f10.0,21x,f10.0)">(line, s(row, sola + k), s(row, solalpha + k));
    if (!listing.Read(line)) return false;
  }
  ReadRecord<"(21x,f10.0)">(line, s(row, solvolume));
  return true;
}

}  // namespace

// A block without its test takes that of a later one, and what lies between is no solution.
int ReadTreorSolutions(LineReader& listing, SolutionTable& s) {
  std::string line;
  int n = 0;
  while (n < MaxSolutions && FindLine(listing, line, StartsWith("   A =")) &&
         ReadTreorCell(listing, line, s, n + 1)) {
    ++n;
    if (!FindLine(listing, line, StartsWith(" M-TEST="))) break;
    ReadRecord<"(8x,f5.0,23x,f5.0)">(line, s(n, solfom), s(n, solnix));
  }
  return n;
}
