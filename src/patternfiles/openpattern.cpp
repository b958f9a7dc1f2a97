// Opening a pattern file as the current pattern.
#include "patternfiles/patternfiles.h"
#include "toolkit/toolkit.h"
#include "workspace/paths.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

std::string UnknownType(const std::string& path) {
  const std::string text = "Unrecognized file type";
  if (path.empty()) return text;
  std::string known;
  for (const PatternFormat& format : PatternFormats())
    known += (known.empty() ? "" : ", ") + std::string(format.extension);
  return FileMessage(text, path, "its name ends in none of " + known);
}

constexpr const char* kTitle = "Open pattern file";

// "*.xy"
std::string NamesOf(const PatternFormat& format) { return std::string("*.") + format.extension; }

}  // namespace

std::string AskForPattern(int filetype) {
  const PatternFormat* format = FindFormat(filetype);
  if (!format) return "";
  std::string path = NamesOf(*format);
  WSelectFile("|" + path + "|", FileMustExist, path, kTitle);
  return path.starts_with('*') ? "" : path;
}

std::vector<std::string> AskForPatterns(int filetype) {
  const PatternFormat* format = FindFormat(filetype);
  if (!format) return {};
  const std::string names = NamesOf(*format);
  return WSelectFiles("|" + names + "|", FileMustExist, names, kTitle);
}

Outcome OpenPattern(const std::string& path, int filetype) {
  if (!AcceptPath(path)) return Outcome::Failed;
  const PatternFormat* format = filetype != 0 ? FindFormat(filetype) : FindFormatByExtension(path);
  if (!format) {
    MessageBoxError("Error", UnknownType(path));
    return Outcome::Failed;
  }
  ws.gdfhead.fill("");
  ws.patternpath = path;
  ws.patternstem = FileStem(ws.patternpath);
  ws.stem20 = Field(ws.patternstem, 20);
  if (ws.debugmode && filetype != 0) MessageBoxInfo("Progress", ws.patternpath);
  ws.statedwave = 0;
  if (format->read(SlotInput, ws.patternpath) == 0) return Outcome::Failed;
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
