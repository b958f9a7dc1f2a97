// The table of a series while it is written.
#pragma once

#include <cstddef>
#include <string>

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

// Rows come at the end, whole: a run that ends at any moment leaves a table that the next one goes
// on with. A lock keeps a second run off it.
class TableFile {
 public:
  // Opens or begins the table of a plan. Throws SeriesError if another run has it, or if it is not
  // one of this plan, or cannot be written.
  TableFile(const std::string& path, const Plan& plan);

  // Rows that it held when it was opened, and how many of them tell a failure.
  std::size_t Rows() const { return rows_; }
  std::size_t Failures() const { return failures_; }
  // Adds lines that end with a line end. What could not be written whole is taken away again, and
  // SeriesError thrown.
  void Append(const std::string& lines);
  void Leave() { lock_.Leave(); }

 private:
  void GoOn(const Plan& plan);
  [[noreturn]] void Refuse(const std::string& reason) const;

  std::string path_;
  TableLock lock_;
  std::size_t rows_ = 0, failures_ = 0;
};

}  // namespace seriesrun
