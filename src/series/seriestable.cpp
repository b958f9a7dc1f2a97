// Reading tables of series and lists of files.
#include "series/seriestable.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "workspace/csv.h"
#include "workspace/lines.h"

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr std::string_view kStandardInput = "/dev/stdin";

// What could wait for ever or never end is refused; standard input is what its user makes it.
void CheckKind(const std::string& path) {
  std::error_code failure;
  const auto kind = std::filesystem::status(path, failure).type();
  const bool readable = kind == std::filesystem::file_type::regular ||
                        kind == std::filesystem::file_type::not_found ||
                        (path == kStandardInput && kind != std::filesystem::file_type::directory);
  if (!readable) throw SeriesError{"cannot read " + path + ": it is no regular file"};
}

std::string Contents(const std::string& path, std::size_t from = 0) {
  CheckKind(path);
  std::ifstream file(path, std::ios::binary);
  if (!file || (from > 0 && !file.seekg(static_cast<std::streamoff>(from))))
    throw SeriesError{"cannot read " + path + ": " + SystemReason()};
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (file.bad()) throw SeriesError{"cannot read " + path + ": " + SystemReason()};
  return text;
}

// Calls `take` with each line, without its end.
template <class Take>
void EachLine(std::string_view text, Take take) {
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    take(line);
    text.remove_prefix(std::min(end, text.size() - 1) + 1);
  }
}

bool IsBlank(std::string_view line) { return line.find_first_not_of(" \t") == line.npos; }

// What stands in front of the first line of some files.
std::string_view WithoutMark(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  return text;
}

void AddRows(SeriesTable& table, std::string_view text) {
  if (table.columns.empty()) text = WithoutMark(text);
  EachLine(text, [&](std::string_view line) {
    if (IsBlank(line)) return;
    std::vector<std::string> cells = CsvCells(line);
    if (table.columns.empty()) {
      table.columns = std::move(cells);
      return;
    }
    cells.resize(table.columns.size());
    table.rows.push_back(std::move(cells));
  });
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

void ReadMoreRows(const std::string& path, SeriesTable& table, std::size_t& from) {
  const std::string text = Contents(path, from);
  const std::size_t whole = text.rfind('\n') + 1;
  AddRows(table, std::string_view(text).substr(0, whole));
  from += whole;
}

SeriesTable ReadSeriesTable(const std::string& path, std::size_t* end) {
  SeriesTable table;
  std::size_t from = 0;
  ReadMoreRows(path, table, from);
  if (table.ColumnOf(kFileColumn) < 0)
    throw SeriesError{path + " is no table of a series: it has no column \"file\""};
  if (end) *end = from;
  return table;
}

FileList ReadFileList(const std::string& given) {
  const std::string path = given == "-" ? std::string(kStandardInput) : given;
  const std::string contents = Contents(path);
  const std::string_view text = WithoutMark(contents);
  const std::string_view heading = text.substr(0, text.find_first_of("\r\n"));
  FileList list;
  if (const auto cells = CsvCells(heading); std::ranges::find(cells, kFileColumn) != cells.end()) {
    SeriesTable table;
    AddRows(table, text);
    const int file = table.ColumnOf(kFileColumn);
    list = ListOfTable(std::move(table), file);
  } else if (path.ends_with(".csv")) {
    throw SeriesError{path + " has no column \"file\" in its first line, parted by commas"};
  } else {
    EachLine(text, [&](std::string_view line) {
      if (!IsBlank(line)) list.files.push_back({std::string(line), {}});
    });
  }
  if (list.files.empty()) throw SeriesError{path + " names no file"};
  return list;
}
