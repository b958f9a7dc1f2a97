// Columns of numbers: cells and headings.
#include "patternfiles/import/columnnames.h"

#include <algorithm>
#include <numbers>
#include <string>

#include "patternfiles/import/headerkeys.h"
#include "patternfiles/import/textlines.h"

namespace {

enum class Role {
  None,
  TwoTheta,
  Angle,
  Q,
  D,
  Observed,
  Counts,
  Detector,
  Esd,
  Foreign,  // positions that are no angles
  Other
};

struct ColumnName {
  std::string_view name;  // as KeyOf gives it
  enum Fit { Whole, Front, Inside } fit;
  Role role;
};

// The first that fits stands.
constexpr ColumnName kNames[] = {
    {"diffractionangle", ColumnName::Front, Role::Angle},
    {"signal", ColumnName::Front, Role::Detector},
    // What is calculated, or no intensity, whatever else the name says.
    {"calc", ColumnName::Inside, Role::Other},
    {"ycal", ColumnName::Inside, Role::Other},
    {"ical", ColumnName::Whole, Role::Other},
    {"back", ColumnName::Inside, Role::Other},
    {"bkg", ColumnName::Inside, Role::Other},
    {"bck", ColumnName::Inside, Role::Other},
    {"diff", ColumnName::Inside, Role::Other},
    {"delta", ColumnName::Inside, Role::Other},
    {"resid", ColumnName::Inside, Role::Other},
    {"weight", ColumnName::Inside, Role::Other},
    {"model", ColumnName::Inside, Role::Other},
    {"fit", ColumnName::Inside, Role::Other},
    {"yobsy", ColumnName::Front, Role::Other},
    {"timeperstep", ColumnName::Front, Role::Other},

    {"sig", ColumnName::Front, Role::Esd},
    {"esd", ColumnName::Inside, Role::Esd},
    {"err", ColumnName::Inside, Role::Esd},
    {"sigma", ColumnName::Inside, Role::Esd},
    {"uncert", ColumnName::Inside, Role::Esd},
    {"stddev", ColumnName::Inside, Role::Esd},
    {"standarddev", ColumnName::Inside, Role::Esd},
    {"sd", ColumnName::Whole, Role::Esd},
    {"std", ColumnName::Whole, Role::Esd},
    {"su", ColumnName::Whole, Role::Esd},
    {"e", ColumnName::Whole, Role::Esd},
    {"dy", ColumnName::Whole, Role::Esd},
    {"di", ColumnName::Whole, Role::Esd},

    {"2th", ColumnName::Inside, Role::TwoTheta},
    {"twoth", ColumnName::Inside, Role::TwoTheta},
    {"2t", ColumnName::Whole, Role::TwoTheta},
    {"tth", ColumnName::Front, Role::TwoTheta},
    {"ttheta", ColumnName::Front, Role::TwoTheta},
    {"angle", ColumnName::Inside, Role::Angle},
    {"pos", ColumnName::Whole, Role::Angle},
    {"position", ColumnName::Front, Role::Angle},
    {"theta", ColumnName::Front, Role::Angle},
    {"deg", ColumnName::Front, Role::Angle},
    {"x", ColumnName::Whole, Role::Angle},
    {"xobs", ColumnName::Whole, Role::Angle},
    {"q", ColumnName::Whole, Role::Q},
    {"qa", ColumnName::Front, Role::Q},
    {"q1", ColumnName::Front, Role::Q},
    {"qnm", ColumnName::Front, Role::Q},
    {"qinv", ColumnName::Front, Role::Q},
    {"qspace", ColumnName::Front, Role::Q},
    {"scatteringvector", ColumnName::Front, Role::Q},
    {"momentumtransfer", ColumnName::Front, Role::Q},
    {"d", ColumnName::Whole, Role::D},
    {"da", ColumnName::Whole, Role::D},
    {"dnm", ColumnName::Whole, Role::D},
    {"dang", ColumnName::Front, Role::D},
    {"dsp", ColumnName::Front, Role::D},
    {"dval", ColumnName::Front, Role::D},
    {"dhkl", ColumnName::Whole, Role::D},

    {"obs", ColumnName::Inside, Role::Observed},
    {"iexp", ColumnName::Front, Role::Observed},
    {"yexp", ColumnName::Front, Role::Observed},
    {"meas", ColumnName::Inside, Role::Observed},
    {"intens", ColumnName::Inside, Role::Counts},
    {"count", ColumnName::Inside, Role::Counts},
    {"cps", ColumnName::Inside, Role::Counts},
    {"cts", ColumnName::Inside, Role::Counts},
    {"int", ColumnName::Whole, Role::Counts},
    {"i", ColumnName::Whole, Role::Counts},
    {"iq", ColumnName::Whole, Role::Counts},
    {"i2theta", ColumnName::Whole, Role::Counts},
    {"y", ColumnName::Whole, Role::Counts},
    {"yo", ColumnName::Whole, Role::Counts},
    {"iau", ColumnName::Whole, Role::Counts},
    {"det", ColumnName::Front, Role::Detector},
    {"psd", ColumnName::Front, Role::Detector},

    {"energy", ColumnName::Front, Role::Foreign},
    {"tof", ColumnName::Front, Role::Foreign},
    {"time", ColumnName::Front, Role::Foreign},
    {"radial", ColumnName::Front, Role::Foreign},
    {"radius", ColumnName::Front, Role::Foreign},
    {"azimuth", ColumnName::Front, Role::Foreign},
    {"chi", ColumnName::Front, Role::Foreign},
    {"phi", ColumnName::Whole, Role::Foreign},
    {"channel", ColumnName::Front, Role::Foreign},
    {"pixel", ColumnName::Front, Role::Foreign},
};

bool Fits(const ColumnName& row, std::string_view key) {
  switch (row.fit) {
    case ColumnName::Whole:
      return key == row.name;
    case ColumnName::Front:
      return key.starts_with(row.name);
    default:
      return key.find(row.name) != key.npos;
  }
}

// A heading of one word; sentences name no column.
Role RoleOf(std::string_view cell) {
  if (cell.size() > 60) return Role::None;
  cell = Unquoted(cell);
  const std::size_t unit = cell.find_first_of("([", 1);
  const std::string key = KeyOf(cell.substr(0, unit));
  for (const ColumnName& row : kNames)
    if (Fits(row, key)) return row.role;
  return Role::None;
}

bool IsSign(char c, bool commas) {
  return c == '\t' || c == ';' || c == '|' || (commas && c == ',');
}

bool IsBlank(char c) { return c == ' ' || c == '\0' || c == '\r' || c == '\f' || c == '\v'; }

// Length of the cell at the front of a line.
std::size_t CellLength(std::string_view line, bool commas, bool blanks) {
  if (line.front() == '"') {
    const std::size_t quote = line.find('"', 1);
    return quote == line.npos ? line.size() : quote + 1;
  }
  std::size_t n = 0;
  while (n < line.size() && !IsSign(line[n], commas) && !(blanks && IsBlank(line[n]))) ++n;
  return n;
}

using Cells = std::vector<std::string_view>;

Cells CellsAtSigns(std::string_view line) {
  Cells cells;
  SplitCells(line, true, false, cells);
  return cells;
}

Cells CellsAtGaps(std::string_view line) {
  Cells cells;
  while (!line.empty()) {
    const std::size_t gap = line.find("  ");
    if (const auto cell = Stripped(line.substr(0, gap)); !cell.empty()) cells.push_back(cell);
    line = gap == line.npos ? std::string_view() : line.substr(gap + 2);
  }
  return cells;
}

// Words, with what stands in brackets behind them; "2 theta" is one.
Cells CellsOfWords(std::string_view line) {
  Cells words, cells;
  SplitCells(line, true, true, words);
  for (const std::string_view word : words) {
    if (word.empty()) continue;
    const bool joins =
        !cells.empty() &&
        (word.front() == '(' || word.front() == '[' || word.front() == '/' || cells.back() == "2" ||
         std::count(cells.back().begin(), cells.back().end(), '(') >
             std::count(cells.back().begin(), cells.back().end(), ')'));
    if (joins) {
      cells.back() = {cells.back().data(),
                      static_cast<std::size_t>(word.data() + word.size() - cells.back().data())};
    } else {
      cells.push_back(word);
    }
  }
  return cells;
}

// What precedes the headings in a line of comment.
std::string_view WithoutCommentSign(std::string_view line) {
  line = Stripped(line);
  while (!line.empty() && std::string_view("#;'!/*%_$&").find(line.front()) != line.npos)
    line.remove_prefix(1);
  return Stripped(line);
}

// The scale of an axis into degrees, angstrom or 1/angstrom by the unit in its heading.
double ScaleOf(ScanAxis axis, std::string_view cell) {
  const std::string key = KeyOf(cell);
  const auto holds = [&](std::string_view text) { return key.find(text) != key.npos; };
  const bool nanometre = holds("nm") || holds("nanom");
  if (axis == ScanAxis::Q && nanometre) return 0.1;
  if (axis == ScanAxis::D && nanometre) return 10;
  if (axis == ScanAxis::TwoTheta && holds("rad")) return 180 / std::numbers::pi;
  return 1;
}

int FirstOf(const std::vector<Role>& roles, std::initializer_list<Role> wanted) {
  for (const Role role : wanted)
    if (const auto found = std::find(roles.begin(), roles.end(), role); found != roles.end())
      return static_cast<int>(found - roles.begin());
  return -1;
}

ColumnChoice ChoiceOf(const Cells& cells) {
  std::vector<Role> roles;
  for (const std::string_view cell : cells) roles.push_back(RoleOf(cell));
  ColumnChoice choice;
  if (roles.empty()) return choice;
  choice.x = FirstOf(roles, {Role::TwoTheta, Role::Angle, Role::Q, Role::D});
  choice.y = FirstOf(roles, {Role::Observed, Role::Counts, Role::Detector});
  if (choice.x < 0 && roles[0] == Role::Foreign && (choice.y > 0 || cells.size() == 1))
    choice.foreign = Unquoted(cells[0]);
  if (choice.x < 0) return choice;
  choice.named = true;
  if (roles[choice.x] == Role::Q) choice.axis = ScanAxis::Q;
  if (roles[choice.x] == Role::D) choice.axis = ScanAxis::D;
  choice.scale = ScaleOf(choice.axis, cells[choice.x]);
  for (std::size_t i = 0; i < roles.size() && choice.y < 0; ++i)  // a name of its own
    if (roles[i] == Role::None && static_cast<int>(i) > choice.x) choice.y = static_cast<int>(i);
  if (choice.y >= 0) choice.esd = FirstOf(roles, {Role::Esd});
  return choice;
}

}  // namespace

void SplitCells(std::string_view line, bool commas, bool blanks, Cells& cells) {
  cells.clear();
  bool open = true;  // the cell to come has not been told
  while (cells.size() < kMostCells) {
    while (!line.empty() && IsBlank(line.front())) line.remove_prefix(1);
    if (line.empty()) return;
    if (IsSign(line.front(), commas)) {
      if (open) cells.emplace_back();
      line.remove_prefix(1);
      open = true;
      continue;
    }
    const std::size_t length = CellLength(line, commas, blanks);
    cells.push_back(Stripped(line.substr(0, length)));
    line.remove_prefix(length);
    open = false;
  }
}

ColumnChoice ColumnsNamed(std::string_view line, std::size_t columns) {
  line = WithoutCommentSign(line.substr(0, 1000));
  for (const bool all : {true, false})  // headings over all columns, or over some
    for (const auto& split : {CellsAtSigns, CellsAtGaps, CellsOfWords}) {
      const Cells cells = split(line);
      if (cells.size() < 2 || cells.size() > columns || all != (cells.size() == columns)) continue;
      const bool known = std::all_of(cells.begin(), cells.end(), [](std::string_view cell) {
        return RoleOf(cell) != Role::None;
      });
      // Words may be a sentence, and fewer headings than columns anything, unless each is known.
      if (!known && (!all || split == CellsOfWords)) continue;
      const ColumnChoice choice = ChoiceOf(cells);
      if ((choice.x >= 0 && choice.y >= 0) || !choice.foreign.empty()) return choice;
    }
  return {};
}

ColumnChoice AxisNamed(std::string_view label) {
  label = WithoutCommentSign(label);
  ColumnChoice choice = ChoiceOf({label});
  choice.x = choice.y = choice.esd = -1;
  choice.named = false;
  return choice;
}
