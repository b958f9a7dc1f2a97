// What the road of a command costs beside its operation, with every slot full: a snapshot (below 1
// ms), an undo (below 2 ms), and a command that does nothing.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "fullpattern.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "toolkit/replay/transcript.h"

namespace {

// The first of all: nothing can be shared with a snapshot taken before.
void BM_FirstSnapshot(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(TakeSnapshot());
}
BENCHMARK(BM_FirstSnapshot)->Unit(benchmark::kMicrosecond);

// Behind a command that has changed the counts of as many slots.
void BM_Snapshot(benchmark::State& state) {
  const Snapshot before = TakeSnapshot();
  for (int slot = 1; slot <= state.range(0); ++slot) ws.yval(slot, MaxPoints) += 1;
  for (auto _ : state) benchmark::DoNotOptimize(TakeSnapshot(&before));
}
BENCHMARK(BM_Snapshot)->ArgName("changed")->Arg(0)->Arg(1)->Arg(4)->Unit(benchmark::kMicrosecond);

// One step back and one forward, without the drawing.
void BM_UndoAndRedo(benchmark::State& state) {
  ForgetUndo();
  KeepForUndo("Scale", StateNow());
  for (int i = 1; i <= MaxPoints; ++i) ws.yval(SlotInput, i) *= 1.1f;
  for (auto _ : state) {
    Undo();
    Redo();
  }
}
BENCHMARK(BM_UndoAndRedo)->Unit(benchmark::kMicrosecond);

// Without an undo: what fields, question, journal and menu states cost.
void BM_EmptyCommand(benchmark::State& state) {
  constexpr Command command{.item = {},
                            .run = [](const Arguments&) { return Outcome::Idle; },
                            .undo = false,
                            .history = false};
  for (auto _ : state) RunCommand(command);
}
BENCHMARK(BM_EmptyCommand)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  replay::Redirect([](const std::string&) {}, [] { std::abort(); });
  WInitialise(1, argv);
  RegisterMenu();
  FillFullPattern();
  benchmark::RunSpecifiedBenchmarks();
}
