// Start-up, the event loop and the end of the program.
#include <cstdlib>
#include <iterator>

#include "multi/summary.h"
#include "plot/plot.h"
#include "plot/zoomhistory.h"
#include "shell/history.h"
#include "shell/shell.h"
#include "workspace/menuids.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr int kStatusParts[] = {1000, 1000, 1500, 1000, 2500};  // in proportion

// Where the configuration file lies: beside the program, unless the environment names a place that
// its user can write to.
std::string StartDirectory() {
  if (const char* home = std::getenv("QUILLAGRAM_HOME"); home && *home) {
    const std::string directory = IOsFullPath(home);
    return directory.ends_with('/') ? directory : directory + "/";
  }
  return FileDirectory(IOsFullPath(IOsArgument(0)));
}

void OnClose(int window, int& quitflag) {
  if (window == RootWindow)
    quitflag = 1;
  else
    CloseChild(window);
}

// What would be lost, and the command that saves it; of both the pattern is saved first.
struct Unsaved {
  std::string text;  // blank: nothing
  int command = 0;
};

Unsaved FindUnsaved() {
  const bool fit = ws.fitpoints > 0;
  const std::string work = fit ? "peaks and fit" : "peaks";
  if (ws.patternloaded == 0) return {};
  if (PointsAreKept() && PeaksAreKept()) return {};
  if (PointsAreKept())
    return {"The " + work + " of " + ws.patternstem + " are not saved.",
            fit ? MenuSaveFit : MenuSavePeaks};
  const std::string changed = ws.patternstem + " has been changed and is not saved";
  return {changed + (PeaksAreKept() ? "." : ", nor are its " + work + "."), MenuSavePattern};
}

// What is saved may be something else, a background say.
bool MayLeave() {
  for (;;) {
    const auto [text, command] = FindUnsaved();
    if (text.empty()) return true;
    const SaveAnswer answer = MessageBoxSave("Leave " + std::string(ProgramTitle), text);
    if (answer == SaveAnswer::Discard) return true;
    if (answer == SaveAnswer::Cancel) return false;
    if (RunCommand(*FindCommand(command)) != Outcome::Done) return false;
  }
}

}  // namespace

void StartProgram() {
  RegisterMenu();
  SetApplicationHooks({FieldText, PlotPosition, MayLeave});
  const int width = WInfoScreen(1) * 8 / 10, height = WInfoScreen(2) * 8 / 10;
  WindowOpen(20, 20, width, height, MainMenu, ProgramTitle);
  WindowStatusBarParts(std::size(kStatusParts), kStatusParts);
  ws.startdir = StartDirectory();
  IOsDirChange(ws.startdir);
  ReadConfiguration();
  WShowToolbar(ws.toolbar);
  ws.plotmask = 0;
  ws.recentpending = 0;
  ResetWorkspace();
  ClearPeakFit();
  CloseSumFile();
  SetMenuLoaded(0);
  ws.patternpath.clear();
  ws.stem20.clear();
  IGrSelect(1, RootWindow);
  IGrArea(0, 0, 1, 1);
  IGrUnits(0, 0, 1000, 1000);
  WMessageEnable(MessageMouseMove, 1);
  WMessageEnable(MessageMouseUp, 1);
  ws.viewmode = 0;
  ForgetZooms();
  if (IOsArgumentCount() > 0) OpenFile(IOsArgument(1));
}

void ClearFitText() {
  if (!WStatusText(3).empty()) WindowOutStatusBar(3, "");
}

void RunProgram() {
  int quitflag = 0;
  while (quitflag == 0) {
    Message message;
    switch (WMessage(message)) {
      case MessageKey:
        OnKey(message);
        break;
      case MessageMenu:
        OnMenu(message.value1, quitflag);
        break;
      case MessageMouseDown:
      case MessageMouseUp:
      case MessageMouseMove:
      case MessageMouseOther:
      case MessageWheel:
      case MessageDoubleClick:
      case MessagePan:
        OnMouse(message);
        break;
      case MessageExpose:
      case MessageResize:
        ShowComplaint(DrawView());
        break;
      case MessageClose:
        OnClose(message.window, quitflag);
        break;
      case MessageFileDropped:
        OpenFile(WInfoDroppedFile());
        break;
    }
    if (quitflag != 0 && !MayLeave()) quitflag = 0;
    NoteHistory(WTakeJournal());
  }
  while (ws.nchild > 0) CloseChild(ws.childwin(ws.nchild));
  WindowClose();
}
