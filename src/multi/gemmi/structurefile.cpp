// The structure in a CIF: cell, symmetry and atoms of the first block that has atoms.
//
//   _cell_length_a 3.905(1)
//   _symmetry_space_group_name_H-M 'P m -3 m'
//   loop_
//   _atom_site_label
//   _atom_site_fract_x
//   ...
//
// Displacement factors are U or B, anisotropic ones first.
#include <cmath>
#include <gemmi/elem.hpp>
#include <gemmi/it92.hpp>
#include <map>
#include <memory>

#include "multi/gemmi/structurefactors.h"
#include "multi/gemmi/structuresymmetry.h"
#include "patternfiles/import/measured.h"  // for NotReadable
#include "workspace/text.h"

namespace {

using Site = gemmi::SmallStructure::Site;

constexpr double kUsualB = 0.5;        // of sites without a displacement factor
constexpr double kSamePlace = 0.25;    // angstrom; images of a site that are one atom
constexpr double kFarthest = 100;      // fractional coordinate
constexpr double kMostAtoms = 5000;    // in the cell
constexpr double kLongestEdge = 1000;  // angstrom
constexpr int kNameLength = 40;

double NumberIn(const std::string& value, double missing) {
  const auto number = CifNumberIn(value);
  return number ? number->value : missing;
}

const CifBlock& BlockWithAtoms(const CifBlocks& blocks) {
  for (const CifBlock& block : blocks) {
    const CifValues* x = block.Find("_atom_site_fract_x");
    for (std::size_t i = 0; x && i < x->count; ++i)
      if (CifNumberIn((*x)[i])) return block;
  }
  throw NotReadable("it holds no atoms with fractional coordinates");
}

// Angles that are not given are right ones.
gemmi::UnitCell CellOf(const CifBlock& block) {
  static constexpr const char* kEdges[] = {"_cell_length_a", "_cell_length_b", "_cell_length_c"};
  static constexpr const char* kAngles[] = {"_cell_angle_alpha", "_cell_angle_beta",
                                            "_cell_angle_gamma"};
  double edge[3], angle[3];
  for (int k = 0; k < 3; ++k) {
    edge[k] = NumberIn(block.Text({kEdges[k]}), 0);
    angle[k] = NumberIn(block.Text({kAngles[k]}), 90);
    if (!(edge[k] >= 1 && edge[k] <= kLongestEdge))
      throw NotReadable("it tells no cell for its atoms");
    if (!(angle[k] > 0 && angle[k] < 180)) throw NotReadable("the angles of its cell are none");
  }
  const gemmi::UnitCell cell(edge[0], edge[1], edge[2], angle[0], angle[1], angle[2]);
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

// A loop by those of its names that begin with a prefix; what it does not have is blank.
class Loop {
 public:
  Loop(const CifBlock& block, const std::string& prefix, const std::string& leading)
      : block_(block), prefix_(prefix), leading_(block.Find(prefix + leading)) {}
  std::size_t Rows() const { return leading_ ? leading_->count : 0; }
  std::string Text(const std::string& name, std::size_t row) const {
    const CifValues* values = block_.Find(prefix_ + name);
    return values && values->count == Rows() ? CifText((*values)[row]) : "";
  }
  double Number(const std::string& name, std::size_t row, double missing) const {
    return NumberIn(Text(name, row), missing);
  }

 private:
  const CifBlock& block_;
  std::string prefix_;
  const CifValues* leading_;
};

using Tensor = gemmi::SMat33<double>;
using Tensors = std::map<std::string, Tensor>;

// By the labels of the sites.
void AddTensors(const CifBlock& block, const std::string& letter, double factor, Tensors& tensors) {
  const Loop loop(block, "_atom_site_aniso_", "label");
  for (std::size_t row = 0; row < loop.Rows(); ++row) {
    const auto value = [&](const char* place) {
      return factor * loop.Number(letter + place, row, 0);
    };
    const Tensor u{value("_11"), value("_22"), value("_33"),
                   value("_12"), value("_13"), value("_23")};
    if (u.u11 > 0 && u.u22 > 0 && u.u33 > 0) tensors[loop.Text("label", row)] = u;
  }
}

Tensors TensorsOf(const CifBlock& block) {
  Tensors tensors;
  AddTensors(block, "b", 1 / gemmi::u_to_b(), tensors);
  AddTensors(block, "u", 1, tensors);
  return tensors;
}

double DisplacementOf(const Loop& loop, std::size_t row) {
  if (const double u = loop.Number("u_iso_or_equiv", row, 0); u != 0) return u;
  const double b = loop.Number("b_iso_or_equiv", row, 0);
  return (b != 0 ? b : kUsualB) / gemmi::u_to_b();
}

[[noreturn]] void RefuseSize() {
  throw NotReadable("it has more than " + Fixed(kMostAtoms, 0) + " atoms in its cell");
}

// None for dummies, and for atoms that are known to be there and not where.
std::vector<Site> SitesOf(const CifBlock& block) {
  const Tensors tensors = TensorsOf(block);
  const Loop loop(block, "_atom_site_", "fract_x");
  std::vector<Site> sites;
  for (std::size_t row = 0; row < loop.Rows(); ++row) {
    Site site;
    const auto place = [&](const char* name) { return loop.Number(name, row, NAN); };
    site.fract = {place("fract_x"), place("fract_y"), place("fract_z")};
    const auto placed = [](double x) { return std::abs(x) < kFarthest; };
    if (!placed(site.fract.x) || !placed(site.fract.y) || !placed(site.fract.z)) continue;
    if (loop.Text("calc_flag", row) == "dum") continue;
    const std::string label = loop.Text("label", row);
    site.element = ElementOf(loop.Text("type_symbol", row), label);
    site.occ = loop.Number("occupancy", row, 1);
    if (const auto tensor = tensors.find(label); tensor != tensors.end())
      site.aniso = tensor->second;
    site.u_iso = DisplacementOf(loop, row);
    sites.push_back(site);
    if (static_cast<double>(sites.size()) > kMostAtoms) RefuseSize();
  }
  if (sites.empty()) throw NotReadable("none of its atoms has three coordinates");
  return sites;
}

// Gives the cell its images, and each site its share of the atoms that they make of it.
void Complete(StructureModel& model) {
  auto& [crystal, operators] = model;
  for (const gemmi::Op op : operators)
    if (op != gemmi::Op::identity())
      crystal.cell.images.push_back(
          gemmi::Transform{gemmi::rot_as_mat33(op), gemmi::tran_as_vec3(op)});
  double atoms = 0;
  for (Site& site : crystal.sites) {
    const int order = crystal.cell.is_special_position(site.fract, kSamePlace) + 1;
    site.occ /= order;
    atoms += static_cast<double>(operators.order()) / order;
    if (atoms > kMostAtoms) RefuseSize();
  }
}

// ---- Texts ----

// Some programs tell a path instead of a name.
std::string NameOf(const CifBlock& block, const std::string& path) {
  std::string name = block.Text({"_chemical_name_mineral", "_chemical_name_common",
                                 "_pd_phase_name", "_chemical_name_systematic"});
  if (name.empty() || name.find_first_of("/\\") != name.npos) name = FileStem(path);
  return Field(name, kNameLength);
}

std::string FormulaOf(const CifBlock& block) {
  std::string formula = block.Text({"_chemical_formula_sum", "_chemical_formula_structural"});
  std::erase(formula, ' ');
  return Field(formula, kNameLength);
}

}  // namespace

CrystalStructure ReadStructure(std::string_view bytes, const std::string& path) {
  const CifBlocks blocks = ParseCif(bytes);
  const CifBlock& block = BlockWithAtoms(blocks);
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
