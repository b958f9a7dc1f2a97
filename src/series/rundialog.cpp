// "Run" in the dialog of series: what it asks and tells.
#include "series/rundialog.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <utility>

#include "plot/plot.h"
#include "series/condition.h"
#include "series/runseries.h"
#include "series/viewchoice.h"
#include "toolkit/toolkit.h"
#include "workspace/paths.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

std::string Counted(const SeriesProgress& now) {
  const std::string failed = now.failed > 0 ? ", " + std::to_string(now.failed) + " failed" : "";
  return std::to_string(now.done) + " of " + std::to_string(now.rows) + failed;
}

// The table as it has grown, at its end, and the picture of a column.
void ShowGrowth(SeriesDialog& dialog) {
  NoteSeries(dialog.series, dialog.look);
  ShowSeriesRows(dialog);
  if (ws.nseries > 0) PickSeriesRow(dialog, static_cast<std::size_t>(ws.nseries - 1));
  ShowColumnNames(dialog);
  ShowFileNumber(dialog);
  ShowSeriesStates(dialog);
  // Where there is no pattern to be looked at the column grows before its user's eyes.
  if (ws.viewmode == 0 && !ws.seriescolumn.empty()) ShowView(dialog, ViewColumn);
  if (ws.seriesview == ViewColumn) RefreshPicture(dialog);
  RefreshView();
}

// Once a row is told the table is that of the series.
SeriesEnd Run(SeriesDialog& dialog, SeriesRows rows) {
  constexpr auto kPause = std::chrono::seconds(1);
  Clock::time_point shown{};
  bool first = true;
  const SeriesEnd end = RunSeriesProgram(dialog.series, rows, [&](const SeriesProgress& now) {
    if (now.rows == 0) return WProgress(3, "Trying the recipe");
    if (Clock::now() - shown > kPause) {
      std::exchange(first, false) ? ReadTable(dialog.series) : FollowTable(dialog.series);
      ShowGrowth(dialog);
      shown = Clock::now();
    }
    return WProgress(3, Counted(now), static_cast<float>(now.done) / static_cast<float>(now.rows));
  });
  dialog.again = rows == SeriesRows::Failed && !end.whole && !end.othertable;
  return end;
}

// Nothing is lost: "cell.csv" becomes "cell.csv.old", or "cell.csv.old2".
std::string NameAside(const std::string& path) {
  std::error_code failure;
  std::string aside = path + ".old";
  for (int k = 2; fs::exists(aside, failure); ++k) aside = path + ".old" + std::to_string(k);
  return aside;
}

bool MayWriteAnew(const Series& series, const SeriesEnd& end) {
  const std::string aside = NameAside(series.tablepath);
  const std::string question =
      end.told + ".\nWrite it anew? The rows that are there are kept in " + NameIn(aside) + ".";
  if (!end.othertable || MessageBoxQuery("Series", question) != 1) return false;
  std::error_code failure;
  fs::rename(series.tablepath, aside, failure);
  if (!failure) return true;
  MessageBoxError("Series",
                  FileMessage("Cannot rename the table", series.tablepath, failure.message()));
  return false;
}

// Where nothing was missing there may still be something to do.
bool MayDoAgain(const Series& series) {
  if (ws.nseriesfailed == 0) return false;
  const std::string question = std::to_string(ws.nseriesfailed) + " of " +
                               std::to_string(ws.nseriesfile) +
                               " files have failed. Do these again?";
  const char* others = series.chain ? "\nThe rows behind them in their chains are done again, too."
                                    : "\nAll other rows stay as they are.";
  return MessageBoxQuery("Series", question + others) == 1;
}

// What the program of series would refuse in words of its own; blank where nothing is wrong.
std::string WrongIn(const Series& series) {
  if (!series.restart.empty() && ConditionsIn(series.restart).empty())
    return "\"Restart when\" takes a column, > or <, and a number, as Rwp>12, or several of these "
           "with commas between, not " +
           series.restart;
  if (series.restart.empty() && !series.otherrecipe.empty())
    return "When is the other recipe, " + NameIn(series.otherrecipe) +
           ", to be tried? \"Restart when\" is blank";
  return "";
}

std::string EndOf(const SeriesEnd& end, double seconds) {
  if (end.stopped)
    return "Stopped at " + std::to_string(ws.nseries) + " of " + std::to_string(ws.nseriesfile) +
           "; Run goes on from there";
  if (!end.whole) return OnOneLine(end.told);
  return std::to_string(ws.nseries) + " rows, " + std::to_string(ws.nseriesfailed) + " failed, " +
         Fixed(seconds, 1) + " s";
}

}  // namespace

void RunSeriesOf(SeriesDialog& dialog) {
  Series& series = dialog.series;
  if (const std::string wrong = WrongIn(series); !wrong.empty())
    return MessageBoxError("Series", wrong);
  const Clock::time_point begin = Clock::now();
  bool allthere = ws.nseries == ws.nseriesfile;
  SeriesEnd end = Run(dialog, dialog.again ? SeriesRows::Failed : SeriesRows::Missing);
  while (MayWriteAnew(series, end)) {
    allthere = false;
    end = Run(dialog, SeriesRows::Missing);
  }
  if (allthere && end.whole && MayDoAgain(series)) {
    end = Run(dialog, SeriesRows::Failed);
    end.othertable = false;  // it is what lies where the table is put aside: to be told
  }
  if (!end.whole && !end.stopped && !end.othertable) MessageBoxError("Series", end.told);
  ReadTable(series);
  ShowGrowth(dialog);
  if (ws.seriesview == ViewPattern && end.whole) ShowView(dialog, ViewColumn);
  ShowSeriesDialog(dialog);
  WindowOutStatusBar(3, EndOf(end, std::chrono::duration<double>(Clock::now() - begin).count()));
}
