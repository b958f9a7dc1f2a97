// Input of ITO for tests: lines, cards, and what the reader makes of them; the lines of lattices
// and least squares in double precision to hold the engine's against.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "crystal/cellmetric.h"
#include "index/ito/problem.h"
#include "support/support.h"

inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

inline constexpr double kWave = 1.5;
inline constexpr double kPi = 3.14159265358979324;

inline double TwoThetaAt(double q) { return 2 * std::asin(kWave * std::sqrt(q) / 200) * 180 / kPi; }
inline double QAt(double twotheta) {
  return std::pow(200 / kWave * std::sin(twotheta * kPi / 360), 2);
}

// q of 100, 140, ...
inline std::vector<double> EvenQ(int n, double first = 100, double step = 40) {
  std::vector<double> q;
  for (int i = 0; i < n; ++i) q.push_back(first + step * i);
  return q;
}

// One value to a card, in its first ten columns.
inline std::string LineCards(const std::vector<double>& values) {
  std::string cards;
  for (double v : values) cards += WriteRecord<"(f10.4)">(v) + "\n";
  return cards + "\n";
}

// The first columns of a parameter card without the printed manual, up to and with the wavelength.
inline const std::string kParameters = "9004 0 0 0               1.5  ";

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
  Listing listing(directory.file("ito.out"));
  do {
    results.emplace_back();
    results.back().reading = ReadProblem(reader, results.back().problem, listing);
  } while (results.back().reading != ItoReading::End);
  listing.Close();
  results.back().listing = ReadFile(directory.file("ito.out"));
  return results;
}

// A problem with the cards behind its title, up to the end card.
inline ReadResult ReadOne(const std::string& cards) {
  auto results = ReadProblems("quartz\n" + cards + "end\n");
  results.front().listing = results.back().listing;
  return results.front();
}

// How often a listing holds a text.
inline int Count(const std::string& listing, const std::string& text) {
  int count = 0;
  for (std::size_t at = listing.find(text); at != std::string::npos;
       at = listing.find(text, at + 1))
    ++count;
  return count;
}

// What a stage writes.
template <class Write>
std::string ListingOf(Write write) {
  const TempDir directory;
  Listing listing(directory.file("ito.out"));
  write(listing);
  listing.Close();
  return ReadFile(directory.file("ito.out"));
}

inline Lattice ReciprocalOf(const UnitCell& cell) {
  const Metric m = ReciprocalMetric(cell);
  return {1e4f * m[0], 1e4f * m[1], 1e4f * m[2], 1e4f * m[5], 1e4f * m[4], 1e4f * m[3]};
}

inline double QOf(const Lattice& x, int h, int k, int l) {
  return 1.0 * h * h * x.a + 1.0 * k * k * x.b + 1.0 * l * l * x.c + 1.0 * k * l * x.d +
         1.0 * l * h * x.e + 1.0 * h * k * x.f;
}

// The rising q of all indices up to `most`, and up to `lmost` in l, that a test of them allows;
// those closer than 0.3 come once.
template <class Allows>
std::vector<double> AllQ(const Lattice& x, int most, int lmost, Allows allows) {
  std::vector<double> q;
  for (int h = 0; h <= most; ++h)
    for (int k = -most; k <= most; ++k)
      for (int l = -lmost; l <= lmost; ++l)
        if ((h != 0 || k != 0 || l != 0) && allows(Hkl{h, k, l})) q.push_back(QOf(x, h, k, l));
  std::ranges::sort(q);
  const auto close = [](double one, double other) { return other - one < 0.3; };
  q.erase(std::unique(q.begin(), q.end(), close), q.end());
  return q;
}
inline std::vector<double> AllQ(const Lattice& x, int most, int lmost) {
  return AllQ(x, most, lmost, [](const Hkl&) { return true; });
}

inline constexpr std::size_t kLinesOfTests = 30;

// The first lines of a lattice.
template <class Allows>
std::vector<double> LinesOf(const Lattice& x, Allows allows) {
  auto q = AllQ(x, 9, 9, allows);
  q.resize(kLinesOfTests);
  return q;
}
inline std::vector<double> LinesOf(const Lattice& x) {
  return LinesOf(x, [](const Hkl&) { return true; });
}

// Whether each q is one of the lattice's.
inline bool Indexes(const Lattice& x, const std::vector<double>& q, double tolerance, int most = 12,
                    int lmost = 12) {
  const auto own = AllQ(x, most, lmost);
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
                             static_cast<float>(each + width), static_cast<float>(TwoThetaAt(each)),
                             "  "});
  problem.eqtol = 0.5f;
  problem.abclimit = 5;
  problem.binwidth = problem.lines.back().high / 10;
  for (int bin = 1; bin <= 10; ++bin) problem.probability[bin] = 0.02f * static_cast<float>(bin);
  return problem;
}

// Weighted least squares by Cramer's rule.
class LeastSquares {
 public:
  explicit LeastSquares(std::size_t n) : matrix_(n, std::vector<double>(n)), right_(n) {}
  void Add(const std::vector<double>& row, double miss, double weight = 1) {
    const std::size_t n = right_.size();
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) matrix_[i][j] += weight * row[i] * row[j];
      right_[i] += weight * row[i] * miss;
    }
  }
  double Shift(std::size_t i) const { return Solved(i, right_); }
  double InverseDiagonal(std::size_t i) const {
    std::vector<double> unit(right_.size());
    unit[i] = 1;
    return Solved(i, unit);
  }

 private:
  using Matrix = std::vector<std::vector<double>>;
  Matrix matrix_;
  std::vector<double> right_;

  static double Determinant(Matrix m) {
    double product = 1;
    for (std::size_t p = 0; p < m.size(); ++p) {
      product *= m[p][p];
      for (std::size_t i = p + 1; i < m.size(); ++i)
        for (std::size_t j = m.size(); j-- > p;) m[i][j] -= m[i][p] / m[p][p] * m[p][j];
    }
    return product;
  }
  double Solved(std::size_t i, const std::vector<double>& right) const {
    Matrix replaced = matrix_;
    for (std::size_t j = 0; j < right.size(); ++j) replaced[j][i] = right[j];
    return Determinant(replaced) / Determinant(matrix_);
  }
};
