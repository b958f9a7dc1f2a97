// The run of a series by a program of its own.
#include "series/runseries.h"

#include <cstdio>
#include <vector>

#include "toolkit/childprocess.h"
#include "workspace/text.h"

namespace {

constexpr const char* kProgram = "quillagram-series";

std::vector<std::string> CommandLine(const Series& series) {
  std::vector<std::string> words{kProgram,     "--progress", "--list",
                                 "/dev/stdin", "--table",    series.tablepath};
  if (series.chain) words.emplace_back("--chain");
  if (!series.restart.empty()) words.insert(words.end(), {"--restart-when", series.restart});
  words.insert(words.end(), {"--", series.recipe});
  return words;
}

// Takes the whole lines off a text: progress, and what else there is.
void TakeLines(std::string& text, SeriesEnd& end) {
  std::size_t begin = 0;
  for (std::size_t stop; (stop = text.find('\n', begin)) != text.npos; begin = stop + 1) {
    const std::string line = text.substr(begin, stop - begin);
    SeriesProgress now;
    if (std::sscanf(line.c_str(), "done %zu of %zu, %zu failed", &now.done, &now.rows,
                    &now.failed) == 3)
      end.last = now;
    else
      end.told += (end.told.empty() ? "" : "\n") + line;
  }
  text.erase(0, begin);
}

// What stands behind the program's name, and whether another table would do.
void ReadComplaint(SeriesEnd& end) {
  const std::string name = std::string(kProgram) + ": ", advice = "; give another name to --table";
  if (end.told.starts_with(name)) end.told.erase(0, name.size());
  if (!end.told.empty()) end.told[0] = UpperChar(end.told[0]);
  const std::size_t at = end.told.find(advice);
  end.othertable = at != end.told.npos;
  if (end.othertable) end.told.erase(at);
}

}  // namespace

SeriesEnd RunSeriesProgram(const Series& series,
                           const std::function<bool(const SeriesProgress&)>& report) {
  constexpr int kMilliseconds = 100;
  SeriesEnd end;
  ChildProcess child(CommandLine(series), FileDirectory(series.tablepath), ListForRun(series));
  if (!child.Failure().empty()) {
    end.told = std::string("Cannot start ") + kProgram + ": " + child.Failure();
    return end;
  }
  std::string text;
  while (child.Listen(kMilliseconds, text)) {
    TakeLines(text, end);
    if (end.stopped || report(end.last)) continue;
    end.stopped = true;
    child.Stop();
  }
  TakeLines(text, end);
  end.whole = child.ExitStatus() == 0;
  ReadComplaint(end);
  if (!end.whole && end.told.empty()) end.told = std::string(kProgram) + " was ended";
  return end;
}
