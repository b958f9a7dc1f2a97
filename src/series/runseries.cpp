// The run of a series by a program of its own.
#include "series/runseries.h"

#include <cstdio>
#include <vector>

#include "series/condition.h"
#include "toolkit/childprocess.h"
#include "workspace/text.h"

namespace {

constexpr const char* kProgram = "quillagram-series";
constexpr int kOtherTable = 3;  // exit status: the table is of another recipe, or of other files

std::vector<std::string> CommandLine(const Series& series, SeriesRows rows) {
  std::vector<std::string> words{kProgram,     "--progress", "--list",
                                 "/dev/stdin", "--table",    series.tablepath};
  if (series.chain) words.insert(words.end(), {"--chain", "--chunk", std::to_string(series.chunk)});
  for (const std::string& when : ConditionsIn(series.restart))
    words.insert(words.end(), {"--restart-when", when});
  if (!series.otherrecipe.empty())
    words.insert(words.end(), {"--restart-with", series.otherrecipe});
  if (rows == SeriesRows::Failed) words.emplace_back("--again");
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

// What stands behind the program's name.
void ReadComplaint(SeriesEnd& end) {
  const std::string name = std::string(kProgram) + ": ";
  if (end.told.starts_with(name)) end.told.erase(0, name.size());
  if (!end.told.empty()) end.told[0] = UpperChar(end.told[0]);
}

}  // namespace

SeriesEnd RunSeriesProgram(const Series& series, SeriesRows rows,
                           const std::function<bool(const SeriesProgress&)>& report) {
  constexpr int kMilliseconds = 100;
  SeriesEnd end;
  ChildProcess child(CommandLine(series, rows), FileDirectory(series.tablepath),
                     ListForRun(series));
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
  end.othertable = child.ExitStatus() == kOtherTable;
  ReadComplaint(end);
  if (!end.whole && end.told.empty()) end.told = std::string(kProgram) + " was ended";
  return end;
}
