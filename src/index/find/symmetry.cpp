// The symmetry of a lattice, by its metric alone.
//
// A rotation that keeps a lattice takes the reduced axes to vectors of the same lengths and
// products, whose indices on these axes are -1, 0 or 1. All such triples within a tolerance are
// collected, which does not mind that a reduction is not stable against errors; the metric is then
// averaged over them.
#include "index/find/symmetry.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

using Vector = std::array<int, 3>;

double Product(const Form& f, const Vector& u, const Vector& v) {
  const auto x = [](int n) { return static_cast<double>(n); };
  return f[0] * x(u[0] * v[0]) + f[1] * x(u[1] * v[1]) + f[2] * x(u[2] * v[2]) +
         f[3] / 2 * x(u[0] * v[1] + u[1] * v[0]) + f[4] / 2 * x(u[0] * v[2] + u[2] * v[0]) +
         f[5] / 2 * x(u[1] * v[2] + u[2] * v[1]);
}

constexpr std::array<Vector, 26> kShortVectors = [] {
  std::array<Vector, 26> vectors{};
  std::size_t at = 0;
  for (int x = -1; x <= 1; ++x)
    for (int y = -1; y <= 1; ++y)
      for (int z = -1; z <= 1; ++z)
        if (x != 0 || y != 0 || z != 0) vectors[at++] = {x, y, z};
  return vectors;
}();

int Determinant(const Rotation& r) {
  return r[0][0] * (r[1][1] * r[2][2] - r[1][2] * r[2][1]) -
         r[0][1] * (r[1][0] * r[2][2] - r[1][2] * r[2][0]) +
         r[0][2] * (r[1][0] * r[2][1] - r[1][1] * r[2][0]);
}

constexpr std::array<Vector, 3> kAxes = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

// All rotations that turn one form into another, within a share of the products of its axes.
std::vector<Rotation> RotationsBetween(const Form& form, const Form& wanted, double tolerance) {
  const auto matches = [&](const Vector& u, const Vector& v, std::size_t i, std::size_t j) {
    return std::abs(Product(form, u, v) - Product(wanted, kAxes[i], kAxes[j])) <=
           tolerance * std::sqrt(wanted[i] * wanted[j]);
  };
  std::array<std::vector<Vector>, 3> images;
  for (std::size_t axis = 0; axis < 3; ++axis)
    std::ranges::copy_if(kShortVectors, std::back_inserter(images[axis]),
                         [&](const Vector& v) { return matches(v, v, axis, axis); });
  std::vector<Rotation> rotations;
  for (const Vector& a : images[0])
    for (const Vector& b : images[1]) {
      if (!matches(a, b, 0, 1)) continue;
      for (const Vector& c : images[2])
        if (matches(a, c, 0, 2) && matches(b, c, 1, 2) && Determinant({a, b, c}) == 1)
          rotations.push_back({a, b, c});
    }
  return rotations;
}

Rotation Times(const Rotation& r, const Rotation& s) {
  Rotation product{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = 0; k < 3; ++k) product[i][j] += r[i][k] * s[k][j];
  return product;
}

// Near a tolerance some members of a group may fall out.
bool IsGroup(const std::vector<Rotation>& set) {
  return std::ranges::all_of(set, [&](const Rotation& r) {
    return std::ranges::all_of(
        set, [&](const Rotation& s) { return std::ranges::count(set, Times(r, s)) == 1; });
  });
}

std::optional<LatticeSystem> SystemOf(std::size_t order) {
  using enum LatticeSystem;
  switch (order) {
    case 1:
      return Triclinic;
    case 2:
      return Monoclinic;
    case 4:
      return Orthorhombic;
    case 6:
      return Rhombohedral;
    case 8:
      return Tetragonal;
    case 12:
      return Hexagonal;
    case 24:
      return Cubic;
    default:
      return std::nullopt;
  }
}

// The forms that no member of the group changes, as an orthonormal set.
std::vector<Form> InvariantForms(const std::vector<Rotation>& group) {
  std::vector<Form> forms;
  for (std::size_t term = 0; term < 6; ++term) {
    Form one{}, mean{};
    one[term] = 1;
    for (const Rotation& r : group) {
      const Form image = OnAxes(one, AxesOf(r));
      for (std::size_t i = 0; i < 6; ++i) mean[i] += image[i] / static_cast<double>(group.size());
    }
    for (const Form& f : forms) {
      const double along = Dot(mean, f);
      for (std::size_t i = 0; i < 6; ++i) mean[i] -= along * f[i];
    }
    const double length = std::sqrt(Dot(mean, mean));
    if (length < 1e-6) continue;
    for (double& x : mean) x /= length;
    forms.push_back(mean);
  }
  return forms;
}

Form Average(const Form& form, const std::vector<Rotation>& group) {
  Form mean{};
  for (const Rotation& r : group) {
    const Form image = OnAxes(form, AxesOf(r));
    for (std::size_t i = 0; i < 6; ++i) mean[i] += image[i] / static_cast<double>(group.size());
  }
  return mean;
}

// Rotations of the reciprocal axes.
std::vector<Rotation> Transposed(const std::vector<Rotation>& group) {
  std::vector<Rotation> transposed;
  for (const Rotation& r : group) {
    Rotation t;
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t j = 0; j < 3; ++j) t[i][j] = r[j][i];
    transposed.push_back(t);  // of the inverse, which is a member too
  }
  return transposed;
}

}  // namespace

std::vector<SymmetricLattice> SymmetriesOf(const Form& reduced) {
  std::vector<SymmetricLattice> lattices;
  for (double tolerance : {1e-4, 2e-3, 5e-3, 1e-2, 2e-2, 3e-2}) {
    std::vector<Rotation> group = RotationsBetween(reduced, reduced, tolerance);
    const auto system = SystemOf(group.size());
    if (!system || !IsGroup(group)) continue;
    if (!lattices.empty() && lattices.back().group.size() == group.size()) continue;
    std::vector<Form> parameters = InvariantForms(Transposed(group));
    lattices.push_back({*system, Average(reduced, group), std::move(group), std::move(parameters)});
  }
  return lattices;
}

bool IsSameLattice(const Form& reduced, const Form& other, double tolerance) {
  for (std::size_t i = 0; i < 3; ++i)
    if (std::abs(reduced[i] - other[i]) > tolerance * other[i]) return false;
  return !RotationsBetween(reduced, other, tolerance).empty();
}

Axes AxesOf(const Rotation& r) {
  Axes axes;
  for (std::size_t i = 0; i < 3; ++i) std::ranges::copy(r[i], axes[i].begin());
  return axes;
}
