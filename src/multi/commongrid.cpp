// What patterns need in common to be added or fitted point by point: a step and a range.
#include "multi/commongrid.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "multi/overlays.h"
#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr float kStepTolerance = 1e-05f;  // degrees
// Part of a step. A point so near to an end of the range lies on it: the same angle, from start and
// step, differs in its last digits between files of other starts.
constexpr float kOnEnd = 0.05f;

// Pattern 0 is that of slot 1, all others are overlays.
int SlotOf(int pattern) { return pattern == 0 ? SlotInput : OverlaySlot(pattern); }
const std::string& PathOf(int pattern) {
  return pattern == 0 ? ws.patternpath : ws.overlayname(pattern);
}

std::string Degrees(float value, int decimals) {
  return LeftAlign(RealField(value, 12, decimals)) + " degrees";
}

std::string StepText(int pattern) {
  const int slot = SlotOf(pattern);
  if (ws.npts(slot) == 0) return "no points in the range of the pattern";
  return ws.npts(slot) == 1 ? "one point" : "a step of " + Degrees(FirstStepOf(slot), 5);
}

void Refuse(const std::string& text) { MessageBoxError("Pattern Error", text); }

// The search for a common grid: what is found, and what to say when there is none.
struct Search {
  int overlays;
  StepComplaint complaint;
  CommonGrid grid{};
  int lastbegin = 0, firstend = 0;  // patterns
  float lo = 0, hi = 0;

  void RefuseSteps(int pattern, const std::string& reason) const;
  void RefuseRange() const;
  bool StepsAgree();
  void FindRange();
  int Count(int pattern);
  bool CountPoints();
};

void Search::RefuseSteps(int pattern, const std::string& reason) const {
  std::string text = "Unequal step sizes";
  if (complaint == StepComplaint::Numbered) text = WriteRecord<"(a,i2)">(text, pattern);
  Refuse(FileMessage(text, PathOf(pattern), reason));
}

void Search::RefuseRange() const {
  Refuse("Incompatible pattern intervals\n" + FileStem(PathOf(lastbegin)) + " begins at " +
         Degrees(lo, 3) + ", " + FileStem(PathOf(firstend)) + " ends at " + Degrees(hi, 3));
}

bool Search::StepsAgree() {
  grid.step = FirstStepOf(SlotInput);
  for (int k = 1; k <= overlays; ++k) {
    const float step = FirstStepOf(SlotOf(k));
    if (grid.step > 0 && step > 0 && std::fabs(step - grid.step) <= kStepTolerance) continue;
    RefuseSteps(k, "it has " + StepText(k) + ", the pattern " + StepText(0));
    return false;
  }
  return true;
}

void Search::FindRange() {
  lo = FirstTth(SlotInput), hi = LastTth(SlotInput);
  for (int k = 1; k <= overlays; ++k) {
    if (FirstTth(SlotOf(k)) > lo) lo = FirstTth(SlotOf(k)), lastbegin = k;
    if (LastTth(SlotOf(k)) < hi) hi = LastTth(SlotOf(k)), firstend = k;
  }
}

// Points of a pattern within the range; notes the first.
int Search::Count(int pattern) {
  const std::span<const float> x = TthOf(SlotOf(pattern));
  const float least = lo - kOnEnd * grid.step, most = hi + kOnEnd * grid.step;
  const auto begin = std::find_if(x.begin(), x.end(), [=](float tth) { return tth >= least; });
  const auto end = std::find_if(begin, x.end(), [=](float tth) { return tth > most; });
  grid.first[pattern] = static_cast<int>(begin - x.begin());
  return static_cast<int>(end - begin);
}

// Counted, as the first step need not be exact: a file may round its angles. One point more or less
// is one between the others' points; any more are points at other steps.
bool Search::CountPoints() {
  const int own = Count(0);
  grid.points = own;
  for (int k = 1; k <= overlays; ++k) {
    const int count = Count(k);
    if (std::abs(count - own) > 1) {
      RefuseSteps(k, "it has " + std::to_string(count) + " points between " + Degrees(lo, 3) +
                         " and " + Degrees(hi, 3) + ", the pattern " + std::to_string(own));
      return false;
    }
    grid.points = std::min(grid.points, count);
  }
  return true;
}

}  // namespace

std::optional<CommonGrid> FindCommonGrid(int overlays, StepComplaint complaint) {
  Search search{overlays, complaint};
  if (!search.StepsAgree()) return {};
  search.FindRange();
  if (!search.CountPoints()) return {};
  if (search.grid.points >= 2) return search.grid;
  search.RefuseRange();
  return {};
}
