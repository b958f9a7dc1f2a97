// Metrically special lattices.
#include "index/ito/speciallattices.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "workspace/text.h"  // for nint

namespace {

constexpr int kPrimitive = 6;  // Bravais types: 1 to 3 for a face, 5 for all of them
constexpr int kAllFaces = 5;
constexpr float kHexagonal = 2 / 1.7320508f;

using Texts = std::vector<std::string>;

// The constants of the axes, and the cross constant of the other two for each.
struct Constants {
  std::array<float, 3> q, cross;
  int type;
};

float Edge(float q) { return 100 / std::sqrt(q); }

// How often the base goes into q, 0 if not a whole number of times. A tolerance of half the base
// would take everything.
int Multiple(float q, float base, float t) {
  const int n = nint(q / base);
  return base > 2 * t && std::abs(q - static_cast<float>(n) * base) <= t ? n : 0;
}

// An orthogonal lattice with constants of r and 3 r is hexagonal: one with the constant 4 r if the
// face of both is centered, else one with r in which lines are absent.
float HexagonalEdge(const Constants& c, float r, int third) {
  const bool centered = c.type == third + 1 || c.type == kAllFaces;
  return kHexagonal * Edge(centered ? 4 * r : r);
}

std::string TextOfRatio(const Constants& c, float r, int ratio, int third) {
  const float edge = Edge(c.q[third]);
  if (ratio < 3)
    return WriteRecord<
        "(1h+,12x,' tetragonal, with constants in a ratio of',i2,', a=',f8.4,'  c=',"
        "f8.4)">(ratio, Edge(r), edge);
  if (ratio == 3)
    return WriteRecord<"(1h+,12x,' hexagonal, with the direct constants  a=',f8.4,'  c=',f8.4)">(
        HexagonalEdge(c, r, third), edge);
  return WriteRecord<
      "914(1h+,12x,43h a freak. there is a ratio in the constants   , 32h of the reciprocal  "
      "lattice of   ,i3)">(ratio);
}

// Constants that are multiples of another one.
Texts Orthogonal(const Constants& c, float t) {
  Texts texts;
  for (int base = 0; base < 3; ++base) {
    const int next = (base + 1) % 3, last = (base + 2) % 3;
    const float r = c.q[base];
    const int n = Multiple(c.q[next], r, t), m = Multiple(c.q[last], r, t);
    if (n > 0 && m > 0)
      return {
          WriteRecord<"(1h+,12x,' cubic, with constants in ratios of',2i3,' to that of the edge',"
                      "f8.4)">(n, m, Edge(r))};
    // Of two equal constants the first is the base.
    if (n > 1 || (n == 1 && next > base)) texts.push_back(TextOfRatio(c, r, n, last));
    if (m > 1 || (m == 1 && last > base)) texts.push_back(TextOfRatio(c, r, m, next));
  }
  return texts;
}

// A rhombohedral lattice in monoclinic axes, b along a two-fold axis. With the hexagonal constants
// x and z, b = 3 x is that of 110, and the plane across it holds the points n -n l with n - l a
// multiple of 3, whose constants are n n x + l l z. The shortest two of them, n and l by falling z,
// are
//
//   3 0 and 1 1,  1 1 and 2 -1,  1 1 and 1 -2,  1 1 and 0 3
//
// so that with r for the one of 1 1, and x = b / 3, the other one and the cross constant are
// multiples of r and b. In a centered lattice b belongs to the half of 110, and x is four times as
// large.
struct Condition {
  float r, b;            // the other constant
  float crossr, crossb;  // the cross constant
};
constexpr Condition kConditions[] = {
    {0, 3, 0, 2},
    {1, 1, 2, -2},
    {4, -1, 4, -2},
    {9, -3, 6, -2},
};

bool Holds(const Condition& k, float r, float b, float other, float cross, float t) {
  return std::abs(k.r * r + k.b * b - other) <= t &&
         std::abs(std::abs(k.crossr * r + k.crossb * b) - std::abs(cross)) <= t;
}

// The constant that is r, if one is, for an axis across the other two.
std::optional<float> RhombohedralConstant(const Constants& c, int axis, float t) {
  const int next = (axis + 1) % 3, last = (axis + 2) % 3;
  if (!(std::abs(c.cross[next]) + std::abs(c.cross[last]) <= t)) return {};
  for (const Condition& k : kConditions)
    for (const auto& [r, other] : {std::pair(c.q[next], c.q[last]), {c.q[last], c.q[next]}})
      if (Holds(k, r, c.q[axis], other, c.cross[axis], t)) return r;
  return {};
}

std::string RhombohedralText(float x, float z, float b, int type) {
  std::string text = WriteRecord<
      "901(1h+, 12x, 24h rhombohedral, with the   ,45h (hexagonal) reciprocal lattice constants  "
      "x=,f9.2,4h  z=,f9.2/ 29h and the direct constants  a=, f7.4,4h  c=,f7.4 )">(
      x, z, 2 * Edge(b), Edge(z));
  if (type < kPrimitive)
    text += "\n" +
            WriteRecord<"902(21h probably x should be, f10.2,8h  and a   ,f8.4)">(4 * x, Edge(b));
  return text;
}

Texts Rhombohedral(const Constants& c, float t) {
  constexpr float least = 1;
  for (int axis : {1, 2, 0}) {
    const auto r = RhombohedralConstant(c, axis, t);
    if (!r) continue;
    const float b = c.q[axis], x = b / 3, z = *r - x;
    if (z < least) return {};
    return {RhombohedralText(x, z, b, c.type)};
  }
  return {};
}

Texts Special(const Constants& c, float t) {
  const auto& [d, e, f] = c.cross;
  const bool orthogonal = std::abs(f) + std::abs(d) <= t && std::abs(e) < t;
  return orthogonal ? Orthogonal(c, t) : Rhombohedral(c, t);
}

}  // namespace

void SpecialLattices(const Lattice& t, float eqtol, Listing& listing) {
  const Constants c{{t.a, t.b, t.c}, {t.d, t.e, t.f}, nint(t.type)};
  if (!(t.a > 0 && t.b > 0 && t.c > 0)) return;
  Texts told;
  for (const bool strict : {true, false})
    for (const std::string& text : Special(c, strict ? eqtol : 3 * eqtol)) {
      if (std::ranges::find(told, text) != told.end()) continue;
      listing.Put<"900(52h0the lattice with the reciprocal lattice constants  , 6f9.2 )">(
          t.a, t.b, t.c, t.d, t.e, t.f);
      if (strict)
        listing.Put<"921(12h is probably    )">();
      else
        listing.Put<"922(12h   might be     )">();
      listing.Lines(text);
      told.push_back(text);
    }
}
