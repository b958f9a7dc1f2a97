// What the dialog of series chooses to be seen.
#include "series/viewchoice.h"

#include <algorithm>

#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

void ShowPattern() {
  ws.viewmode = 1;
  ws.seriesview = ViewPattern;
}

}  // namespace

bool ShowView(SeriesDialog& dialog, int view) {
  return ShowPicture(dialog.series, dialog.look.scale, static_cast<SeriesView>(view));
}

void RefreshPicture(SeriesDialog& dialog) {
  if (ws.seriesview != ViewPattern && !ShowView(dialog, ws.seriesview)) ShowPattern();
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

void ChooseView(SeriesDialog& dialog, int view) {
  if (view == ViewPattern && ws.seriesrow > 0) return ChooseRow(dialog, ws.seriesrow);
  if (view == ViewPattern)
    ShowPattern();
  else
    ShowView(dialog, view);
  ShowSeriesView();
}

void ChooseColumn(SeriesDialog& dialog, std::string& field, int number) {
  field = NameOfColumnNumber(dialog, number);
  const bool upward = &field == &ws.seriescolumn;
  ShowView(dialog, upward || ws.seriesview == ViewPattern ? ViewColumn : ws.seriesview);
  ShowColumnNames(dialog);
  ShowSeriesView();
}

void ChooseHead(SeriesDialog& dialog, std::size_t column) {
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
