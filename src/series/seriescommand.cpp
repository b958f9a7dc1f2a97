// "Series": a recipe done to many patterns, and what has come of it, beside the plot.
#include "series/seriescommand.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <utility>

#include "plot/beside.h"
#include "plot/guestview.h"
#include "plot/plot.h"
#include "series/condition.h"
#include "series/picture.h"
#include "series/runseries.h"
#include "series/seriesdialog.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/paths.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// ---- Views ----

void ShowPattern() {
  ws.viewmode = 1;
  ws.seriesview = ViewPattern;
}

bool Show(SeriesDialog& dialog, int view) {
  return ShowPicture(dialog.series, dialog.look.scale, static_cast<SeriesView>(view));
}

// The picture on show, with what has become of table and choices.
void RefreshPicture(SeriesDialog& dialog) {
  if (ws.seriesview != ViewPattern && !Show(dialog, ws.seriesview)) ShowPattern();
  ShowSeriesView();
}

void ChooseRow(SeriesDialog& dialog, int row) {
  if (ws.nseriesfile == 0) return;
  row = std::clamp(row, 1, ws.nseriesfile);
  ShowFile(dialog.series, row, dialog.step);
  PickSeriesRow(dialog, static_cast<std::size_t>(row - 1));
  ShowFileNumber(dialog);
  ShowSeriesView();
}

// Where there is nothing to be seen the view stays as it was.
void ChooseView(SeriesDialog& dialog, int view) {
  if (view == ViewPattern && ws.seriesrow > 0) return ChooseRow(dialog, ws.seriesrow);
  if (view == ViewPattern)
    ShowPattern();
  else
    Show(dialog, view);
  ShowSeriesView();
}

void ChooseColumn(SeriesDialog& dialog, std::string& field, int number) {
  field = NameOfColumnNumber(dialog, number);
  const bool upward = &field == &ws.seriescolumn;
  Show(dialog, upward || ws.seriesview == ViewPattern ? ViewColumn : ws.seriesview);
  ShowColumnNames(dialog);
  ShowSeriesView();
}

// A head shows its column; that of the column on show makes it the one along which others are
// drawn, and then the number of the file stands there again.
void TakeHead(SeriesDialog& dialog, std::size_t column) {
  constexpr std::size_t kFirst = 3;  // behind number and file
  if (column < kFirst) return ChooseColumn(dialog, ws.seriesalong, 0);
  const auto at = static_cast<std::size_t>(dialog.columns[column - kFirst]);
  const std::string name = dialog.series.table.columns[at];
  const int number = NumberOfColumn(dialog, name);
  if (number == 0) return WindowOutStatusBar(3, name + " is no column of numbers");
  if (name == ws.seriesalong) return ChooseColumn(dialog, ws.seriesalong, 0);
  const bool again = name == ws.seriescolumn && ws.seriesview == ViewColumn;
  ChooseColumn(dialog, again ? ws.seriesalong : ws.seriescolumn, number);
}

// ---- Recipe, files, table ----

// Does what may throw, and tells of that in a box. Another series begins at its first page.
template <class Choose>
void Try(SeriesDialog& dialog, Choose choose) {
  const auto files = dialog.series.list.files;
  dialog.again = false;
  try {
    choose();
  } catch (const SeriesError& error) {
    MessageBoxError("Series", error.text);
  }
  if (!std::ranges::equal(files, dialog.series.list.files, {}, &FileList::File::path,
                          &FileList::File::path)) {
    dialog.page = 0;
    ws.seriesrow = 0;
    // A list with columns of its own tells what the others are best drawn along.
    if (!dialog.series.list.columns.empty()) ws.seriescolumn = ws.seriesalong = "";
  }
  ShowSeriesDialog(dialog);
  RefreshPicture(dialog);
}

void AskRecipe(SeriesDialog& dialog) {
  std::string path = dialog.series.recipe.empty() ? "*.recipe" : dialog.series.recipe;
  WSelectFile("Recipe|*.recipe|", FileMustExist, path, "Recipe of the series");
  if (path.empty() || !AcceptPath(path)) return;
  Try(dialog, [&] { ChooseRecipe(dialog.series, path); });
}

void AskOther(SeriesDialog& dialog) {
  std::string path = dialog.series.otherrecipe.empty() ? "*.recipe" : dialog.series.otherrecipe;
  WSelectFile("Recipe|*.recipe|", FileMustExist, path, "Recipe for another start");
  if (path.empty() || !AcceptPath(path)) return;
  dialog.series.otherrecipe = path;
  ShowSeriesDialog(dialog);
}

void AskFiles(SeriesDialog& dialog) {
  auto paths = WSelectFiles("Patterns of any format|*|List of patterns|*.csv;*.txt;*.list|",
                            FileMustExist, "*", "Files of the series");
  if (!paths.empty()) Try(dialog, [&] { ChooseFiles(dialog.series, std::move(paths)); });
}

void AskTable(SeriesDialog& dialog) {
  std::string path = dialog.series.tablepath.empty() ? "series.csv" : dialog.series.tablepath;
  WSelectFile("Table of a series|*.csv|", FileMayBeNew, path, "Table of the series");
  if (path.empty() || !AcceptPath(path)) return;
  Try(dialog, [&] { ChooseTable(dialog.series, path); });
}

// ---- Running ----

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
  if (ws.viewmode == 0 && !ws.seriescolumn.empty()) Show(dialog, ViewColumn);
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

// A table of others is left alone.
void RunIt(SeriesDialog& dialog) {
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
  if (ws.seriesview == ViewPattern && end.whole) Show(dialog, ViewColumn);
  ShowSeriesDialog(dialog);
  WindowOutStatusBar(3, EndOf(end, std::chrono::duration<double>(Clock::now() - begin).count()));
}

// ---- The dialog ----

void OnGrid(SeriesDialog& dialog, const Message& message) {
  const auto row = static_cast<int>(message.y);
  if (row > 0) return ChooseRow(dialog, static_cast<int>(dialog.page) + row);
  TakeHead(dialog, static_cast<std::size_t>(message.x));
}

// A blank number is 0, and leaves what there was.
void TakeChunk(Series& series, int files) {
  if (files > 0) series.chunk = files;
  WDialogPutInteger(FieldChunk, series.chunk);
}

void OnField(SeriesDialog& dialog, int field) {
  int number = 0;
  if (field == BoxChain) {
    WDialogGetCheckBox(field, number);
    dialog.series.chain = number != 0;
    ShowSeriesStates(dialog);
  }
  if (field == FieldRestart) WDialogGetString(field, dialog.series.restart);
  if (field >= ChoiceMap && field <= ChoicePattern) ChooseView(dialog, field - ChoiceMap + ViewMap);
  if (field >= ChoiceLinear && field <= ChoiceLogarithm) {
    dialog.look.scale = static_cast<CountScale>(field - ChoiceLinear);
    RefreshPicture(dialog);
  }
  if (field < FieldColumn) return;
  WDialogGetInteger(field, number);
  if (field == FieldChunk) TakeChunk(dialog.series, number);
  if (field == FieldColumn) ChooseColumn(dialog, ws.seriescolumn, number);
  if (field == FieldAlong) ChooseColumn(dialog, ws.seriesalong, number);
  if (field == FieldSecond) ChooseColumn(dialog, ws.seriessecond, number);
  if (field == FieldRow) ChooseRow(dialog, number);
}

// False closes the dialog.
bool OnButton(SeriesDialog& dialog, int button) {
  if (button == ButtonRecipe) AskRecipe(dialog);
  if (button == ButtonOther) AskOther(dialog);
  if (button == ButtonNoOther) {
    dialog.series.otherrecipe.clear();
    ShowSeriesDialog(dialog);
  }
  if (button == ButtonFiles) AskFiles(dialog);
  if (button == ButtonTable) AskTable(dialog);
  if (button == ButtonRun) RunIt(dialog);
  return button != ButtonCancel;
}

bool OnMessage(SeriesDialog& dialog, const Message& message) {
  if (message.type == MessageButton) return OnButton(dialog, message.value1);
  const bool field = message.type == MessageFieldChanged;
  if (field && message.value1 == Grid)
    OnGrid(dialog, message);
  else if (field)
    OnField(dialog, message.value1);
  if (message.type == MessageMouseDown && message.value1 == MouseLeft)
    if (const int row = SeriesRowAt(message.x, message.y)) ChooseRow(dialog, row);
  return true;
}

// Undo may have brought back the picture of an earlier series, or none.
void FollowView(SeriesDialog& dialog) {
  ws.seriesview = Guest() ? static_cast<int>(ShownSeries().kind) : ViewPattern;
  RefreshPicture(dialog);
}

Outcome LookAtSeries(const Arguments& arguments) {
  static SeriesDialog dialog;  // stays until another series is chosen
  dialog.step = arguments.step;
  WTell("");  // what an earlier command has told is not of the series
  LoadSeriesDialog(dialog);
  FollowView(dialog);
  RefreshView();
  RunBeside(SeriesDialogNumber, [](const Message& message) { return OnMessage(dialog, message); });
  WDialogUnload();
  dialog.step = {};
  return Outcome::Done;
}

constexpr Command kCommands[] = {
    {.item = {MenuSeries, "Series...", MenuPopupMulti},
     .title = "Series",
     .run = LookAtSeries,
     .redraw = Redraw::Quiet,
     .undo = true},
};

}  // namespace

std::span<const Command> SeriesCommands() { return kCommands; }
