// "Fit results...": what a crystallographer reads of a refinement, on show, copied and saved.
#include <algorithm>
#include <cmath>
#include <vector>

#include "crystal/cellmetric.h"
#include "crystal/laue.h"
#include "fit/fit.h"
#include "fit/fitbackground.h"
#include "plot/beside.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/csv.h"
#include "workspace/lines.h"
#include "workspace/text.h"

namespace {

using namespace controls;

enum ResultControls { FirstLine = 1601, ButtonCopy = 1641, ButtonSave, ButtonCsv };

template <int N>
std::string Joined(const Table<float, N>& values, const float* esds, int n, int decimals) {
  std::string text;
  for (int k = 0; k < n; ++k) text += (k ? "  " : "") + WithEsd(values.cells[k], esds[k], decimals);
  return text;
}

std::string Percent(float value) { return Fixed(100 * value, 2) + " %"; }

}  // namespace

std::vector<ResultLine> FitResultLines() {
  static constexpr const char* kNames[] = {"a", "b", "c", "alpha", "beta", "gamma"};
  std::vector<ResultLine> lines;
  lines.push_back({"Laue class, centering", std::string(LaueClassOf(ws.laueclass).label) + ", " +
                                                CenteringOf(ws.centering).label});
  for (int k = 0; k < 6; ++k)
    lines.push_back({kNames[k], WithEsd(ws.cell.cells[k], ws.cellesd.cells[k], k < 3 ? 5 : 4) +
                                    (k < 3 ? " \u00c5" : " deg.")});
  lines.push_back({"Volume", WithEsd(CellVolume(ws.cell), ws.volumeesd, 3) + " \u00c5^3"});
  lines.push_back({"Two-theta zero", WithEsd(ws.tthzero, ws.zeroesd, 4) + " deg."});
  lines.push_back({"U V W, left", Joined(ws.fwhmleft, &ws.fwhmesd.cells[0], 3, 6)});
  lines.push_back({"U V W, right", Joined(ws.fwhmright, &ws.fwhmesd.cells[3], 3, 6)});
  lines.push_back({"Shape, left", Joined(ws.shapeleft, &ws.shapeesd.cells[0], 3, 6)});
  lines.push_back({"Shape, right", Joined(ws.shaperight, &ws.shapeesd.cells[3], 3, 6)});
  const int terms = BackgroundTerms(ws);
  lines.push_back(
      {"Background", terms == 0 ? "estimated" : Joined(ws.bgcoef, &ws.bgesd.cells[0], terms, 1)});
  lines.push_back({"Rp, Rwp", Percent(ws.fitrp) + ", " + Percent(ws.fitrwp)});
  lines.push_back({"GOF", Fixed(ws.fitgof, 3)});
  lines.push_back(
      {"Points, parameters", std::to_string(ws.fitpoints) + ", " + std::to_string(ws.fitnpar)});
  lines.push_back(
      {"Cycles", std::to_string(ws.fitcycles) + " of at most " + std::to_string(ws.ncycles)});
  lines.push_back(
      {"Largest correlation",
       ws.fitcorrelated.empty() ? "none" : Fixed(ws.fitcorrelation, 3) + ", " + ws.fitcorrelated});
  return lines;
}

namespace {

std::string AsText() {
  std::string text = "Fit of " + ws.patternstem + "\n";
  for (const ResultLine& line : FitResultLines()) {
    std::string label = line.label;
    label.resize(std::max<std::size_t>(label.size(), 24), ' ');
    text += label + line.text + "\n";
  }
  return text;
}

constexpr const char* kFailure = "Error writing fit results";

void SaveText() {
  std::string path = ws.patternstem + "_fit.txt";
  WSelectFile("Text file|*.txt|", FileSave, path, "Save fit results");
  if (path.empty()) return;
  LineWriter file(path);
  const std::string text = AsText();
  file.Write(std::string_view(text).substr(0, text.size() - 1));
  if (!file.Close()) MessageBoxError("File Error", FileMessage(kFailure, path, file.Reason()));
}

void SaveCsv() {
  std::string path = ws.patternstem + "_fit.csv";
  WSelectFile("Comma-separated values|*.csv|", FileSave, path, "Save fit results");
  if (!path.empty()) WriteLines(path, FitResultCsv(), kFailure);
}

}  // namespace

// Stays beside the plot until it is closed.
Outcome ShowFitResults() {
  const std::vector<ResultLine> lines = FitResultLines();
  std::vector<Control> shown;
  for (const ResultLine& line : lines)
    shown.push_back(
        Fresh(Label(FirstLine + static_cast<int>(shown.size()), line.label), line.text.c_str()));
  shown.insert(shown.end(), {Ok, Press(ButtonCopy, "Copy"), Press(ButtonSave, "Save..."),
                             Press(ButtonCsv, "Save CSV...")});
  const DialogResource dialog{141, "Fit results", shown};
  WRegisterDialogs({&dialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(dialog.number);
  RunBeside(dialog.number, [](const Message& message) {
    if (message.type != MessageButton) return true;
    if (message.value1 == ButtonCopy) WCopyText(AsText());
    if (message.value1 == ButtonSave) SaveText();
    if (message.value1 == ButtonCsv) SaveCsv();
    return message.value1 >= ButtonCopy;
  });
  WDialogUnload();
  return Outcome::Done;
}
