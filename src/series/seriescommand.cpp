// "Series": a recipe done to many patterns, and what has come of it, beside the plot.
#include "series/seriescommand.h"

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "plot/beside.h"
#include "plot/guestview.h"
#include "plot/plot.h"
#include "series/columns.h"
#include "series/condition.h"
#include "series/look.h"
#include "series/picture.h"
#include "series/runseries.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/paths.h"
#include "workspace/record.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

using namespace controls;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

enum SeriesDialog {
  DialogNumber = 148,
  Grid = 1900,
  FieldRecipe,
  ButtonRecipe,
  FieldFiles,
  ButtonFiles,
  FieldTable,
  ButtonTable,
  BoxChain,
  FieldRestart,
  ChoiceMap,
  ChoiceWaterfall,
  ChoiceColumn,
  ChoicePattern,
  ChoiceLinear,
  ChoiceSquareRoot,
  ChoiceLogarithm,
  FieldColumn,
  NameOfColumn,
  FieldAlong,
  NameOfAlong,
  FieldSecond,
  NameOfSecond,
  FieldRow,
  NameOfRow,
  NameOfScale,
  ButtonRun,
};

constexpr const char* kView = "View";

constexpr Control InView(Control control) {
  control.group = kView;
  return control;
}

constexpr Control Number(int id, const char* label, int lowest, const char* tip) {
  return InView(Tip(Spin(id, label, nullptr, lowest, 999999999), tip));
}

constexpr Control NameBeside(int id) { return InView(Beside(Label(id, ""))); }

constexpr Control kControls[] = {
    Label(FieldRecipe, "Recipe"),
    Beside(Press(ButtonRecipe, "Recipe...")),
    Label(FieldFiles, "Files"),
    Beside(Press(ButtonFiles, "Files...")),
    Label(FieldTable, "Table"),
    Beside(Press(ButtonTable, "Table...")),
    Tip(Entry(FieldRestart, "Restart when", nullptr),
        "as Rwp>12, or with a column: the file is done again from the recipe's own values"),
    Beside(Box(BoxChain, "Chain", nullptr)),
    Choice(ChoiceMap, "Map", kView),
    Beside(Choice(ChoiceWaterfall, "Waterfall", kView)),
    Beside(Choice(ChoiceColumn, "Column", kView)),
    Beside(Choice(ChoicePattern, "Pattern", kView)),
    Number(FieldColumn, "Upward", 1, "the column that is shown; a click on its head shows it, too"),
    NameBeside(NameOfColumn),
    Beside(Number(FieldAlong, "Along", 0,
                  "0: the number of the file; or a column, as by another click on its head")),
    NameBeside(NameOfAlong),
    Number(FieldSecond, "Second", 0, "another column in the same picture; 0: none"),
    NameBeside(NameOfSecond),
    Beside(Number(FieldRow, "File", 1, "opens it, as a click on its row or in a picture does")),
    NameBeside(NameOfRow),
    InView(Label(NameOfScale, "Counts")),
    Beside(Choice(ChoiceLinear, "Linear", kView)),
    Beside(Choice(ChoiceSquareRoot, "Square root", kView)),
    Beside(Choice(ChoiceLogarithm, "Logarithm", kView)),
    {.id = Grid, .kind = ControlKind::Grid, .label = "No.|file", .heads = true},
    Press(ButtonRun, "Run"),
    {ButtonCancel, ControlKind::Button, "Close"},
};
constexpr DialogResource kDialog{DialogNumber, "Series", kControls, Grid};

// The series, which stays until another one is chosen.
Series series;
SeriesLook look;

// What of it the dialog shows.
struct Shown {
  const UndoStep& step;
  std::size_t page = 0;        // the row at the top of the table, from 0
  std::vector<int> columns{};  // of the table, from the second one of the grid on
  std::vector<std::string> heads{};
};

constexpr std::size_t kPageRows = 2000;

// ---- What the dialog shows ----

// As much of a text as its field has room for.
constexpr int kTextLetters = 34, kNameLetters = 14;
std::string Fitting(const std::string& text, int letters) {
  const std::string begin(Cut(text, letters));
  return begin.size() == text.size() ? text : std::string(Cut(text, letters - 3)) + "...";
}

// 0 for the number of the file, else which of the columns that can be drawn.
int NumberOf(const std::string& name) {
  const auto at = std::ranges::find(look.numbers, series.table.ColumnOf(name));
  return at == look.numbers.end() ? 0 : static_cast<int>(at - look.numbers.begin()) + 1;
}

std::string NameOfNumber(int number) {
  if (number < 1 || look.numbers.empty()) return "";
  const std::size_t at =
      std::min<std::size_t>(static_cast<std::size_t>(number), look.numbers.size());
  return series.table.columns[static_cast<std::size_t>(look.numbers[at - 1])];
}

// The file has a column of its own, failures a colour, and few instruments tell the date.
bool IsInGrid(std::size_t column) {
  static constexpr std::string_view kOthers[] = {kFileColumn, kRecipeColumn, kBoxesColumn,
                                                 kFailedColumn};
  const std::string& name = series.table.columns[column];
  if (name == kDateColumn) return NumberOf(name) > 0;
  return std::ranges::find(kOthers, name) == std::end(kOthers);
}

void ShowHeads(Shown& shown) {
  std::vector<std::string> heads{"No.", "file"};
  shown.columns.clear();
  for (std::size_t column = 0; column < series.table.columns.size(); ++column) {
    if (!IsInGrid(column)) continue;
    shown.columns.push_back(static_cast<int>(column));
    heads.push_back(series.table.columns[column]);
  }
  if (heads == shown.heads) return;
  shown.heads = heads;
  WGridPutHeads(Grid, std::move(heads));
}

std::vector<std::string> CellsOf(const Shown& shown, std::size_t row) {
  std::vector<std::string> cells{std::to_string(row + 1), NameIn(series.list.files[row].path)};
  if (row < series.table.rows.size())
    for (const int column : shown.columns)
      cells.push_back(series.table.rows[row][static_cast<std::size_t>(column)]);
  return cells;
}

void ShowRows(Shown& shown) {
  constexpr int kDarkRed = 0x000080, kPink = 0xd8d8ff;  // told apart on grey, too
  const std::size_t last = std::min(series.list.files.size(), shown.page + kPageRows);
  std::vector<std::vector<std::string>> rows;
  std::vector<int> failed;
  for (std::size_t row = shown.page; row < last; ++row) {
    rows.push_back(CellsOf(shown, row));
    if (row < series.table.rows.size() && HasFailed(series.table, row))
      failed.push_back(static_cast<int>(rows.size()));
  }
  ShowHeads(shown);
  WGridPutRows(Grid, std::move(rows), 0);
  WGridColourRows(Grid, failed, kDarkRed, kPink);
}

// The page of a row, from 0, and the row in it.
void PickRow(Shown& shown, std::size_t row) {
  if (const std::size_t page = row / kPageRows * kPageRows; page != shown.page) {
    shown.page = page;
    ShowRows(shown);
  }
  int column = 0, before = 0;
  WGridPos(Grid, column, before);
  WGridPick(Grid, std::max(column, 1), static_cast<int>(row - shown.page) + 1);
}

void ShowNames() {
  const struct {
    int field, label;
    const std::string& name;
    const char* none;
  } rows[] = {{FieldColumn, NameOfColumn, ws.seriescolumn, ""},
              {FieldAlong, NameOfAlong, ws.seriesalong, "file"},
              {FieldSecond, NameOfSecond, ws.seriessecond, "none"}};
  for (const auto& [field, label, name, none] : rows) {
    WDialogPutInteger(field, NumberOf(name));
    WDialogPutString(label, Fitting(name.empty() ? none : name, kNameLetters));
    WDialogFieldState(field, !look.numbers.empty());
  }
}

void ShowRowNumber(const Shown& shown) {
  const std::size_t files = series.list.files.size();
  WDialogPutInteger(FieldRow, ws.seriesrow);
  WDialogPutString(NameOfRow, "of " + std::to_string(files));
  if (files <= kPageRows) return;
  const std::size_t last = std::min(files, shown.page + kPageRows);
  WindowOutStatusBar(
      4, "The table shows rows " + std::to_string(shown.page + 1) + " to " + std::to_string(last));
}

void ShowView() { WDialogPutRadioButton(ChoiceMap + ws.seriesview - 1); }

void ShowStates() {
  const bool files = !series.list.files.empty();
  for (const int field : {ChoiceMap, ChoiceWaterfall, FieldRow}) WDialogFieldState(field, files);
  WDialogFieldState(ChoiceColumn, !look.numbers.empty());
  WDialogFieldState(ButtonRun, files && !series.recipe.empty());
}

void ShowAll(Shown& shown) {
  NoteSeries(series, look);
  const auto put = [](int field, const std::string& text) {
    WDialogPutString(field, text.empty() ? "none chosen" : Fitting(text, kTextLetters));
  };
  put(FieldRecipe, NameIn(series.recipe));
  put(FieldFiles, FilesText(series, kTextLetters));
  put(FieldTable, NameIn(series.tablepath));
  WDialogPutString(FieldRestart, series.restart);
  WDialogPutCheckBox(BoxChain, series.chain);
  WDialogPutRadioButton(ChoiceLinear + static_cast<int>(look.scale));
  ShowRows(shown);
  if (ws.seriesrow > 0) PickRow(shown, static_cast<std::size_t>(ws.seriesrow - 1));
  ShowNames();
  ShowRowNumber(shown);
  ShowStates();
  ShowView();
}

// ---- Views ----

// Where there is nothing to be seen the view stays as it was.
void ChangeView(int view) {
  if (view == ViewPattern && ws.seriesrow == 0) {
    ws.viewmode = 1;
    ws.seriesview = ViewPattern;
  } else if (view != ViewPattern) {
    ShowPicture(series, look, static_cast<SeriesView>(view));
  }
  ShowView();
}

// The picture on show, with what has become of table and choices.
void RefreshPicture() {
  if (ws.seriesview != ViewPattern)
    ShowPicture(series, look, static_cast<SeriesView>(ws.seriesview));
}

void ChooseRow(Shown& shown, int row) {
  if (series.list.files.empty()) return;
  row = std::clamp(row, 1, ws.nseriesfile);
  ShowFile(series, row, shown.step);
  PickRow(shown, static_cast<std::size_t>(row - 1));
  ShowRowNumber(shown);
  ShowView();
}

void ChooseColumn(std::string& field, int number) {
  field = NameOfNumber(number);
  if (&field == &ws.seriescolumn || ws.seriesview == ViewPattern)
    ChangeView(ViewColumn);
  else
    RefreshPicture();
  ShowNames();
}

// A head shows its column; that of the column on show makes it the one along which others are
// drawn, and then the number of the file stands there again.
void TakeHead(const Shown& shown, int column) {
  if (column < 3) return ChooseColumn(ws.seriesalong, 0);
  const auto at = static_cast<std::size_t>(shown.columns[static_cast<std::size_t>(column - 3)]);
  const std::string name = series.table.columns[at];
  if (NumberOf(name) == 0) return WindowOutStatusBar(3, name + " is no column of numbers");
  if (name == ws.seriesalong) return ChooseColumn(ws.seriesalong, 0);
  const bool again = name == ws.seriescolumn && ws.seriesview == ViewColumn;
  ChooseColumn(again ? ws.seriesalong : ws.seriescolumn, NumberOf(name));
}

// ---- Recipe, files, table ----

// Does what may throw, and tells of that in a box.
template <class Choose>
void Try(Shown& shown, Choose choose) {
  try {
    choose();
    shown.page = 0;
  } catch (const SeriesError& error) {
    MessageBoxError("Series", error.text);
  }
  ShowAll(shown);
  RefreshPicture();
}

void AskRecipe(Shown& shown) {
  std::string path = series.recipe.empty() ? "*.recipe" : series.recipe;
  WSelectFile("Recipe|*.recipe|", FileMustExist, path, "Recipe of the series");
  if (!path.empty() && AcceptPath(path)) Try(shown, [&] { ChooseRecipe(series, path); });
}

void AskFiles(Shown& shown) {
  auto paths = WSelectFiles("Patterns of any format|*|List of patterns|*.csv;*.txt;*.list|",
                            FileMustExist, "*", "Files of the series");
  if (paths.empty()) return;
  Try(shown, [&] {
    ChooseFiles(series, std::move(paths));
    ws.seriesrow = 0;
    if (ws.seriesview != ViewPattern) ChangeView(ViewPattern);
  });
}

void AskTable(Shown& shown) {
  std::string path = series.tablepath.empty() ? "series.csv" : series.tablepath;
  WSelectFile("Table of a series|*.csv|", FileMayBeNew, path, "Table of the series");
  if (!path.empty() && AcceptPath(path)) Try(shown, [&] { ChooseTable(series, path); });
}

// ---- Running ----

std::string Counted(const SeriesProgress& now) {
  const std::string failed = now.failed > 0 ? ", " + std::to_string(now.failed) + " failed" : "";
  return std::to_string(now.done) + " of " + std::to_string(now.rows) + failed;
}

// The table as it grows, from its end, and the picture of a column.
void ShowGrowth(Shown& shown, bool first) {
  try {
    first ? ReadTable(series) : FollowTable(series);
  } catch (const SeriesError&) {
    return;
  }
  NoteSeries(series, look);
  const std::size_t rows = series.table.rows.size();
  shown.page = rows > 0 ? (rows - 1) / kPageRows * kPageRows : 0;
  ShowRows(shown);
  if (rows > 0) PickRow(shown, rows - 1);
  ShowNames();
  ShowRowNumber(shown);
  if (ws.seriesview == ViewColumn) RefreshPicture();
  RefreshView();
}

SeriesEnd Run(Shown& shown) {
  constexpr auto kPause = std::chrono::seconds(1);
  Clock::time_point told{};
  bool first = true;
  return RunSeriesProgram(series, [&](const SeriesProgress& now) {
    if (now.rows == 0) return WProgress(3, "Trying the recipe");
    if (Clock::now() - told > kPause) {
      ShowGrowth(shown, std::exchange(first, false));
      told = Clock::now();
    }
    return WProgress(3, Counted(now), static_cast<float>(now.done) / static_cast<float>(now.rows));
  });
}

// Nothing is lost: "cell.csv" becomes "cell.csv.old", or "cell.csv.old2".
bool PutTableAside() {
  std::error_code failure;
  std::string aside = series.tablepath + ".old";
  for (int k = 2; fs::exists(aside, failure); ++k)
    aside = series.tablepath + ".old" + std::to_string(k);
  fs::rename(series.tablepath, aside, failure);
  if (!failure) return true;
  MessageBoxError("Series",
                  FileMessage("Cannot rename the table", series.tablepath, failure.message()));
  return false;
}

bool MayWriteAnew(const SeriesEnd& end) {
  const std::string question = end.told + ".\nWrite it anew? The rows that are there are kept in " +
                               NameIn(series.tablepath) + ".old.";
  return end.othertable && MessageBoxQuery("Series", question) == 1 && PutTableAside();
}

void TellEnd(const SeriesEnd& end, double seconds) {
  if (end.stopped)
    return WindowOutStatusBar(3, "Stopped at " + std::to_string(ws.nseries) + " of " +
                                     std::to_string(ws.nseriesfile) + "; Run goes on from there");
  if (!end.whole && !end.othertable) MessageBoxError("Series", end.told);
  if (!end.whole) return WindowOutStatusBar(3, OnOneLine(end.told));
  const std::string failed = ", " + std::to_string(ws.nseriesfailed) + " failed, ";
  WindowOutStatusBar(3, std::to_string(ws.nseries) + " rows" + failed + Fixed(seconds, 1) + " s");
}

void RunIt(Shown& shown) {
  if (!series.restart.empty() && !ReadCondition(series.restart))
    return MessageBoxError("Series",
                           "\"Restart when\" takes a column, > or <, and a number, as "
                           "Rwp>12, not " +
                               series.restart);
  const Clock::time_point begin = Clock::now();
  SeriesEnd end = Run(shown);
  while (MayWriteAnew(end)) end = Run(shown);
  // A table of others is left alone.
  if (!end.othertable) ShowGrowth(shown, true);
  if (ws.seriesview == ViewPattern && end.whole) ShowPicture(series, look, ViewColumn);
  ShowAll(shown);
  TellEnd(end, std::chrono::duration<double>(Clock::now() - begin).count());
}

// ---- The dialog ----

void OnGrid(Shown& shown, const Message& message) {
  if (message.y > 0)
    return ChooseRow(shown, static_cast<int>(shown.page) + static_cast<int>(message.y));
  TakeHead(shown, static_cast<int>(message.x));
}

void OnField(Shown& shown, const Message& message) {
  const int field = message.value1;
  int number = 0;
  if (field >= FieldColumn) WDialogGetInteger(field, number);
  if (field == Grid) OnGrid(shown, message);
  if (field == BoxChain) {
    WDialogGetCheckBox(field, number);
    series.chain = number != 0;
  }
  if (field == FieldRestart) WDialogGetString(field, series.restart);
  if (field == ChoicePattern && ws.seriesrow > 0) return ChooseRow(shown, ws.seriesrow);
  if (field >= ChoiceMap && field <= ChoicePattern) ChangeView(field - ChoiceMap + 1);
  if (field >= ChoiceLinear && field <= ChoiceLogarithm) {
    look.scale = static_cast<CountScale>(field - ChoiceLinear);
    RefreshPicture();
  }
  if (field == FieldColumn) ChooseColumn(ws.seriescolumn, number);
  if (field == FieldAlong) ChooseColumn(ws.seriesalong, number);
  if (field == FieldSecond) ChooseColumn(ws.seriessecond, number);
  if (field == FieldRow) ChooseRow(shown, number);
}

// False closes the dialog.
bool OnButton(Shown& shown, int button) {
  if (button == ButtonRecipe) AskRecipe(shown);
  if (button == ButtonFiles) AskFiles(shown);
  if (button == ButtonTable) AskTable(shown);
  if (button == ButtonRun) RunIt(shown);
  return button != ButtonCancel;
}

bool OnMessage(Shown& shown, const Message& message) {
  if (message.type == MessageButton) return OnButton(shown, message.value1);
  if (message.type == MessageFieldChanged) OnField(shown, message);
  if (message.type == MessageMouseDown && message.value1 == MouseLeft)
    if (const int row = SeriesRowAt(message.x, message.y)) ChooseRow(shown, row);
  return true;
}

// The picture that is on show, or the pattern.
void FollowView() { ws.seriesview = Guest() ? static_cast<int>(ShownSeries().kind) : ViewPattern; }

Outcome ShowSeriesDialog(const Arguments& arguments) {
  FollowView();
  WRegisterDialogs({&kDialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(DialogNumber);
  Shown shown{.step = arguments.step};
  ShowAll(shown);
  RunBeside(DialogNumber, [&shown](const Message& message) { return OnMessage(shown, message); });
  WDialogUnload();
  return Outcome::Done;
}

constexpr Command kCommands[] = {
    {.item = {MenuSeries, "Series...", MenuPopupMulti},
     .title = "Series",
     .run = ShowSeriesDialog,
     .redraw = Redraw::Quiet,
     .undo = true},
};

}  // namespace

std::span<const Command> SeriesCommands() { return kCommands; }
