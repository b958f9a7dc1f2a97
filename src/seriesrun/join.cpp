// Tables of parts put together.
#include "seriesrun/join.h"

#include <filesystem>
#include <map>

#include "series/seriestable.h"
#include "seriesrun/plan.h"
#include "seriesrun/tablefile.h"
#include "toolkit/toolkit.h"
#include "workspace/csv.h"
#include "workspace/lines.h"

namespace seriesrun {
namespace {

// Rows of all parts, one behind the other.
SeriesTable RowsOfParts(const std::vector<std::string>& paths) {
  SeriesTable all;
  for (const std::string& path : paths) {
    std::size_t end = 0;
    SeriesTable part = ReadSeriesTable(path, &end);
    if (end != std::filesystem::file_size(path))
      throw SeriesError{path + " ends in the middle of a row: let its part go on first"};
    if (all.columns.empty()) all.columns = part.columns;
    if (part.columns != all.columns)
      throw SeriesError{path + " has other columns than " + paths.front()};
    for (auto& row : part.rows) all.rows.push_back(std::move(row));
  }
  return all;
}

// Parts of one plan, all of whose rows have the same digest.
void CheckDigests(const SeriesTable& table) {
  const int recipe = table.ColumnOf(kRecipeColumn);
  if (recipe < 0) throw SeriesError{"the parts have no column \"recipe\""};
  for (const auto& row : table.rows)
    if (DigestIn(row[recipe]) != DigestIn(table.rows[0][recipe]))
      throw SeriesError{"the row of " + row[table.ColumnOf(kFileColumn)] +
                        " was made by another recipe or with other options than that of " +
                        table.rows[0][table.ColumnOf(kFileColumn)]};
}

// The table must be none of the parts.
void CheckNames(const Options& options) {
  std::error_code missing;
  for (const std::string& part : options.files)
    if (std::filesystem::equivalent(part, options.table, missing))
      throw SeriesError{options.table + " is one of the parts"};
}

using RowByFile = std::map<std::string, std::size_t>;

RowByFile PlaceRows(const SeriesTable& table) {
  const int file = table.ColumnOf(kFileColumn);
  RowByFile places;
  for (std::size_t k = 0; k < table.rows.size(); ++k)
    if (!places.emplace(table.rows[k][file], k).second)
      throw SeriesError{"two parts have a row of " + table.rows[k][file]};
  return places;
}

// What stands under the name of the table has to be one of these rows: a part that was named there
// by mistake would be lost, or some other file.
void CheckOld(const std::string& path, const RowByFile& places) {
  std::error_code missing;
  if (!std::filesystem::exists(path, missing) || std::filesystem::file_size(path, missing) == 0)
    return;
  const SeriesTable old = ReadSeriesTable(path);
  const auto file = static_cast<std::size_t>(old.ColumnOf(kFileColumn));
  for (const auto& row : old.rows)
    if (!places.contains(row[file]))
      throw SeriesError{"table " + path + " has a row of " + row[file] +
                        ", which the parts have not; give another name to --join"};
}

std::vector<std::size_t> OrderOf(const SeriesTable& table, const std::string& listpath) {
  const RowByFile places = PlaceRows(table);
  std::vector<std::size_t> order;
  if (listpath.empty()) {
    for (std::size_t k = 0; k < table.rows.size(); ++k) order.push_back(k);
    return order;
  }
  const FileList list = ReadFileList(listpath);
  std::size_t missing = 0;
  std::string firstmissing;
  for (const FileList::File& file : list.files) {
    const auto place = places.find(file.path);
    if (place != places.end())
      order.push_back(place->second);
    else if (missing++ == 0)
      firstmissing = file.path;
  }
  if (missing > 0)
    throw SeriesError{std::to_string(missing) + " of " + std::to_string(list.files.size()) +
                      " files have no row in the parts, the first is " + firstmissing};
  if (order.size() < table.rows.size()) throw SeriesError{"the parts have rows of other files"};
  return order;
}

}  // namespace

void JoinParts(const Options& options) {
  CheckNames(options);
  const SeriesTable table = RowsOfParts(options.files);
  CheckDigests(table);
  const std::vector<std::size_t> order = OrderOf(table, options.list);
  CheckOld(options.table, PlaceRows(table));
  const TableLock lock(options.table);
  LineWriter file(options.table);
  file.Write(CsvLine(table.columns));
  for (const std::size_t row : order) file.Write(CsvLine(table.rows[row]));
  if (!file.Close()) throw SeriesError{"cannot write " + options.table + ": " + file.Reason()};
}

}  // namespace seriesrun
