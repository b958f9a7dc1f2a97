// A script over 2000 files of 5500 points: what a file costs beside reading and writing it, in
// milliseconds (below 1 without BKGR), and how much of that is each command's.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "fullpattern.h"
#include "patternfiles/patternfiles.h"
#include "script/script.h"
#include "shell/shell.h"
#include "toolkit/replay/transcript.h"

namespace {

constexpr int kFiles = 2000, kPoints = 5500;

std::string folder;

std::string File(const std::string& name) { return folder + "/" + name; }

// One pattern, under as many names. It is written to where no disk is waited for.
constexpr const char* kOutput = "/dev/null";
void MakeFiles() {
  folder =
      (std::filesystem::temp_directory_path() / ("quillagram-bench-" + std::to_string(getpid())))
          .string();
  std::filesystem::create_directory(folder);
  std::ofstream pattern(File("0.xy")), inputs(File("in.mlt")), outputs(File("out.mlt"));
  for (int i = 0; i < kPoints; ++i) {
    const float x = 5 + 0.02f * static_cast<float>(i);
    pattern << x << ' ' << static_cast<int>(Calculated(x)) << '\n';
  }
  pattern.close();
  for (int k = 0; k < kFiles; ++k) {
    const std::string name = std::to_string(k) + ".xy";
    if (k > 0) std::filesystem::create_hard_link(File("0.xy"), File(name));
    inputs << name << '\n';
    outputs << kOutput << '\n';
  }
}

// Milliseconds of a file.
void CountFiles(benchmark::State& state) {
  state.counters["ms_a_file"] = benchmark::Counter(
      kFiles / 1000.0, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void RunCommands(benchmark::State& state, const std::string& commands) {
  std::ofstream(File("a.scp")) << "in.mlt\nout.mlt\nINFM    2\n" + commands + "UTFM    2\n";
  ws.scriptpath = File("a.scp");
  for (auto _ : state)
    if (RunScript() != Outcome::Done) state.SkipWithError("not run");
  CountFiles(state);
}

// The same without a script.
void ReadAndWrite(benchmark::State& state) {
  for (auto _ : state)
    for (int k = 0; k < kFiles; ++k) {
      ReadXy(SlotInput, File(std::to_string(k) + ".xy"));
      ws.savestart = ws.xval(AxisTth, SlotInput, 1);
      ws.savestop = ws.xval(AxisTth, SlotInput, ws.npts(SlotInput));
      ws.savestep = 0.02f;
      WriteXy(kOutput, SlotInput);
    }
  CountFiles(state);
}

constexpr const char* kCommands[] = {
    "ZERO     .0100\n",
    "TRUN   10.0000  100.0000\n",
    "SCAL    2.0000    1    0    0\n",
    "SMOO    5\n",
    "SAGO    5\n",
    "CONV   1.54056   1.50000  10.00000 100.00000    .02000\n",
    "SKIP    1\n",
    "BKGR  201\n",
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  replay::Redirect([](const std::string&) {}, [] { std::abort(); });
  WInitialise(1, argv);
  RegisterMenu();
  MakeFiles();
  const auto add = [](const std::string& name, const std::string& commands) {
    benchmark::RegisterBenchmark(name.c_str(), RunCommands, commands)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
  };
  benchmark::RegisterBenchmark("reading and writing", ReadAndWrite)
      ->Unit(benchmark::kMillisecond)
      ->Iterations(1);
  add("script without commands", "");
  std::string all;
  for (const char* command : kCommands) {
    add(std::string(command, 4), command);
    if (command != std::end(kCommands)[-1]) all += command;
  }
  add("all but BKGR", all);
  add("all", all + std::end(kCommands)[-1]);
  benchmark::RunSpecifiedBenchmarks();
  std::filesystem::remove_all(folder);
}
