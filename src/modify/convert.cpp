// Convert: the pattern as another wavelength would give it, on a grid of equal steps.
#include <algorithm>
#include <cmath>
#include <vector>

#include "crystal/regrid.h"
#include "modify/modify.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

// Puts two-theta of the new wavelength into x, up to the first that lies above savestop or that the
// new wavelength cannot reach, and returns their number.
int ConvertAngles(std::span<const float> tth, std::span<float> x) {
  for (std::size_t i = 0; i < tth.size(); ++i) {
    const float sine = (ws.newwavelength / ws.origwavelength) * std::sin(0.5f * tth[i] / RadToDeg);
    if (!(std::fabs(sine) <= 1)) return static_cast<int>(i);
    x[i] = TwoRadToDeg * std::asin(sine);
    if (x[i] > ws.savestop) return static_cast<int>(i);
  }
  return static_cast<int>(tth.size());
}

}  // namespace

Outcome ConvertPattern() {
  if (!(ws.origwavelength > 0 && ws.newwavelength > 0)) return Outcome::Idle;
  if (!(ws.savestart >= 0 && ws.savestop > 0 && ws.savestep > 0)) return Outcome::Idle;
  const int slot = ActiveSlot();
  std::vector<float> x(MaxPoints), y(ws.yval.row(slot).begin(), ws.yval.row(slot).end());
  int n = ConvertAngles(TthOf(slot), x);
  if (n < 2) return Outcome::Idle;
  const float ownstep = (x[n - 1] - x[0]) / static_cast<float>(n - 1);
  ws.savestart = std::max(ws.savestart, x[0]);
  ws.savestop = std::min(ws.savestop, x[n - 1]);
  const int size = nint(ws.savestep / ownstep);
  if (size > 1) n = BinMeans(x, y, n, size, ws.savestep);
  n = Regrid(x, y, n, ws.savestart, ws.savestep, ws.savestop);
  if (n < 2) return Outcome::Idle;  // no grid between these limits
  std::copy_n(x.begin(), n, ws.xval.row(AxisTth, slot).begin());
  std::copy_n(y.begin(), n, ws.yval.row(slot).begin());
  ws.wavelen(slot) = ws.newwavelength;
  ws.npts(slot) = n;
  // The other slots keep their angles, which are those of the old wavelength.
  ComputeSlotAxes(slot, ws.newwavelength);
  if (slot == SlotInput) ws.axiswave = ws.statedwave = ws.newwavelength;
  return Outcome::Done;
}
