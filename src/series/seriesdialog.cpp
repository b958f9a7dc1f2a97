// The dialog of series, and what it shows.
#include "series/seriesdialog.h"

#include <algorithm>

#include "series/columns.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

using namespace controls;

constexpr const char* kView = "View";
constexpr const char* kPlaces = "Columns and file";

constexpr Control In(const char* group, Control control) {
  control.group = group;
  return control;
}

constexpr Control Narrow(Control entry) {
  entry.format = "(a20)";
  return entry;
}

constexpr Control Number(int id, const char* label, int lowest, const char* tip) {
  return In(kPlaces, Tip(Spin(id, label, nullptr, lowest, 999999999), tip));
}

constexpr Control NameBeside(int id) { return In(kPlaces, Beside(Label(id, ""))); }

constexpr Control kControls[] = {
    Label(FieldRecipe, ""),
    Beside(Press(ButtonRecipe, "Recipe...")),
    Label(FieldFiles, ""),
    Beside(Press(ButtonFiles, "Files...")),
    Label(FieldTable, ""),
    Beside(Press(ButtonTable, "Table...")),
    Tip(Spin(FieldChunk, "Break after", nullptr, 1, 1000000, "files"),
        "the next file begins a chain with the recipe's own values"),
    Beside(Box(BoxChain, "Chain", nullptr)),
    Tip(Narrow(Entry(FieldRestart, "Restart when", nullptr)),
        "as Rwp>12, a<4.5: where one holds the file is done again from the recipe's own values"),
    Beside(Press(ButtonOther, "By other recipe...")),
    Label(FieldOther, ""),
    Beside(Press(ButtonNoOther, "Remove")),
    Choice(ChoiceMap, "Map", kView),
    Beside(Choice(ChoiceWaterfall, "Waterfall", kView)),
    Beside(Choice(ChoiceColumn, "Column", kView)),
    Beside(Choice(ChoicePattern, "Pattern", kView)),
    In(kView, Label(NameOfScale, "Counts")),
    Beside(Choice(ChoiceLinear, "Linear", kView)),
    Beside(Choice(ChoiceSquareRoot, "Square root", kView)),
    Beside(Choice(ChoiceLogarithm, "Logarithm", kView)),
    Number(FieldColumn, "Upward", 1, "the column that is shown; a click on its head shows it, too"),
    NameBeside(NameOfColumn),
    Beside(Number(FieldRow, "File", 1, "opens it, as a click on its row or in a picture does")),
    Number(FieldAlong, "Along", 0,
           "0: the number of the file; or a column, as by another click on its head"),
    NameBeside(NameOfAlong),
    NameBeside(NameOfRow),
    Number(FieldSecond, "Second", 0, "another column in the same picture; 0: none"),
    NameBeside(NameOfSecond),
    {.id = Grid, .kind = ControlKind::Grid, .label = "No.|file", .heads = true, .narrow = true},
    Press(ButtonRun, "Run"),
    {ButtonCancel, ControlKind::Button, "Close"},
};
constexpr DialogResource kDialog{SeriesDialogNumber, "Series", kControls, Grid};

constexpr std::size_t kPageRows = 2000;

// As much of a text as its field has room for.
constexpr int kTextLetters = 34, kNameLetters = 12;
std::string Fitting(const std::string& text, int letters) {
  const std::string begin(Cut(text, letters));
  return begin.size() == text.size() ? text : std::string(Cut(text, letters - 3)) + "...";
}

// The file has a column of its own, failures a colour, and few instruments tell the date.
bool IsInGrid(const SeriesDialog& dialog, std::size_t column) {
  static constexpr std::string_view kOthers[] = {kFileColumn, kRecipeColumn, kBoxesColumn,
                                                 kFailedColumn};
  const std::string& name = dialog.series.table.columns[column];
  if (name == kDateColumn) return NumberOfColumn(dialog, name) > 0;
  return std::ranges::find(kOthers, name) == std::end(kOthers);
}

void ShowHeads(SeriesDialog& dialog) {
  std::vector<std::string> heads{"No.", "file"};
  dialog.columns.clear();
  for (std::size_t column = 0; column < dialog.series.table.columns.size(); ++column) {
    if (!IsInGrid(dialog, column)) continue;
    dialog.columns.push_back(static_cast<int>(column));
    heads.push_back(dialog.series.table.columns[column]);
  }
  if (heads == dialog.heads) return;
  dialog.heads = heads;
  WGridPutHeads(Grid, std::move(heads));
}

std::vector<std::string> CellsOf(const SeriesDialog& dialog, std::size_t row) {
  std::vector<std::string> cells{std::to_string(row + 1),
                                 NameIn(dialog.series.list.files[row].path)};
  if (row < dialog.series.table.rows.size())
    for (const int column : dialog.columns)
      cells.push_back(dialog.series.table.rows[row][static_cast<std::size_t>(column)]);
  return cells;
}

}  // namespace

void ShowSeriesStates(const SeriesDialog& dialog) {
  const Series& series = dialog.series;
  const bool files = !series.list.files.empty();
  for (const int field : {ChoiceMap, ChoiceWaterfall, FieldRow}) WDialogFieldState(field, files);
  WDialogFieldState(ChoiceColumn, !dialog.look.numbers.empty());
  WDialogFieldState(FieldChunk, series.chain);
  WDialogFieldState(ButtonNoOther, !series.otherrecipe.empty());
  WDialogFieldState(ButtonRun, files && !series.recipe.empty());
}

void LoadSeriesDialog(SeriesDialog& dialog) {
  WRegisterDialogs({&kDialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(SeriesDialogNumber);
  dialog.page = 0;
  dialog.heads.clear();
  ShowSeriesDialog(dialog);
}

int NumberOfColumn(const SeriesDialog& dialog, const std::string& name) {
  const auto at = std::ranges::find(dialog.look.numbers, dialog.series.table.ColumnOf(name));
  return at == dialog.look.numbers.end() ? 0
                                         : static_cast<int>(at - dialog.look.numbers.begin()) + 1;
}

std::string NameOfColumnNumber(const SeriesDialog& dialog, int number) {
  if (number < 1 || dialog.look.numbers.empty()) return "";
  const std::size_t at =
      std::min<std::size_t>(static_cast<std::size_t>(number), dialog.look.numbers.size());
  return dialog.series.table.columns[static_cast<std::size_t>(dialog.look.numbers[at - 1])];
}

void ShowSeriesRows(SeriesDialog& dialog) {
  constexpr int kDarkRed = 0x000080, kPink = 0xd8d8ff;  // told apart on grey, too
  ShowHeads(dialog);
  const std::size_t last = std::min(dialog.series.list.files.size(), dialog.page + kPageRows);
  std::vector<std::vector<std::string>> rows;
  std::vector<int> failed;
  for (std::size_t row = dialog.page; row < last; ++row) {
    rows.push_back(CellsOf(dialog, row));
    if (row < dialog.series.table.rows.size() && HasFailed(dialog.series.table, row))
      failed.push_back(static_cast<int>(rows.size()));
  }
  WGridPutRows(Grid, std::move(rows), 0);
  WGridColourRows(Grid, failed, kDarkRed, kPink);
}

void PickSeriesRow(SeriesDialog& dialog, std::size_t row) {
  if (const std::size_t page = row / kPageRows * kPageRows; page != dialog.page) {
    dialog.page = page;
    ShowSeriesRows(dialog);
  }
  int column = 0, before = 0;
  WGridPos(Grid, column, before);
  WGridPick(Grid, std::max(column, 1), static_cast<int>(row - dialog.page) + 1);
}

void ShowColumnNames(const SeriesDialog& dialog) {
  const struct {
    int field, label;
    const std::string& name;
    const char* none;
  } rows[] = {{FieldColumn, NameOfColumn, ws.seriescolumn, ""},
              {FieldAlong, NameOfAlong, ws.seriesalong, "file"},
              {FieldSecond, NameOfSecond, ws.seriessecond, "none"}};
  for (const auto& [field, label, name, none] : rows) {
    WDialogPutInteger(field, NumberOfColumn(dialog, name));
    WDialogPutString(label, Fitting(name.empty() ? none : name, kNameLetters));
    WDialogFieldState(field, !dialog.look.numbers.empty());
  }
}

void ShowFileNumber(const SeriesDialog& dialog) {
  const std::size_t files = dialog.series.list.files.size();
  WDialogPutInteger(FieldRow, ws.seriesrow);
  WDialogPutString(NameOfRow, "of " + std::to_string(files));
  if (files <= kPageRows) return;
  const std::size_t last = std::min(files, dialog.page + kPageRows);
  WindowOutStatusBar(
      4, "The table shows rows " + std::to_string(dialog.page + 1) + " to " + std::to_string(last));
}

void ShowSeriesView() { WDialogPutRadioButton(ChoiceMap + ws.seriesview - 1); }

void ShowSeriesDialog(SeriesDialog& dialog) {
  NoteSeries(dialog.series, dialog.look);
  const Series& series = dialog.series;
  const auto put = [](int field, const std::string& text, const char* none) {
    WDialogPutString(field, text.empty() ? none : Fitting(text, kTextLetters));
  };
  put(FieldRecipe, NameIn(series.recipe), "no recipe chosen");
  put(FieldFiles, FilesText(series, kTextLetters), "no files chosen");
  put(FieldTable, NameIn(series.tablepath), "no table chosen");
  put(FieldOther, series.otherrecipe.empty() ? "" : "by " + NameIn(series.otherrecipe),
      "by no other recipe");
  WDialogPutString(FieldRestart, series.restart);
  WDialogPutCheckBox(BoxChain, series.chain);
  WDialogPutInteger(FieldChunk, series.chunk);
  WDialogPutRadioButton(ChoiceLinear + static_cast<int>(dialog.look.scale));
  ShowSeriesRows(dialog);
  if (ws.seriesrow > 0) PickSeriesRow(dialog, static_cast<std::size_t>(ws.seriesrow - 1));
  ShowColumnNames(dialog);
  ShowFileNumber(dialog);
  ShowSeriesStates(dialog);
  ShowSeriesView();
}
