// Computes tools/examplelines.h, the lines of the structures of the example patterns. The only tool
// that needs the gemmi library.
//
//   structureintensities tools/structures > tools/examplelines.h
//
// Scattering factors of neutral atoms (International Tables C) with the dispersion of Cromer and
// Liberman at the example's wavelength, and isotropic displacements. What a space group forbids is
// left out, and so is what atoms on special positions extinguish.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdio>
#include <exception>
#include <gemmi/cif.hpp>
#include <gemmi/fprime.hpp>
#include <gemmi/it92.hpp>
#include <gemmi/reciproc.hpp>
#include <gemmi/smcif.hpp>
#include <map>
#include <numbers>
#include <string>
#include <tuple>
#include <vector>

#include "examples.h"

namespace {

using gemmi::Miller;
constexpr double kElectronvolts = 12398.4198;  // of a photon, times its wavelength in angstrom
constexpr double kExtinct = 1e-6;              // of the strongest

struct Crystal {
  gemmi::UnitCell cell;
  const gemmi::SpaceGroup* group;
  std::string source;
  std::vector<gemmi::SmallStructure::Site> atoms;        // all of the cell
  std::map<gemmi::El, std::complex<double>> dispersion;  // f' + i f"
};

// A block of text on one line.
std::string OneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return gemmi::trim_str(text);
}

Crystal ReadCrystal(const std::string& path, double wavelength) {
  const auto document = gemmi::cif::read_file(path);
  const auto& block = document.sole_block();
  const auto structure = gemmi::make_small_structure_from_block(block);
  const auto* source = block.find_value("_publ_section_references");
  Crystal crystal{
      structure.cell, structure.find_spacegroup(), "", structure.get_all_unit_cell_sites(), {}};
  // An unknown group would otherwise count as P1.
  if (!crystal.group || !source) gemmi::fail(path + ": no source or no known space group");
  crystal.source = OneLine(gemmi::cif::as_string(*source));
  for (const auto& atom : crystal.atoms) {
    double imaginary = 0;
    const double real = gemmi::cromer_liberman(atom.element.atomic_number(),
                                               kElectronvolts / wavelength, &imaginary);
    crystal.dispersion[atom.element.elem] = {real, imaginary};
  }
  return crystal;
}

double SquaredFactor(const Crystal& crystal, const Miller& hkl) {
  const double s = crystal.cell.calculate_stol_sq(hkl);
  std::complex<double> f, opposite;
  for (const auto& atom : crystal.atoms) {
    const auto scattered = atom.occ * std::exp(-gemmi::u_to_b() * atom.u_iso * s) *
                           (gemmi::IT92<double>::get(atom.element.elem).calculate_sf(s) +
                            crystal.dispersion.at(atom.element.elem));
    const double phase = 2 * std::numbers::pi *
                         (hkl[0] * atom.fract.x + hkl[1] * atom.fract.y + hkl[2] * atom.fract.z);
    f += scattered * std::polar(1.0, phase);
    opposite += scattered * std::polar(1.0, -phase);
  }
  return (std::norm(f) + std::norm(opposite)) / 2;
}

std::vector<Miller> Equivalents(const Miller& hkl, const gemmi::GroupOps& group) {
  std::vector<Miller> all;
  for (const gemmi::Op& op : group.sym_ops) {
    const Miller image = op.apply_to_hkl(hkl);
    all.push_back(image);
    all.push_back({-image[0], -image[1], -image[2]});
  }
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

// Indices as tables print them: as few negative ones as can be, then l and k positive, then h, k
// and l as high as can be.
bool IsPrintedAfter(const Miller& a, const Miller& b) {
  const auto key = [](const Miller& m) {
    return std::tuple((m[0] >= 0) + (m[1] >= 0) + (m[2] >= 0), m[2] >= 0, m[1] >= 0, m);
  };
  return key(a) < key(b);
}

std::vector<Line> Lines(const Crystal& crystal, double dmin) {
  std::vector<Line> lines;
  const gemmi::GroupOps group = crystal.group->operations();
  for (const Miller& hkl : gemmi::make_miller_vector(crystal.cell, crystal.group, dmin)) {
    const auto all = Equivalents(hkl, group);
    const Miller& m = *std::max_element(all.begin(), all.end(), IsPrintedAfter);
    if (m == Miller{0, 0, 0}) continue;
    lines.push_back({m[0], m[1], m[2], static_cast<int>(all.size()), crystal.cell.calculate_d(m),
                     SquaredFactor(crystal, m)});
  }
  const auto weaker = [](const Line& a, const Line& b) { return a.square < b.square; };
  const double strongest = std::max_element(lines.begin(), lines.end(), weaker)->square;
  std::erase_if(lines, [&](const Line& line) { return line.square < kExtinct * strongest; });
  std::stable_sort(lines.begin(), lines.end(),
                   [](const Line& a, const Line& b) { return a.d > b.d; });
  return lines;
}

// Lines somewhat beyond the end reach into the pattern with their tails.
double ShortestD(const Example& example) {
  const double theta = std::min(90.0, (example.stop() + 2) / 2) * std::numbers::pi / 180;
  return example.wavelength / 2 / std::sin(theta);
}

// Prints the lines and returns the row of kStructures.
std::string PrintStructure(const std::string& name, const Crystal& crystal, double dmin) {
  const std::string table =
      std::string("k") + static_cast<char>(name[0] - 'a' + 'A') + name.substr(1);
  std::printf("\ninline constexpr Line %s[] = {\n", table.c_str());
  for (const Line& line : Lines(crystal, dmin))
    std::printf("    {%d, %d, %d, %d, %.6f, %.2f},\n", line.h, line.k, line.l, line.multiplicity,
                line.d, line.square);
  std::puts("};");
  const gemmi::UnitCell& c = crystal.cell;
  char cell[100];
  std::snprintf(cell, sizeof cell, "{%g, %g, %g, %g, %g, %g}", c.a, c.b, c.c, c.alpha, c.beta,
                c.gamma);
  return "    {\"" + name + "\",\n     \"" + crystal.source + "\",\n     " + cell + ", \"" +
         crystal.group->hm + "\", " + table + "},\n";
}

void PrintTable(const std::string& directory) {
  std::puts("// Lines of the structures of the example patterns: h, k, l, multiplicity, d, |F|^2.");
  std::puts("// Written by tools/structureintensities.cpp from tools/structures.");
  std::puts("#pragma once\n\n#include \"examples.h\"\n\n// clang-format off");
  std::string rows;
  for (const Example& example : kExamples)
    rows += PrintStructure(
        example.structure,
        ReadCrystal(directory + "/" + example.structure + ".cif", example.wavelength),
        ShortestD(example));
  std::printf("\ninline constexpr Structure kStructures[] = {\n%s};\n// clang-format on\n",
              rows.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: structureintensities DIRECTORY\n", stderr);
    return 1;
  }
  try {
    PrintTable(argv[1]);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
