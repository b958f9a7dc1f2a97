// The table of a series while it is written.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "seriesrun/plan.h"

namespace seriesrun {

// Keeps other runs off a table, which is made if it is not there.
class TableLock {
 public:
  // Throws SeriesError if another run has it, or it cannot be written.
  explicit TableLock(const std::string& path);
  ~TableLock() { Leave(); }
  TableLock(const TableLock&) = delete;
  TableLock& operator=(const TableLock&) = delete;

  int File() const { return file_; }
  // For a process that must not hold the lock.
  void Leave();

 private:
  int file_ = -1;
};

// The table holds rows of another plan.
struct OtherTable : SeriesError {};

// Rows come at the end, whole: a run that ends at any moment leaves a table that the next one goes
// on with. A lock keeps a second run off it.
class TableFile {
 public:
  // Opens or begins the table of a plan; `again` begins it anew if rows of it tell a failure, and
  // keeps the others. Throws SeriesError if another run has it or it cannot be written, and
  // OtherTable.
  TableFile(const std::string& path, const Plan& plan, bool again);

  // Rows that it held when it was opened, and how many of them tell a failure.
  std::size_t Rows() const { return rows_; }
  std::size_t Failures() const { return failures_; }
  // The line of a row that is not to be done again, without its end; blank if it is.
  std::string_view Kept(std::size_t row) const;
  // Adds lines that end with a line end. What could not be written whole is taken away again, and
  // SeriesError thrown.
  void Append(const std::string& lines);
  void Leave() { lock_->Leave(); }
  // All rows are there.
  void End();

 private:
  void Open(const Plan& plan);
  void CutTail();
  void SetAside(const Plan& plan);
  void Keep(const Plan& plan);
  [[noreturn]] void Refuse(const std::string& reason) const;

  std::string path_, before_;  // the table, and that whose rows are kept
  std::optional<TableLock> lock_;
  std::size_t rows_ = 0, failures_ = 0;
  std::size_t first_ = 0;          // row of the plan that is the table's first
  std::vector<std::string> kept_;  // lines of rows from there on
};

}  // namespace seriesrun
