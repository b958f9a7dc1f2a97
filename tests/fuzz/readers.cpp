// Fuzz target: the bytes behind the first are a pattern file, the first picks reader and slot.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "patternfiles/patternfiles.h"
#include "toolkit/replay/transcript.h"
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

namespace {

int file = -1;  // lies in memory
std::string path;

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

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  replay::Redirect([](const std::string&) {}, [] { std::abort(); });
  static char name[] = "fuzz_readers";
  static char* arguments[] = {name, nullptr};
  WInitialise(1, arguments);
  replay::NoInput();
  file = memfd_create("pattern", 0);
  path = "/proc/self/fd/" + std::to_string(file);
  return file < 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto formats = PatternFormats();
  const int slot = data[0] / static_cast<int>(formats.size()) % MaxSlots + 1;
  if (ftruncate(file, 0) != 0 ||
      pwrite(file, data + 1, size - 1, 0) != static_cast<ssize_t>(size - 1))
    std::abort();
  // What an earlier input has left must not decide.
  ws.npts.fill(0);
  ws.scanwave.fill(0);
  for (int each : {slot, int{SlotNet}}) ws.xval(AxisTth, each, 1) = 0;
  const bool inside = slot > SlotInput && slot < MaxSlots;  // slot 1 is copied to others
  if (inside) *BehindX(slot) = *BehindY(slot) = kUntouched;
  formats[data[0] % formats.size()].read(slot, path);
  if (inside && (*BehindX(slot) != kUntouched || *BehindY(slot) != kUntouched)) std::abort();
  for (int each = 1; each <= MaxSlots; ++each) {
    if (each == slot || each == SlotNet) CheckSlot(each);
    if (each != slot && each != SlotNet && ws.npts(each) != 0) std::abort();
  }
  return 0;
}
