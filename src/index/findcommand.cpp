// "Find cell": the search for the cell of the peaks on show, and the table of what it has found.
#include "index/findcommand.h"

#include <algorithm>

#include "index/celllines.h"
#include "index/findsearch.h"
#include "peaks/peaklist.h"
#include "peaks/peaks.h"
#include "plot/beside.h"
#include "plot/plot.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/csv.h"
#include "workspace/paths.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

using namespace controls;

static_assert(kMostFound == MaxFoundCells);

enum TableDialog {
  DialogNumber = 146,
  Grid = 1811,
  FieldSummary,
  FieldUnexplained,
  ButtonCopy,
  ButtonSave,
  ButtonSecond,
};

constexpr Control kControls[] = {
    {Grid, ControlKind::Grid, kFoundHeads}, Label(FieldSummary, "Search"),
    Label(FieldUnexplained, "Unexplained"), {ButtonOk, ControlKind::Button, "Use in fit"},
    Press(ButtonCopy, "Copy", "Ctrl+C"),    Press(ButtonSave, "Save CSV..."),
    Press(ButtonSecond, "Second phase"),    Cancel,
};
constexpr DialogResource kDialog{DialogNumber, "Cells found", kControls, Grid};

void ForgetFound() {
  ws.findcell.fill(0);
  for (auto* texts : {&ws.findlattice, &ws.findorigin, &ws.findunexplained}) texts->fill("");
  ws.nfindcell = ws.selfindcell = 0;
}

// What others can read of the table.
void PutRow(const FoundTable& table, std::size_t row) {
  const FoundCell& cell = table.cells[row];
  const int at = static_cast<int>(row) + 1;
  const auto fields = ws.findcell.row(at);
  std::ranges::copy(cell.cell, fields.begin());
  std::ranges::copy(cell.esd, fields.subspan(foundesda - 1).begin());
  const auto put = [&](FoundField field, double value) {
    fields[field - 1] = static_cast<float>(value);
  };
  put(foundvolume, cell.volume);
  put(foundzero, ZeroOf(cell));
  put(foundesdzero, cell.zeroesd);
  put(foundm20, cell.m20);
  put(foundf20, cell.f20);
  put(foundindexed, cell.indexed);
  put(foundlines, static_cast<double>(table.lines.size()));
  put(foundodds, cell.likelihood);
  put(foundrelative, cell.relativeof + 1);
  put(foundtie, cell.tie);
  put(foundclass, ClassNumberOf(cell));
  put(foundcentering, CenteringNumberOf(cell));
  ws.findlattice(at) = LatticeText(cell);
  ws.findorigin(at) = OriginText(cell);
  ws.findunexplained(at).clear();
  for (const int number : cell.unindexed)
    ws.findunexplained(at) += (ws.findunexplained(at).empty() ? "" : " ") +
                              std::to_string(table.numbers[static_cast<std::size_t>(number - 1)]);
}

// ---- Table ----

std::size_t ChosenRow() { return static_cast<std::size_t>(ws.selfindcell - 1); }

// Its lines appear below the pattern.
void Choose(const FoundTable& table, int row) {
  ws.selfindcell = row;
  const auto fields = ws.findcell.row(row);
  UnitCell cell;
  std::ranges::copy(fields.first(foundgamma), cell.cells.begin());
  const auto lines = ReflectionsFromCell({.cell = cell,
                                          .wavelength = WavelengthInUse(),
                                          .lattice = static_cast<int>(fields[foundcentering - 1]),
                                          .offset = 0,
                                          .laueclass = static_cast<int>(fields[foundclass - 1]),
                                          .range = {FirstTth(SlotInput), LastTth(SlotInput)},
                                          .step = FirstStepOf(SlotInput),
                                          .zeroshift = -fields[foundzero - 1]});
  ws.ncelllines = static_cast<int>(lines.size());
  std::ranges::transform(lines, ws.celllines.cells.begin(), &Reflection::tth);
  const std::string text = UnexplainedText(table, ChosenRow());
  WDialogPutString(FieldUnexplained, text);
  WindowOutStatusBar(4, "Unexplained: " + text);
  WDialogFieldState(ButtonSecond, table.cells[ChosenRow()].unindexed.size() >= kLeastLines);
  WGridPick(Grid, 1, row);
}

void Fill(const FoundTable& table) {
  std::vector<std::vector<std::string>> rows;
  ForgetFound();
  ws.nfindcell = static_cast<int>(table.cells.size());
  for (std::size_t row = 0; row < table.cells.size(); ++row) {
    rows.push_back(FoundTexts(table, row));
    PutRow(table, row);
  }
  WGridPutRows(Grid, std::move(rows), 0);
  WDialogPutString(FieldSummary, table.summary);
  WindowOutStatusBar(3, table.summary);
  Choose(table, 1);
}

void Copy(const FoundTable& table) {
  std::string text;
  for (const std::string& line : FoundLines(table, '\t')) text += line + "\n";
  WCopyText(text);
}

void Save(const FoundTable& table) {
  std::string path = ws.patternstem + "_cells.csv";
  WSelectFile("Comma-separated values|*.csv|", FileSave, path, "Save cells");
  if (path.empty() || !AcceptPath(path)) return;
  WriteLines(path, FoundLines(table, ','), "Error writing cells");
}

// False closes the table.
bool OnMessage(FoundTable& table, const Message& message) {
  if (message.type == MessageFieldChanged && message.y > 0)
    Choose(table, static_cast<int>(message.y));
  if (message.type != MessageButton) return true;
  if (message.value1 == ButtonCopy) Copy(table);
  if (message.value1 == ButtonSave) Save(table);
  if (message.value1 == ButtonSecond &&
      SearchFor(UnexplainedLines(table, ChosenRow()), table) == Outcome::Done)
    Fill(table);
  return message.value1 != ButtonOk && message.value1 != ButtonCancel;
}

Outcome ChooseCell(FoundTable& table) {
  ws.plotmask |= ws.plotmask > 0 ? PlotPeaks : PlotInput + PlotPeaks;
  WRegisterDialogs({&kDialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(DialogNumber);
  Fill(table);
  RefreshView();
  const int button = RunBeside(
      DialogNumber, [&table](const Message& message) { return OnMessage(table, message); });
  WDialogUnload();
  ws.ncelllines = 0;
  return Answered(button == ButtonOk);
}

// The list, or that of a file.
Outcome AskPeaks(Arguments& arguments) {
  if (PeakRows() > 0) return Outcome::Done;
  const Outcome outcome = AskPeakFile(arguments);
  if (outcome != Outcome::Done) return outcome;
  const Outcome loaded = LoadPeaks(arguments.path);
  if (loaded != Outcome::Done || PeakRows() > 0) return loaded;
  MessageBoxError("File Error", FileMessage("No peaks found", arguments.path, "holds none"));
  return Outcome::Failed;
}

}  // namespace

Outcome AskFoundCell(Arguments& arguments) {
  ForgetFound();
  if (const Outcome outcome = AskPeaks(arguments); outcome != Outcome::Done) return outcome;
  SortPeaks();
  const LineList list = MeasuredLines();
  if (list.lines.empty()) {
    MessageBoxError("Find cell",
                    "No peak to search with: lines of a cell or of a fit are not measured, "
                    "and others have to lie below 180 degrees");
    return Outcome::Failed;
  }
  FoundTable table;
  const Outcome outcome = SearchFor(list, table);
  return outcome == Outcome::Done ? ChooseCell(table) : outcome;
}

Outcome ApplyFoundCell() {
  const auto fields = ws.findcell.row(ws.selfindcell);
  std::ranges::copy(fields.first(foundgamma), ws.cell.cells.begin());
  ws.laueclass = static_cast<int>(fields[foundclass - 1]);
  ws.centering = static_cast<int>(fields[foundcentering - 1]);
  ws.tthzero = fields[foundzero - 1];
  return Outcome::Done;
}
