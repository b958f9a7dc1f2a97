// What a run of a script has to tell at its end.
#pragma once

#include <string>
#include <vector>

struct ScriptReport {
  int read = 0, written = 0, skipped = 0;  // files
  bool stopped = false;
  std::vector<std::string> notes;  // what a user might not expect

  // A file that could not be read or written, with what its box has said.
  void Fail(const std::string& path, const std::vector<std::string>& boxes);
  // The lines for the box. Failures that are too many for it go to a log beside the script, which
  // is written here.
  std::string Text(const std::string& script) const;

 private:
  struct Failure {
    std::string path, reason;
  };
  std::vector<Failure> failures_;
  std::string RestOfFailures(const std::string& script) const;
};
