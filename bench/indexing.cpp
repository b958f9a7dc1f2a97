// What the indexing engines make of exact lines of random cells: for each crystal system and
// centering the share of cells whose lattice is found, at the first place and at any, with the
// median and the longest time of a run. Cells of TREOR90 are placed by their figures of merit.
//
//   bench_indexing [CELLS]        in a folder where it may write
//
// Of each cell come the first 30 lines of copper radiation: without those that the centering, and
// at random a screw axis and a glide plane, forbid, and without one in seven, as weak ones get
// lost. Lines closer than 0.03 degrees are one.
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "index/driver.h"
#include "index/listings.h"
#include "workspace/workspace.h"

namespace {

using Vector = std::array<double, 3>;
using Basis = std::array<Vector, 3>;

double Dot(const Vector& u, const Vector& v) { return u[0] * v[0] + u[1] * v[1] + u[2] * v[2]; }
Vector Sum(const Vector& u, const Vector& v, double n = 1) {
  return {u[0] + n * v[0], u[1] + n * v[1], u[2] + n * v[2]};
}
Vector Cross(const Vector& u, const Vector& v) {
  return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}
double Length(const Vector& u) { return std::sqrt(Dot(u, u)); }
double VolumeOf(const Basis& b) { return std::abs(Dot(b[0], Cross(b[1], b[2]))); }

// Edges in angstrom, angles in degrees.
using Cell = std::array<double, 6>;

Basis BasisOf(const Cell& cell) {
  const auto radians = [](double degrees) { return degrees * std::numbers::pi / 180; };
  const double ca = std::cos(radians(cell[3])), cb = std::cos(radians(cell[4])),
               cg = std::cos(radians(cell[5])), sg = std::sin(radians(cell[5]));
  const double x = cb, y = (ca - cb * cg) / sg;
  return {{{cell[0], 0, 0},
           {cell[1] * cg, cell[1] * sg, 0},
           {cell[2] * x, cell[2] * y, cell[2] * std::sqrt(1 - x * x - y * y)}}};
}

// Primitive axes as fractions of the centred ones, and which reflections the centering allows.
struct CenteringLaw {
  char letter;
  Basis primitive;
  bool (*allows)(int h, int k, int l);
};
constexpr double kHalf = 0.5, kThird = 1.0 / 3;
const CenteringLaw kCentering[] = {
    {'P', {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, [](int, int, int) { return true; }},
    {'A',
     {{{1, 0, 0}, {0, kHalf, kHalf}, {0, 0, 1}}},
     [](int, int k, int l) { return (k + l) % 2 == 0; }},
    {'B',
     {{{kHalf, 0, kHalf}, {0, 1, 0}, {0, 0, 1}}},
     [](int h, int, int l) { return (h + l) % 2 == 0; }},
    {'C',
     {{{kHalf, kHalf, 0}, {0, 1, 0}, {0, 0, 1}}},
     [](int h, int k, int) { return (h + k) % 2 == 0; }},
    {'I',
     {{{kHalf, kHalf, kHalf}, {0, 1, 0}, {0, 0, 1}}},
     [](int h, int k, int l) { return (h + k + l) % 2 == 0; }},
    {'F',
     {{{kHalf, kHalf, 0}, {0, kHalf, kHalf}, {kHalf, 0, kHalf}}},
     [](int h, int k, int l) { return (h + k) % 2 == 0 && (k + l) % 2 == 0; }},
    {'R',
     {{{2 * kThird, kThird, kThird}, {-kThird, kThird, kThird}, {-kThird, -2 * kThird, kThird}}},
     [](int h, int k, int l) { return (-h + k + l) % 3 == 0; }},
};

Basis Primitive(const Cell& cell, const CenteringLaw& centering) {
  const Basis axes = BasisOf(cell);
  Basis primitive{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      primitive[i] = Sum(primitive[i], axes[j], centering.primitive[i][j]);
  return primitive;
}

// Shortens each axis by the others as long as that helps.
void Shorten(Basis& b) {
  for (bool shorter = true; shorter;) {
    shorter = false;
    for (std::size_t i = 0; i < 3; ++i)
      for (const double m : {-1.0, 0.0, 1.0})
        for (const double n : {-1.0, 0.0, 1.0}) {
          const Vector v = Sum(Sum(b[i], b[(i + 1) % 3], m), b[(i + 2) % 3], n);
          if (Length(v) < Length(b[i]) * (1 - 1e-9)) b[i] = v, shorter = true;
        }
  }
}

std::vector<Vector> VectorsAsLongAs(const Basis& b, double length) {
  constexpr double tolerance = 0.005;
  std::vector<Vector> found;
  for (int h = -2; h <= 2; ++h)
    for (int k = -2; k <= 2; ++k)
      for (int l = -2; l <= 2; ++l) {
        const Vector v = Sum(Sum(Sum({}, b[0], h), b[1], k), b[2], l);
        if (std::abs(Length(v) / length - 1) < tolerance) found.push_back(v);
      }
  return found;
}

// Whether both have vectors of the same lengths, to 0.5 %, at the same angles, to 0.5 degrees. Both
// shortened, of about the same volume.
bool AreSame(const Basis& one, const Basis& other) {
  const auto angle = [](const Vector& u, const Vector& v) {
    return std::acos(Dot(u, v) / (Length(u) * Length(v))) * 180 / std::numbers::pi;
  };
  const auto agree = [&](const Vector& u, const Vector& v, std::size_t i, std::size_t j) {
    return std::abs(angle(u, v) - angle(one[i], one[j])) < 0.5;
  };
  for (const Vector& u : VectorsAsLongAs(other, Length(one[0])))
    for (const Vector& v : VectorsAsLongAs(other, Length(one[1])))
      for (const Vector& w : VectorsAsLongAs(other, Length(one[2])))
        if (agree(u, v, 0, 1) && agree(v, w, 1, 2) && agree(u, w, 0, 2)) return true;
  return false;
}

// Listings do not always tell the centering: any will do.
bool IsFound(const Cell& cell, Basis truth) {
  Shorten(truth);
  return std::any_of(std::begin(kCentering), std::end(kCentering), [&](const CenteringLaw& c) {
    Basis b = Primitive(cell, c);
    if (!(std::abs(VolumeOf(b) / VolumeOf(truth) - 1) < 0.03)) return false;
    Shorten(b);
    return AreSame(truth, b);
  });
}

using Random = std::mt19937;
double Between(Random& random, double low, double high) {
  return std::uniform_real_distribution(low, high)(random);
}

struct CrystalSystem {
  const char* name;
  const char* centering;
  Cell (*draw)(Random& random, double a, double b, double c);
};
const CrystalSystem kSystems[] = {
    {"cubic", "PIF", [](Random&, double a, double, double) { return Cell{a, a, a, 90, 90, 90}; }},
    {"tetragonal", "PI",
     [](Random&, double a, double, double c) { return Cell{a, a, c, 90, 90, 90}; }},
    {"hexagonal", "P",
     [](Random&, double a, double, double c) { return Cell{a, a, c, 90, 90, 120}; }},
    {"rhombohedral", "R",
     [](Random&, double a, double, double c) { return Cell{a, a, c, 90, 90, 120}; }},
    {"orthorhombic", "PCIF",
     [](Random&, double a, double b, double c) { return Cell{a, b, c, 90, 90, 90}; }},
    {"monoclinic", "PC",
     [](Random& random, double a, double b, double c) {
       return Cell{a, b, c, 90, Between(random, 91, 118), 90};
     }},
    {"triclinic", "P",
     [](Random& random, double a, double b, double c) {
       return Cell{
           a, b, c, Between(random, 91, 110), Between(random, 91, 110), Between(random, 91, 110)};
     }},
};

std::vector<float> LinesOf(const Cell& cell, const CenteringLaw& centering, Random& random) {
  constexpr double sinemost = 0.766;  // 100 degrees
  constexpr std::size_t most = 30;
  constexpr double apart = 0.03;
  const Basis b = BasisOf(cell);
  const double volume = Dot(b[0], Cross(b[1], b[2]));
  const Basis reciprocal = {Cross(b[1], b[2]), Cross(b[2], b[0]), Cross(b[0], b[1])};
  const bool screw = random() % 2 == 0, glide = random() % 2 == 0;
  const double reach = 2 * sinemost / CuKalpha1;
  const int hmost = static_cast<int>(reach * Length(b[0])),
            kmost = static_cast<int>(reach * Length(b[1])),
            lmost = static_cast<int>(reach * Length(b[2]));
  std::vector<double> all;
  for (int h = 0; h <= hmost; ++h)
    for (int k = -kmost; k <= kmost; ++k)
      for (int l = -lmost; l <= lmost; ++l) {
        if (!centering.allows(h, k, l) || (h == 0 && k == 0 && l == 0)) continue;
        if (screw && h == 0 && l == 0 && k % 2 != 0) continue;
        if (glide && k == 0 && l % 2 != 0) continue;
        const Vector q = Sum(Sum(Sum({}, reciprocal[0], h), reciprocal[1], k), reciprocal[2], l);
        const double sine = Length(q) / volume * CuKalpha1 / 2;
        if (sine < sinemost) all.push_back(2 * std::asin(sine) * 180 / std::numbers::pi);
      }
  std::sort(all.begin(), all.end());
  std::vector<float> lines;
  double before = 0;
  for (const double line : all) {
    if (line - before < apart) continue;
    before = line;
    if (random() % 7 != 0 && lines.size() < most) lines.push_back(static_cast<float>(line));
  }
  return lines;
}

struct Tally {
  int cells = 0, first = 0, any = 0;
  std::vector<double> seconds{};
};

void Run(const IndexingEngine& engine, const std::vector<float>& lines, const Basis& truth,
         Tally& tally) {
  LineWriter input(engine.input);
  for (const std::string& record : engine.records(lines, ws)) input.Write(record);
  input.Close();
  const auto began = std::chrono::steady_clock::now();
  engine.start(engine.input, engine.output, {});
  tally.seconds.push_back(
      std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count());
  LineReader listing(engine.output);
  const int found = engine.readsolutions(listing, ws.solutions);
  std::vector<int> rows(static_cast<std::size_t>(found));
  std::iota(rows.begin(), rows.end(), 1);
  if (!engine.bestfirst)
    std::stable_sort(rows.begin(), rows.end(), [](int one, int other) {
      return ws.solutions(one, solfom) > ws.solutions(other, solfom);
    });
  ++tally.cells;
  for (const int row : rows) {
    Cell cell{};
    for (int field = sola; field <= solgamma; ++field)
      cell[static_cast<std::size_t>(field - sola)] = ws.solutions(row, field);
    if (!IsFound(cell, truth)) continue;
    tally.first += row == rows.front();
    ++tally.any;
    break;
  }
}

void Print(const CrystalSystem& system, char centering, Tally& tally) {
  std::sort(tally.seconds.begin(), tally.seconds.end());
  std::printf("%-14s %c %6d %8.1f %% %8.1f %% %9.3f %9.3f\n", system.name, centering, tally.cells,
              100.0 * tally.first / tally.cells, 100.0 * tally.any / tally.cells,
              tally.seconds[tally.seconds.size() / 2], tally.seconds.back());
}

}  // namespace

int main(int argc, char** argv) {
  const int cells = argc > 1 ? std::atoi(argv[1]) : 200;
  for (const EngineNumber number : {EngineIto, EngineTreor}) {
    const IndexingEngine& engine = EngineOf(number);
    engine.putdefaults(ws);
    ws.*engine.wavelength = CuKalpha1;
    std::printf("%s%*s cells   first rank   any rank  median s longest s\n", engine.name,
                15 - static_cast<int>(std::string(engine.name).size()), "");
    for (const CrystalSystem& system : kSystems)
      for (const char letter : std::string(system.centering)) {
        const auto& centering =
            *std::find_if(std::begin(kCentering), std::end(kCentering),
                          [&](const CenteringLaw& c) { return c.letter == letter; });
        Random random(1 + static_cast<unsigned>(letter));
        Tally tally;
        while (tally.cells < cells) {
          const Cell cell = system.draw(random, Between(random, 4, 15), Between(random, 4, 15),
                                        Between(random, 4, 15));
          const std::vector<float> lines = LinesOf(cell, centering, random);
          if (lines.size() >= 20) Run(engine, lines, Primitive(cell, centering), tally);
        }
        Print(system, letter, tally);
      }
  }
}
