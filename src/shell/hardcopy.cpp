// The view on paper, as EPS and as an image.
#include "plot/plot.h"
#include "shell/shell.h"
#include "workspace/workspace.h"

namespace {

constexpr float kPageWidth = 180, kPageHeight = 254;  // user units, millimetres on paper
constexpr float kScreenUnits = 1000;

void SelectTarget(const char* mode, float width, float height) {
  IGrInit(mode);
  IGrArea(0, 0, 1, 1);
  IGrUnits(0, 0, width, height);
}

// Draws the view once more for a driver, after its dialog; `file` is the name that a file driver
// offers.
Outcome DrawHardcopy(int driver, const std::string& file) {
  ws.printflag = 1;
  SelectTarget("H", kPageWidth, kPageHeight);
  IGrHardcopySelect(1, driver);
  IGrHardcopyOptions(9, 10);
  if (driver == DriverEps) IGrHardcopyOptions(22, 1);
  WHardcopyOptions(3, file);
  const bool accepted = WInfoDialog(4) == ButtonOk;
  // What is laid for paper is nothing to the screen.
  const PatternData data = ws;
  const PerPattern options = ws;
  if (accepted) {
    IGrHardcopy(ws.patternstem);
    LayView();
    DrawView();
  }
  static_cast<PatternData&>(ws) = data;
  static_cast<PerPattern&>(ws) = options;
  const bool written = IGrHardcopy("S");
  SelectTarget("", kScreenUnits, kScreenUnits);
  ws.printflag = 0;
  if (!accepted) return Outcome::Cancelled;
  return written ? Outcome::Done : Outcome::Failed;
}

}  // namespace

Outcome PrintGraphics() { return DrawHardcopy(DriverPrinter, ws.patternstem); }

Outcome SaveEps() {
  ws.epsflag = 1;
  const Outcome outcome = DrawHardcopy(DriverEps, ws.patternstem + ".eps");
  ws.epsflag = 0;
  return outcome;
}

Outcome SaveImage(const char* extension) {
  if (ws.patternstem.empty()) return Outcome::Idle;
  return IGrSaveImage(ws.patternstem + extension) ? Outcome::Done : Outcome::Failed;
}
