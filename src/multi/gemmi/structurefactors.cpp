// Reflections of a structure with their structure factors.
#include "multi/gemmi/structurefactors.h"

#include <cmath>
#include <complex>
#include <gemmi/fprime.hpp>
#include <gemmi/it92.hpp>
#include <gemmi/sfcalc.hpp>
#include <map>
#include <numbers>
#include <tuple>

#include "multi/gemmi/structuresymmetry.h"
#include "patternfiles/import/measured.h"  // for NotReadable

namespace {

using gemmi::Miller;
using Scattering = gemmi::IT92<double>;

constexpr double kElectronvolts = 12398.4198;  // of a photon, times its wavelength in angstrom
// Reflections times atoms of the cell: about half a second.
constexpr double kMostWork = 1e7;
constexpr double kMostTried = 1e7;  // triples of indices

// Of the elements of a structure, f' and f''.
using Dispersion = std::map<gemmi::El, std::complex<double>>;

Dispersion DispersionOf(const gemmi::SmallStructure& crystal, double wavelength) {
  Dispersion dispersion;
  for (const auto& site : crystal.sites) {
    double imaginary = 0;
    const double real = gemmi::cromer_liberman(site.element.atomic_number(),
                                               kElectronvolts / wavelength, &imaginary);
    dispersion[site.element.elem] = {real, imaginary};
  }
  return dispersion;
}

// Whether all indices up to this d, equivalent ones counted once, are too many.
bool IsTooMuch(const StructureModel& model, double d) {
  const auto& cell = model.crystal.cell;
  const double points = 4 * std::numbers::pi / 3 * cell.volume / (d * d * d);
  const double tried = (2 * cell.a / d + 1) * (2 * cell.b / d + 1) * (2 * cell.c / d + 1);
  const auto rotations = static_cast<double>(model.operators.sym_ops.size());
  const double equivalents = rotations * (model.operators.is_centrosymmetric() ? 1 : 2);
  const auto atoms = static_cast<double>(model.crystal.sites.size() * (cell.images.size() + 1));
  return tried > kMostTried || points / equivalents * atoms > kMostWork;
}

// Indices as tables print them: as few negative ones as can be, then l and k positive, then h, k
// and l as high as can be.
auto PrintedRank(const Miller& m) {
  return std::tuple((m[0] >= 0) + (m[1] >= 0) + (m[2] >= 0), m[2] >= 0, m[1] >= 0, m);
}

class Factors {
 public:
  Factors(const gemmi::SmallStructure& crystal, double wavelength)
      : crystal_(crystal),
        dispersion_(DispersionOf(crystal, wavelength)),
        calculator_(crystal.cell) {}

  // The mean of both Friedel mates: the cross term of f'' changes its sign between them.
  double Square(const Miller& hkl) {
    calculator_.set_stol2_and_scattering_factors(hkl);
    const double s = crystal_.cell.calculate_stol_sq(hkl);
    std::complex<double> real, imaginary;
    for (const auto& site : crystal_.sites) {
      const auto sum = calculator_.calculate_sf_from_atom_sf(site.fract, site, hkl, 1.0);
      const std::complex<double> extra = dispersion_.at(site.element.elem);
      real += (Scattering::get(site.element.elem).calculate_sf(s) + extra.real()) * sum;
      imaginary += extra.imag() * sum;
    }
    return std::norm(real) + std::norm(imaginary);
  }

 private:
  const gemmi::SmallStructure& crystal_;
  Dispersion dispersion_;
  gemmi::StructureFactorCalculator<Scattering> calculator_;
};

}  // namespace

StructureReflections ReflectionsOf(const StructureModel& model, double wavelength, double shortest,
                                   double longest) {
  while (IsTooMuch(model, shortest)) shortest *= 1.05;
  StructureReflections found{{}, shortest};
  const auto& cell = model.crystal.cell;
  Factors factors(model.crystal, wavelength);
  const Miller most = cell.get_hkl_limits(shortest);
  const auto take = [&](const Miller& hkl) {
    const double d = 1 / std::sqrt(cell.calculate_1_d2(hkl));
    if (!(d >= shortest && d <= longest) || model.operators.is_systematically_absent(hkl)) return;
    const auto all = EquivalentsOf(hkl, model.operators);
    for (const Miller& other : all)
      if (PrintedRank(other) > PrintedRank(hkl)) return;
    const double square = factors.Square(hkl);
    if (!std::isfinite(square)) throw NotReadable("its structure factors are no numbers");
    found.rows.push_back({{hkl[0], hkl[1], hkl[2]}, static_cast<int>(all.size()), d, square});
  };
  for (int h = -most[0]; h <= most[0]; ++h)
    for (int k = -most[1]; k <= most[1]; ++k)
      for (int l = -most[2]; l <= most[2]; ++l) take({h, k, l});
  return found;
}
