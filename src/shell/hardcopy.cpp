// The view on paper, as EPS and as an image, and the report.
#include <span>

#include "plot/dataposition.h"  // for LogarithmicY
#include "plot/plot.h"
#include "shell/shell.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

// What a picture is called at first: as the pattern, or as what is seen without one.
std::string PictureStem() { return ws.patternstem.empty() ? "series" : ws.patternstem; }

constexpr float kPageWidth = 180, kPageHeight = 254;  // user units, millimetres on paper
constexpr float kScreenUnits = 1000;

void SelectTarget(const char* mode, float width, float height) {
  IGrInit(mode);
  IGrArea(0, 0, 1, 1);
  IGrUnits(0, 0, width, height);
}

struct Option {
  int number;
  float value;
};
constexpr Option kPrintOptions[] = {{9, 10}};
constexpr Option kReportOptions[] = {{1, 735}, {2, 512}, {3, 22}, {4, 56}, {9, 10}};
constexpr Option kEpsOptions[] = {{9, 10}, {22, 1}};

// Draws the view once more for a driver, after its dialog; `file` is the name that a file driver
// offers. The flag stays when there is nothing to draw.
Outcome DrawHardcopy(int driver, std::span<const Option> options, const std::string& file) {
  ws.printflag = 1;
  SelectTarget("H", kPageWidth, kPageHeight);
  IGrHardcopySelect(1, driver);
  for (const Option& option : options) IGrHardcopyOptions(option.number, option.value);
  WHardcopyOptions(3, file);
  const bool accepted = WInfoDialog(4) == ButtonOk;
  // What is laid for paper is nothing to the screen.
  const PatternData data = ws;
  const PerPattern perpattern = ws;
  ViewComplaint complaint;
  if (accepted) complaint = LayView();
  const bool drawn = accepted && complaint.empty();
  if (drawn) {
    IGrHardcopy(ws.patternstem);
    DrawView();
  }
  static_cast<PatternData&>(ws) = data;
  static_cast<PerPattern&>(ws) = perpattern;
  const bool written = drawn && IGrHardcopy("S");
  SelectTarget("", kScreenUnits, kScreenUnits);
  if (!complaint.empty()) {
    MessageBoxError(complaint.caption, complaint.text);
    return Outcome::Failed;
  }
  ws.printflag = 0;
  if (!accepted) return Outcome::Cancelled;
  return written ? Outcome::Done : Outcome::Failed;
}

// By PictureFormat.
constexpr const char* kExtensions[] = {".png", ".svg", ".pdf"};

}  // namespace

Outcome PrintGraphics() { return DrawHardcopy(DriverPrinter, kPrintOptions, ws.patternstem); }

// The report leaves the screen in two-theta and counts, where a zoom in other units has no meaning.
// The menu's marks stay.
Outcome PrintReport() {
  if (ws.npts(SlotInput) < 1) return Outcome::Idle;
  const Outcome outcome = DrawHardcopy(DriverPrinter, kReportOptions, ws.patternstem);
  if (outcome != Outcome::Done) return outcome;
  ws.viewmode = 1;
  if (ws.xaxismode != AxisTth || LogarithmicY()) ForgetZoom();
  ws.xaxismode = AxisTth;
  ws.yaxismode = 1;
  return Outcome::Done;
}

Outcome SaveEps() {
  ws.epsflag = 1;
  const Outcome outcome = DrawHardcopy(DriverEps, kEpsOptions, PictureStem() + ".eps");
  ws.epsflag = 0;
  return outcome;
}

Outcome SaveImage(const char* extension) {
  if (ws.viewmode == 0) return Outcome::Idle;
  return IGrSaveImage(PictureStem() + extension) ? Outcome::Done : Outcome::Failed;
}

Outcome AskPictureName(Arguments& arguments) {
  const std::string extension = kExtensions[arguments.number];
  const std::string name = UpperText(extension.substr(1)) + " file";
  arguments.path = PictureStem() + extension;
  WSelectFile(name + "|*" + extension + "|", FileSave, arguments.path, "Save " + name);
  return Answered(!arguments.path.empty());
}

Outcome SavePicture(const Arguments& arguments) {
  const bool saved = IGrSaveImage(arguments.path, kExtensions[arguments.number]);
  return saved ? Outcome::Done : Outcome::Failed;
}
