// Fuzz target: the bytes behind the first are a pattern, a fit file or the listing of an indexing
// engine, the first picks reader and slot.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fit/fitfile.h"
#include "fuzz/memoryfile.h"
#include "fuzz/selector.h"
#include "index/inputfiles.h"
#include "index/listings.h"
#include "patternfiles/import/import.h"
#include "patternfiles/import/prepared.h"
#include "patternfiles/patternfiles.h"
#include "toolkit/replay/transcript.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

const MemoryFile file;
const std::string& path = file.Path();

// The cells behind a slot, which no reader of that slot may touch.
constexpr float kUntouched = -7;
float* BehindX(int slot) { return ws.xval.row(AxisTth, slot).data() + MaxPoints; }
float* BehindY(int slot) { return ws.yval.row(slot).data() + MaxPoints; }

void CheckSlot(int slot) {
  const auto finite = [](float v) { return v - v == 0; };
  const int n = ws.npts(slot);
  if (n < 0 || n > MaxPoints) std::abort();
  // A single point may stand on no grid.
  if (n > 1 && !std::ranges::all_of(ws.xval.row(AxisTth, slot).first(n), finite)) std::abort();
  if (!std::ranges::all_of(ws.yval.row(slot).first(n), finite)) std::abort();
}

void ReadPattern(std::uint8_t selector) {
  const auto formats = PatternFormats();
  const int slot = selector / static_cast<int>(formats.size()) % MaxSlots + 1;
  // What an earlier input has left must not decide.
  ws.npts.fill(0);
  ws.scanwave.fill(0);
  for (int each : {slot, int{SlotNet}}) ws.xval(AxisTth, each, 1) = 0;
  const bool inside = slot > SlotInput && slot < MaxSlots;  // slot 1 is copied to others
  if (inside) *BehindX(slot) = *BehindY(slot) = kUntouched;
  formats[selector % formats.size()].read(slot, path);
  if (inside && (*BehindX(slot) != kUntouched || *BehindY(slot) != kUntouched)) std::abort();
  for (int each = 1; each <= MaxSlots; ++each) {
    if (each == slot || each == SlotNet) CheckSlot(each);
    if (each != slot && each != SlotNet && ws.npts(each) != 0) std::abort();
  }
}

struct Fit {
  FitParameters p;
  PeakTable peaks;
  int npeaks = 0;
  Table<float, 3> scanwave;
  Table<float, 9> wavelen;
  bool Read() { return ReadFit(path, p, peaks, npeaks, scanwave, wavelen).text.empty(); }
  bool Write() { return WriteFit(path, p, peaks, npeaks, scanwave).empty(); }
};

// What can be written again comes back, to the letter of another file.
void ReadFitFile() {
  Fit fit;
  if (!fit.Read()) return;
  const FitParameters& p = fit.p;
  const auto within = [](int v, int first, int last) { return v >= first && v <= last; };
  if (!within(fit.npeaks, 1, MaxPeaks) || !within(p.bgorder, 0, MaxChebyshev) ||
      !within(p.laueclass, 1, 16) || !within(p.centering, 1, 7) || !within(p.fitposmode, 1, 2) ||
      !within(p.fitfwhmmode, 1, 2))
    std::abort();
  if (!std::ranges::all_of(fit.peaks.cells, [](float v) { return v - v == 0; })) std::abort();
  if (!fit.Write()) return;
  const std::string text = file.Content();
  Fit again;
  if (!again.Read() || !again.Write() || file.Content() != text) std::abort();
}

// By both readers, and as a list of peaks, which any text may be taken for.
void ReadListing() {
  for (const auto reader : {ReadItoSolutions, ReadTreorSolutions}) {
    SolutionTable solutions;
    LineReader listing(path);
    const int n = reader(listing, solutions);
    if (n < 0 || n > MaxSolutions) std::abort();
    if (!std::ranges::all_of(solutions.cells, [](float v) { return v - v == 0; })) std::abort();
  }
  LineReader peaks(path);
  const auto lines = ReadPeakLines(peaks, 0);
  if (lines.size() > MaxPeaks) std::abort();
  if (!std::ranges::all_of(lines, [](float v) { return v > 0 && v <= 180; })) std::abort();
}

// By what it holds; each scan becomes a pattern of rising positions.
void Import() {
  const Imported imported = ImportFile(path);
  if (imported.file.scans.empty() == imported.trouble.empty()) std::abort();
  for (const MeasuredScan& scan : imported.file.scans) {
    if (scan.x.empty() || scan.counts.size() != scan.x.size()) std::abort();
    const PreparedPattern pattern = Prepared(scan, CuKalpha1, MaxPoints);
    const auto finite = [](float v) { return v - v == 0; };
    if (pattern.tth.size() > MaxPoints || !std::ranges::is_sorted(pattern.tth)) std::abort();
    if (!std::ranges::all_of(pattern.counts, finite)) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  replay::Redirect([](const std::string&) {}, [] { std::abort(); });
  static char name[] = "fuzz_readers";
  static char* arguments[] = {name, nullptr};
  WInitialise(1, arguments);
  replay::NoInput();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  file.Hold(data + 1, size - 1);
  if (data[0] == kFitFileSelector)
    ReadFitFile();
  else if (data[0] == kListingSelector)
    ReadListing();
  else if (data[0] == kImportSelector)
    Import();
  else
    ReadPattern(data[0]);
  return 0;
}
