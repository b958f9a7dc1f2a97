// The solutions of an indexing run: read from the listing, shown in a grid, and the one chosen put
// on the plot.
#include <algorithm>

#include "crystal/laue.h"  // for CenteringP
#include "index/celllines.h"
#include "index/driver.h"
#include "index/index.h"
#include "peaks/peaklist.h"
#include "plot/beside.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/paths.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

using namespace controls;

constexpr int kGrid = 1751;
constexpr Control kGridControls[] = {
    {kGrid, ControlKind::Grid, "No.|a|b|c|alpha|beta|gamma|Volume|FOM|NIX"}, Ok, Cancel};
constexpr DialogResource kDialog{134, "Indexing solutions", kGridControls, kGrid};

constexpr int kBlack = 0, kWhite = 0xffffff, kBlue = 0xff0000;

// Without its fraction.
int Whole(float value) { return static_cast<int>(std::clamp(value, -1e9f, 1e9f)); }

void PutRow(int row) {
  const auto s = ws.solutions.row(row);
  WGridPutCellInteger(kGrid, 1, row, row);
  for (int field = sola; field <= solvolume; ++field) {
    const char* format = field <= solc ? "(f7.3)" : field <= solgamma ? "(f7.2)" : "(f7.1)";
    WGridPutCellReal(kGrid, 1 + field, row, s[field - 1], format);
  }
  for (int field : {solfom, solnix})
    WGridPutCellInteger(kGrid, 1 + field, row, Whole(s[field - 1]));
}

void SelectRow(int row) {
  if (ws.selsolution > 0) WGridColourRow(kGrid, ws.selsolution, kBlack, kWhite);
  WGridColourRow(kGrid, row, kWhite, kBlue);
  ws.selsolution = row;
}

void ChooseSolution() {
  WRegisterDialogs({&kDialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(kDialog.number);
  for (int row = 1; row <= ws.nsolutions; ++row) PutRow(row);
  SelectRow(1);
  const int button = RunBeside(kDialog.number, [](const Message& message) {
    int column = 0, row = 0;
    if (message.type == MessageFieldChanged) WGridPos(kGrid, column, row);
    if (row > 0) SelectRow(row);
    return message.type != MessageButton;
  });
  if (button != ButtonOk) ws.selsolution = 0;
  WDialogUnload();
}

// A listing that is of no use is not looked at again.
void Refuse(const char* caption, const std::string& text) {
  MessageBoxError(caption, text);
  ws.indexoutfile.clear();
}

// Reads the listing; false after a box.
bool ReadSolutions(const IndexingEngine& engine) {
  constexpr const char* kCannotOpen = "Error opening index output file";
  ws.nsolutions = ws.selsolution = 0;
  if (AskListing("Open idexing output file") != Outcome::Done) {
    Refuse("File Error", kCannotOpen);
    return false;
  }
  LineReader listing(ws.indexoutfile);
  if (!listing.IsOpen()) {
    Refuse("File Error", FileMessage(kCannotOpen, ws.indexoutfile, listing.Reason()));
    return false;
  }
  ws.nsolutions = engine.readsolutions(listing, ws.solutions);
  if (ws.nsolutions > 0) return true;
  Refuse("Read Error", FileMessage("No indexing solutions found", ws.indexoutfile,
                                   std::string("holds none of ") + engine.name));
  return false;
}

}  // namespace

Outcome AskListing(const char* title) {
  if (!ws.indexoutfile.empty()) return Outcome::Done;
  std::string path = "*.out";
  WSelectFile("Indexing output file|*.out|", FileMustExist, path, title);
  if (path.empty() || path.front() == '*' || !AcceptPath(path)) return Outcome::Cancelled;
  ws.indexoutfile = path;
  return Outcome::Done;
}

Outcome AskSolution(const IndexingEngine& engine) {
  if (ReadSolutions(engine)) ChooseSolution();
  return Outcome::Done;
}

Outcome ApplySolution(const IndexingEngine& engine) {
  if (ws.nsolutions < 1) return Outcome::Failed;
  if (ws.selsolution < 1) return Outcome::Cancelled;
  std::ranges::copy(ws.solutions.row(ws.selsolution).first(solgamma), ws.cell.cells.begin());
  const auto lines = ReflectionsFromCell({.cell = ws.cell,
                                          .wavelength = ws.*engine.wavelength,
                                          .lattice = CenteringP,
                                          .offset = 0,
                                          .laueclass = ws.laueclass,
                                          .range = {FirstTth(SlotInput), LastTth(SlotInput)},
                                          .step = FirstStepOf(SlotInput),
                                          .zeroshift = ws.zeroshift});
  RelistPeaks(static_cast<int>(lines.size()), PeakIndexed);
  for (int j = 1; j <= ws.npeaks; ++j) {
    ws.peaks(ptth, j) = lines[j - 1].tth;
    ws.peaks(phkl, j) = static_cast<float>(PackHkl(lines[j - 1].hkl));
  }
  ws.viewmode = 1;
  ws.plotmask = PlotInput + PlotPeaks;
  return Outcome::Done;
}

std::vector<std::string> SolutionLines() {
  std::vector<std::string> lines{
      "no.,a (A),b (A),c (A),alpha (deg.),beta (deg.),gamma (deg.),volume (A^3),figure of merit,"
      "lines (ITO: indexed; TREOR90: left over)"};
  for (int row = 1; row <= ws.nsolutions; ++row) {
    lines.push_back(std::to_string(row));
    for (const float value : ws.solutions.row(row)) lines.back() += "," + AllDigits(value);
  }
  return lines;
}

void TellSolution() {
  const auto text = [](int n) { return std::to_string(n); };
  WindowOutStatusBar(4, "Solution " + text(ws.selsolution) + " of " + text(ws.nsolutions) + ": " +
                            (ws.npeaks == MaxPeaks ? "the first " : "") + text(ws.npeaks) +
                            " lines");
}
