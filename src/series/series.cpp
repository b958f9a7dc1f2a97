// Recipe, files and table of a series.
#include "series/series.h"

#include <algorithm>
#include <filesystem>

#include "series/naturalorder.h"
#include "workspace/csv.h"
#include "workspace/text.h"

namespace fs = std::filesystem;

namespace {

bool IsThere(const std::string& path) {
  std::error_code failure;
  return fs::exists(path, failure);
}

std::string WholePath(const std::string& directory, const std::string& path) {
  return (fs::path(directory) / path).string();
}

std::string SeenFrom(const std::string& directory, const std::string& path) {
  return !directory.empty() && path.starts_with(directory) ? path.substr(directory.size()) : path;
}

bool IsList(const std::string& path) {
  const std::string extension = LowerText(fs::path(path).extension().string());
  return extension == ".csv" || extension == ".txt" || extension == ".list";
}

// Where the paths of a list or table count from: its directory, or the nearest one above it from
// which the file is seen, as it may have been written from there.
std::string BaseOf(const std::string& path, const std::string& file) {
  const std::string directory = FileDirectory(path);
  fs::path base = directory;
  while (!IsThere((base / file).string())) {
    const fs::path above = base.parent_path();
    if (above == base || above.empty()) return directory;
    base = above;
  }
  return base.string();
}

FileList ListOf(const std::string& path) {
  FileList list = ReadFileList(path);
  const std::string base = BaseOf(path, list.files[0].path);
  for (FileList::File& file : list.files) file.path = WholePath(base, file.path);
  if (std::ranges::none_of(list.files, IsThere, &FileList::File::path))
    throw SeriesError{path + " names no file that is there"};
  return list;
}

// What no row can hold, or no pattern be opened by.
void CheckPaths(const FileList& list) {
  for (const FileList::File& file : list.files) {
    if (!FitsField(file.path)) throw SeriesError{TooLongPath(file.path)};
    if (file.path.find_first_of("\r\n") != file.path.npos)
      throw SeriesError{file.path + " has a line end in its name"};
  }
}

bool IsOfFirstFiles(const SeriesTable& table, const FileList& list, const std::string& directory) {
  if (table.rows.size() > list.files.size()) return false;
  const auto file = static_cast<std::size_t>(table.ColumnOf(kFileColumn));
  for (std::size_t row = 0; row < table.rows.size(); ++row)
    if (WholePath(directory, table.rows[row][file]) != list.files[row].path) return false;
  return true;
}

FileList FilesOf(const SeriesTable& table, const std::string& directory) {
  const auto file = static_cast<std::size_t>(table.ColumnOf(kFileColumn));
  FileList list;
  for (const auto& row : table.rows) list.files.push_back({WholePath(directory, row[file]), {}});
  return list;
}

void PutTable(Series& series, const std::string& path, SeriesTable table, std::size_t end) {
  series.tablepath = path;
  series.table = std::move(table);
  series.tableend = end;
}

// Recipe or files are others.
void PlaceTable(Series& series) {
  if (!series.tablechosen && !series.recipe.empty() && !series.list.files.empty())
    series.tablepath = series.directory + fs::path(series.recipe).stem().string() + ".csv";
  ReadTable(series);
}

}  // namespace

std::string NameIn(const std::string& path) { return path.substr(FileDirectory(path).size()); }

void ChooseRecipe(Series& series, const std::string& path) {
  series.recipe = path;
  PlaceTable(series);
}

void ChooseFiles(Series& series, std::vector<std::string> paths) {
  FileList list;
  std::ranges::sort(paths, NaturalOrder);
  const std::string directory = FileDirectory(paths[0]);
  if (paths.size() == 1 && IsList(paths[0])) {
    list = ListOf(paths[0]);
  } else {
    for (std::string& path : paths) list.files.push_back({std::move(path), {}});
  }
  CheckPaths(list);
  series.list = std::move(list);
  series.directory = directory;
  series.map.reset();
  // A table that was there belongs to its own files.
  if (!series.table.rows.empty()) {
    series.tablechosen = false;
    series.tablepath.clear();
  }
  PlaceTable(series);
}

void ChooseTable(Series& series, const std::string& path) {
  if (IsThere(path)) {
    std::size_t end = 0;
    SeriesTable table = ReadSeriesTable(path, &end);
    const std::string directory = FileDirectory(path);
    if (!IsOfFirstFiles(table, series.list, directory)) {
      const auto file = static_cast<std::size_t>(table.ColumnOf(kFileColumn));
      FileList list =
          FilesOf(table, table.rows.empty() ? directory : BaseOf(path, table.rows[0][file]));
      CheckPaths(list);
      series.list = std::move(list);
      series.directory = directory;
      series.map.reset();
    }
    PutTable(series, path, std::move(table), end);
  } else {
    PutTable(series, path, {}, 0);
  }
  series.tablechosen = true;
}

void ReadTable(Series& series) {
  const std::string path = series.tablepath;
  PutTable(series, path, {}, 0);
  if (!IsThere(path)) return;
  try {
    std::size_t end = 0;
    SeriesTable table = ReadSeriesTable(path, &end);
    if (IsOfFirstFiles(table, series.list, FileDirectory(path)))
      PutTable(series, path, std::move(table), end);
  } catch (const SeriesError&) {
  }
}

void FollowTable(Series& series) {
  try {
    ReadMoreRows(series.tablepath, series.table, series.tableend);
  } catch (const SeriesError&) {
  }
}

std::string ListForRun(const Series& series) {
  const auto line = [](std::string first, const std::vector<std::string>& others) {
    std::vector<std::string> cells{std::move(first)};
    cells.insert(cells.end(), others.begin(), others.end());
    return CsvLine(cells) + '\n';
  };
  const std::string directory = FileDirectory(series.tablepath);
  std::string text = line(std::string(kFileColumn), series.list.columns);
  for (const FileList::File& file : series.list.files)
    text += line(SeenFrom(directory, file.path), file.cells);
  return text;
}
