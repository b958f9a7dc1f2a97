// The standard form of a lattice.
#include <algorithm>
#include <array>
#include <cmath>

#include "crystal/hklcode.h"
#include "index/ito/lattices.h"

namespace {

// What a step may still change of a lattice that is at rest, as a sum over its constants.
constexpr float kAtRest = 0.1f;

void Rotate(Lattice& x) {
  x = {.a = x.b,
       .b = x.c,
       .c = x.a,
       .d = x.e,
       .e = x.f,
       .f = x.d,
       .lines = x.lines,
       .merit = x.merit,
       .type = x.type,
       .pedigree = x.pedigree};
}

void MakePositive(Lattice& x) {
  if (!(x.f > 0)) x.f = -x.f, x.d = -x.d;
  if (!(x.e > 0)) x.e = -x.e, x.d = -x.d;
}

// Takes the rectangle for the net of a and c if that is rhombic: along its diagonals where a and c
// are as long, or along the one of both with which a diagonal is as long as the other.
void MakeRectangular(Lattice& x, float equal) {
  // Half of the edge q, and what is at right angles to it.
  const auto halve = [&x](float& q, float& other, float& cross, float& othercross) {
    q = q / 4;
    other = other - q;
    cross = cross / 2;
    othercross = std::abs(othercross - cross);
    x.e = 0;
  };
  if (std::abs(x.c - x.a) <= equal && x.e >= equal) {
    x.a = (x.a + x.c + x.e) / 4;
    x.c = x.a - x.e / 2;
    x.f = (x.d + x.f) / 2;
    x.d = std::abs(x.d - x.f);
    x.e = 0;
  }
  if (std::abs(x.e - x.a) <= equal) halve(x.a, x.c, x.f, x.d);
  if (std::abs(x.e - x.c) <= equal) halve(x.c, x.a, x.d, x.f);
  for (float* cross : {&x.d, &x.e, &x.f})
    if (std::abs(*cross) <= equal) *cross = 0;
}

// False if an edge is beyond the limit, or no rest is found.
bool Straighten(Lattice& x, const ItoProblem& problem) {
  constexpr int most = 50, axes = 3;
  for (int pass = 0; pass < most; ++pass) {
    const Lattice before = x;
    for (int axis = 0; axis < axes; ++axis) {
      Rotate(x);
      if (!(x.c >= problem.abclimit)) return false;
      MakePositive(x);
      MakeRectangular(x, problem.eqtol);
    }
    if (!(Difference(before, x) > kAtRest)) return true;
  }
  return false;
}

float LengthOf(const Lattice& x, const Hkl& r) {
  const auto h = static_cast<float>(r.h), k = static_cast<float>(r.k), l = static_cast<float>(r.l);
  return h * h * x.a + k * k * x.b + l * l * x.c + k * l * x.d + l * h * x.e + h * k * x.f;
}

int Determinant(const Hkl& u, const Hkl& v, const Hkl& w) {
  return u.h * (v.k * w.l - v.l * w.k) - u.k * (v.h * w.l - v.l * w.h) +
         u.l * (v.h * w.k - v.k * w.h);
}

struct Vector {
  Hkl indices;
  float q;
};

// The vectors with indices up to 1, each without its opposite, from short to long.
std::vector<Vector> ShortVectors(const Lattice& x) {
  std::vector<Vector> vectors;
  for (int h = 0; h <= 1; ++h)
    for (int k = -1; k <= 1; ++k)
      for (int l = -1; l <= 1; ++l) {
        const bool opposite = h == 0 && (k < 0 || (k == 0 && l <= 0));
        if (!opposite) vectors.push_back({{h, k, l}, LengthOf(x, {h, k, l})});
      }
  std::stable_sort(vectors.begin(), vectors.end(),
                   [](const Vector& one, const Vector& other) { return one.q < other.q; });
  return vectors;
}

float Cross(const Lattice& x, const Hkl& u, const Hkl& w) {
  return (LengthOf(x, {u.h + w.h, u.k + w.k, u.l + w.l}) -
          LengthOf(x, {u.h - w.h, u.k - w.k, u.l - w.l})) /
         2;
}

// Takes the three shortest vectors for axes. False if the lattice is not positive definite.
bool TakeShortest(Lattice& x) {
  constexpr float least = -0.1f;
  const std::vector<Vector> vectors = ShortVectors(x);
  if (!(vectors.front().q >= least)) return false;
  const Vector &u = vectors[0], &v = vectors[1];
  const auto w = std::find_if(vectors.begin() + 2, vectors.end(), [&](const Vector& third) {
    return Determinant(u.indices, v.indices, third.indices) != 0;
  });
  const Lattice old = x;
  x.a = u.q, x.b = v.q, x.c = w->q;
  x.d = Cross(old, v.indices, w->indices);
  x.e = Cross(old, w->indices, u.indices);
  x.f = Cross(old, u.indices, v.indices);
  return true;
}

}  // namespace

bool Norm3(Lattice& lattice, const ItoProblem& problem, Listing* test) {
  constexpr int most = 50;
  const Lattice given = lattice;
  bool good = true;
  for (int round = 0; good && round < most; ++round) {
    const Lattice before = lattice;
    good = Straighten(lattice, problem) && TakeShortest(lattice);
    if (!(Difference(before, lattice) > kAtRest)) break;
  }
  if (!good) lattice.a = 0;
  if (test) {
    test->Put<"('  norm3 of    ',6f9.2)">(given.a, given.b, given.c, given.d, given.e, given.f);
    test->Put<"('        gives ',6f9.2)">(lattice.a, lattice.b, lattice.c, lattice.d, lattice.e,
                                          lattice.f);
  }
  return good;
}
