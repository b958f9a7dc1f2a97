// A background curve read from a pattern file, and written to one.
#include <cmath>
#include <string>

#include "background/background.h"
#include "background/curve.h"
#include "patternfiles/patternfiles.h"
#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/paths.h"
#include "workspace/record.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr float kStepTolerance = 1e-05f;

// Shows that slot 2 is no background of slot 1; its file is given with what slot 2 has and slot 1
// would need.
bool Refuse(const std::string& text, const std::string& has, const std::string& needs) {
  MessageBoxError("Pattern Error",
                  FileMessage(text, ws.bgpath, "it has " + has + ", the pattern " + needs));
  return false;
}

std::string RangeOf(int slot) {
  return LeftAlign(RealField(FirstTth(slot), 10, 3)) + " to " +
         LeftAlign(RealField(LastTth(slot), 10, 3)) + " degrees";
}

std::string StepOf(int slot) { return LeftAlign(RealField(FirstStepOf(slot), 10, 5)) + " degrees"; }

// What keeps slot 2 from being a background: a narrower range, or another step.
bool MatchesPattern() {
  if (FirstTth(SlotInput) < FirstTth(SlotBackground) ||
      LastTth(SlotBackground) < LastTth(SlotInput))
    return Refuse("Incompatible background range", RangeOf(SlotBackground), RangeOf(SlotInput));
  if (std::fabs(FirstStepOf(SlotInput) - FirstStepOf(SlotBackground)) > kStepTolerance)
    return Refuse("Incompatible background step size", StepOf(SlotBackground), StepOf(SlotInput));
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

// The reader leaves the file's wavelength in wavelen(2), which is K alpha 2 otherwise. After a
// failure slot 2 holds what the reader has put there.
Outcome BackgroundFromFile(const std::string& path, const ScanChoice& choice) {
  const PatternFormat* format = FindFormat(ws.filetype);
  if (!format) return Outcome::Failed;
  if (!AcceptPath(path)) return Outcome::Failed;
  ws.bgpath = path;
  if (ws.debugmode) MessageBoxInfo("Progress", ws.bgpath);
  if (ReadPattern(*format, SlotBackground, ws.bgpath, choice) == 0) {
    MessageBoxError("Error", format->handlingerror);
    return Outcome::Failed;
  }
  if (!MatchesPattern()) return Outcome::Failed;
  CutToPattern();
  ResetBackgroundInterval();
  ws.plotmask |= PlotBackground;
  return Outcome::Done;
}

Outcome SaveBackground(const std::string& path) {
  LineWriter file(path);
  if (!file.IsOpen()) {
    MessageBoxError("File Error", FileMessage("File open error", path, file.Reason()));
    return Outcome::Failed;
  }
  for (int i = 1; i <= ws.npts(SlotBackground); ++i)
    file.Write(WriteRecord<"(f8.3,f12.1)">(ws.xval(AxisTth, SlotBackground, i),
                                           ws.yval(SlotBackground, i)));
  if (file.Close()) return Outcome::Done;
  MessageBoxError("File Error", FileMessage("Error writing background file", path, file.Reason()));
  return Outcome::Failed;
}
