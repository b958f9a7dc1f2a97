// A series is run by a program of its own, which goes on where it was stopped.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "series/series.h"

struct SeriesProgress {
  std::size_t done = 0, rows = 0, failed = 0;  // no rows: none has been begun
};

struct SeriesEnd {
  bool whole = false, stopped = false;  // all rows are there; `report` has stopped it
  bool othertable = false;  // the table holds rows of another recipe, other options or other files
  std::string told;         // why it could not go on
  SeriesProgress last;
};

enum class SeriesRows { Missing, Failed };  // which are to be done; those that failed, too

// Several times a second `report` hears how much is done, and stops the run by false.
SeriesEnd RunSeriesProgram(const Series& series, SeriesRows rows,
                           const std::function<bool(const SeriesProgress&)>& report);
