// Entry of the program that does a recipe to many files.
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include "seriesrun/join.h"
#include "seriesrun/options.h"
#include "seriesrun/plan.h"
#include "seriesrun/pool.h"
#include "shell/shell.h"
#include "toolkit/replay/transcript.h"

namespace {

using namespace seriesrun;
using Clock = std::chrono::steady_clock;

enum ExitStatus { AllThere = 0, CannotGoOn = 1, WrongUse = 2, WrongTable = 3, Stopped = 130 };

// The program as a transcript would find it, with none at hand yet.
void StartUp(const char* program, const Options& options) {
  std::vector<std::string> words{program,          "--strict", "--settings",
                                 options.settings, "--",       "/dev/null"};
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  WInitialise(static_cast<int>(arguments.size()), arguments.data());
  replay::NoInput();
  StartProgram();
}

// A counter for a person at a terminal, lines for everybody else.
class Teller {
 public:
  Teller(const Options& options, std::size_t before)
      : lines_(options.progress), counter_(isatty(STDERR_FILENO)), before_(before) {}

  void operator()(const Progress& now) {
    constexpr auto kPause = std::chrono::milliseconds(200);
    if (!lines_ && !counter_) return;
    if (Clock::now() - told_ < kPause && now.done < now.rows) return;
    told_ = Clock::now();
    if (lines_)
      TellProgram(now);
    else
      std::fprintf(stderr, "\r%s\033[K", Counter(now).c_str());
  }

  void End(const Progress& now) const {
    if (lines_) return;
    std::fprintf(stderr, "%s%s\n", counter_ ? "\r\033[K" : "", Counter(now).c_str());
  }

 private:
  // Where the program that wanted to know is gone, nobody wants the run.
  static void TellProgram(const Progress& now) {
    if (std::fprintf(stderr, "done %zu of %zu, %zu failed\n", now.done, now.rows, now.failed) < 0)
      std::raise(SIGTERM);
  }

  std::string Counter(const Progress& now) const {
    const double seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
    const double speed = static_cast<double>(now.done - before_) / std::max(seconds, 1e-3);
    std::string text = std::to_string(now.done) + " of " + std::to_string(now.rows) + " files";
    if (now.failed > 0) text += ", " + std::to_string(now.failed) + " failed";
    char rate[64];
    std::snprintf(rate, sizeof rate, speed < 10 ? ", %.2g a second" : ", %.0f a second", speed);
    text += rate;
    if (now.done < now.rows && now.done > before_) {
      std::snprintf(rate, sizeof rate, ", %.0f s left",
                    static_cast<double>(now.rows - now.done) / speed);
      text += rate;
    }
    return text;
  }

  bool lines_, counter_;
  std::size_t before_;
  Clock::time_point begin_ = Clock::now(), told_{};
};

int RunSeries(const char* program, const Options& options) {
  StartUp(program, options);
  const Plan plan = MakePlan(options);
  Rehearse(plan);
  if (options.check) {
    std::printf("%zu files, %zu columns\n", plan.list.Count(), plan.columns.size());
    return AllThere;
  }
  TableFile table(IOsFullPath(options.table), plan, options.again);
  Progress last{table.Rows(), plan.last - plan.first, table.Failures()};
  Teller teller(options, last.done);
  int status = Stopped;
  std::string reason = "stopped";
  try {
    const bool whole = RunPlan(plan, table, options.jobs, [&](const Progress& now) {
      last = now;
      teller(now);
    });
    teller.End(last);
    if (whole) {
      table.End();
      return AllThere;
    }
  } catch (const SeriesError& error) {
    status = CannotGoOn;
    reason = error.text;
  }
  std::fprintf(stderr,
               "quillagram-series: %s\n%zu of %zu rows are in the table; the same command goes on "
               "with it\n",
               reason.c_str(), last.done, last.rows);
  return status;
}

int Refused(const SeriesError& error, ExitStatus status, const char* advice = "") {
  std::fprintf(stderr, "quillagram-series: %s%s\n", error.text.c_str(), advice);
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  const Options options = ReadOptions(argc, argv);
  try {
    if (!options.join) return RunSeries(argv[0], options);
    JoinParts(options);
    return AllThere;
  } catch (const OtherTable& error) {
    // A program that follows the run has advice of its own.
    return Refused(error, WrongTable, options.progress ? "" : "; give another name to --table");
  } catch (const SeriesError& error) {
    return Refused(error, WrongUse);
  }
}
