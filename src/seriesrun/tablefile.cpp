// The table of a series while it is written.
#include "seriesrun/tablefile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "seriesrun/process.h"
#include "workspace/csv.h"
#include "workspace/lines.h"

namespace seriesrun {
namespace {

[[noreturn]] void RefuseTable(const std::string& path, const std::string& reason) {
  throw SeriesError{"table " + path + ": " + reason};
}

bool IsThere(const std::string& path) {
  std::error_code failure;
  return std::filesystem::exists(path, failure);
}

// The whole rows of a table. Throws OtherTable if they are not those of the plan.
SeriesTable RowsOf(const Plan& plan, const std::string& path) {
  const auto refuse = [&](const std::string& reason) {
    throw OtherTable{{"table " + path + ": " + reason}};
  };
  SeriesTable table = ReadSeriesTable(path);
  if (table.columns != plan.columns) refuse("it has other columns");
  if (table.rows.size() > plan.last - plan.first) refuse("it has more rows than there are files");
  const int recipe = table.ColumnOf(kRecipeColumn);
  for (std::size_t k = 0; k < table.rows.size(); ++k) {
    const auto& row = table.rows[k];
    const std::string file = plan.list.Path(plan.first + k);
    if (row[0] != file)
      refuse("its row " + std::to_string(k + 1) + " is that of " + row[0] + ", but the file " +
             "there is " + file);
    if (DigestIn(row[recipe]) != plan.digest)
      refuse("its rows were made by another recipe or with other options");
  }
  return table;
}

}  // namespace

TableLock::TableLock(const std::string& path) {
  file_ = open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (file_ < 0) throw SeriesError{"cannot write " + path + ": " + SystemReason()};
  std::string reason;
  struct stat status {};
  if (flock(file_, LOCK_EX | LOCK_NB) != 0)
    reason = errno == EWOULDBLOCK ? "another run is writing it" : SystemReason();
  else if (fstat(file_, &status) != 0 || !S_ISREG(status.st_mode))
    reason = "it is no ordinary file";
  if (reason.empty()) return;
  Leave();
  RefuseTable(path, reason);
}

void TableLock::Leave() {
  if (file_ >= 0) close(file_);
  file_ = -1;
}

TableFile::TableFile(const std::string& path, const Plan& plan, bool again)
    : path_(path), before_(path + ".before"), first_(plan.first) {
  Open(plan);
  if (!again) return;
  // A run that was stopped while it did rows again goes on with what it had put aside.
  const bool whole = rows_ == plan.last - plan.first;
  if (failures_ > 0 && (whole || !IsThere(before_))) SetAside(plan);
  if (IsThere(before_)) Keep(plan);
}

void TableFile::Refuse(const std::string& reason) const { RefuseTable(path_, reason); }

void TableFile::Open(const Plan& plan) {
  lock_.reset();
  lock_.emplace(path_);
  rows_ = failures_ = 0;
  if (lseek(lock_->File(), 0, SEEK_END) == 0) return Append(CsvLine(plan.columns) + '\n');
  const SeriesTable table = RowsOf(plan, path_);
  const auto failed = static_cast<std::size_t>(table.ColumnOf(kFailedColumn));
  rows_ = table.rows.size();
  for (const auto& row : table.rows) failures_ += !row[failed].empty();
  CutTail();
}

// What a crash has left of a row goes.
void TableFile::CutTail() {
  std::string tail(1, '\n');
  off_t end = lseek(lock_->File(), 0, SEEK_END);
  while (end > 0 && pread(lock_->File(), tail.data(), 1, end - 1) == 1 && tail[0] != '\n') --end;
  if (ftruncate(lock_->File(), end) != 0) Refuse(SystemReason());
}

// The name that it gets may be that of a file of the user's.
void TableFile::SetAside(const Plan& plan) {
  if (IsThere(before_)) RowsOf(plan, before_);
  if (std::rename(path_.c_str(), before_.c_str()) != 0)
    Refuse("it cannot be named " + before_ + ": " + SystemReason());
  Open(plan);
}

// In a chain what follows a row that failed has begun with other values than it will now.
void TableFile::Keep(const Plan& plan) {
  const SeriesTable table = RowsOf(plan, before_);
  const auto failed = static_cast<std::size_t>(table.ColumnOf(kFailedColumn));
  bool good = true;
  for (const auto& row : table.rows) {
    if (!plan.chain || (first_ + kept_.size()) % plan.chunk == 0) good = true;
    good = good && row[failed].empty();
    kept_.push_back(good ? CsvLine(row) : "");
  }
}

std::string_view TableFile::Kept(std::size_t row) const {
  return row - first_ < kept_.size() ? kept_[row - first_] : std::string_view();
}

void TableFile::End() {
  if (!kept_.empty()) std::remove(before_.c_str());
}

void TableFile::Append(const std::string& lines) {
  const off_t before = lseek(lock_->File(), 0, SEEK_END);
  if (WriteWhole(lock_->File(), lines)) return;
  const std::string reason = SystemReason();
  if (ftruncate(lock_->File(), before) != 0)
    Refuse(reason + ", and what was written of a row is still there");
  Refuse(reason);
}

}  // namespace seriesrun
