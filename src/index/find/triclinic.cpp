// Triclinic cells, and others with a long axis: a plane of the reciprocal lattice first, then a
// vector outside it.
#include <algorithm>
#include <cmath>

#include "index/find/leastsquares.h"
#include "index/find/searches.h"
#include "index/find/zones.h"

namespace {

constexpr std::size_t kMostZones = 800;
constexpr std::size_t kOutside = 8;  // the first lines missed by the zone, for the vector
constexpr double kLongAxis = 8;      // times the square of the axis is less than the vector's
constexpr int kMostMultiple = 3;
constexpr int kLeastOfRefinement = 6;  // lines that a metric is refined on before the second check
constexpr int kLeastOfLayer = 4;       // lines hit by the nine vectors of the first layer about it

class Layers {
 public:
  Layers(const SearchLines& lines, TrialList& list) : lines_(lines), list_(list) {}

  void Search(const ReciprocalPlane& zone) {
    const std::size_t n = std::min(kLinesOfSecondCheck, lines_.q.size());
    std::size_t taken = 0;
    for (std::size_t i = 0; i < n && taken < kOutside; ++i) {
      if ((zone.hit >> i) & 1) continue;
      ++taken;
      for (int order : {1, 4})
        if (const double w = lines_.q[i] / order; w > kLeastSquare) Angles(zone, w);
    }
  }

 private:
  const SearchLines& lines_;
  TrialList& list_;
  std::vector<double> e_, d_;

  // Twice the product of the vector with an axis of the zone, by any line that is their sum. Along
  // a long axis, multiples of it tell it better, and the sum itself may not stand by itself.
  void Mixed(double axis, double w, std::vector<double>& terms) const {
    terms.clear();
    const int most = axis < w / kLongAxis ? kMostMultiple : 1;
    for (int h = 1; h <= most; ++h)
      for (std::size_t i = 0; i < std::min(kLinesOfSecondCheck, lines_.q.size()); ++i)
        if (const double term = std::abs(lines_.q[i] - h * h * axis - w) / h; term <= 2 * axis)
          terms.push_back(term);
  }

  void Angles(const ReciprocalPlane& zone, double w) {
    Mixed(zone.a, w, e_);
    Mixed(zone.c, w, d_);
    for (double e : e_)
      for (double d : d_)
        for (double sign : {1.0, -1.0}) {
          const Form form{zone.a, zone.c, w, zone.e, e, sign * d};
          if (Passes(zone, form)) SecondCheck(form);
        }
  }

  bool Passes(const ReciprocalPlane& zone, const Form& form) const {
    const float most = lines_.second.Most();
    std::uint32_t hit = 0;
    for (int h = -1; h <= 1; ++h)
      for (int k = -1; k <= 1; ++k) {
        const auto q = static_cast<float>(Value(form, {h, k, 1}));
        if (q <= 0) return false;
        if (q < most) hit |= lines_.second.At(q);
      }
    return std::popcount(hit & ~zone.hit) >= kLeastOfLayer;
  }

  // Calls see(q, hkl) for half of all vectors up to `most`; false once there are too many.
  template <typename See>
  static bool ForVectors(const Form& f, double most, const See& see) {
    const double determinant = Determinant(f);
    if (!(determinant > 1e-9 * f[0] * f[1] * f[2])) return false;
    const double kk = f[1] - f[3] * f[3] / (4 * f[0]), kl = f[5] - f[3] * f[4] / (2 * f[0]),
                 ll = determinant / (f[0] * kk);
    int positions = 0;
    for (int l = 0; l * l * ll <= most; ++l) {
      const double kmiddle = -kl * l / (2 * kk), kreach = std::sqrt((most - l * l * ll) / kk);
      for (int k = static_cast<int>(std::ceil(kmiddle - kreach)); k <= kmiddle + kreach; ++k) {
        if (l == 0 && k < 0) continue;
        const double column = f[3] * k + f[4] * l,
                     rest = f[1] * k * k + f[2] * l * l + f[5] * k * l;
        const double square = column * column - 4 * f[0] * (rest - most);
        if (square < 0) continue;
        const double root = std::sqrt(square);
        for (int h = static_cast<int>(std::ceil((-column - root) / (2 * f[0])));
             h <= (-column + root) / (2 * f[0]); ++h) {
          if (l == 0 && k == 0 && h <= 0) continue;
          const double q = h * (f[0] * h + column) + rest;
          if (++positions > kMostPositions) return false;
          see(std::clamp(q, 0.0, most), Hkl{h, k, l});
        }
      }
    }
    return true;
  }

  // Least squares on the lines up to `most`; false if too few are hit.
  bool Refine(Form& f, double most, int leasthits) const {
    FewEquations<6> equations;
    std::uint32_t hit = 0;
    const bool few = ForVectors(f, most, [&](double q, const Hkl& r) {
      const std::uint32_t bit = lines_.second.At(static_cast<float>(q));
      if (bit == 0) return;
      hit |= bit;
      equations.Add(TermsOf(r), lines_.q[static_cast<std::size_t>(std::countr_zero(bit))] - q, 1);
    });
    if (!few || std::popcount(hit) < leasthits) return false;
    // What they do not tell stays where it is.
    for (std::size_t i = 0; i < 6; ++i) {
      Form unit{};
      unit[i] = 1;
      equations.Add(unit, 0, 1e-3);
    }
    const auto shift = equations.Solve();
    if (!shift) return false;
    for (std::size_t i = 0; i < 6; ++i) f[i] += (*shift)[i];
    return true;
  }

  void SecondCheck(Form f) {
    const double most = lines_.second.Most();
    const auto n = static_cast<std::size_t>(lines_.second.Lines());
    if (!Refine(f, lines_.q[n * 3 / 5 - 1], kLeastOfRefinement)) return;
    std::uint32_t hit = 0;
    int positions = 0;
    const bool few = ForVectors(f, most, [&](double q, const Hkl&) {
      hit |= lines_.second.At(static_cast<float>(q));
      ++positions;
    });
    const int hits = std::popcount(hit);
    if (few && hits >= lines_.leastofsecond)
      list_.Add({f, 'P', hits, positions, lines_.chance.Score(hits, positions)});
  }
};

}  // namespace

void SearchForTriclinic(const SearchLines& lines, TrialList& list) {
  Layers layers(lines, list);
  for (const ReciprocalPlane& zone : BestZones(lines, kMostZones)) layers.Search(zone);
}
