// The kinds of simulated series, and the laws that their samples follow.
#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "counting.h"
#include "examplelines.h"
#include "simulateseries.h"
#include "workspace/workspace.h"  // for CuKalpha1

namespace {

constexpr double Radian = std::numbers::pi / 180;
constexpr double kReach = 60;  // FWHM to which a line is drawn

struct Profile {
  double u, w;     // FWHM squared = u tan^2 + w, of theta
  double lorentz;  // share
};

double Fwhm(const Profile& profile, double tth) {
  const double t = std::tan(tth / 2 * Radian);
  return std::sqrt(profile.u * t * t + profile.w);
}

void AddLine(double tth, double area, double fwhm, double lorentz, std::span<const double> x,
             std::span<double> counts) {
  const auto first = std::ranges::lower_bound(x, tth - kReach * fwhm);
  for (auto i = first - x.begin(); i < std::ssize(x) && x[i] < tth + kReach * fwhm; ++i)
    counts[i] += area * PseudoVoigt(x[i] - tth, fwhm, lorentz);
}

void AddBackground(double far, std::span<const double> x, std::span<double> counts) {
  for (std::size_t i = 0; i < x.size(); ++i) counts[i] += far * (1 + 3 * std::exp(-x[i] / 15));
}

// ---- A run of the furnace ----
//
// An oxide of the structure of rutile that is orthorhombic when cold: its edges a and b come
// together by a law of Landau, until they jump the last bit. Both phases are there for some kelvin.

constexpr double kCold = 300, kHot = 1100;  // kelvin
constexpr double kChangeBegins = 716, kChanged = 724;
constexpr double kLeastOrder = 0.15;  // order parameter that jumps to 0; 1 when cold

struct Edges {
  double a, b, c;
};

// What heat does to a crystal whose atoms swing with one frequency, from the cold on, in kelvin.
double Swing(double kelvin) {
  constexpr double frequency = 450;
  const auto energy = [](double t) { return frequency / (std::exp(frequency / t) - 1); };
  return energy(kelvin) - energy(kCold);
}

Edges HotPhase(double kelvin) {
  const double a = 4.6020 * (1 + 1.15e-5 * Swing(kelvin));
  return {a, a, 2.9560 * (1 + 0.80e-5 * Swing(kelvin))};
}

Edges ColdPhase(double kelvin) {
  const double least = kLeastOrder * kLeastOrder;
  const double square = least + (1 - least) * std::max(0.0, kChanged - kelvin) / (kChanged - kCold);
  const double order = std::sqrt(square);
  const Edges hot = HotPhase(kelvin);
  return {hot.a * (1 + 0.009 * order - 0.001 * square),
          hot.b * (1 - 0.009 * order - 0.001 * square), hot.c * (1 + 0.0025 * square)};
}

struct Furnace {
  double kelvin;
  Profile profile;
  double offset;  // of all lines: the sample rises
};

struct Peak {
  double tth, area, fwhm;
};

Peak PeakOf(const Line& line, const Edges& cell, const Furnace& furnace) {
  const double inverse = std::hypot(line.h / cell.a, line.k / cell.b, line.l / cell.c);  // 1/d
  const double theta = std::asin(CuKalpha1 * inverse / 2), tth = 2 * theta / Radian;
  const double thermal = std::exp(-2 * (furnace.kelvin / 600) * inverse * inverse / 4);
  constexpr double brightness = 0.008;
  return {tth + furnace.offset,
          brightness * line.multiplicity * line.square * thermal * LorentzPolarisation(theta),
          Fwhm(furnace.profile, tth)};
}

void AddReflection(const Line& line, const Edges& cell, double share, const Furnace& furnace,
                   std::span<const double> x, std::span<double> counts) {
  const Peak peak = PeakOf(line, cell, furnace);
  AddLine(peak.tth, share * peak.area, peak.fwhm, furnace.profile.lorentz, x, counts);
}

// Of the lines that are one in the tetragonal phase, hkl and khl have half of the members each.
void AddPhase(const Edges& cell, double share, const Furnace& furnace, std::span<const double> x,
              std::span<double> counts) {
  for (const Line& line : kRutile) {
    if (line.d < 1.15) break;
    AddReflection(line, cell, share / 2, furnace, x, counts);
    Line other = line;
    std::swap(other.h, other.k);
    AddReflection(other, cell, share / 2, furnace, x, counts);
  }
}

Frame HeatingFrame(double at, int, std::span<const double> x) {
  const double kelvin = std::lerp(kCold, kHot, at);
  const Furnace furnace{
      kelvin, {0.010 + 0.050 * std::exp(-(kelvin - kCold) / 200), 0.011, 0.5}, 0.03 * at};
  const double hot =
      std::clamp((kelvin - kChangeBegins) / (kChanged - kChangeBegins), 0.0, 1.0);  // share
  const Edges cell = hot < 0.5 ? ColdPhase(kelvin) : HotPhase(kelvin);
  const double background = 50 + 90 * at * at;

  std::vector<double> counts(x.size());
  AddBackground(background, x, counts);
  if (hot < 1) AddPhase(ColdPhase(kelvin), 1 - hot, furnace, x, counts);
  if (hot > 0) AddPhase(HotPhase(kelvin), hot, furnace, x, counts);
  const Peak peak = PeakOf(kRutile[0], cell, furnace);
  return {{kelvin, cell.a, cell.b, cell.c, hot, Fwhm(furnace.profile, 40), 0 - furnace.offset,
           peak.tth, peak.area},
          counts};
}

// ---- Quartz that grows out of its glass ----

Frame CrystallisingFrame(double at, int, std::span<const double> x) {
  const double share = 0.9 * (1 - std::exp(-std::pow(at / 0.45, 3)));
  const double hump = 21.8 + 0.8 * at;
  constexpr double all = 3000;  // counts times degrees, of lines and hump together
  constexpr Profile profile{0.010, 0.010, 0.5};

  std::vector<double> lines(x.size()), counts(x.size());
  for (const Line& line : kQuartz) {
    const double s = CuKalpha1 / line.d / 2;
    if (s >= std::sin(50 * Radian)) continue;
    const double theta = std::asin(s), tth = 2 * theta / Radian;
    AddLine(tth, line.multiplicity * line.square * LorentzPolarisation(theta), Fwhm(profile, tth),
            profile.lorentz, x, lines);
  }
  const double area = std::accumulate(lines.begin(), lines.end(), 0.0) * (x[1] - x[0]);
  for (std::size_t i = 0; i < x.size(); ++i) counts[i] = lines[i] * share * all / area;
  AddLine(hump, (1 - share) * all, 8, 0, x, counts);
  AddBackground(40, x, counts);
  return {{600 * at, share, hump, (1 - share) * all}, counts};
}

// ---- One line that wanders ----

Frame WanderingFrame(double, int number, std::span<const double> x) {
  const double turn = 2 * std::numbers::pi * number;
  const double tth = 30 + 5 * std::sin(turn / 977) + 2 * std::sin(turn / 137);
  const double area = 300 * std::pow(2, std::sin(turn / 613));
  const double fwhm = 0.16 + 0.06 * std::sin(turn / 389);
  std::vector<double> counts(x.size());
  AddBackground(30, x, counts);
  AddLine(tth, area, fwhm, 0.5, x, counts);
  return {{tth, area, fwhm}, counts};
}

}  // namespace

const std::vector<SeriesKind> kSeriesKinds = {
    {"heating",
     "a run of the furnace with a change of phase",
     2000,
     {20, 0.02, 3000},
     {"temperature", "true_a", "true_b", "true_c", "true_hot_share", "true_fwhm", "true_zero",
      "true_110", "true_110_area"},
     HeatingFrame},
    {"crystallising",
     "quartz that grows out of its glass",
     200,
     {10, 0.02, 3500},
     {"minute", "true_crystalline", "true_hump", "true_hump_area"},
     CrystallisingFrame},
    {"small",
     "one line that wanders",
     100000,
     {20, 0.02, 1000},
     {"true_position", "true_area", "true_fwhm"},
     WanderingFrame},
};
