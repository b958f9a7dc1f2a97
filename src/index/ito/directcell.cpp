// From the constants of a reciprocal lattice to the direct cell.
#include "index/ito/directcell.h"

#include <algorithm>
#include <cmath>

namespace {

float SineOf(float cosine) { return std::sqrt(1 - cosine * cosine); }

// The arc cosine by the arc tangent.
float AngleOf(float cosine, float sine) { return 90 - 57.29578f * std::atan(cosine / sine); }

// The number of formula units, of four around the estimate, that comes closest to the density.
int FormulaUnits(float density, float ofone) {
  constexpr float most = 1000;  // far beyond two digits
  const int first = static_cast<int>(std::min(density / ofone, most));
  int best = std::max(first, 1);
  for (int z = best + 1; z <= first + 3; ++z)
    if (std::abs(static_cast<float>(z) * ofone - density) <
        std::abs(static_cast<float>(best) * ofone - density))
      best = z;
  return best;
}

}  // namespace

DirectCell CellOfLattice(const Lattice& t) {
  // Of the reciprocal cell.
  const float ra = std::sqrt(t.a), rb = std::sqrt(t.b), rc = std::sqrt(t.c);
  const float rcosa = t.d / (2 * std::sqrt(t.b * t.c)), rcosb = t.e / (2 * std::sqrt(t.a * t.c)),
              rcosg = t.f / (2 * std::sqrt(t.a * t.b));
  const float rsina = SineOf(rcosa), rsinb = SineOf(rcosb), rsing = SineOf(rcosg);

  const float cosa = (rcosb * rcosg - rcosa) / (rsinb * rsing),
              cosb = (rcosg * rcosa - rcosb) / (rsing * rsina),
              cosg = (rcosa * rcosb - rcosg) / (rsina * rsinb);
  const float sina = SineOf(cosa), sinb = SineOf(cosb), sing = SineOf(cosg);
  const float v = sina * sinb * rsing;
  const float a = 100 * sina / (v * ra), b = 100 * sinb / (v * rb), c = 100 * sing / (v * rc);
  return {{{a, b, c, AngleOf(cosa, sina), AngleOf(cosb, sinb), AngleOf(cosg, sing)}},
          a * b * c * v};
}

void PutDirectCell(const Lattice& lattice, const ItoCards& cards, Listing& listing) {
  constexpr float known = 0.1f;
  const auto [cell, volume] = CellOfLattice(lattice);
  listing.Put<"9930(1h ,6f9.3,  f12.2)">(cell(1), cell(2), cell(3), cell(4), cell(5), cell(6),
                                         volume);
  const float ofone = cards.wmol / (volume * 0.6025f);
  if (!(cards.wmol > known) || !(ofone > 0)) return;
  if (cards.dobs > known) {
    const int z = FormulaUnits(cards.dobs, ofone);
    listing.Put<"9931(1h+,68x, 5h   z=,i2,6h   dx=, f7.4, 8h   dobs=, f7.4 )">(
        z, static_cast<float>(z) * ofone, cards.dobs);
  } else {
    listing.Put<"9932(1h+,68x,11h   dcalc=z*, f8.4)">(ofone);
  }
}
