// "Peak table": the peak list beside the plot, each showing what is chosen in the other.
#include "peaks/peaktable.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "peaks/peaklist.h"
#include "peaks/peaks.h"
#include "plot/beside.h"
#include "plot/dataposition.h"
#include "plot/freezoom.h"
#include "plot/plot.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/csv.h"
#include "workspace/paths.h"
#include "workspace/text.h"

namespace {

using namespace controls;

enum TableDialog {
  DialogNumber = 145,
  Grid = 1801,
  ButtonSort,
  ButtonCopy,
  ButtonSave,
  ButtonDelete,
};

constexpr Control kControls[] = {
    {.id = Grid, .kind = ControlKind::Grid, .label = kPeakHeads, .heads = true},
    Press(ButtonSort, "Sort"),
    Press(ButtonCopy, "Copy", "Ctrl+C"),
    Press(ButtonSave, "Save..."),
    Press(ButtonDelete, "Delete", "Del"),
    {ButtonCancel, ControlKind::Button, "Close"},
};
constexpr DialogResource kDialog{DialogNumber, "Peak table", kControls, Grid};

// The rows of the list as they stand in the table.
struct View {
  const UndoStep& step;
  int order = ColumnTth;  // the column by which they are sorted; negative: falling
  std::vector<int> rows{};
};

bool IsShown(int row) {
  const float place = ShownX(ws.peaks(ptth, row));
  return place >= ws.viewxmin && place <= ws.viewxmax;
}

// The view keeps its width.
void BringIntoView(int row) {
  const float place = ShownX(ws.peaks(ptth, row));
  if (!(place > 0) || IsShown(row)) return;
  PanFrom({ws.viewxmin, ws.viewxmax}, {ws.viewymin, ws.viewymax},
          {place - (ws.viewxmin + ws.viewxmax) / 2, 0});
}

void Choose(int row) {
  ws.peakchosen = row;
  if (row > 0) BringIntoView(row);
}

void ShowChosen(const View& view) {
  int column = 0, row = 0;
  WGridPos(Grid, column, row);
  const auto at = std::ranges::find(view.rows, ws.peakchosen);
  const bool there = at != view.rows.end();
  WGridPick(Grid, std::max(column, 1), there ? static_cast<int>(at - view.rows.begin()) + 1 : 0);
}

void Fill(View& view) {
  view.rows = PeaksBy(view.order);
  std::vector<std::vector<std::string>> cells;
  for (const int row : view.rows) cells.push_back(PeakCells(row));
  WGridPutRows(Grid, std::move(cells), view.order);
  ShowChosen(view);
}

// Once more by the same column turns the order round.
void SortBy(View& view, int column) {
  view.order = view.order == column ? -column : column;
  Fill(view);
}

// The message tells the cell that was picked, while the table may show another one by now.
void TakePick(View& view, const Message& message) {
  const int column = static_cast<int>(message.x);
  const std::size_t row = static_cast<std::size_t>(message.y);
  if (row == 0) return SortBy(view, column);
  if (row > view.rows.size()) return;
  Choose(view.rows[row - 1]);
  WGridPick(Grid, column, static_cast<int>(row));
}

// The row of the nearest tick in reach of a click.
void ChooseTick(float x) {
  float nearest = PickReach().x;
  for (int row = 1; row <= PeakRows(); ++row) {
    const float distance = std::fabs(ShownX(ws.peaks(ptth, row)) - x);
    if (!(distance < nearest)) continue;
    nearest = distance;
    ws.peakchosen = row;
  }
}

// The row that comes next in the table is chosen then; where it is taken back, none is.
void Delete(View& view) {
  const auto at = std::ranges::find(view.rows, ws.peakchosen);
  if (at == view.rows.end()) return;
  const std::size_t place = at - view.rows.begin();
  const int row = std::exchange(ws.peakchosen, 0);
  if (view.step) view.step("Delete peak");
  RemovePeak(row, pmult);
  view.rows = PeaksBy(view.order);
  Choose(view.rows.empty() ? 0 : view.rows[std::min(place, view.rows.size() - 1)]);
  Fill(view);
}

// Rows told as "1 peak copied".
std::string Peaks(std::size_t count, const char* done) {
  return std::to_string(count) + (count == 1 ? " peak " : " peaks ") + done;
}

void Copy(const View& view) {
  std::string text;
  for (const std::string& line : PeakLines(view.rows, '\t')) text += line + "\n";
  WCopyText(text);
  WTell(Peaks(view.rows.size(), "copied"));
}

void Save(const View& view) {
  std::string path = ws.patternstem + "_peaks.csv";
  WSelectFile("Comma-separated values|*.csv|", FileSave, path, "Save peak table");
  if (path.empty() || !AcceptPath(path)) return;
  const std::string failure = WritePeakTable(path, view.rows);
  WTell(failure.empty() ? Peaks(view.rows.size(), "saved") : OnOneLine(failure));
}

// False closes the table.
bool OnButton(View& view, int button) {
  int column = 0, row = 0;
  WGridPos(Grid, column, row);
  if (button == ButtonSort) SortBy(view, std::max(column, 1));
  if (button == ButtonCopy) Copy(view);
  if (button == ButtonSave) Save(view);
  if (button == ButtonDelete) Delete(view);
  return button != ButtonCancel;
}

bool OnMessage(View& view, const Message& message) {
  if (message.type == MessageButton) return OnButton(view, message.value1);
  if (message.type == MessageFieldChanged) {
    TakePick(view, message);
    return true;
  }
  const DataPoint at = ToData(message.x, message.y);
  const bool click = message.type == MessageMouseDown && message.value1 == MouseLeft;
  if (click && InView(at)) ChooseTick(at.x);
  ShowChosen(view);  // also what a double click has brought back
  return true;
}

}  // namespace

std::string WritePeakTable(const std::string& path, std::span<const int> rows) {
  const std::string failure = WriteLines(path, PeakLines(rows, ','), "Error writing peak table");
  if (failure.empty()) NotePeaksKept(path);
  return failure;
}

Outcome ShowPeakTable(const UndoStep& step) {
  if (PeakRows() < 1) {
    MessageBoxError("Error", "No peaks in list");
    return Outcome::Failed;
  }
  SortPeaks();
  ws.plotmask |= ws.plotmask > 0 ? PlotPeaks : PlotInput + PlotPeaks;
  RefreshView();
  for (int row = PeakRows(); row >= 1; --row)
    if (IsShown(row)) ws.peakchosen = row;
  RefreshView();
  WRegisterDialogs({&kDialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(DialogNumber);
  View view{.step = step};
  Fill(view);
  RunBeside(DialogNumber, [&view](const Message& message) { return OnMessage(view, message); });
  WDialogUnload();
  ws.peakchosen = 0;
  return Outcome::Done;
}
