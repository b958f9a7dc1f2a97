// Simulates the patterns of examples/ and writes them with their README.
//
//   makeexamples DIRECTORY
//
// A pattern is what a diffractometer would count: the lines of the structure with their
// multiplicities and structure factors (tools/examplelines.h); Lorentz and polarisation factors;
// pseudo-Voigt lines with Caglioti widths; a smooth background; humps of what is amorphous; and
// counting noise. The same seed gives the same file on every machine.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <numbers>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "counting.h"
#include "examplelines.h"
#include "examples.h"
#include "workspace/lines.h"
#include "workspace/record.h"

namespace {

constexpr double Radian = std::numbers::pi / 180;

constexpr const char* kReadmeHead[] = {
    "# Example patterns",
    "",
    "Simulated with counting noise by `tools/makeexamples.cpp`, which also writes this file.",
    "The lines have the places and intensities of the structure: X-ray scattering factors with",
    "dispersion, isotropic displacements, multiplicity, Lorentz and polarisation factors without",
    "a monochromator. There is no texture, absorption or zero shift. Cells are in angstrom and",
    "degrees. The crystalline share is that of the lines in lines and humps, by area, above the",
    "smooth background.",
    "",
    "| file | what it is | true cell: a, b, c; alpha, beta, gamma | space group | wavelength |"
    " two-theta | crystalline share | seed |",
    "|---|---|---|---|---|---|---|---|",
};
constexpr const char* kReadmeSources[] = {
    "",
    "The structures, in `tools/structures`, and where they come from:",
    "",
};
constexpr const char* kReadmeTail[] = {
    "",
    "`tour.replay` opens one of them without a window, zooms in, finds its peaks and leaves "
    "drawings:",
    "",
    "    build/quillagram-replay examples/tour.replay",
    "",
    "`refine.replay` refines corundum from a cell that is off by 0.1 percent home to its true one; "
    "it "
    "leaves the fit file and a drawing, and the log beside the pattern:",
    "",
    "    build/quillagram-replay examples/refine.replay",
    "",
    "`index.replay` goes from the peaks of forsterite to its cell and leaves the peak file and a "
    "drawing of the cell's lines, and the listings of both engines beside the pattern:",
    "",
    "    build/quillagram-replay examples/index.replay",
    "",
    "[recipes](recipes/README.md) are such files for series: what is done to each pattern of a "
    "run.",
};

const Structure& StructureOf(const Example& example) {
  const auto found =
      std::ranges::find(kStructures, std::string_view(example.structure), &Structure::name);
  if (found == std::end(kStructures)) {
    std::fprintf(stderr, "%s: not in tools/examplelines.h\n", example.structure);
    std::exit(1);
  }
  return *found;
}

void AddLines(const Example& example, double wavelength, double share,
              const std::vector<double>& tth, std::vector<double>& lines) {
  for (const Line& line : StructureOf(example).lines) {
    const double s = wavelength / line.d / 2;
    if (s >= 0.995) continue;
    const double theta = std::asin(s), position = 2 * theta / Radian;
    const double t = std::tan(theta);
    const double fwhm = std::sqrt(example.u * t * t + example.v * t + example.w);
    const double lorentz = std::min(1.0, example.shape + 0.003 * position);
    for (std::size_t i = 0; i < tth.size(); ++i)
      if (std::abs(tth[i] - position) < 60 * fwhm)
        lines[i] += share * line.multiplicity * line.square * LorentzPolarisation(theta) *
                    PseudoVoigt(tth[i] - position, fwhm, lorentz);
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

  std::vector<double> lines(n), humps(n);
  AddLines(example, example.wavelength, 1, pattern.tth, lines);
  if (example.wavelength2 > 0) AddLines(example, example.wavelength2, 0.5, pattern.tth, lines);
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

std::string ReadmeRow(const Example& e) {
  const Structure& structure = StructureOf(e);
  const Cell& cell = structure.cell;
  std::string row = std::string("| `") + e.file + "` | " + e.text + " | " +
                    WriteRecord<"(f7.4,', ',f7.4,', ',f7.4)">(cell.a, cell.b, cell.c) + "; " +
                    WriteRecord<"(f6.2,', ',f6.2,', ',f6.2)">(cell.alpha, cell.beta, cell.gamma) +
                    " | " + structure.spacegroup + " | " + WriteRecord<"(f7.5)">(e.wavelength);
  if (e.wavelength2 > 0) row += WriteRecord<"(' and ',f7.5)">(e.wavelength2);
  row += WriteRecord<"(' | ',f6.2,' to ',f7.3,' by ',f5.3,' | ')">(e.start, e.stop(), e.step);
  if (e.crystalline < 1) row += WriteRecord<"(f5.2)">(e.crystalline);
  row += " | " + std::to_string(e.seed) + " |";
  const auto both_blank = [](char a, char b) { return a == ' ' && b == ' '; };
  row.erase(std::unique(row.begin(), row.end(), both_blank), row.end());
  return row;
}

bool WriteReadme(const std::string& directory) {
  LineWriter out(directory + "/README.md");
  for (const char* line : kReadmeHead) out.Write(line);
  for (const Example& example : kExamples) out.Write(ReadmeRow(example));
  for (const char* line : kReadmeSources) out.Write(line);
  for (const Structure& structure : kStructures)
    out.Write(std::string("- ") + structure.name + ": " + structure.source);
  for (const char* line : kReadmeTail) out.Write(line);
  return out.Close();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: makeexamples DIRECTORY\n", stderr);
    return 1;
  }
  bool good = true;
  for (const Example& example : kExamples) good = WritePattern(argv[1], Simulate(example)) && good;
  good = WriteReadme(argv[1]) && good;
  if (!good) std::fprintf(stderr, "%s: not all could be written\n", argv[1]);
  return good ? 0 : 1;
}
