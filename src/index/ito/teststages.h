// The stages of a problem, by the numbers under which the cards ask for their test output.
#pragma once

#include "index/ito/problem.h"

enum ItoStage {
  StageFinzon = 1,
  StageEvalu8,
  StageZones,
  StageThreed,
  StageNorm3,
  StageRefpar,
};

// The listing if a stage is to write test output: 1 to 9 asks for that stage, 11 to 99 in steps of
// 11 for a stage and all behind it, 99 for all.
inline Listing* TestOutput(const ItoCards& cards, ItoStage stage, Listing& listing) {
  constexpr int onwards = 11, all = 99;
  if (cards.test < 1) return nullptr;
  const int from = cards.teststage;
  const bool wanted = from == all || from == stage ||
                      (from >= onwards && from % onwards == 0 && stage >= from / onwards);
  return wanted ? &listing : nullptr;
}
