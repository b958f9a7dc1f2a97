// The symmetry of a structure.
#include "multi/gemmi/structuresymmetry.h"

#include <charconv>
#include <cmath>

#include "crystal/laue.h"
#include "patternfiles/import/measured.h"  // for NotReadable
#include "workspace/text.h"

namespace {

using gemmi::Miller;
using gemmi::Op;

constexpr std::size_t kMostOperators = 192;  // of any space group, in its largest cell
constexpr int kMostElement = 2 * Op::DEN;    // of a rotation
constexpr std::size_t kLongestOperator = 60;

[[noreturn]] void RefuseOperator(const std::string& text) {
  throw NotReadable("\"" + Field(text, kLongestOperator) + "\" is no symmetry operator");
}

// A number of an operator, "1/2" or "0.3333", in units of the translations.
int Translation(const std::string& text, const char*& at) {
  const char* const end = text.data() + text.size();
  double value = 0, divisor = 1;
  auto read = std::from_chars(at, end, value, std::chars_format::fixed);
  if (read.ptr != end && *read.ptr == '/') {
    const char* below = read.ptr + 1;
    read = std::from_chars(below, end, divisor, std::chars_format::fixed);
  }
  const double parts = value / divisor * Op::DEN;
  const int whole = nint(parts);
  const bool rational = std::abs(parts - whole) < 0.05 && std::abs(whole) <= 10 * Op::DEN;
  if (read.ec != std::errc() || !rational) RefuseOperator(text);
  at = read.ptr;
  return whole;
}

// "-y, x-y, z+1/3". Own reading, as decimals are common and numbers out of bounds are no error in
// the library.
Op OperatorOf(std::string text) {
  std::erase_if(text, [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
  if (text.size() > kLongestOperator) RefuseOperator(text);
  Op op{};
  int row = 0, sign = 1;
  for (const char *at = text.data(), *end = at + text.size(); at != end;) {
    const char c = LowerChar(*at);
    if ((c >= '0' && c <= '9') || c == '.') {
      op.tran[row] += sign * Translation(text, at);
      continue;
    }
    ++at;
    if (c >= 'x' && c <= 'z')
      op.rot[row][c - 'x'] += sign * Op::DEN;
    else if (c == ',' && row < 2)
      ++row;
    else if (c != '+' && c != '-')
      RefuseOperator(text);
    sign = c == '-' ? -1 : 1;
  }
  if (row != 2) RefuseOperator(text);
  return op;
}

bool IsOfALattice(const Op& op) {
  for (const auto& row : op.rot)
    for (const int element : row)
      if (std::abs(element) > kMostElement) return false;
  return std::abs(op.det_rot()) == Op::DEN * Op::DEN * Op::DEN;
}

// All products of the operators: those of a list that leaves some out, too.
gemmi::GroupOps GroupOf(const std::vector<Op>& listed) {
  std::vector<Op> group{Op::identity()};
  std::set<Op> known{Op::identity()};
  const auto take = [&](Op op) {
    if (!IsOfALattice(op) || known.size() > kMostOperators)
      throw NotReadable("its symmetry operators form no space group");
    if (known.insert(op.wrap()).second) group.push_back(op);
  };
  for (const Op& op : listed) take(op);
  for (std::size_t i = 0; i < group.size(); ++i)
    for (std::size_t j = 0; j <= i; ++j) {
      take(group[i] * group[j]);
      take(group[j] * group[i]);
    }
  return gemmi::split_centering_vectors(group);
}

std::vector<Op> ListedOperators(const CifBlock& block) {
  std::vector<Op> ops;
  for (const char* tag : {"_space_group_symop_operation_xyz", "_symmetry_equiv_pos_as_xyz"}) {
    const CifValues* values = block.Find(tag);
    for (std::size_t i = 0; values && i < values->count; ++i)
      if (const std::string text = CifText((*values)[i]); !text.empty())
        ops.push_back(OperatorOf(text));
    if (!ops.empty()) break;
  }
  return ops;
}

// Databases tell the setting behind a blank: origin 1 or 2 by S or Z, the axes by H or R.
const gemmi::SpaceGroup* GroupByName(const std::string& name, const gemmi::UnitCell& cell) {
  const auto* found = gemmi::find_spacegroup_by_name(name, cell.alpha, cell.gamma);
  if (found || name.size() < 3 || name[name.size() - 2] != ' ') return found;
  static constexpr std::string_view kSuffixes = "SZHR", kSettings = "12HR";
  const auto setting = kSuffixes.find(UpperChar(name.back()));
  if (setting == kSuffixes.npos) return nullptr;
  return gemmi::find_spacegroup_by_name(name.substr(0, name.size() - 2) + ":" + kSettings[setting]);
}

const gemmi::SpaceGroup* GroupByNumber(const std::string& text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number >= 1 && number <= 230 ? &gemmi::get_spacegroup_reference_setting(number) : nullptr;
}

// The group of a Hall symbol of the tables, however its blanks are written.
const gemmi::SpaceGroup* GroupByHall(const std::string& symbol) {
  const auto plain = [](std::string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == '_'; });
    return LowerText(text);
  };
  if (symbol.empty()) return nullptr;
  for (const gemmi::SpaceGroup& group : gemmi::spacegroup_tables::main)
    if (plain(group.hall) == plain(symbol)) return &group;
  return nullptr;
}

constexpr auto kNameTags = {"_space_group_name_h-m_alt", "_symmetry_space_group_name_h-m",
                            "_space_group_name_h-m_ref"};

const gemmi::SpaceGroup& StatedGroup(const CifBlock& block, const gemmi::UnitCell& cell) {
  const std::string name = block.Text(kNameTags);
  const std::string number = block.Text({"_space_group_it_number", "_symmetry_int_tables_number"});
  const auto* group =
      GroupByHall(block.Text({"_space_group_name_hall", "_symmetry_space_group_name_hall"}));
  if (!group) group = GroupByName(name, cell);
  if (!group) group = GroupByNumber(number);
  if (group) return *group;
  if (name.empty() && number.empty())
    throw NotReadable("it tells neither symmetry operators nor a space group");
  throw NotReadable("it lists no symmetry operators, and its space group \"" +
                    (name.empty() ? number : name) + "\" is not known");
}

// By what a class makes of a reflection without symmetry of its own.
int LaueClassOfGroup(const gemmi::GroupOps& operators) {
  static constexpr Miller kGeneral{1, 2, 4};
  static constexpr int kReach = 7;  // of its equivalents, 4/m aside in all classes
  const std::set<Miller> equivalents = EquivalentsOf(kGeneral, operators);
  const auto family = [](int laueclass) {
    const auto code = [=](const Miller& m) {
      return PackHkl(CanonicalIndices({m[0], m[1], m[2]}, laueclass));
    };
    std::set<Miller> members;
    for (int h = -kReach; h <= kReach; ++h)
      for (int k = -kReach; k <= kReach; ++k)
        for (int l = -kReach; l <= kReach; ++l)
          if (code({h, k, l}) == code(kGeneral)) members.insert({h, k, l});
    return members;
  };
  for (int laueclass = 1; laueclass <= kLaueClasses; ++laueclass)
    if (family(laueclass) == equivalents) return laueclass;
  // The one class that has other families than its symmetry asks for.
  const std::set<Miller> tetragonal{{1, 2, 4},  {-1, -2, 4},  {-2, 1, 4},  {2, -1, 4},
                                    {1, 2, -4}, {-1, -2, -4}, {-2, 1, -4}, {2, -1, -4}};
  return equivalents == tetragonal ? 11 : 1;
}

int CenteringOfGroup(const gemmi::GroupOps& operators) {
  const char letter = operators.find_centering();
  for (int number = CenteringP; number <= kCenterings; ++number)
    if (CenteringOf(number).label[0] == letter) return number;
  return CenteringP;
}

// Cells are rounded; what is refused are those of another setting.
void CheckCell(gemmi::UnitCell cell, const gemmi::GroupOps& operators) {
  const double tolerance = 0.02 * std::pow(cell.volume, 2.0 / 3);
  if (!cell.is_compatible_with_groupops(operators, tolerance))
    throw NotReadable("its cell does not have the symmetry of its space group");
}

}  // namespace

std::set<Miller> EquivalentsOf(const Miller& hkl, const gemmi::GroupOps& operators) {
  std::set<Miller> all;
  for (const Op& op : operators.sym_ops) {
    const Miller image = op.apply_to_hkl(hkl);
    all.insert(image);
    all.insert({-image[0], -image[1], -image[2]});
  }
  return all;
}

StructureSymmetry SymmetryOf(const CifBlock& block, const gemmi::UnitCell& cell) {
  StructureSymmetry symmetry{};
  const std::vector<Op> listed = ListedOperators(block);
  if (listed.empty()) {
    const gemmi::SpaceGroup& group = StatedGroup(block, cell);
    symmetry.operators = group.operations();
    symmetry.group = group.xhm();
  } else {
    symmetry.operators = GroupOf(listed);
    const auto* group = gemmi::find_spacegroup_by_ops(symmetry.operators);
    symmetry.group = group ? group->xhm() : block.Text(kNameTags);
  }
  CheckCell(cell, symmetry.operators);
  symmetry.laueclass = LaueClassOfGroup(symmetry.operators);
  symmetry.centering = CenteringOfGroup(symmetry.operators);
  return symmetry;
}
