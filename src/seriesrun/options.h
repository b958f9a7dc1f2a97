// The command line of the program that runs series.
#pragma once

#include <string>
#include <vector>

#include "series/condition.h"

namespace seriesrun {

struct Options {
  std::string recipe;
  std::vector<std::string> otherrecipes;  // tried where `restart` holds
  std::vector<std::string> files;         // or, of a join, the parts
  std::string list;
  std::string table;
  int jobs = 0;  // processes at once
  int chunk = 100;
  int part = 1, parts = 1;
  bool chain = false;
  std::vector<Condition> restart;  // any of them
  int limit = 600;                 // seconds of one file; 0: none
  std::string settings = "none";
  bool again = false;  // rows that failed
  bool check = false, join = false, progress = false;
};

// Ends the program for --help, --version and, with exit status 2, for what cannot be.
Options ReadOptions(int argc, char** argv);

}  // namespace seriesrun
