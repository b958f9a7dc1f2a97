// The table in which a script adds up the counts of all its files.
#pragma once

#include <string>
#include <vector>

class LineWriter;

// Two-theta of the first pattern, and a column of counts for each of the first hundred.
class AddUpTable {
 public:
  // Counts a file that has been read, and keeps the start of its path as the title of its column.
  void CountFile(const std::string& path);
  // Puts the counts of slot 1 into the column of the file counted last. The first pattern says how
  // many rows there are, and shows a box if they are too many; a later one is cut at them, or
  // leaves the rest of its column at 0.
  void Store();
  // False, after a box, if the table could not be written.
  bool Write(const std::string& path) const;
  // Files for which there is no column.
  int FilesLeftOut() const;

 private:
  std::vector<std::string> titles_;
  std::vector<std::vector<float>> columns_;  // two-theta, then the files; none before the first
  int files_ = 0;

  bool WriteTitles(LineWriter& out) const;
  bool WriteRow(LineWriter& out, std::size_t row) const;
};
