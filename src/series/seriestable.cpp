// Reading tables of series and lists of files.
#include "series/seriestable.h"

#include <algorithm>
#include <fstream>

#include "workspace/csv.h"
#include "workspace/lines.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw SeriesError{"cannot read " + path + ": " + SystemReason()};
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (file.bad()) throw SeriesError{"cannot read " + path + ": " + SystemReason()};
  if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
  return text;
}

// Calls `take` with each line, without its end, and whether it has one.
template <class Take>
void EachLine(std::string_view text, Take take) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    take(line, end != text.npos);
    text.remove_prefix(std::min(end, text.size() - 1) + 1);
  }
}

bool IsBlank(std::string_view line) { return line.find_first_not_of(" \t") == line.npos; }

SeriesTable TableOf(std::string_view text, bool lastcounts) {
  SeriesTable table;
  EachLine(text, [&](std::string_view line, bool ended) {
    if (IsBlank(line) || !(ended || lastcounts)) return;
    std::vector<std::string> cells = CsvCells(line);
    if (table.columns.empty()) {
      table.columns = std::move(cells);
      return;
    }
    cells.resize(table.columns.size());
    table.rows.push_back(std::move(cells));
  });
  return table;
}

FileList ListOfTable(SeriesTable table, int file) {
  FileList list;
  for (auto& row : table.rows) {
    std::string path = std::move(row[file]);
    row.erase(row.begin() + file);
    list.files.push_back({std::move(path), std::move(row)});
  }
  table.columns.erase(table.columns.begin() + file);
  list.columns = std::move(table.columns);
  return list;
}

}  // namespace

int SeriesTable::ColumnOf(std::string_view name) const {
  const auto at = std::ranges::find(columns, name);
  return at == columns.end() ? -1 : static_cast<int>(at - columns.begin());
}

SeriesTable ReadSeriesTable(const std::string& path) {
  SeriesTable table = TableOf(Contents(path), false);
  if (table.ColumnOf(kFileColumn) < 0)
    throw SeriesError{path + " is no table of a series: it has no column \"file\""};
  return table;
}

FileList ReadFileList(const std::string& path) {
  const std::string text = Contents(path);
  const std::string_view heading = std::string_view(text).substr(0, text.find_first_of("\r\n"));
  FileList list;
  if (const auto cells = CsvCells(heading); std::ranges::find(cells, kFileColumn) != cells.end()) {
    SeriesTable table = TableOf(text, true);
    const int file = table.ColumnOf(kFileColumn);
    list = ListOfTable(std::move(table), file);
  } else {
    EachLine(text, [&](std::string_view line, bool) {
      if (!IsBlank(line)) list.files.push_back({std::string(line), {}});
    });
  }
  if (list.files.empty()) throw SeriesError{path + " names no file"};
  return list;
}
