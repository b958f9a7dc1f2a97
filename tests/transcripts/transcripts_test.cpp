// Runs the transcripts of this directory, tours of the menus, and holds them to what they tell:
//   #= 100 102.5 +- 0.2      the values of a get; the last one stands for all that follow
//   #! box Error No peaks*   another event, its fields parted by a blank; * stands for any text
// Some kinds of events may stay untold; all others must come as told, in this order.
#include <fnmatch.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>

#include "support/support.h"

namespace {

const std::string kUntold = "dialog field select status";
constexpr double kRadian = 0.01745329251994;

double Gaussian(double x, double centre, double fwhm) {
  return std::exp(-4 * std::log(2.0) * (x - centre) * (x - centre) / (fwhm * fwhm));
}

// What a plate of mu t 1, tilted by 20 degrees, lets through: the integral over its depth of the
// absorption on the ways in and out, exp(-way) where both are alike.
double Plate(double x) {
  const double in = 1 / std::cos(20 * kRadian), out = 1 / std::cos((x - 20) * kRadian);
  return x == 40 ? std::exp(-in) : (std::exp(-out) - std::exp(-in)) / (in - out);
}

// K alpha 1 at 60 degrees and K alpha 2, half as strong.
double Doublet(double x) {
  const double second = 2 * std::asin(std::sin(30 * kRadian) * 1.54433 / 1.54056) / kRadian;
  return 90 + 1000 * (Gaussian(x, 60, 0.12) + 0.5 * Gaussian(x, second, 0.12));
}

// A primitive cubic cell of 4 angstrom in Cu K alpha 1, on a straight background.
double Cubic(double x) {
  double counts = 200 - x;
  for (int n : {1, 2, 3, 4, 5, 6, 8, 9})
    counts +=
        1000.0 / n * Gaussian(x, 2 * std::asin(1.54056 / 2 * std::sqrt(n) / 4) / kRadian, 0.2);
  return counts;
}

const struct {
  const char* name;
  double first, step;
  int points;
  double (*counts)(double x);
} kPatterns[] = {
    {"ramp.xy", 20, 0.25, 41, [](double x) { return 10 * x; }},
    {"step.xy", 20, 0.25, 41, [](double x) { return x < 25 ? 100.0 : 300.0; }},
    {"flat.xy", 0, 10, 19, [](double) { return 100.0; }},
    {"parabola.xy", 20, 0.25, 81, [](double x) { return 100 + (x - 30) * (x - 30) / 2; }},
    {"peak.xy", 20, 0.02, 1001, [](double x) { return 50 + 1000 * Gaussian(x, 30, 0.2); }},
    {"peaks.xy", 20, 0.02, 3001,
     [](double x) {
       return 50 + 1000 * (Gaussian(x, 30, 0.2) + Gaussian(x, 50, 0.2) + Gaussian(x, 70, 0.3));
     }},
    {"cubic.xy", 15, 0.02, 3001, Cubic},
    {"doublet.xy", 58, 0.02, 201, Doublet},
    {"plate.xy", 10, 1, 51, [](double x) { return 1000 * Plate(x); }},
};

struct Expectation {
  std::string text;
  std::vector<double> values = {};  // none for an event
  double tolerance = 0;
};

std::vector<Expectation> Expectations(const std::string& transcript) {
  std::vector<Expectation> expected;
  std::istringstream lines(transcript);
  for (std::string line, last; std::getline(lines, line); last = line) {
    if (line.starts_with("#!")) expected.push_back({line.substr(3)});
    if (!line.starts_with("#=")) continue;
    Expectation e{last + " " + line};
    std::istringstream words(line.substr(2));
    for (std::string word; words >> word && word != "+-";) e.values.push_back(std::stod(word));
    words >> e.tolerance;
    expected.push_back(e);
  }
  return expected;
}

bool HasValues(const std::string& event, Expectation expected) {
  if (!event.starts_with("value\t")) return false;
  std::vector<double> values;
  std::istringstream fields(event.substr(event.find('\t', 6) + 1));  // behind "value" and the name
  for (std::string field; std::getline(fields, field, '\t');) values.push_back(std::stod(field));
  if (values.size() < expected.values.size()) return false;
  expected.values.resize(values.size(), expected.values.back());
  return std::ranges::equal(values, expected.values, [&](double value, double wanted) {
    const double rounding = 1e-5 * std::max(1.0, std::fabs(wanted));  // of single precision
    return std::fabs(value - wanted) <= expected.tolerance + rounding;
  });
}

bool Matches(std::string event, const Expectation& expected) {
  if (!expected.values.empty()) return HasValues(event, expected);
  std::ranges::replace(event, '\t', ' ');
  return fnmatch(expected.text.c_str(), event.c_str(), FNM_NOESCAPE) == 0;
}

class Transcript : public testing::TestWithParam<std::string> {};

TEST_P(Transcript, ShowsWhatItSays) {
  const TempDir directory;
  for (const auto& pattern : kPatterns) {
    std::string text;
    for (int i = 0; i < pattern.points; ++i) {
      const double x = pattern.first + pattern.step * i;
      text += std::to_string(x) + " " + std::to_string(pattern.counts(x)) + "\n";
    }
    WriteFile(directory.file(pattern.name), text);
  }
  std::filesystem::copy_file(QUILLAGRAM_SOURCE "/tests/transcripts/cubic.out",
                             directory.file("cubic.out"));
  WriteFile(directory.file("in.mlt"), "ramp.xy\nstep.xy\n");
  WriteFile(directory.file("out.mlt"), "ramp2.xy\nstep2.xy\n");
  std::filesystem::create_directory_symlink(QUILLAGRAM_SOURCE "/examples",
                                            directory.file("examples"));
  const std::string transcript =
      ReadFile(QUILLAGRAM_SOURCE "/tests/transcripts/" + GetParam() + ".replay");
  const ReplayRun run = RunReplay(transcript, directory.path());
  EXPECT_TRUE(run.status == 0 && !run.lines.empty());
  const std::vector<Expectation> expected = Expectations(transcript);
  auto next = expected.begin();
  for (const std::string& event : run.lines) {
    const bool told = next != expected.end() && Matches(event, *next);
    ASSERT_TRUE(told || kUntold.find(event.substr(0, event.find('\t'))) != std::string::npos)
        << event << "\ninstead of " << (next == expected.end() ? "the end" : next->text);
    next += told;
  }
  EXPECT_EQ(next, expected.end()) << next->text;
}

INSTANTIATE_TEST_SUITE_P(Tour, Transcript,
                         testing::Values("corrections", "modify", "background", "peaks",
                                         "peaktable", "peakfit", "fit", "overlays", "summary",
                                         "indexing", "findcell", "scripts", "commands", "dialogs",
                                         "views", "zoom"),
                         [](const auto& name) { return name.param; });

}  // namespace
