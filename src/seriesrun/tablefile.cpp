// The table of a series while it is written.
#include "seriesrun/tablefile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "seriesrun/process.h"
#include "workspace/csv.h"
#include "workspace/lines.h"

namespace seriesrun {
namespace {

[[noreturn]] void RefuseTable(const std::string& path, const std::string& reason) {
  throw SeriesError{"table " + path + ": " + reason};
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

TableFile::TableFile(const std::string& path, const Plan& plan) : path_(path), lock_(path) {
  if (lseek(lock_.File(), 0, SEEK_END) == 0)
    Append(CsvLine(plan.columns) + '\n');
  else
    GoOn(plan);
}

void TableFile::Refuse(const std::string& reason) const { RefuseTable(path_, reason); }

void TableFile::GoOn(const Plan& plan) {
  const SeriesTable table = ReadSeriesTable(path_);
  if (table.columns != plan.columns) Refuse("it has other columns; give another name to --table");
  rows_ = table.rows.size();
  if (rows_ > plan.last - plan.first)
    Refuse("it has more rows than there are files; give another name to --table");
  const int recipe = table.ColumnOf(kRecipeColumn), failed = table.ColumnOf(kFailedColumn);
  for (std::size_t k = 0; k < rows_; ++k) {
    const auto& row = table.rows[k];
    const std::string& file = plan.list.files[plan.first + k].path;
    if (row[0] != file)
      Refuse("its row " + std::to_string(k + 1) + " is that of " + row[0] + ", but the file " +
             "there is " + file + "; give another name to --table");
    if (DigestIn(row[recipe]) != plan.digest)
      Refuse(
          "its rows were made by another recipe or with other options; give another name to "
          "--table");
    failures_ += !row[failed].empty();
  }
  // What a crash has left of a row goes.
  std::string tail(1, '\n');
  off_t end = lseek(lock_.File(), 0, SEEK_END);
  while (end > 0 && pread(lock_.File(), tail.data(), 1, end - 1) == 1 && tail[0] != '\n') --end;
  if (ftruncate(lock_.File(), end) != 0) Refuse(SystemReason());
}

void TableFile::Append(const std::string& lines) {
  const off_t before = lseek(lock_.File(), 0, SEEK_END);
  if (WriteWhole(lock_.File(), lines)) return;
  const std::string reason = SystemReason();
  if (ftruncate(lock_.File(), before) != 0)
    Refuse(reason + ", and what was written of a row is still there");
  Refuse(reason);
}

}  // namespace seriesrun
