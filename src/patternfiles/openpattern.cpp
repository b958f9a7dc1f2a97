// Opening a pattern file as the current pattern.
#include "patternfiles/patternfiles.h"
#include "plot/plot.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

OpenHooks openhooks;

// Takes patternpath apart and makes its directory the current one.
void NamePattern() {
  const std::string directory = FileDirectory(ws.patternpath);
  if (!directory.empty()) IOsDirChange(directory);
  ws.patternstem = FileStem(ws.patternpath);
  ws.stem20 = Field(ws.patternstem, 20);
}

// Reads the file that the user picks. Without one the plot is switched off.
bool ReadAskedFor() {
  const PatternFormat* format = FindFormat(ws.filetype);
  if (!format) MessageBoxError("Error", "Unrecognized file type");
  const std::string path = format ? AskForPattern(ws.filetype) : "";
  if (path.empty()) {
    ws.plotmask = 0;
    return false;
  }
  ws.patternpath = Field(path);
  NamePattern();
  if (ws.debugmode) MessageBoxInfo("Progress", ws.patternpath);
  return format->read(SlotInput, ws.patternpath) != 0;
}

// Reads the file that patternpath or the recent list names.
bool ReadNamed(int mode) {
  if (mode <= MaxRecent) ws.patternpath = ws.recentfiles(mode);
  NamePattern();
  const PatternFormat* format = FindFormatByExtension(ws.patternpath);
  if (!format) {
    MessageBoxError("Error", "Unrecognized file type");
    return false;
  }
  return format->read(SlotInput, ws.patternpath) != 0;
}

}  // namespace

void SetOpenHooks(const OpenHooks& hooks) { openhooks = hooks; }

std::string AskForPattern(int filetype) {
  const PatternFormat* format = FindFormat(filetype);
  if (!format) return "";
  const std::string pattern = std::string("*.") + format->extension;
  std::string path = pattern;
  WSelectFile("|" + pattern + "|", FileMustExist, path, "Open pattern file");
  return path.starts_with('*') ? "" : Field(path);
}

void OpenPattern(int mode) {
  ws.gdfhead.fill("");
  if (!(mode < 1 ? ReadAskedFor() : ReadNamed(mode))) {
    // Before the first pattern there is nothing to draw, whatever view the command has asked for.
    if (!ws.recentpending) ws.viewmode = 0;
    return;
  }
  ws.recentpending = 1;
  if (openhooks.updaterecent) openhooks.updaterecent();
  ws.viewmode = 1;
  ComputeXAxes();
  ResetWorkspace();
  ClearPeakFit();
  if (openhooks.setmenuloaded) openhooks.setmenuloaded(1);
  WindowTitle(ws.patternstem + " - Quillagram");
  ws.fullstart = ws.cryststart = ws.xval(AxisTth, SlotInput, 1);
  ws.fullstop = ws.crystend = ws.xval(AxisTth, SlotInput, ws.npts(SlotInput));
  WMenuSetState(MenuPlotInput, MenuChecked, 1);
  RedrawView(1);
}
