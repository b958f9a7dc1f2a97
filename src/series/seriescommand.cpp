// "Series": a recipe done to many patterns, and what has come of it, beside the plot.
#include "series/seriescommand.h"

#include <algorithm>
#include <utility>

#include "plot/beside.h"
#include "plot/guestview.h"
#include "plot/plot.h"
#include "series/picture.h"
#include "series/rundialog.h"
#include "series/seriesdialog.h"
#include "series/viewchoice.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/paths.h"
#include "workspace/workspace.h"

namespace {

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

// ---- The dialog ----

void OnGrid(SeriesDialog& dialog, const Message& message) {
  const auto row = static_cast<int>(message.y);
  if (row > 0) return ChooseRow(dialog, static_cast<int>(dialog.page) + row);
  ChooseHead(dialog, static_cast<std::size_t>(message.x));
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
  if (button == ButtonRun) RunSeriesOf(dialog);
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
