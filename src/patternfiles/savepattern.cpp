// Saving a pattern: the file's name and the choice of the writer; the tab file of three patterns.
#include "patternfiles/patternfiles.h"
#include "patternfiles/writecommon.h"
#include "toolkit/toolkit.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

enum SaveContent { SaveRefined = 2, SaveBackground = 3, SaveAll = 4 };

int pointssaved;

struct PatternWriter {
  const char* extension;
  int (*write)(const std::string& path, int slot);
};

// By saveformat, from 1.
constexpr PatternWriter kWriters[] = {
    {"gdf", WriteGdf}, {"xy", WriteXy}, {"dat", WriteDat}, {"cif", WriteCif}, {"tab", nullptr},
};

// By saveformat; null for one that there is not.
const PatternWriter* FindWriter() {
  if (ws.saveformat > static_cast<int>(std::size(kWriters))) return nullptr;
  return &kWriters[std::max(ws.saveformat, 1) - 1];
}

// Two-theta, pattern, refined pattern and background of the points within the limits. Returns 1, or
// shows a message and returns 0.
int WriteTab(const std::string& path) {
  LineWriter out(path);
  if (!out.IsOpen()) {
    MessageBoxError("File error", FileMessage("Error opening *.tab file", path, out.Reason()));
    return 0;
  }
  bool good = true;
  pointssaved = 0;
  // A fit of an overlay has no counts outside its range.
  const int before = PointsBeforeFit(),
            last = ws.fitshown ? before + ws.npts(SlotRefined) : MaxPoints;
  for (int i = 1; i <= ws.npts(SlotInput) && good; ++i) {
    const float x = ws.xval(AxisTth, SlotInput, i);
    if (x < ws.savestart || x > ws.savestop) continue;
    std::string line = RealField(x, 8, 3);
    const float refined = i > before && i <= last ? ws.yval(SlotRefined, i - before) : 0.0f;
    for (float y : {ws.yval(SlotInput, i), refined, ws.yval(SlotBackground, i)})
      line += IntField(nint(y), 9);
    good = out.Write(TrimRight(line));
    ++pointssaved;
  }
  if (out.Close() && good) return 1;
  MessageBoxError("File Error", FileMessage("Error writing *.tab file", path, out.Reason()));
  return 0;
}

}  // namespace

std::string AskSaveName() {
  const PatternWriter* writer = FindWriter();
  if (!writer) return "";
  const std::string extension = std::string(".") + writer->extension;
  std::string path = ws.patternstem + extension;
  WSelectFile("|*" + extension + "|", FileSave, path, "Save pattern file");
  return path;
}

Outcome SavePattern(const std::string& path) {
  const auto outcome = [](int written) { return written ? Outcome::Done : Outcome::Failed; };
  if (ws.savecontent == SaveAll) return outcome(WriteTab(path));
  const PatternWriter* writer = FindWriter();
  if (!writer || !writer->write) return Outcome::Idle;
  int slot = SlotInput;
  if (ws.savecontent == SaveRefined) slot = SlotRefined;
  if (ws.savecontent == SaveBackground) slot = SlotBackground;
  if (writer->write(path, slot)) {
    pointssaved = PointsPrepared();
    return Outcome::Done;
  }
  MessageBoxError("Error", std::string("Error writing ") + writer->extension + " file");
  return Outcome::Failed;
}

int PointsSaved() { return pointssaved; }
