// "Export": the files of the pattern and of overlays.
#include "patternfiles/export/columns.h"
#include "patternfiles/export/export.h"
#include "toolkit/toolkit.h"
#include "workspace/csv.h"
#include "workspace/paths.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

struct ExportFormat {
  const char* extension;
  const char* filter;
  std::vector<std::string> (*lines)();
  const char* lineend;
};

// By PatternExport.
constexpr ExportFormat kFormats[] = {
    {".csv", "Comma-separated values|*.csv|", [] { return PatternAsCsv(SlotInput); }, "\r"},
    {".xye", "Two-theta, counts, e.s.d.|*.xye|", PatternAsXye, ""},
    {".cif", "Powder CIF|*.cif|", PatternAsPdCif, ""},
};

std::string AskName(const ExportFormat& format, const std::string& stem, const std::string& title) {
  std::string path = stem + format.extension;
  WSelectFile(format.filter, FileSave, path, title);
  return path;
}

bool Write(const std::string& path, const std::vector<std::string>& lines, const char* lineend) {
  return AcceptPath(path) && WriteLines(path, lines, "Error exporting pattern", lineend).empty();
}

}  // namespace

Outcome AskPatternExport(Arguments& arguments) {
  const ExportFormat& format = kFormats[arguments.number];
  if (ws.npts(SlotInput) < 1) {
    MessageBoxError("Error", "There are no points to export");
    return Outcome::Failed;
  }
  arguments.path = AskName(format, ws.patternstem, "Export pattern");
  if (arguments.path.empty()) return Outcome::Cancelled;
  if (arguments.number != ExportCsv) return Outcome::Done;
  for (const int k : OverlaysApart())
    arguments.paths.push_back(
        AskName(format, FileStem(ws.overlayname(k)), "Export overlay " + std::to_string(k)));
  return Outcome::Done;
}

Outcome ExportPattern(const Arguments& arguments) {
  const ExportFormat& format = kFormats[arguments.number];
  if (!Write(arguments.path, format.lines(), format.lineend)) return Outcome::Failed;
  NotePointsKept(arguments.path);
  const std::vector<int> apart = OverlaysApart();
  for (std::size_t i = 0; i < arguments.paths.size(); ++i) {
    const std::string& path = arguments.paths[i];
    if (!path.empty() && !Write(path, PatternAsCsv(SlotOverlay + apart[i] - 1), format.lineend))
      return Outcome::Failed;
  }
  return Outcome::Done;
}

std::string ExportRemark(int number) {
  if (number == ExportXye && !HasCounts() && StatedEsds().empty())
    return "; e.s.d.s are square roots, but the intensities are no counts";
  if (number == ExportPdCif && !(ws.statedwave > 0)) return "; no wavelength, as none is stated";
  return "";
}
