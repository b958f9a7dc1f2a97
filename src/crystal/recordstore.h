// A text file of keyed lines, in any order: each lookup hands out a line and uses it up.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Lives as long as one load.
struct RecordStore {
  std::vector<std::string> records;  // a line each; one that has been handed out begins with XXXX
  int nrecords() const { return static_cast<int>(records.size()); }
};

// What the box "Error" tells of a file that could not be read; empty as long as all is well.
struct RecordFailure {
  std::string text, reason;
};

// Fills the store with the lines of a file up to one that begins with END or end, or to its end,
// where END is put. Returns the number of lines, 0 after a failure; an empty file is one.
int ReadRecords(const std::string& path, RecordStore& store, RecordFailure& failure);

// The first line that is left with a key of four letters in either case, without its field of ten
// columns; a control character or a comma ends that field early. A value of nothing but numbers
// comes parted by single commas, without blanks; any other, and that of the key LRES, as it stands.
// False if no such line is left in front of END.
bool FindRecord(RecordStore& store, std::string_view key, std::string& value);
