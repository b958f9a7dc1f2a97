// A background curve read from a pattern file, and written to one.
#include <cmath>
#include <string>

#include "background/background.h"
#include "background/curve.h"
#include "patternfiles/patternfiles.h"
#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/record.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr float kStepTolerance = 1e-05f;

// Shows what keeps slot 2 from being a background of slot 1: a narrower range, or another step.
bool MatchesPattern() {
  if (FirstTth(SlotInput) < FirstTth(SlotBackground) ||
      LastTth(SlotBackground) < LastTth(SlotInput)) {
    MessageBoxError("Pattern Error", "Incompatible background range");
    return false;
  }
  if (std::fabs(FirstStepOf(SlotInput) - FirstStepOf(SlotBackground)) > kStepTolerance) {
    MessageBoxError("Pattern Error", "Incompatible background step size");
    return false;
  }
  return true;
}

// Drops the points of slot 2 outside the pattern's range.
void CutToPattern() {
  const float first = FirstTth(SlotInput), last = LastTth(SlotInput);
  int n = 0;
  for (int i = 1; i <= ws.npts(SlotBackground); ++i) {
    const float tth = ws.xval(AxisTth, SlotBackground, i);
    if (tth < first || tth > last) continue;
    ++n;
    ws.xval(AxisTth, SlotBackground, n) = tth;
    ws.yval(SlotBackground, n) = ws.yval(SlotBackground, i);
  }
  ws.npts(SlotBackground) = n;
}

}  // namespace

// Asks for a file of the format `filetype`. The reader leaves the file's wavelength in wavelen(2),
// which is K alpha 2 otherwise. After a failure slot 2 holds what the reader has put there.
void BackgroundFromFile() {
  const PatternFormat* format = FindFormat(ws.filetype);
  const std::string path = AskForPattern(ws.filetype);
  if (!format || path.empty()) return;
  ws.bgpath = path;
  if (ws.debugmode) MessageBoxInfo("Progress", ws.bgpath);
  if (format->read(SlotBackground, ws.bgpath) == 0) {
    MessageBoxError("Error", format->handlingerror);
    return;
  }
  if (!MatchesPattern()) return;
  CutToPattern();
  ResetBackgroundInterval();
  ws.plotmask |= PlotBackground;
}

void SaveBackground() {
  std::string path = ws.patternstem + "_bkg.xy";
  WSelectFile("Background file|*.xy|", FileSave, path, "Save background file");
  if (path.empty()) return;
  LineWriter file(path);
  if (!file.IsOpen()) {
    MessageBoxError("File Error", "File open error");
    return;
  }
  for (int i = 1; i <= ws.npts(SlotBackground); ++i)
    file.Write(WriteRecord<"(f8.3,f12.1)">(ws.xval(AxisTth, SlotBackground, i),
                                           ws.yval(SlotBackground, i)));
  if (!file.Close()) MessageBoxError("File Error", "Error writing " + path);
}
