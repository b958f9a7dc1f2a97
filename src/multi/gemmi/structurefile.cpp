// The structure in a CIF: cell, symmetry and atoms of the first block that has atoms.
//
//   _cell_length_a 3.905(1)
//   _symmetry_space_group_name_H-M 'P m -3 m'
//   loop_
//   _atom_site_label
//   _atom_site_fract_x
//   ...
//
// Names with a dot, as newer dictionaries have them, are taken as those with a line. Displacement
// factors are U or B, anisotropic ones first.
#include <cmath>
#include <gemmi/cif.hpp>
#include <gemmi/elem.hpp>
#include <gemmi/it92.hpp>
#include <gemmi/numb.hpp>
#include <map>
#include <memory>

#include "multi/gemmi/structurefactors.h"
#include "multi/gemmi/structuresymmetry.h"
#include "patternfiles/import/measured.h"  // for NotReadable
#include "workspace/text.h"

namespace {

using gemmi::cif::as_number;
using gemmi::cif::as_string;
using gemmi::cif::Block;
using Site = gemmi::SmallStructure::Site;

constexpr double kUsualB = 0.5;        // of sites without a displacement factor
constexpr double kSamePlace = 0.25;    // angstrom; images of a site that are one atom
constexpr double kMostAtoms = 5000;    // in the cell
constexpr double kLongestEdge = 1000;  // angstrom
constexpr int kNameLength = 40;

gemmi::cif::Document Parsed(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  gemmi::cif::Document document;
  try {
    tao::pegtl::memory_input<> input(bytes.data(), bytes.size(), "line");
    gemmi::cif::parse_input(document, input);
  } catch (const std::exception& failure) {
    throw NotReadable(std::string("it is no CIF, ") + failure.what());
  }
  return document;
}

void ReplaceDots(Block& block) {
  const auto replace = [](std::string& tag) { std::ranges::replace(tag, '.', '_'); };
  for (auto& item : block.items) {
    if (item.type == gemmi::cif::ItemType::Pair) replace(item.pair[0]);
    if (item.type != gemmi::cif::ItemType::Loop) continue;
    for (std::string& tag : item.loop.tags) replace(tag);
  }
}

Block& BlockWithAtoms(gemmi::cif::Document& document) {
  for (Block& block : document.blocks) {
    ReplaceDots(block);
    for (const std::string& x : block.find_values("_atom_site_fract_x"))
      if (std::isfinite(as_number(x))) return block;
  }
  throw NotReadable("it holds no atoms with fractional coordinates");
}

// Angles that are not given are right ones.
gemmi::UnitCell CellOf(Block& block) {
  const auto number = [&](const char* tag, double missing) {
    return as_number(FirstValue(block, {tag}), missing);
  };
  const double a = number("_cell_length_a", 0), b = number("_cell_length_b", 0),
               c = number("_cell_length_c", 0);
  gemmi::UnitCell cell;
  const double angles[] = {number("_cell_angle_alpha", 90), number("_cell_angle_beta", 90),
                           number("_cell_angle_gamma", 90)};
  for (const double edge : {a, b, c})
    if (!(edge >= 1 && edge <= kLongestEdge)) throw NotReadable("it tells no cell for its atoms");
  for (const double angle : angles)
    if (!(angle > 0 && angle < 180)) throw NotReadable("the angles of its cell are none");
  cell.set(a, b, c, angles[0], angles[1], angles[2]);
  if (!(cell.volume > 1)) throw NotReadable("its cell has no volume");
  return cell;
}

// ---- Atoms ----

// Of two letters that are none the first may be: "Ow" is an oxygen.
gemmi::Element ElementIn(const std::string& text) {
  static constexpr std::string_view kAlone = "HCNO";
  Site site;
  gemmi::split_element_and_charge(text, &site);
  if (site.element == gemmi::El::X && kAlone.find(text[0]) != kAlone.npos)
    site.element = gemmi::Element(text.substr(0, 1));
  return site.element;
}

// By the symbol of the type, "Fe3+", or by the label where that is none.
gemmi::Element ElementOf(const std::string& symbol, const std::string& label) {
  for (const std::string& text : {symbol, label}) {
    if (text.empty()) continue;
    const gemmi::Element element = ElementIn(text);
    if (element != gemmi::El::X && gemmi::IT92<double>::has(element.elem)) return element;
  }
  throw NotReadable("its atom \"" + Field(label, kNameLength) + "\" is of no known element");
}

using Tensors = std::map<std::string, gemmi::SMat33<double>>;

// By the labels of the sites.
void AddTensors(Block& block, char letter, double factor, Tensors& tensors) {
  std::vector<std::string> tags{"label"};
  for (const char* place : {"11", "22", "33", "12", "13", "23"})
    tags.push_back(std::string(1, letter) + "_" + place);
  for (auto row : block.find("_atom_site_aniso_", tags)) {
    const auto value = [&](int k) { return factor * as_number(row[k], 0.0); };
    const gemmi::SMat33<double> u{value(1), value(2), value(3), value(4), value(5), value(6)};
    if (u.u11 > 0 && u.u22 > 0 && u.u33 > 0) tensors[row.str(0)] = u;
  }
}

Tensors TensorsOf(Block& block) {
  Tensors tensors;
  AddTensors(block, 'B', 1 / gemmi::u_to_b(), tensors);
  AddTensors(block, 'U', 1, tensors);
  return tensors;
}

enum SiteColumn { Label, X, Y, Z, Symbol, U, B, Occupancy, Flag };

// None for dummies, and for atoms that are known to be there and not where.
std::vector<Site> SitesOf(Block& block) {
  const Tensors tensors = TensorsOf(block);
  std::vector<Site> sites;
  for (auto row : block.find("_atom_site_",
                             {"label", "fract_x", "fract_y", "fract_z", "?type_symbol",
                              "?U_iso_or_equiv", "?B_iso_or_equiv", "?occupancy", "?calc_flag"})) {
    const auto number = [&](int k, double missing) {
      return row.has(k) ? as_number(row[k], missing) : missing;
    };
    Site site;
    site.label = row.str(Label);
    site.fract = {number(X, NAN), number(Y, NAN), number(Z, NAN)};
    const bool placed = std::abs(site.fract.x) < 100 && std::abs(site.fract.y) < 100 &&
                        std::abs(site.fract.z) < 100;
    if (!placed || (row.has(Flag) && row.str(Flag) == "dum")) continue;
    site.element = ElementOf(row.has(Symbol) ? row.str(Symbol) : "", site.label);
    site.occ = number(Occupancy, 1);
    if (!(std::abs(site.occ) <= 10)) site.occ = 1;
    if (const auto tensor = tensors.find(site.label); tensor != tensors.end())
      site.aniso = tensor->second;
    site.u_iso = number(U, 0);
    if (site.u_iso == 0) site.u_iso = number(B, 0) / gemmi::u_to_b();
    if (site.u_iso == 0) site.u_iso = kUsualB / gemmi::u_to_b();
    sites.push_back(site);
  }
  if (sites.empty()) throw NotReadable("its atoms have no labels or no coordinates");
  return sites;
}

// Gives the cell its images, and each site its share of the atoms that they make of it.
void Complete(StructureModel& model) {
  auto& [crystal, operators] = model;
  for (const gemmi::Op op : operators)
    if (op != gemmi::Op::identity())
      crystal.cell.images.push_back(
          gemmi::Transform{gemmi::rot_as_mat33(op), gemmi::tran_as_vec3(op)});
  const auto images = static_cast<double>(operators.order());
  if (static_cast<double>(crystal.sites.size()) * images > 100 * kMostAtoms)
    throw NotReadable("it has more than " + Fixed(kMostAtoms, 0) + " atoms in its cell");
  double atoms = 0;
  for (Site& site : crystal.sites) {
    const int order = crystal.cell.is_special_position(site.fract, kSamePlace) + 1;
    site.occ /= order;
    atoms += images / order;
  }
  if (atoms > kMostAtoms)
    throw NotReadable("it has more than " + Fixed(kMostAtoms, 0) + " atoms in its cell");
}

// ---- Texts ----

std::string NameOf(Block& block, const std::string& path) {
  const std::string name = FirstValue(block, {"_chemical_name_mineral", "_chemical_name_common",
                                              "_pd_phase_name", "_chemical_name_systematic"});
  return Field(name.empty() ? FileStem(path) : name, kNameLength);
}

std::string FormulaOf(Block& block) {
  std::string formula =
      FirstValue(block, {"_chemical_formula_sum", "_chemical_formula_structural"});
  std::erase(formula, ' ');
  return Field(formula, kNameLength);
}

}  // namespace

CrystalStructure ReadStructure(std::string_view bytes, const std::string& path) {
  gemmi::cif::Document document = Parsed(bytes);
  Block& block = BlockWithAtoms(document);
  auto model = std::make_shared<StructureModel>();
  gemmi::UnitCell& cell = model->crystal.cell;
  cell = CellOf(block);
  const StructureSymmetry symmetry = SymmetryOf(block, cell);
  model->operators = symmetry.operators;
  model->crystal.sites = SitesOf(block);
  Complete(*model);

  CrystalStructure structure;
  structure.name = NameOf(block, path);
  structure.formula = FormulaOf(block);
  structure.group = Field(symmetry.group);
  int constant = 0;
  for (const double value : {cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma})
    structure.cell(++constant) = static_cast<float>(value);
  structure.laueclass = symmetry.laueclass;
  structure.centering = symmetry.centering;
  structure.reflections = [model](double wavelength, double shortest, double longest) {
    return ReflectionsOf(*model, wavelength, shortest, longest);
  };
  return structure;
}
