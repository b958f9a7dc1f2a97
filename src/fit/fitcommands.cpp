// The rows of the menu "Peak fit" that belong to the whole-pattern fit.
#include "fit/fit.h"
#include "fit/fitfile.h"
#include "peaks/peaklist.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/paths.h"
#include "workspace/text.h"

namespace {

constexpr const char* kFilter = "Fit file|*.fit|";

// Behind a load the fit goes on as the dialog was closed last: it refines, calculates, or shows
// what there is.
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
  if (reason.empty()) {
    NotePeaksKept(ws.fitfile);
    return Outcome::Done;
  }
  MessageBoxError("File Error", FileMessage("Error opening fit result file", ws.fitfile, reason));
  return Outcome::Failed;
}

// Asks for a file to open, beginning with the one in use.
Outcome AskFile(Arguments& arguments, const std::string& name, const char* title) {
  arguments.path = name.empty() ? "*.fit" : name;
  WSelectFile(kFilter, FileMustExist, arguments.path, title);
  return Answered(!arguments.path.empty() && arguments.path.front() != '*');
}

// The file counts as entered: what it holds stays when the fit that follows fails or is stopped.
Outcome AskLoad(Arguments& arguments) {
  const Outcome asked = AskFile(arguments, ws.fitfile, "Open pattern file");
  if (asked != Outcome::Done) return asked;
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
  RelistPeaks(ws.npeaks, PeakLoaded);
  static_cast<FitResults&>(ws) = {};
  EndOverlayFit();  // the background was its own
  if (ws.tthzero != 0) {
    ComputeXAxes();
    ws.statedwave = ws.axiswave;
  }
  ws.nbkgcycles = 0;
  return Outcome::Done;
}

// The file that the editor is started on, which is asked for when there is none yet.
Outcome AskEdited(Arguments& arguments, std::string& file) {
  if (file.empty()) {
    const Outcome asked = AskFile(arguments, "", "Open pattern fit file");
    if (asked != Outcome::Done) return asked;
    file = arguments.path;
  }
  arguments.path = file;
  return Outcome::Done;
}
Outcome AskEdit(Arguments& arguments) { return AskEdited(arguments, ws.fitfile); }
Outcome AskView(Arguments& arguments) { return AskEdited(arguments, ws.refineout); }
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
    {.item = {MenuSaveFit, "Save peak fit", kPopup},
     .ask = AskSave,
     .run = Save,
     .redraw = Redraw::Keep},
    {.item = {40109, "Load peak fit", kPopup},
     .ask = AskLoad,
     .run = Run,
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
