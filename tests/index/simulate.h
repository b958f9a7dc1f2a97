// Known cells and their lines for the tests of the engines, and what these read and write.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "index/ito/problem.h"
#include "index/treor/lines.h"
#include "index/treor/run.h"
#include "support/lattices.h"
#include "support/leastsquares.h"
#include "support/support.h"

inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

inline int Count(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++count;
  return count;
}

// What a stage writes.
template <class Write>
std::string ListingOf(Write write) {
  const TempDir directory;
  Listing listing(directory.file("out"));
  write(listing);
  listing.Close();
  return ReadFile(directory.file("out"));
}

// ---- Cells and their lines ----

inline constexpr double kWave = 1.540598;

struct TrueCell {
  CrystalSystem system;
  Cell cell;
};

// A cell of each system, with no other lattice near.
inline const TrueCell kCells[] = {
    {CrystalSystem::Cubic, {6.649, 6.649, 6.649, 90, 90, 90}},
    {CrystalSystem::Tetragonal, {5.21, 5.21, 7.93, 90, 90, 90}},
    {CrystalSystem::Hexagonal, {5.852, 5.852, 3.953, 90, 90, 120}},
    {CrystalSystem::Orthorhombic, {4.44, 5.39, 3.37, 90, 90, 90}},
    {CrystalSystem::Monoclinic, {5.43, 4.83, 8.14, 90, 107.58, 90}},
    {CrystalSystem::Triclinic, {4.795, 5.108, 6.83, 95.8, 97.6, 103.1}},
};

// One value to a card, in its first ten columns, and a blank one.
inline std::string LineCards(const std::vector<double>& values) {
  std::string cards;
  for (const double v : values) cards += WriteRecord<"(f10.4)">(v) + "\n";
  return cards + "\n";
}

// ---- ITO: q = 10000/d^2 ----

inline double AngleAt(double q) { return 2 * std::asin(kWave * std::sqrt(q) / 200) / kDegree; }
inline double QAt(double twotheta) {
  return std::pow(200 / kWave * std::sin(twotheta * kDegree / 2), 2);
}

inline Form FormOf(const Lattice& x) { return {x.a, x.b, x.c, x.d, x.e, x.f}; }
inline Lattice LatticeOf(const Form& q, double factor = 1) {
  std::array<float, 6> c;
  for (std::size_t i = 0; i < 6; ++i) c[i] = static_cast<float>(factor * q[i]);
  return {c[0], c[1], c[2], c[3], c[4], c[5]};
}
inline Lattice LatticeOfCell(const Cell& cell) { return LatticeOf(Reciprocal(cell), 1e4); }

// q of 100, 140, ...
inline std::vector<double> EvenQ(int n, double first = 100, double step = 40) {
  std::vector<double> q;
  for (int i = 0; i < n; ++i) q.push_back(first + step * i);
  return q;
}

inline constexpr std::size_t kLinesOfTests = 30;

// The first lines of a lattice.
template <class Allows = Everything>
std::vector<double> LinesOf(const Lattice& x, Allows allows = {}) {
  auto q = Values(FormOf(x), 9, 9, 0.3, allows);
  q.resize(kLinesOfTests);
  return q;
}

// Whether each q is one of the lattice's.
inline bool Indexes(const Lattice& x, const std::vector<double>& q, double tolerance, int most = 12,
                    int lmost = 12) {
  const auto own = Values(FormOf(x), most, lmost, 0.3);
  return std::ranges::all_of(q, [&](double each) {
    const auto at = std::ranges::lower_bound(own, each - tolerance - 0.3);
    return std::any_of(at, std::min(at + 4, own.end()),
                       [&](double mine) { return std::abs(mine - each) <= tolerance + 0.3; });
  });
}

// A problem with these lines, and windows of `width` in q on either side of them.
inline ItoProblem ProblemAt(const std::vector<double>& q, double width) {
  ItoProblem problem;
  for (const double each : q)
    problem.lines.push_back({static_cast<float>(each), static_cast<float>(each - width),
                             static_cast<float>(each + width), static_cast<float>(AngleAt(each)),
                             "  "});
  problem.eqtol = 0.5f;
  problem.abclimit = 5;
  problem.binwidth = problem.lines.back().high / 10;
  for (int bin = 1; bin <= 10; ++bin) problem.probability[bin] = 0.02f * static_cast<float>(bin);
  return problem;
}

// The first columns of a parameter card without the printed manual, up to and with the wavelength.
inline const std::string kParameters = "9004 0 0 0           1.540598 ";

// Parameters with a text from a column on.
inline std::string With(std::size_t column, const std::string& text,
                        std::string parameters = kParameters) {
  parameters.resize(std::max(parameters.size(), column - 1 + text.size()), ' ');
  return parameters.replace(column - 1, text.size(), text);
}

struct ReadResult {
  ItoReading reading = ItoReading::End;
  ItoProblem problem;
  std::string listing;  // of all problems up to this one
};

// All that the reader gives up to the end.
inline std::vector<ReadResult> ReadProblems(const std::string& input) {
  const TempDir directory;
  WriteFile(directory.file("ito.inp"), input);
  LineReader reader(directory.file("ito.inp"));
  std::vector<ReadResult> results;
  const std::string text = ListingOf([&](Listing& listing) {
    do {
      results.emplace_back();
      results.back().reading = ReadProblem(reader, results.back().problem, listing);
    } while (results.back().reading != ItoReading::End);
  });
  results.back().listing = text;
  return results;
}

// A problem with the cards behind its title, up to the end card.
inline ReadResult ReadOne(const std::string& cards) {
  auto results = ReadProblems("quartz\n" + cards + "end\n");
  results.front().listing = results.back().listing;
  return results.front();
}

// ---- TREOR90: s = sin^2 theta ----

inline double TwoThetaOf(double s) { return 2 * std::asin(std::sqrt(s)) / kDegree; }

inline Constants ConstantsOf(const Cell& cell, double factor = 1) {
  auto q = Reciprocal(cell);
  for (double& each : q) {
    each *= factor * kWave * kWave / 4;
    if (std::fabs(each) < 1e-9) each = 0;
  }
  const auto [a, b, c, d, e, f, lines, merit, type, pedigree] = LatticeOf(q);
  return {a, b, c, e, f, d};
}

// The s of all reflections up to smax, rising, equal ones once.
template <class Allows = Everything>
std::vector<double> TrueLines(const Cell& cell, double smax, Allows allows = {}) {
  auto s = Values(Reciprocal(cell), 20, 20, 1e-9, allows);
  for (double& each : s) each *= kWave * kWave / 4;
  std::erase_if(s, [&](double each) { return each > smax; });
  return s;
}

// The first n lines that are so far apart from others, in degrees two-theta, with an error of
// sigma.
template <class Allows = Everything>
std::vector<double> Pattern(const Cell& cell, std::size_t n, double sigma, double apart = 0.15,
                            Allows allows = {}) {
  std::mt19937 generator(1);
  std::normal_distribution<double> error(0, 1);
  std::vector<double> all, twotheta;
  for (const double s : TrueLines(cell, 0.8, allows)) all.push_back(TwoThetaOf(s));
  for (std::size_t i = 0; i + 1 < all.size() && twotheta.size() < n; ++i)
    if (all[i + 1] - all[i] > apart && (i == 0 || all[i] - all[i - 1] > apart))
      twotheta.push_back(all[i] + sigma * error(generator));
  return twotheta;
}

inline TreorLine LineAt(double s) {
  const auto at = static_cast<float>(s);
  return {at, LineCode(at), ""};
}

inline std::vector<TreorLine> TreorLinesAt(const std::vector<double>& twotheta) {
  std::vector<TreorLine> lines;
  for (const double at : twotheta) lines.push_back(LineAt(std::pow(std::sin(at * kDegree / 2), 2)));
  return lines;
}

// A data set whose listing goes to a directory of its own.
struct DataSet {
  TempDir dir;
  TreorRun run;
  Listing listing{dir.file("out")};
  TreorSearch search{run, listing};
  std::string Text() {
    listing.Close();
    return ReadFile(dir.file("out"));
  }
};
