// Patterns put over the pattern of slot 1, and taken off it again.
#include "multi/overlays.h"

#include <algorithm>
#include <cstring>

#include "multi/multi.h"
#include "patternfiles/patternfiles.h"
#include "toolkit/toolkit.h"
#include "workspace/paths.h"
#include "workspace/slots.h"
#include "workspace/snapshot.h"
#include "workspace/text.h"

namespace {

// Drops the points of a slot outside the pattern's range.
void CutToPattern(int slot) {
  const float first = FirstTth(SlotInput), last = LastTth(SlotInput);
  const std::span<float> x = TthOf(slot), y = IntensityOf(slot);
  int n = 0;
  for (std::size_t i = 0; i < x.size() && !(x[i] > last); ++i) {
    if (x[i] < first) continue;
    x[n] = x[i];
    y[n] = y[i];
    ++n;
  }
  ws.npts(slot) = n;
}

// Makes room for another overlay; the wavelengths move with their patterns.
void DropOldest() {
  for (int slot = SlotOverlay; slot < SlotScratch; ++slot) {
    const int n = ws.npts(slot + 1);
    CopyPoints(slot + 1, 0, MaxPoints, slot);
    ws.npts(slot) = n;
    ws.wavelen(slot) = ws.wavelen(slot + 1);
  }
  for (int k = 1; k < MaxOverlays; ++k) ws.overlayname(k) = ws.overlayname(k + 1);
  --ws.noverlay;
}

// The pattern takes over the wavelength that the slot has.
void MoveUp(int k) {
  const int slot = OverlaySlot(k);
  ws.overlayname(k) = ws.overlayname(k + 1);
  CopyPoints(slot + 1, 0, ws.npts(slot + 1), slot);
  ComputeSlotAxes(slot, ws.wavelen(slot));
}

// "folder/ramp.xrdml" as "folder/ramp #3.xrdml".
std::string NameOfScan(std::string path, std::size_t scan) {
  const std::size_t dot = path.rfind('.'), slash = path.rfind('/');
  const bool extension = dot != path.npos && (slash == path.npos || dot > slash);
  return path.insert(extension ? dot : path.size(), " #" + std::to_string(scan));
}

// A pattern that is wanted: a file, or a scan in it.
struct Wanted {
  std::string path, name;
  ScanChoice choice{};
};

std::vector<Wanted> WantedScans(const std::string& path, const ScanChoice& choice) {
  std::vector<Wanted> scans;
  for (const std::size_t scan : choice.scans) {
    ScanChoice one = choice;
    one.scans = {scan};
    scans.push_back({path, NameOfScan(path, scan), one});
  }
  return scans;
}

// What cannot be read leaves nothing of itself behind.
bool OpenOne(const PatternFormat& format, const Wanted& wanted) {
  if (!AcceptPath(wanted.path)) return false;
  const Snapshot before = TakeSnapshot();
  const int slot = OverlaySlot(ws.noverlay + 1);
  if (ReadPattern(format, slot, wanted.path, wanted.choice) == 0) {
    RestoreSnapshot(before);
    MessageBoxError("Error", format.handlingerror);
    return false;
  }
  CutToPattern(slot);
  ComputeSlotAxes(slot, ws.wavelen(slot));
  if (ws.noverlay == MaxOverlays) DropOldest();
  ws.overlayname(++ws.noverlay) = wanted.name;
  return true;
}

std::string Degrees(float tth) { return LeftAlign(RealField(tth, 10, 3)); }

std::string OutsidePattern(const std::string& path) {
  return FileStem(path) + " has no points between " + Degrees(FirstTth(SlotInput)) + " and " +
         Degrees(LastTth(SlotInput)) + " degrees";
}

void AddNote(std::string& notes, const std::string& note) {
  notes += (notes.empty() ? "" : "; ") + note;
}

}  // namespace

void CopyPoints(int from, int first, int n, int to) {
  const auto move = [=](std::span<float> source, std::span<float> target) {
    std::memmove(target.data(), source.data() + first, n * sizeof(float));
  };
  for (int axis = AxisTth; axis <= AxisQ; ++axis)
    move(ws.xval.row(axis, from), ws.xval.row(axis, to));
  move(ws.yval.row(from), ws.yval.row(to));
  ws.npts(to) = n;
}

Outcome OpenOverlay(std::span<const std::string> paths, int filetype, const ScanChoice& choice) {
  const PatternFormat* format = FindFormat(filetype);
  if (!format) {
    MessageBoxError("Error", "Unrecognized file type");
    return Outcome::Failed;
  }
  const bool scans = paths.size() == 1 && choice.scans.size() > 1 && !choice.sum;
  std::vector<Wanted> wanted;
  if (scans)
    wanted = WantedScans(paths[0], choice);
  else
    for (const std::string& path : paths)
      wanted.push_back({path, path, paths.size() == 1 ? choice : ScanChoice{}});
  int opened = 0;
  std::string notes;
  for (const Wanted& one :
       std::span(wanted).first(std::min<std::size_t>(wanted.size(), MaxOverlays))) {
    if (!OpenOne(*format, one)) continue;
    ++opened;
    if (ws.npts(OverlaySlot(ws.noverlay)) == 0) AddNote(notes, OutsidePattern(one.path));
  }
  if (opened == 0) return Outcome::Failed;
  if (wanted.size() > MaxOverlays)
    AddNote(notes, std::to_string(opened) + " of " + std::to_string(wanted.size()) +
                       (scans ? " scans" : " files") + " opened: there is room for four");
  ws.overlayitems = 1;
  EndOverlayFit();  // a fit was one of the patterns of before
  if (!notes.empty()) WindowOutStatusBar(3, notes);
  return Outcome::Done;
}

void OpenScansOver(const std::string& path, const ScanChoice& choice) {
  if (choice.sum || choice.scans.size() < 2) return;
  const std::vector<Wanted> wanted = WantedScans(path, choice);
  const auto over = std::span(wanted).subspan(1);
  for (const Wanted& one : over.first(std::min<std::size_t>(over.size(), MaxOverlays)))
    OpenOne(*FindFormat(FileTypeAny), one);
  ws.overlayitems = ws.noverlay > 0;
  if (over.size() > MaxOverlays)
    WindowOutStatusBar(3, "5 of " + std::to_string(wanted.size()) +
                              " scans opened: there is room for four over the first");
}

Outcome CloseOverlay(int k) {
  if (ws.noverlay < 1 || k < 0) return Outcome::Idle;
  for (int j = k; j > 0 && j < ws.noverlay; ++j) MoveUp(j);
  ws.noverlay = k == 0 ? 0 : ws.noverlay - 1;
  ws.overlayitems = ws.noverlay > 0;
  EndOverlayFit();
  return Outcome::Done;
}
