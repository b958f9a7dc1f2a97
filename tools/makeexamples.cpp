// Simulates the patterns of examples/ and writes them with their README.
//
//   makeexamples DIRECTORY
//
// A pattern is what a diffractometer would count: reflections of the cell, less the systematic
// absences of its lattice, with invented structure factors; multiplicity, Lorentz and polarisation
// factors; pseudo-Voigt lines with Caglioti widths; a smooth background; humps of what is
// amorphous; and counting noise. The same seed gives the same file on every machine.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "examples.h"
#include "workspace/lines.h"
#include "workspace/record.h"
#include "workspace/workspace.h"

namespace {

constexpr double Pi = std::numbers::pi;
constexpr double Radian = Pi / 180;

// clang-format off
const Example kExamples[] = {
    // file, what it is,
    // cell, lattice, wavelengths,
    // start, step, points, u, v, w, shape, highest, background, crystalline, seed, humps
    {"ceria.xy", "CeO2, cubic; alpha1 alone, sharp lines",
     {5.4113, 5.4113, 5.4113, 90, 90, 90}, 'F', CuKalpha1, 0,
     20, 0.02, 5501, 0.010, -0.006, 0.006, 0.4, 22000, 60, 1, 1, {}},
    {"corundum.xrdml", "Al2O3, trigonal with hexagonal axes; alpha1 and alpha2",
     {4.7589, 4.7589, 12.991, 90, 90, 120}, 'R', CuKalpha1, CuKalpha2,
     15, 0.02, 5501, 0.008, -0.005, 0.005, 0.3, 12000, 45, 1, 2, {}},
    {"forsterite.gdf", "Mg2SiO4, orthorhombic; alpha1 of a focusing camera, narrow lines",
     {4.756, 10.207, 5.980, 90, 90, 90}, 'P', CuKalpha1, 0,
     10, 0.01, 9001, 0.006, -0.003, 0.004, 0.5, 9000, 120, 1, 3, {}},
    {"gypsum.uxd", "CaSO4 2H2O, monoclinic; alpha1 and alpha2, many overlaps",
     {5.679, 15.202, 6.522, 90, 118.43, 90}, 'I', CuKalpha1, CuKalpha2,
     8, 0.02, 4101, 0.012, -0.006, 0.008, 0.5, 30000, 80, 1, 4, {}},
    {"halite.udf", "NaCl, cubic; alpha1 and alpha2 parted at high angles",
     {5.6402, 5.6402, 5.6402, 90, 90, 90}, 'F', CuKalpha1, CuKalpha2,
     20, 0.025, 4960, 0.006, -0.004, 0.006, 0.3, 26000, 40, 1, 5, {}},
    {"rutile.cif", "TiO2, tetragonal; alpha1 of cobalt: set the wavelength to 1.78897",
     {4.5937, 4.5937, 2.9587, 90, 90, 90}, 'P', 1.78897, 0,
     20, 0.02, 5501, 0.015, -0.008, 0.012, 0.5, 8000, 70, 1, 6, {}},
    {"calcite.txt", "CaCO3, trigonal with hexagonal axes; alpha1 and alpha2, quick scan",
     {4.9896, 4.9896, 17.061, 90, 90, 120}, 'R', CuKalpha1, CuKalpha2,
     18, 0.03, 3068, 0.014, -0.007, 0.011, 0.6, 2500, 25, 1, 7, {}},
    {"silicon.chi", "Si, cubic; synchrotron and area detector: set the wavelength to 0.4",
     {5.4309, 5.4309, 5.4309, 90, 90, 90}, 'F', 0.4, 0,
     3, 0.008, 3500, 0.02, 0.0, 0.0016, 0.2, 60000, 200, 1, 8, {}},
    {"quartz-in-glass.dat", "SiO2, trigonal with hexagonal axes, in glass: a strong hump",
     {4.9137, 4.9137, 5.4047, 90, 90, 120}, 'P', CuKalpha1, 0,
     10, 0.02, 3510, 0.010, -0.005, 0.010, 0.5, 6000, 40, 0.12, 9,
     {{21.8, 8.0, 1.0}, {44.0, 18.0, 0.15}}},
    {"polyethylene.xy", "(CH2)n, orthorhombic, wide lines on the hump of the melt; alpha1 alone",
     {7.414, 4.942, 2.5473, 90, 90, 90}, 'P', CuKalpha1, 0,
     10, 0.05, 1001, 0.5, 0.0, 0.10, 0.6, 4000, 30, 0.60, 10, {{19.6, 6.0, 1.0}}},
    {"albite.xy", "NaAlSi3O8, triclinic; alpha1 alone, slow scan",
     {8.137, 12.787, 7.157, 94.24, 116.61, 87.81}, 'C', CuKalpha1, 0,
     10, 0.02, 3501, 0.008, -0.004, 0.006, 0.4, 15000, 90, 1, 11, {}},
};
// clang-format on

constexpr const char* kReadmeHead[] = {
    "# Example patterns",
    "",
    "Simulated with counting noise by `tools/makeexamples.cpp`, which also writes this file. Cells",
    "are in angstrom and degrees, with the letter of the lattice. Intensities are invented, so "
    "that",
    "a pattern does not show the real substance's strong lines, and of its absences only those of",
    "the lattice are there. The crystalline share is that of the lines in lines and humps, by "
    "area,",
    "above the smooth background.",
    "",
    "| file | what it is | true cell: a, b, c; alpha, beta, gamma; lattice | wavelength |"
    " two-theta | crystalline share | seed |",
    "|---|---|---|---|---|---|---|",
};
constexpr const char* kReadmeTail[] = {
    "",
    "`tour.replay` opens one of them without a window, zooms in, finds its peaks and leaves "
    "drawings:",
    "",
    "    build/quillagram-replay examples/tour.replay",
};

// Uniform in 0 to 1, both ends excluded.
double Uniform(std::mt19937_64& random) {
  return (static_cast<double>(random() >> 11) + 0.5) / 9007199254740992.0;
}

// A count of the given mean: by multiplying for small means, from a normal deviate with the
// skewness of the Poisson distribution for large ones.
int Poisson(double mean, std::mt19937_64& random) {
  if (mean < 40) {
    int n = 0;
    for (double rest = Uniform(random); rest > std::exp(-mean); ++n) rest *= Uniform(random);
    return n;
  }
  const double radius = std::sqrt(-2 * std::log(Uniform(random)));
  const double z = radius * std::cos(2 * Pi * Uniform(random));
  return static_cast<int>(std::floor(mean + std::sqrt(mean) * z + (z * z - 1) / 6 + 0.5));
}

bool IsAbsent(char lattice, int h, int k, int l) {
  const auto odd = [](int n) { return n % 2 != 0; };
  switch (lattice) {
    case 'C':
      return odd(h + k);
    case 'I':
      return odd(h + k + l);
    case 'F':
      return odd(h + k) || odd(k + l);
    case 'R':
      return (-h + k + l) % 3 != 0;  // obverse setting
    default:
      return false;
  }
}

// 1/d squared as a quadratic form in h, k, l: the inverse of the metric tensor.
class ReciprocalMetric {
 public:
  explicit ReciprocalMetric(const Cell& cell) {
    const double ca = std::cos(cell.alpha * Radian), cb = std::cos(cell.beta * Radian),
                 cg = std::cos(cell.gamma * Radian);
    const double g[3][3] = {{cell.a * cell.a, cell.a * cell.b * cg, cell.a * cell.c * cb},
                            {cell.a * cell.b * cg, cell.b * cell.b, cell.b * cell.c * ca},
                            {cell.a * cell.c * cb, cell.b * cell.c * ca, cell.c * cell.c}};
    double determinant = 0;
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) {
        const int i1 = (i + 1) % 3, i2 = (i + 2) % 3, j1 = (j + 1) % 3, j2 = (j + 2) % 3;
        m_[j][i] = g[i1][j1] * g[i2][j2] - g[i1][j2] * g[i2][j1];
        if (i == 0) determinant += g[0][j] * m_[j][0];
      }
    for (auto& row : m_)
      for (double& x : row) x /= determinant;
  }
  double operator()(int h, int k, int l) const {
    return h * h * m_[0][0] + k * k * m_[1][1] + l * l * m_[2][2] +
           2 * (h * k * m_[0][1] + h * l * m_[0][2] + k * l * m_[1][2]);
  }

 private:
  double m_[3][3];
};

struct Reflection {
  double q;         // 1/d squared
  double strength;  // multiplicity times structure factor squared
};

// All reflections up to a 1/d squared, those of the same d as one, with invented structure factors
// that fall off as by thermal motion, and towards the lowest orders as in many close-packed solids.
std::vector<Reflection> Reflections(const Example& example, double limit, std::mt19937_64& random) {
  const ReciprocalMetric metric(example.cell);
  std::vector<double> all;
  const auto most = [&](double edge) { return static_cast<int>(edge * std::sqrt(limit)) + 1; };
  const int mh = most(example.cell.a), mk = most(example.cell.b), ml = most(example.cell.c);
  for (int h = -mh; h <= mh; ++h)
    for (int k = -mk; k <= mk; ++k)
      for (int l = -ml; l <= ml; ++l) {
        const double q = metric(h, k, l);
        if ((h || k || l) && q < limit && !IsAbsent(example.lattice, h, k, l)) all.push_back(q);
      }
  std::sort(all.begin(), all.end());
  std::vector<Reflection> reflections;
  for (std::size_t i = 0; i < all.size();) {
    std::size_t j = i;
    while (j < all.size() && all[j] - all[i] < 1e-6) ++j;
    const double u = Uniform(random);
    const double factor = (0.05 + u * u) * std::exp(-0.6 * all[i]) * (1 - std::exp(-8 * all[i]));
    reflections.push_back({all[i], static_cast<double>(j - i) * factor});
    i = j;
  }
  return reflections;
}

// Area 1.
double PseudoVoigt(double x, double fwhm, double lorentz) {
  const double r = 2 * x / fwhm;
  const double lorentzian = 2 / (Pi * fwhm) / (1 + r * r);
  const double gaussian =
      2 * std::sqrt(std::numbers::ln2 / Pi) / fwhm * std::exp(-std::numbers::ln2 * r * r);
  return lorentz * lorentzian + (1 - lorentz) * gaussian;
}

void AddLines(const Example& example, const std::vector<Reflection>& reflections, double wavelength,
              double share, const std::vector<double>& tth, std::vector<double>& lines) {
  for (const Reflection& reflection : reflections) {
    const double s = wavelength * std::sqrt(reflection.q) / 2;
    if (s >= 0.995) continue;
    const double theta = std::asin(s), position = 2 * theta / Radian;
    const double t = std::tan(theta), c = std::cos(2 * theta);
    const double polarised = (1 + c * c) / (s * s * std::cos(theta));
    const double fwhm = std::sqrt(example.u * t * t + example.v * t + example.w);
    const double lorentz = std::min(1.0, example.shape + 0.003 * position);
    for (std::size_t i = 0; i < tth.size(); ++i)
      if (std::abs(tth[i] - position) < 60 * fwhm)
        lines[i] +=
            share * reflection.strength * polarised * PseudoVoigt(tth[i] - position, fwhm, lorentz);
  }
}

double Total(const std::vector<double>& values) {
  return std::accumulate(values.begin(), values.end(), 0.0);
}

Pattern Simulate(const Example& example) {
  std::mt19937_64 random(example.seed);
  Pattern pattern{example, {}, {}};
  for (int i = 0; i < example.points; ++i) pattern.tth.push_back(example.start + example.step * i);
  const std::size_t n = pattern.tth.size();

  // Lines somewhat beyond the end reach into the pattern with their tails.
  const double s = 2 * std::sin(std::min(90.0, (pattern.stop() + 2) / 2) * Radian);
  const auto reflections =
      Reflections(example, s * s / (example.wavelength * example.wavelength), random);
  std::vector<double> lines(n), humps(n);
  AddLines(example, reflections, example.wavelength, 1, pattern.tth, lines);
  if (example.wavelength2 > 0)
    AddLines(example, reflections, example.wavelength2, 0.5, pattern.tth, lines);
  const double scale = example.highest / *std::max_element(lines.begin(), lines.end());
  for (double& y : lines) y *= scale;

  for (const Hump& hump : example.humps)
    for (std::size_t i = 0; i < n; ++i)
      humps[i] += hump.height * PseudoVoigt(pattern.tth[i] - hump.center, hump.fwhm, 0) * hump.fwhm;
  if (!example.humps.empty()) {
    const double share = Total(lines) * (1 / example.crystalline - 1) / Total(humps);
    for (double& y : humps) y *= share;
  }
  for (std::size_t i = 0; i < n; ++i) {
    const double background = example.background * (1 + 3 * std::exp(-pattern.tth[i] / 15));
    pattern.counts.push_back(Poisson(lines[i] + humps[i] + background, random));
  }
  return pattern;
}

std::string ReadmeRow(const Pattern& p) {
  const Example& e = p.example;
  std::string row =
      std::string("| `") + e.file + "` | " + e.text + " | " +
      WriteRecord<"(f7.4,', ',f7.4,', ',f7.4)">(e.cell.a, e.cell.b, e.cell.c) + "; " +
      WriteRecord<"(f6.2,', ',f6.2,', ',f6.2)">(e.cell.alpha, e.cell.beta, e.cell.gamma) + "; " +
      e.lattice + " | " + WriteRecord<"(f7.5)">(e.wavelength);
  if (e.wavelength2 > 0) row += WriteRecord<"(' and ',f7.5)">(e.wavelength2);
  row += WriteRecord<"(' | ',f6.2,' to ',f7.3,' by ',f5.3,' | ')">(e.start, p.stop(), e.step);
  if (e.crystalline < 1) row += WriteRecord<"(f5.2)">(e.crystalline);
  row += " | " + std::to_string(e.seed) + " |";
  const auto both_blank = [](char a, char b) { return a == ' ' && b == ' '; };
  row.erase(std::unique(row.begin(), row.end(), both_blank), row.end());
  return row;
}

bool WriteReadme(const std::string& directory, const std::vector<std::string>& rows) {
  LineWriter out(directory + "/README.md");
  for (const char* line : kReadmeHead) out.Write(line);
  for (const std::string& row : rows) out.Write(row);
  for (const char* line : kReadmeTail) out.Write(line);
  return out.Close();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: makeexamples DIRECTORY\n", stderr);
    return 1;
  }
  std::vector<std::string> rows;
  bool good = true;
  for (const Example& example : kExamples) {
    const Pattern pattern = Simulate(example);
    good = WritePattern(argv[1], pattern) && good;
    rows.push_back(ReadmeRow(pattern));
  }
  good = WriteReadme(argv[1], rows) && good;
  if (!good) std::fprintf(stderr, "%s: not all could be written\n", argv[1]);
  return good ? 0 : 1;
}
