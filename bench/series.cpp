// The road of a file in a series, by a transcript in a process of its own that has been forked from
// one that has started up: 500 files a second, 2 ms each, is the mark for opening a pattern of 3000
// points, background, peak search and one peak fit, and 50 a second for a whole-pattern fit of 30
// parameters that starts near its result.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "shell/shell.h"
#include "toolkit/replay/transcript.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

constexpr int kPoints = 3000;
constexpr double kFirst = 10, kStep = 0.03;

// Split evenly between Gauss and Lorentz, the widths by Caglioti.
double Peak(double x, double tth, double height) {
  const double tangent = std::tan(tth / 2 / RadToDeg);
  const double squared = 0.02 * tangent * tangent - 0.005 * tangent + 0.012;
  const double z = 4 * (x - tth) * (x - tth) / squared;
  return height / 2 * (std::exp(-z * std::log(2.0)) + 1 / (1 + z));
}

// The lines of a tetragonal body-centred cell of 4.6 and 3.0 angstrom.
double Counts(double x) {
  double counts = 80 + 400 * std::exp((kFirst - x) / 20);
  for (int h = 0; h <= 5; ++h)
    for (int k = 0; k <= h; ++k)
      for (int l = 0; l <= 3; ++l) {
        const double inverse = std::sqrt((h * h + k * k) / (4.6 * 4.6) + l * l / 9.0);
        const double sine = CuKalpha1 / 2 * inverse;
        if ((h + k + l) % 2 != 0 || sine <= 0 || sine >= 1) continue;
        counts += Peak(x, TwoRadToDeg * std::asin(sine), 300 + 5000 / (1 + 9 * inverse));
      }
  return counts;
}

// With an unrest as large as that of counting.
std::string Pattern() {
  std::string text;
  for (int i = 0; i < kPoints; ++i) {
    const double x = kFirst + kStep * i, counts = Counts(x);
    const double unrest = std::sqrt(6 * counts) * (std::fmod(i * 0.6180339887, 1.0) - 0.5);
    text += std::to_string(x) + " " + std::to_string(std::lround(counts + unrest)) + "\n";
  }
  return text;
}

constexpr const char* kSteps[] = {
    "",
    "open pattern.xy\n",
    "menu \"Background/Autosubtract\"\npress OK\n",
    "menu \"Peak search/Auto peak search\"\n",
    "drag 26.4 0 28.2 100000\nmenu \"Peak fit/Fit single peak\"\npress OK\nget sparea\n",
};

constexpr const char* kWholeFit =
    "open pattern.xy\nmenu \"Peak fit/General peak fit\"\n"
    "press \"Laue class\"\nset \"4/mmm\" on\nset I on\npress OK\n"
    "set 1401 4.6009\nset 1403 3.0006\nset 1411 on\nset 1413 on\n"
    "set 1421 0.02\nset 1422 -0.005\nset 1423 0.0122\nset 1441 on\nset 1442 on\nset 1443 on\n"
    "set 1424 0.02\nset 1425 -0.005\nset 1426 0.0122\nset 1451 0.5\nset 1454 0.5\nset 1471 on\n"
    "set 1483 on\nset 1481 12\npress Refine\nget fitnpar\nget fitrwp\nget fitcycles\n";

std::string lastevents;

void Play(const std::string& lines) {
  lastevents.clear();
  replay::FeedLines(lines);
  RunProgram();
}

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

double ProcessorTime(int who) {
  rusage usage;
  getrusage(who, &usage);
  return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

// Returns the processor time of both processes in seconds.
double PlayForked(const std::string& lines) {
  const double before = ProcessorTime(RUSAGE_SELF) + ProcessorTime(RUSAGE_CHILDREN);
  const pid_t child = fork();
  if (child == 0) {
    Play(lines);
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) std::abort();
  return ProcessorTime(RUSAGE_SELF) + ProcessorTime(RUSAGE_CHILDREN) - before;
}

// The first so many steps of the road.
void BM_Road(benchmark::State& state) {
  std::string lines;
  for (int step = 0; step <= state.range(0); ++step) lines += kSteps[step];
  for (auto _ : state) state.SetIterationTime(PlayForked(lines));
}
BENCHMARK(BM_Road)->ArgName("steps")->DenseRange(0, 4)->UseManualTime()->Unit(
    benchmark::kMicrosecond);

void BM_RoadInOneProcess(benchmark::State& state) {
  std::string lines;
  for (int step = 0; step <= state.range(0); ++step) lines += kSteps[step];
  for (auto _ : state) Play(lines);
}
BENCHMARK(BM_RoadInOneProcess)->ArgName("steps")->DenseRange(1, 4)->Unit(benchmark::kMicrosecond);

void BM_WholeFit(benchmark::State& state) {
  for (auto _ : state) state.SetIterationTime(PlayForked(kWholeFit));
  Play(kWholeFit);
  state.counters["parameters"] = ws.fitnpar;
  state.counters["cycles"] = ws.fitcycles;
  state.counters["Rwp"] = ws.fitrwp;
}
BENCHMARK(BM_WholeFit)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::string folder = (std::filesystem::temp_directory_path() / "quillagram-XXXXXX").string();
  if (!mkdtemp(folder.data())) return 1;
  std::filesystem::current_path(folder);
  std::ofstream("pattern.xy") << Pattern();
  replay::Redirect([](const std::string& event) { lastevents += event + '\n'; },
                   [] { std::abort(); });
  char* arguments[] = {argv[0], const_cast<char*>("--settings"), const_cast<char*>("none"),
                       nullptr};
  WInitialise(3, arguments);
  replay::NoInput();
  StartProgram();
  benchmark::RunSpecifiedBenchmarks();
  std::filesystem::remove_all(folder);
}
