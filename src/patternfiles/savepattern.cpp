// Saving a pattern: the file's name and the choice of the writer; the tab file of three patterns.
#include "patternfiles/patternfiles.h"
#include "patternfiles/writecommon.h"
#include "toolkit/toolkit.h"
#include "workspace/text.h"

namespace {

enum SaveContent { SaveRefined = 2, SaveBackground = 3, SaveAll = 4 };

struct PatternWriter {
  const char* extension;
  int (*write)(const std::string& path, int slot);
};

// By saveformat, from 1.
constexpr PatternWriter kWriters[] = {
    {"gdf", WriteGdf}, {"xy", WriteXy}, {"dat", WriteDat}, {"cif", WriteCif}, {"tab", nullptr},
};

// Two-theta, pattern, refined pattern and background of the points within the limits.
void WriteTab(const std::string& path) {
  LineWriter out(path);
  if (!out.IsOpen()) {
    MessageBoxError("File error", "Error opening *.tab file");
    return;
  }
  bool good = true;
  for (int i = 1; i <= ws.npts(SlotInput) && good; ++i) {
    const float x = ws.xval(AxisTth, SlotInput, i);
    if (x < ws.savestart || x > ws.savestop) continue;
    std::string line = RealField(x, 8, 3);
    for (int slot : {SlotInput, SlotRefined, SlotBackground})
      line += IntField(nint(ws.yval(slot, i)), 9);
    good = out.Write(TrimRight(line));
  }
  if (!out.Close() || !good) MessageBoxError("File Error", "Error writing *.tab file");
}

}  // namespace

void SavePattern() {
  if (ws.saveformat > static_cast<int>(std::size(kWriters))) return;
  const PatternWriter& writer = kWriters[std::max(ws.saveformat, 1) - 1];
  const std::string extension = std::string(".") + writer.extension;
  std::string path = ws.patternstem + extension;
  WSelectFile("|*" + extension + "|", FileSave, path, "Save pattern file");
  if (path.empty()) return;

  if (ws.savecontent == SaveAll) {
    WriteTab(path);
    return;
  }
  if (!writer.write) return;
  int slot = SlotInput;
  if (ws.savecontent == SaveRefined) slot = SlotRefined;
  if (ws.savecontent == SaveBackground) slot = SlotBackground;
  if (!writer.write(path, slot))
    MessageBoxError("Error", std::string("Error writing ") + writer.extension + " file");
}
