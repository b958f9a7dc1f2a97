// A series: what is done to which files, and the table of what has come of it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "series/seriesmap.h"
#include "series/seriestable.h"

struct Series {
  std::string recipe;        // path; blank: none yet
  std::string tablepath;     // blank: none yet
  bool tablechosen = false;  // else it lies beside the files under the name of the recipe
  FileList list;             // with whole paths
  std::string directory;     // of the list, or of the first file
  SeriesTable table;         // its rows are those of the first files
  std::size_t tableend = 0;  // the byte up to which it has been read
  bool chain = false;
  int chunk = 100;          // files of a chain
  std::string restart;      // when a fit is done again, as "Rwp>12, a<4.5"; blank: never
  std::string otherrecipe;  // path of one that is tried then; blank: none
  std::shared_ptr<const SeriesMap> map{};  // once it has been read
};

// The name without its directory.
std::string NameIn(const std::string& path);

// Each of these leaves the series as it was if it throws SeriesError.

void ChooseRecipe(Series& series, const std::string& path);
// Patterns, which are put into the order of their names; or a single list of patterns, whose paths
// count from its directory.
void ChooseFiles(Series& series, std::vector<std::string> paths);
// Where the rows go. A table that is there becomes the series, unless its rows are those of the
// first files anyway.
void ChooseTable(Series& series, const std::string& path);

// Takes the rows of the table, unless they are those of other files: that is for a run to tell.
void ReadTable(Series& series);
// Adds the rows that have come since.
void FollowTable(Series& series);

// The list as the program that runs it reads it. Files are named as seen from the directory of the
// table where they lie below it, so that both can be moved together.
std::string ListForRun(const Series& series);
