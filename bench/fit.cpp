// Whole-pattern fit of 20000 points and as many parameters as there can be: 15 background terms,
// zero, 12 of the profile, 6 of the cell, and the intensities of 196 reflections. A cycle should
// stay below 20 ms, 25 cycles below half a second.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

#include "crystal/laue.h"  // for CenteringP
#include "crystal/reflections.h"
#include "fit/calculate.h"
#include "fit/fitbackground.h"
#include "fit/normalequations.h"
#include "fit/profiles.h"
#include "fit/refine.h"

namespace {

// A triclinic pattern with alpha2 and some unrest, calculated by the model itself.
struct LargeFit {
  std::vector<float> x = std::vector<float>(MaxPoints), y = x, background = x, net = x,
                     calculated = x;
  std::unique_ptr<Table<int, 4, MaxPoints>> ptrefl = std::make_unique<Table<int, 4, MaxPoints>>();
  FitParameters fit;
  Table<float, 8, MaxPeaks + 1> peaks;
  int npeaks = 0;
  float wavelength = CuKalpha1;
  FitModel model{x,         y,   background, net,    calculated,
                 *ptrefl,   fit, peaks,      npeaks, {{CuKalpha1, CuKalpha2, 0.5f}},
                 wavelength};

  LargeFit() {
    fit.cell = {{4.3f, 4.7f, 5.2f, 94, 101, 107}};
    fit.fwhmleft = fit.fwhmright = {{0.01f, -0.005f, 0.02f}};
    fit.shapeleft = fit.shaperight = {{0.5f, 0, 0}};
    fit.bgorder = MaxChebyshev;
    fit.bgcoef(1) = 300;
    fit.minfwhmsep = 0.01f;
    for (Table<int, 6>* flags : {&fit.cellrefine, &fit.fwhmrefine, &fit.shaperefine})
      flags->fill(1);
    fit.tthzerorefine = 1;
    fit.maxshift = 0;  // never at rest
    FillRows();
    for (int i = 0; i < MaxPoints; ++i) x[i] = 5 + 0.00725f * static_cast<float>(i);
    AssignProfiles(model);
    AssignBackground(model, 0);
    CalculatePattern(model);
    for (int i = 0; i < MaxPoints; ++i)
      y[i] = calculated[i] + static_cast<float>((i * 7919LL) % 53) - 26;
  }

  void FillRows() {
    int centering = CenteringP;
    const auto list =
        AssignReflections(fit.cell, fit.laueclass, centering, {5, 150}, wavelength).value();
    for (const Reflection& r : list) {
      if (npeaks == MaxFitParameters - 34) break;
      peaks(ptth, ++npeaks) = r.tth;
      peaks(pint, npeaks) = 200 + 150 * std::sin(static_cast<float>(npeaks));
      peaks(phkl, npeaks) = static_cast<float>(PackHkl(r.hkl));
    }
  }
};

void PlainAdd(const Derivatives& d, float e, int npar, std::vector<float>& matrix,
              std::vector<float>& right) {
  for (int k = 1; k <= npar; ++k) {
    right[k - 1] += e * d.values[k];
    for (int l = k; l <= npar; ++l) matrix[(k - 1) * npar + l - 1] += d.values[k] * d.values[l];
  }
}

// One pass over the points; 0: derivatives alone, 1: with the equations, 2: with those of the plain
// loop.
void BM_Pass(benchmark::State& state) {
  LargeFit fit;
  const ParameterNumbers numbers = AssignParameters(fit.model);
  NormalEquations equations(numbers.npar);
  std::vector<float> matrix(numbers.npar * numbers.npar), right(numbers.npar);
  Derivatives d;
  for (auto _ : state) {
    const std::vector<RowState> rows = PrepareRows(fit.model);
    if (state.range(0) == 1) {
      AccumulatePattern(fit.model, numbers, rows, equations);
      continue;
    }
    for (int i = 1; i <= MaxPoints; ++i) {
      d.Clear();
      const float y = EvaluatePoint(fit.model, numbers, rows, i, fit.x[i - 1], d);
      if (state.range(0) == 2) PlainAdd(d, fit.y[i - 1] - y, numbers.npar, matrix, right);
    }
  }
  state.counters["parameters"] = numbers.npar;
}
BENCHMARK(BM_Pass)->ArgName("sums")->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

// A run of n cycles solves n - 1 times and makes a last pass.
void BM_Refine(benchmark::State& state) {
  LineWriter log("/dev/null");
  for (auto _ : state) {
    state.PauseTiming();
    LargeFit fit;
    fit.fit.ncycles = static_cast<int>(state.range(0));
    ParameterNumbers numbers = AssignParameters(fit.model);
    state.ResumeTiming();
    const RefineResult result = Refine(fit.model, numbers, log, [](int, float) { return true; });
    state.counters["Rwp"] = result.rwp;
    state.counters["end"] = static_cast<int>(result.end);
  }
}
BENCHMARK(BM_Refine)->ArgName("cycles")->Arg(1)->Arg(2)->Arg(25)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
