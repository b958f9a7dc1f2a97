// The background of the whole-pattern fit.
#include "fit/fitbackground.h"

#include <algorithm>

#include "background/background.h"
#include "crystal/chebyshev.h"

namespace {

constexpr int kWindow = 201;     // of the estimator
constexpr float kShare = 0.99f;  // of the counts that the estimate takes

void PutPolynomial(FitModel& model, int terms) {
  const FitParameters& fit = model.fit;
  const std::span<const float> coef(fit.bgcoef.cells.data(), terms);
  for (int i = 0; i < model.Points(); ++i) {
    const float x = fit.tthzero + model.x[i];
    if (x < fit.fitmin2th) continue;
    if (x > fit.fitmax2th) break;
    model.background[i] = ChebyshevValue(coef, x, fit.fitmin2th, fit.fitmax2th);
    model.net[i] = model.y[i] - model.background[i];
  }
}

// That takes the estimate to the counts of the points without a reflection.
float EstimateScale(const FitModel& model) {
  float counts = 0, estimate = 0;
  for (int i = 0; i < model.Points(); ++i) {
    if (model.ptrefl(1, i + 1) >= 1) continue;
    counts += model.y[i];
    estimate += model.background[i];
  }
  return estimate <= 0 ? 1.0f : kShare * counts / estimate;
}

// Where the pattern is not above the estimate it is the background, and the net pattern is 1.
void PutEstimate(FitModel& model, int cycles) {
  std::ranges::copy(model.y, model.background.begin());
  BackgroundEnvelope(model.background, kWindow, cycles);
  const float scale = EstimateScale(model);
  for (int i = 0; i < model.Points(); ++i) {
    model.background[i] *= scale;
    model.net[i] = model.y[i] - model.background[i];
    if (model.net[i] > 0) continue;
    model.background[i] = model.y[i];
    model.net[i] = 1.0f;
  }
}

}  // namespace

int BackgroundTerms(const FitParameters& fit) { return std::clamp(fit.bgorder, 0, MaxChebyshev); }

void AssignBackground(FitModel& model, int cycles) {
  const int terms = BackgroundTerms(model.fit);
  if (terms >= 1)
    PutPolynomial(model, terms);
  else
    PutEstimate(model, cycles);
}
