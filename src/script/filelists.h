// The two lists of a script: the files that it reads, and those that it writes.
#pragma once

#include <memory>
#include <string>

#include "workspace/lines.h"

struct FileLists {
  std::string in, out;  // paths of the lists; when adding up the second is that of the table
  int files = 0;        // in the input list

  // Takes the names from the Workspace and opens the lists, or the first alone where the counts are
  // added up in a table. False after a box.
  bool Open(bool addsup);
  // The next file to be read, as it stands in the list; empty lines are none.
  bool NextInput(std::string& line) { return NextFile(*inputs_, line); }
  // The next line of the output list, or false where there is none.
  bool NextOutput(std::string& line);
  int OutputsTaken() const { return outputs_->LineNumber(); }

 private:
  std::unique_ptr<LineReader> inputs_, outputs_;
  static bool NextFile(LineReader& list, std::string& line);
  static int CountFiles(const std::string& list);
};
