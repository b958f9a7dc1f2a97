// Many chunks at once.
#include "seriesrun/pool.h"

#include <malloc.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <map>

#include "seriesrun/chunk.h"
#include "seriesrun/process.h"
#include "seriesrun/rowrun.h"
#include "workspace/csv.h"
#include "workspace/lines.h"

namespace seriesrun {
namespace {

volatile std::sig_atomic_t stopped = 0;

constexpr int kReportMilliseconds = 100;

// Chunks are given out so far ahead of the table's end at most: rows that wait for a slow one
// before them take memory.
constexpr std::size_t kChunksAhead = 4;

class Pool {
 public:
  Pool(const Plan& plan, TableFile& table, std::size_t jobs)
      : plan_(plan), table_(table), jobs_(jobs), next_(plan.first + table.Rows()) {
    written_ = next_;
    failed_ = table.Failures();
  }
  ~Pool() {
    for (auto& [pipe, chunk] : running_) {
      kill(chunk.pid, SIGKILL);
      WaitFor(chunk.pid);
      close(pipe);
    }
  }
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;

  bool Run(const std::function<void(const Progress&)>& report) {
    while (written_ < plan_.last) {
      if (stopped) return false;
      Start();
      if (!running_.empty()) Listen();
      Write();
      report({written_ - plan_.first, plan_.last - plan_.first, failed_});
    }
    return true;
  }

 private:
  struct Chunk {
    pid_t pid = 0;
    std::size_t first = 0, last = 0;
    std::size_t next = 0;  // the row that it tells next
    std::string text;      // of a line that has not come whole
  };

  // The chunk of a row ends before one that is kept.
  std::size_t EndOfChunk(std::size_t row) const {
    const std::size_t end = std::min(plan_.last, (row / plan_.chunk + 1) * plan_.chunk);
    do ++row;
    while (row < end && table_.Kept(row).empty());
    return row;
  }

  void Begin(std::size_t first, std::size_t last, std::size_t from) {
    const Child child = Fork();
    if (child.pid == 0) {
      table_.Leave();
      for (const auto& [pipe, chunk] : running_) close(pipe);
      RunChunk(plan_, first, last, from, child.pipe);
    }
    running_[child.pipe] = {child.pid, first, last, from, ""};
  }

  // A chunk that the table holds a part of is a chain from its first row on all the same.
  void Start() {
    const std::size_t most = written_ + kChunksAhead * jobs_ * plan_.chunk;
    while (next_ < plan_.last && next_ < most) {
      if (const std::string_view kept = table_.Kept(next_); !kept.empty()) {
        waiting_[next_++] = kept;
        continue;
      }
      if (running_.size() == jobs_) return;
      const std::size_t first = next_ / plan_.chunk * plan_.chunk;
      Begin(first, EndOfChunk(next_), next_);
      next_ = EndOfChunk(next_);
    }
  }

  void Listen() {
    std::vector<pollfd> pipes;
    for (const auto& [pipe, chunk] : running_) pipes.push_back({pipe, POLLIN, 0});
    if (poll(pipes.data(), pipes.size(), kReportMilliseconds) < 0 && errno != EINTR)
      throw SeriesError{"waiting for processes: " + SystemReason()};
    for (const pollfd& each : pipes)
      if (each.revents != 0) Hear(each.fd);
  }

  void Hear(int pipe) {
    char buffer[65536];
    const ssize_t count = read(pipe, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) return;
    if (count <= 0) return End(pipe);
    Chunk& chunk = running_[pipe];
    chunk.text.append(buffer, static_cast<std::size_t>(count));
    std::size_t begin = 0;
    for (std::size_t end; (end = chunk.text.find('\n', begin)) != std::string::npos;
         begin = end + 1)
      Take(chunk, chunk.text.substr(begin, end - begin));
    chunk.text.erase(0, begin);
  }

  void Take(Chunk& chunk, const std::string& line) {
    if (line.starts_with(kFatal)) throw SeriesError{line.substr(1)};
    waiting_[chunk.next++] = line;
  }

  // A chunk that ended before its last row begins anew from there; the second time the row tells
  // it.
  void End(int pipe) {
    const Chunk chunk = running_[pipe];
    running_.erase(pipe);
    close(pipe);
    const int status = WaitFor(chunk.pid);
    if (chunk.next >= chunk.last || stopped) return;
    if (WasKilled(status) && chunk.next != killed_) {
      killed_ = chunk.next;
      return Begin(chunk.first, chunk.last, chunk.next);
    }
    RowResult row;
    row.failed = "the process of its chunk ended: " + HowItEnded(status);
    waiting_[chunk.next] = TableLine(plan_, chunk.next, "", 0, row);
    if (chunk.next + 1 < chunk.last) Begin(chunk.next + 1, chunk.last, chunk.next + 1);
  }

  void Write() {
    std::string lines;
    for (auto row = waiting_.begin(); row != waiting_.end() && row->first == written_;
         row = waiting_.erase(row), ++written_) {
      lines += row->second + '\n';
      failed_ += !CsvCells(row->second).back().empty();
    }
    if (!lines.empty()) table_.Append(lines);
  }

  const Plan& plan_;
  TableFile& table_;
  std::size_t jobs_;
  std::size_t next_;                            // row of the chunk that begins next
  std::size_t written_;                         // rows before it are in the table
  std::size_t failed_;                          // of them
  std::size_t killed_ = SIZE_MAX;               // the row at which a chunk was killed last
  std::map<int, Chunk> running_;                // by the end of their pipes
  std::map<std::size_t, std::string> waiting_;  // lines of rows behind one that has not come
};

}  // namespace

bool RunPlan(const Plan& plan, TableFile& table, int jobs,
             const std::function<void(const Progress&)>& report) {
  malloc_trim(0);  // what list and table took while they were read: forks would copy that, too
  std::signal(SIGPIPE, SIG_IGN);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, [](int) { stopped = 1; });
  return Pool(plan, table, static_cast<std::size_t>(jobs)).Run(report);
}

}  // namespace seriesrun
