// Opening a pattern file as the current pattern.
#include "patternfiles/patternfiles.h"
#include "toolkit/toolkit.h"
#include "workspace/paths.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr const char* kTitle = "Open pattern file";

// "*.xy"; of any format all names.
std::string NamesOf(const PatternFormat& format) {
  return format.filetype == FileTypeAny ? "*" : std::string("*.") + format.extension;
}

std::string FilterOf(const PatternFormat& format) {
  const char* description = format.filetype == FileTypeAny ? "Patterns of any format" : "";
  return description + ("|" + NamesOf(format) + "|");
}

}  // namespace

std::string AskForPattern(int filetype) {
  const PatternFormat* format = FindFormat(filetype);
  if (!format) return "";
  std::string path = NamesOf(*format);
  WSelectFile(FilterOf(*format), FileMustExist, path, kTitle);
  return path.starts_with('*') ? "" : path;
}

std::vector<std::string> AskForPatterns(int filetype) {
  const PatternFormat* format = FindFormat(filetype);
  if (!format) return {};
  const std::string names = NamesOf(*format);
  return WSelectFiles(FilterOf(*format), FileMustExist, names, kTitle);
}

Outcome OpenPattern(const std::string& path, int filetype, const ScanChoice& choice) {
  if (!AcceptPath(path)) return Outcome::Failed;
  const PatternFormat* format = FindFormat(filetype);
  if (!format || path.empty()) {
    MessageBoxError("Error", "Unrecognized file type");
    return Outcome::Failed;
  }
  ws.gdfhead.fill("");
  ws.patternpath = path;
  ws.patternstem = FileStem(ws.patternpath);
  ws.stem20 = Field(ws.patternstem, 20);
  if (ws.debugmode && filetype != FileTypeAny) MessageBoxInfo("Progress", ws.patternpath);
  ws.statedwave = 0;
  ws.importnote.clear();
  if (ReadPattern(*format, SlotInput, ws.patternpath, choice) == 0) return Outcome::Failed;
  ws.recentpending = 1;
  ws.viewmode = 1;
  EndOverlayFit();
  ComputeXAxes();
  ResetWorkspace();
  ClearPeakFit();
  ws.nmanualbg = 0;
  ws.patternloaded = 1;
  ++ws.loadcount;
  ws.fullstart = ws.cryststart = ws.xval(AxisTth, SlotInput, 1);
  ws.fullstop = ws.crystend = ws.xval(AxisTth, SlotInput, ws.npts(SlotInput));
  return Outcome::Done;
}

void FollowPattern() {
  const std::string directory = FileDirectory(ws.patternpath);
  IOsDirChange(directory.empty() ? ws.startdir : directory);
  WindowTitle(ws.patternloaded ? ws.patternstem + " - " + ProgramTitle : ProgramTitle);
}
