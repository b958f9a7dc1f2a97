// The rows of the menu "Peak fit" that belong to the whole-pattern fit.
#include "fit/fit.h"
#include "fit/fitfile.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/paths.h"
#include "workspace/text.h"

namespace {

constexpr const char* kFilter = "Fit file|*.fit|";

Outcome Run(const Arguments&) { return GeneralFit(); }

Outcome AskSave(Arguments& arguments) {
  if (ws.npeaks < 1) {
    MessageBoxError("Error", "No peaks in list");
    return Outcome::Failed;
  }
  arguments.path = ws.patternstem + ".fit";
  WSelectFile(kFilter, FileSave, arguments.path, "Save fit parameters");
  return Answered(!arguments.path.empty());
}

Outcome Save(const Arguments& arguments) {
  if (!AcceptPath(arguments.path)) return Outcome::Failed;
  ws.fitfile = arguments.path;
  const std::string reason = WriteFit(ws.fitfile, ws, ws.peaks, ws.npeaks, ws.scanwave);
  if (reason.empty()) return Outcome::Done;
  MessageBoxError("File Error", FileMessage("Error opening fit result file", ws.fitfile, reason));
  return Outcome::Failed;
}

// Asks for a file to open, beginning with the one in use.
Outcome AskFile(Arguments& arguments, const std::string& name, const char* title) {
  arguments.path = name.empty() ? "*.fit" : name;
  WSelectFile(kFilter, FileMustExist, arguments.path, title);
  return Answered(!arguments.path.empty() && arguments.path.front() != '*');
}

Outcome AskLoad(Arguments& arguments) {
  return AskFile(arguments, ws.fitfile, "Open pattern file");
}

// Goes on as the dialog was closed last: refines, calculates, or shows what there is.
Outcome Load(const Arguments& arguments) {
  if (!AcceptPath(arguments.path)) return Outcome::Failed;
  ws.fitfile = arguments.path;
  const RecordFailure failure =
      ReadFit(ws.fitfile, ws, ws.peaks, ws.npeaks, ws.scanwave, ws.wavelen);
  if (!failure.text.empty()) {
    MessageBoxError("Error", FileMessage(failure.text, ws.fitfile, failure.reason));
    MessageBoxError("Error",
                    FileMessage("Error opening fit result file", ws.fitfile, failure.reason));
    return Outcome::Failed;
  }
  if (ws.tthzero != 0) ComputeXAxes();
  ws.nbkgcycles = 0;
  return GeneralFit();
}

// Starts the editor on a file, which it asks for when there is none yet.
Outcome Edit(const std::string& file, Arguments& arguments) {
  if (!file.empty()) {
    arguments.path = file;
    return Outcome::Done;
  }
  return AskFile(arguments, "", "Open pattern fit file");
}
Outcome AskEdit(Arguments& arguments) { return Edit(ws.fitfile, arguments); }
Outcome AskView(Arguments& arguments) { return Edit(ws.refineout, arguments); }
Outcome StartEditor(const Arguments& arguments) {
  IOsCommandOnFile(ws.editorpath, arguments.path);
  return Outcome::Done;
}

Outcome Clear(const Arguments&) {
  ClearPeakFit();
  return Outcome::Done;
}

constexpr int kPopup = MenuPopupPeakFit;

constexpr Command kCommands[] = {
    {.item = {40107, "General peak fit", kPopup},
     .ask = AskFit,
     .run = Run,
     .redraw = Redraw::Keep,
     .undo = true},
    {.item = {40108, "Save peak fit", kPopup}, .ask = AskSave, .run = Save, .redraw = Redraw::Keep},
    {.item = {40109, "Load peak fit", kPopup},
     .ask = AskLoad,
     .run = Load,
     .redraw = Redraw::Keep,
     .undo = true},
    {.item = {40110, "Edit peak fit", kPopup},
     .ask = AskEdit,
     .run = StartEditor,
     .redraw = Redraw::Keep},
    {.item = {40112, "View output", kPopup},
     .ask = AskView,
     .run = StartEditor,
     .redraw = Redraw::Keep},
    {.item = {40113, "Clear peak fit", kPopup}, .run = Clear, .redraw = Redraw::Keep, .undo = true},
};

constexpr Command kResultCommands[] = {
    {.item = {MenuFitResults, "Fit results...", kPopup},
     .run = Plain<ShowFitResults>,
     .history = false},
};

}  // namespace

std::span<const Command> FitCommands() { return kCommands; }
std::span<const Command> FitResultCommands() { return kResultCommands; }
