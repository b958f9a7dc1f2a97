// What the table of found cells shows, and its texts.
#include "index/foundcells.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "workspace/text.h"

namespace {

struct SystemRow {
  const char* name;
  std::string_view free;  // its constants that no other fixes: a, b, c, then A, B, C for the angles
  int laueclass;          // with the full symmetry of the lattice
};
constexpr std::string_view kConstants = "abcABC";
// In the order of LatticeSystem.
constexpr SystemRow kSystems[] = {
    {"triclinic", "abcABC", 1}, {"monoclinic", "abcB", 3}, {"orthorhombic", "abc", 5},
    {"tetragonal", "ac", 12},   {"rhombohedral", "ac", 8}, {"hexagonal", "ac", 14},
    {"cubic", "a", 16},
};
const SystemRow& RowOf(const FoundCell& cell) { return kSystems[static_cast<int>(cell.system)]; }

struct CenteringRow {
  char letter;
  int points;  // lattice points in a cell
};
// By number, from 1.
constexpr CenteringRow kCenteringRows[] = {{'P', 1}, {'A', 2}, {'B', 2}, {'C', 2},
                                           {'I', 2}, {'F', 4}, {'R', 3}};

constexpr int kLengthDigits = 4, kAngleDigits = 3, kPositionDigits = 3, kAllDigits = 6;

int DigitsOf(std::size_t constant) { return constant < 3 ? kLengthDigits : kAngleDigits; }

double PrimitiveVolume(const FoundCell& cell) {
  return cell.volume / kCenteringRows[CenteringNumberOf(cell) - 1].points;
}

// Of the primitive cells: "1/2 of 1", "3 times 1".
std::string RelationText(const FoundTable& table, const FoundCell& cell) {
  constexpr int kMost = 6;
  if (cell.relativeof < 0) return "";
  const FoundCell& other = table.cells[static_cast<std::size_t>(cell.relativeof)];
  const double ratio = PrimitiveVolume(cell) / PrimitiveVolume(other);
  int whole = 1;
  while (whole < kMost && std::abs(ratio * whole - std::round(ratio * whole)) > 0.05 * whole)
    ++whole;
  const std::string times = std::to_string(nint(ratio * whole));
  return times + (whole == 1 ? " times " : "/" + std::to_string(whole) + " of ") +
         std::to_string(cell.relativeof + 1);
}

// Angles that the system fixes are whole degrees.
std::string ConstantText(const FoundCell& cell, std::size_t k) {
  const bool fixed = k >= 3 && RowOf(cell).free.find(kConstants[k]) == std::string_view::npos;
  return WithEsd(cell.cell[k], cell.esd[k], fixed ? 0 : DigitsOf(k));
}

double OddsOf(const FoundTable& table, const FoundCell& cell) {
  return cell.likelihood - table.cells.front().likelihood;
}

constexpr const char* kLineHeads =
    "no.|tie|lattice|a (A)|b (A)|c (A)|alpha (deg.)|beta (deg.)|gamma (deg.)|e.s.d. a|e.s.d. b|"
    "e.s.d. c|e.s.d. alpha|e.s.d. beta|e.s.d. gamma|volume (A^3)|zero (deg.)|e.s.d. zero|M20|F20|"
    "F20 mean deviation (deg.)|F20 possible lines|indexed|lines|ln odds|origin|relation|"
    "unexplained 2theta (deg.)";

// In the order of the heads, parted by "|".
std::string LineOf(const FoundTable& table, std::size_t row) {
  const FoundCell& cell = table.cells[row];
  std::string line = std::to_string(row + 1) + (cell.tie ? "|tie|" : "||") + LatticeText(cell);
  const auto add = [&](double value) { line += "|" + Fixed(value, kAllDigits); };
  std::ranges::for_each(cell.cell, add);
  std::ranges::for_each(cell.esd, add);
  for (const double value :
       {cell.volume, ZeroOf(cell), cell.zeroesd, cell.m20, cell.f20, cell.f20error})
    add(value);
  for (const int count : {cell.f20lines, cell.indexed, static_cast<int>(table.lines.size())})
    line += "|" + std::to_string(count);
  add(OddsOf(table, cell));
  line += "|" + OriginText(cell) + "|" + RelationText(table, cell) + "|";
  for (const int number : cell.unindexed)
    line += (line.ends_with('|') ? "" : " ") +
            Fixed(table.lines[static_cast<std::size_t>(number - 1)].tth, kLengthDigits);
  return line;
}

}  // namespace

std::string LatticeText(const FoundCell& cell) {
  return RowOf(cell).name + std::string(" ") + cell.centering;
}

std::string OriginText(const FoundCell& cell) {
  std::string text;
  for (const std::string& origin : cell.origins) text += (text.empty() ? "" : " + ") + origin;
  return text;
}

std::string ShortText(const FoundCell& cell) {
  std::string text = LatticeText(cell);
  for (const char constant : RowOf(cell).free) {
    const std::size_t k = kConstants.find(constant);
    text += " " + Fixed(cell.cell[k], k < 3 ? 2 : 1);
  }
  return text + ", M20 " + Fixed(cell.m20, 0);
}

int ClassNumberOf(const FoundCell& cell) { return RowOf(cell).laueclass; }

int CenteringNumberOf(const FoundCell& cell) {
  const auto row = std::ranges::find(kCenteringRows, cell.centering, &CenteringRow::letter);
  return row == std::end(kCenteringRows) ? 1
                                         : static_cast<int>(row - std::begin(kCenteringRows)) + 1;
}

double ZeroOf(const FoundCell& cell) { return -cell.zero; }

std::vector<std::string> FoundTexts(const FoundTable& table, std::size_t row) {
  const FoundCell& cell = table.cells[row];
  std::vector<std::string> texts{std::to_string(row + 1) + (cell.tie ? " =" : ""),
                                 LatticeText(cell)};
  for (std::size_t k = 0; k < cell.cell.size(); ++k) texts.push_back(ConstantText(cell, k));
  texts.insert(texts.end(),
               {Fixed(cell.volume, 1), Fixed(cell.m20, 1),
                Fixed(cell.f20, 1) + " (" + Fixed(cell.f20error, 4) + ", " +
                    std::to_string(cell.f20lines) + ")",
                std::to_string(cell.indexed) + " of " + std::to_string(table.lines.size()),
                WithEsd(ZeroOf(cell), cell.zeroesd, kPositionDigits), Fixed(OddsOf(table, cell), 1),
                OriginText(cell), RelationText(table, cell)});
  return texts;
}

std::vector<std::string> FoundLines(const FoundTable& table, char separator) {
  std::vector<std::string> lines{kLineHeads};
  for (std::size_t row = 0; row < table.cells.size(); ++row) lines.push_back(LineOf(table, row));
  for (std::string& line : lines) std::ranges::replace(line, '|', separator);
  return lines;
}

std::string UnexplainedText(const FoundTable& table, std::size_t row) {
  constexpr std::size_t kMostNamed = 8;
  const std::vector<int>& unindexed = table.cells[row].unindexed;
  if (unindexed.empty()) return "none";
  std::string numbers, places;
  for (const int number : std::span(unindexed).first(std::min(unindexed.size(), kMostNamed))) {
    const auto at = static_cast<std::size_t>(number - 1);
    const char* const parting = numbers.empty() ? "" : ", ";
    numbers += parting + std::to_string(table.numbers[at]);
    places += parting + Fixed(table.lines[at].tth, 2);
  }
  const std::string text = (unindexed.size() == 1 ? "line " : "lines ") + numbers + " at " + places;
  if (unindexed.size() <= kMostNamed) return text;
  return text + " and " + std::to_string(unindexed.size() - kMostNamed) + " more";
}
