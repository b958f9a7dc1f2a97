// Truncate: cuts all slots to the range from savestart to savestop.
#include "modify/modify.h"
#include "workspace/slots.h"

namespace {

// The axes d and Q stay where they are.
void CutSlot(int slot) {
  const std::span<float> x = TthOf(slot), y = IntensityOf(slot);
  if (x.empty()) return;
  if (!(ws.savestart > x.front() || x.back() > ws.savestop)) return;
  int kept = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (!(x[i] >= ws.savestart && x[i] <= ws.savestop)) continue;
    x[kept] = x[i];
    y[kept] = y[i];
    ++kept;
  }
  ws.npts(slot) = kept;
}

}  // namespace

Outcome Truncate() {
  for (int slot = 1; slot <= MaxSlots; ++slot) CutSlot(slot);
  return Outcome::Done;
}
