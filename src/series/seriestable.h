// The table of a series: one row for each pattern file, in the order of their list.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Why a series, its list or its table cannot be used, as a sentence for its user.
struct SeriesError {
  std::string text;
};

// Columns that every table has, and that of a chain. The others are those of the list, then those
// of the recipe.
inline constexpr std::string_view kFileColumn = "file", kDateColumn = "date",
                                  kStartColumn = "start", kRecipeColumn = "recipe",
                                  kBoxesColumn = "boxes", kFailedColumn = "failed";

struct SeriesTable {
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows;  // each as long as `columns`

  // From 0; -1 if there is none of the name.
  int ColumnOf(std::string_view name) const;
};

// Reads a table as it is written, or any list in the form of one: rows are filled up to the width
// of the heading. A last row without a line end is one that is being written, and left out; `end`
// is the byte at which it begins. Throws SeriesError.
SeriesTable ReadSeriesTable(const std::string& path, std::size_t* end = nullptr);
// Adds to a table the rows that stand behind the byte `from`, which moves on to the end of the last
// one.
void ReadMoreRows(const std::string& path, SeriesTable& table, std::size_t& from);

// The files of a list: one path a line, or rows of a table with a column "file", whose other
// columns go with them.
struct FileList {
  std::vector<std::string> columns;  // beside "file"
  struct File {
    std::string path;
    std::vector<std::string> cells;  // of these columns
  };
  std::vector<File> files;
};

// Blank lines count for nothing, and "-" is standard input. Throws SeriesError, for an empty list
// too, and for one that ends in .csv without a column "file".
FileList ReadFileList(const std::string& given);
