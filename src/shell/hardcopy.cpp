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
void DrawHardcopy(int driver, const std::string& file) {
  ws.printflag = 1;
  SelectTarget("H", kPageWidth, kPageHeight);
  IGrHardcopySelect(1, driver);
  IGrHardcopyOptions(9, 10);
  if (driver == DriverEps) IGrHardcopyOptions(22, 1);
  WHardcopyOptions(3, file);
  if (WInfoDialog(4) == ButtonOk) {
    IGrHardcopy(ws.patternstem);
    RedrawView(0);
  }
  IGrHardcopy("S");
  SelectTarget("", kScreenUnits, kScreenUnits);
  ws.printflag = 0;
}

}  // namespace

void PrintGraphics() {
  DrawHardcopy(DriverPrinter, ws.patternstem);
  RedrawView(0);
}

void SaveEps() {
  ws.epsflag = 1;
  DrawHardcopy(DriverEps, ws.patternstem + ".eps");
  ws.epsflag = 0;
  RedrawView(0);
}

void SaveImage(const char* extension) {
  if (!ws.patternstem.empty()) IGrSaveImage(ws.patternstem + extension);
}
