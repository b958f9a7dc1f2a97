// The conventional cell of a lattice, by the axes of its rotations.
#include <algorithm>
#include <cmath>
#include <numeric>

#include "index/find/symmetry.h"

namespace {

using Vector = std::array<int, 3>;
using enum LatticeSystem;

Vector Image(const Vector& v, const Rotation& r) {
  Vector image{};
  for (std::size_t j = 0; j < 3; ++j)
    for (std::size_t i = 0; i < 3; ++i) image[j] += v[i] * r[i][j];
  return image;
}

int OrderOf(const Rotation& r) {
  switch (r[0][0] + r[1][1] + r[2][2]) {
    case 3:
      return 1;
    case -1:
      return 2;
    case 0:
      return 3;
    case 1:
      return 4;
    default:
      return 6;
  }
}

Vector Opposite(const Vector& v) { return {-v[0], -v[1], -v[2]}; }

// The shortest lattice vector along the axis of a rotation; either of the two.
Vector AxisOf(const Rotation& r) {
  for (Vector v : {Vector{1, 0, 0}, Vector{0, 1, 0}, Vector{0, 0, 1}}) {
    Vector sum{};
    for (int turn = 0; turn < OrderOf(r); ++turn, v = Image(v, r))
      for (std::size_t i = 0; i < 3; ++i) sum[i] += v[i];
    const int divisor = std::gcd(std::gcd(sum[0], sum[1]), sum[2]);
    if (divisor == 0) continue;
    for (int& x : sum) x /= divisor;
    return sum;
  }
  return {};
}

std::vector<Rotation> OfOrder(const SymmetricLattice& lattice, int order) {
  std::vector<Rotation> found;
  std::ranges::copy_if(lattice.group, std::back_inserter(found),
                       [&](const Rotation& r) { return OrderOf(r) == order; });
  return found;
}

double Product(const Form& f, const Vector& u, const Vector& v) {
  const auto square = [&](const Vector& w) { return Value(f, {w[0], w[1], w[2]}); };
  return (square({u[0] + v[0], u[1] + v[1], u[2] + v[2]}) - square(u) - square(v)) / 2;
}

double Length(const Form& f, const Vector& v) { return std::sqrt(Product(f, v, v)); }

// The lattice vectors across an axis, by rising length; one of each two opposites.
std::vector<Vector> Across(const Form& f, const Vector& axis) {
  constexpr int kMost = 3;
  std::vector<Vector> vectors;
  for (int x = 0; x <= kMost; ++x)
    for (int y = -kMost; y <= kMost; ++y)
      for (int z = -kMost; z <= kMost; ++z) {
        const Vector v{x, y, z};
        if (v <= Vector{0, 0, 0}) continue;
        const double product = Product(f, v, axis);
        if (product * product < 1e-8 * Product(f, v, v) * Product(f, axis, axis))
          vectors.push_back(v);
      }
  std::ranges::stable_sort(vectors, {}, [&](const Vector& v) { return Length(f, v); });
  return vectors;
}

int Determinant(const Rotation& r) {
  return r[0][0] * (r[1][1] * r[2][2] - r[1][2] * r[2][1]) -
         r[0][1] * (r[1][0] * r[2][2] - r[1][2] * r[2][0]) +
         r[0][2] * (r[1][0] * r[2][1] - r[1][1] * r[2][0]);
}

// Whether a point, in parts of so many of the axes, is one of the lattice.
bool HasPoint(const Rotation& axes, const Vector& parts, int of) {
  const Vector v = Image(parts, axes);
  return std::ranges::all_of(v, [of](int x) { return x % of == 0; });
}

char CenteringOf(const Rotation& axes) {
  switch (Determinant(axes)) {
    case 1:
      return 'P';
    case 3:
      return 'R';
    case 4:
      return 'F';
    default:
      break;
  }
  if (HasPoint(axes, {1, 1, 1}, 2)) return 'I';
  if (HasPoint(axes, {1, 1, 0}, 2)) return 'C';
  return HasPoint(axes, {0, 1, 1}, 2) ? 'A' : 'B';
}

Rotation RightHanded(Rotation axes) {
  if (Determinant(axes) < 0)
    for (Vector& v : axes) v = Opposite(v);
  return axes;
}

Rotation MonoclinicAxes(const SymmetricLattice& lattice) {
  const Form& f = lattice.direct;
  const Vector b = AxisOf(OfOrder(lattice, 2).front());
  const auto across = Across(f, b);
  // The two shortest ones, turned so that their angle is obtuse.
  Vector a = across.front();
  Vector c = *std::ranges::find_if(across, [&](const Vector& v) {
    return Determinant(Rotation{a, b, v}) != 0;
  });
  if (Product(f, a, c) > 0) c = Opposite(c);
  if (CenteringOf({a, b, c}) == 'A') std::swap(a, c);
  Rotation axes{a, b, c};
  if (Determinant(axes) < 0) axes[1] = Opposite(b);
  return axes;
}

// Axes of two- or fourfold rotations that stand on each other.
Rotation OrthogonalAxes(const SymmetricLattice& lattice, int order) {
  std::vector<Vector> axes;
  for (const Rotation& r : OfOrder(lattice, order)) {
    const Vector v = AxisOf(r);
    if (std::ranges::count(axes, v) + std::ranges::count(axes, Opposite(v)) == 0) axes.push_back(v);
  }
  std::ranges::stable_sort(axes, {}, [&](const Vector& v) { return Length(lattice.direct, v); });
  Rotation ordered{axes[0], axes[1], axes[2]};
  // The centred face of one-face centred cells is that of a and b.
  if (const char face = CenteringOf(ordered); face == 'A')
    ordered = {ordered[1], ordered[2], ordered[0]};
  else if (face == 'B')
    ordered = {ordered[0], ordered[2], ordered[1]};
  return RightHanded(ordered);
}

// c along the main axis, a the shortest vector across it, b the image of a.
Rotation UniaxialAxes(const SymmetricLattice& lattice, const Rotation& main) {
  const Vector c = AxisOf(main), a = Across(lattice.direct, c).front();
  Rotation axes = RightHanded({a, Image(a, main), c});
  if (Determinant(axes) == 3 && !HasPoint(axes, {2, 1, 1}, 3))
    axes = {Opposite(axes[0]), Opposite(axes[1]), axes[2]};
  return axes;
}

Rotation AxesFor(const SymmetricLattice& lattice) {
  switch (lattice.system) {
    case Triclinic:
      return {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    case Monoclinic:
      return MonoclinicAxes(lattice);
    case Orthorhombic:
      return OrthogonalAxes(lattice, 2);
    case Tetragonal:
      return UniaxialAxes(lattice, OfOrder(lattice, 4).front());
    case Rhombohedral:
    case Hexagonal:
      return UniaxialAxes(lattice, OfOrder(lattice, 3).front());
    case Cubic:
      return OrthogonalAxes(lattice, 4);
  }
  return {};
}

}  // namespace

ConventionalAxes Conventional(const SymmetricLattice& lattice) {
  const Rotation axes = AxesFor(lattice);
  return {CenteringOf(axes), axes};
}
