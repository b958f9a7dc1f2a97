// What is to be done: recipes, files, and what makes the rows of their table.
#include "seriesrun/plan.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <set>

#include "toolkit/toolkit.h"
#include "workspace/csv.h"

namespace seriesrun {
namespace {

// 64-bit FNV-1a.
std::uint64_t Digest(std::uint64_t digest, const std::string& text) {
  constexpr std::uint64_t kPrime = 1099511628211u;
  for (const char c : text + '\n') digest = (digest ^ static_cast<unsigned char>(c)) * kPrime;
  return digest;
}

std::string DigestOf(const Plan& plan, const Options& options) {
  std::uint64_t digest = 14695981039346656037u;
  for (const Recipe& recipe : plan.recipes)
    for (const std::string& line : recipe.lines) digest = Digest(digest, line);
  if (plan.chain) digest = Digest(digest, "chain " + std::to_string(plan.chunk));
  for (const Condition& when : plan.restart)
    digest = Digest(digest, when.column + (when.above ? '>' : '<') + std::to_string(when.limit));
  digest = Digest(digest, "settings " + options.settings);
  char text[9];
  std::snprintf(text, sizeof text, "%08x", static_cast<unsigned>(digest ^ digest >> 32));
  return text;
}

std::vector<std::string> ColumnsOf(const Plan& plan) {
  std::vector<std::string> columns{std::string(kFileColumn), std::string(kDateColumn)};
  for (const auto* more : {&plan.list.Columns(), &plan.recipes[0].columns})
    columns.insert(columns.end(), more->begin(), more->end());
  if (plan.HasStarts()) columns.emplace_back(kStartColumn);
  for (const auto last : {kRecipeColumn, kBoxesColumn, kFailedColumn}) columns.emplace_back(last);
  return columns;
}

void CheckConditions(const Plan& plan) {
  const auto& columns = plan.recipes[0].columns;
  for (const auto& [name, above, limit] : plan.restart)
    if (name != "Rwp" && std::ranges::find(columns, name) == columns.end())
      throw SeriesError{"--restart-when: the recipe has no column \"" + name + "\""};
}

// A row is told by the name of its file, and is one line.
void CheckNames(const FileList& list) {
  std::set<std::string_view> seen;
  for (const FileList::File& file : list.files) {
    if (file.path.empty()) throw SeriesError{"a file without a name is in the list"};
    if (file.path.find_first_of("\r\n") != std::string::npos)
      throw SeriesError{file.path + " has a line end in its name"};
    if (!seen.insert(file.path).second)
      throw SeriesError{file.path + " stands twice among the files"};
  }
}

FileList ListOf(const Options& options) {
  FileList list;
  if (options.list.empty())
    for (const std::string& file : options.files) list.files.push_back({file, {}});
  else
    list = ReadFileList(options.list == "-" ? "-" : IOsFullPath(options.list));
  CheckNames(list);
  return list;
}

// Whole chunks, as many for each part as for any other, or one more.
void TakePart(Plan& plan, const Options& options) {
  const std::size_t rows = plan.list.Count();
  const std::size_t chunks = (rows + plan.chunk - 1) / plan.chunk;
  const auto begin = [&](std::size_t part) {
    return std::min(rows, chunks * part / static_cast<std::size_t>(options.parts) * plan.chunk);
  };
  plan.first = begin(options.part - 1);
  plan.last = begin(options.part);
}

}  // namespace

std::string_view DigestIn(std::string_view cell) {
  const std::size_t sign = cell.rfind('#');
  return sign == cell.npos ? "" : cell.substr(sign + 1);
}

Plan MakePlan(const Options& options) {
  Plan plan;
  plan.list = HeldList(ListOf(options));
  std::vector<std::string> paths = options.otherrecipes;
  paths.insert(paths.begin(), options.recipe);
  for (const std::string& path : paths) {
    plan.recipes.push_back(ReadRecipe(IOsFullPath(path), plan.list.Columns()));
    if (plan.recipes.back().columns != plan.recipes[0].columns)
      throw SeriesError{path + " has other columns than " + options.recipe};
  }
  plan.chunk = static_cast<std::size_t>(options.chunk);
  plan.chain = options.chain;
  plan.restart = options.restart;
  plan.limit = options.limit;
  CheckConditions(plan);
  plan.columns = ColumnsOf(plan);
  plan.digest = DigestOf(plan, options);
  TakePart(plan, options);
  return plan;
}

Places PlacesOfRow(const Plan& plan, std::size_t row) {
  Places places = PlacesOf(plan.list.Path(row), row + 1);
  const std::vector<std::string> cells = plan.list.Cells(row);
  for (std::size_t k = 0; k < cells.size(); ++k) places[plan.list.Columns()[k]] = cells[k];
  return places;
}

void Rehearse(const Plan& plan) {
  const std::size_t last = plan.list.Count() - 1;
  for (const Recipe& recipe : plan.recipes) {
    std::string complaint;
    for (const std::size_t row : std::set<std::size_t>{0, last / 2, last}) {
      const RowResult result = RunRow(recipe, PlacesOfRow(plan, row), {}, plan.limit);
      if (result.badline)
        complaint = "recipe " + recipe.name + ", " + result.failed + " (when it was tried on " +
                    plan.list.Path(row) + ")";
      if (!result.failed.empty()) continue;
      complaint.clear();
      break;
    }
    if (!complaint.empty()) throw SeriesError{complaint};
  }
}

std::string TableLine(const Plan& plan, std::size_t row, const std::string& start,
                      std::size_t recipe, const RowResult& result) {
  std::vector<std::string> values = result.values;
  values.resize(plan.recipes[0].columns.size());
  std::vector<std::string> cells{plan.list.Path(row), result.date};
  for (const auto& more : {plan.list.Cells(row), values})
    cells.insert(cells.end(), more.begin(), more.end());
  if (plan.HasStarts()) cells.push_back(start);
  cells.push_back(plan.recipes[recipe].name + '#' + plan.digest);
  std::string boxes;
  for (const std::string& box : result.boxes) boxes += (boxes.empty() ? "" : " | ") + box;
  cells.push_back(boxes);
  cells.push_back(result.failed);
  return CsvLine(cells);
}

}  // namespace seriesrun
