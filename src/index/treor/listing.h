// The texts of the listing of TREOR90, heading by heading and line by line.
#pragma once

#include <array>
#include <span>

#include "index/treor/cell.h"
#include "index/treor/merit.h"
#include "index/treor/run.h"

// Of the lines and keywords.
void ListAdjusted(Listing& listing);
void ListHigherOrder(Listing& listing, int order, int first, int n);
void ListFewTestLines(Listing& listing, int wanted);
void ListControlError(Listing& listing);
void ListOptions(const TreorSearch& search);

// Before the searches of a system, before and behind a search.
void ListSystem(const TreorSearch& search, CrystalSystem system);
void ListStage(const TreorSearch& search, Stage stage);
void ListStageEnd(Listing& listing, Stage stage);
void ListCounts(const TreorSearch& search);
// Help for who has no solution: differences between the first lines, and how often they come up.
void ListFailure(const TreorSearch& search);

// A trial of the (020) search or of the dominant zone, with the base lines it came from.
void ListTrial020(Listing& listing, int count, const std::array<float, 4>& baselines);
void ListZoneTrial(Listing& listing, int count, const std::array<float, 4>& baselines);
// The zone of a trial has indexed no line at all.
void ListNoZoneIndex(Listing& listing);
// The base lines of the general monoclinic search: the first three sets, and each one that follows.
void ListFirstBaseLines(Listing& listing, int select);
void ListBaseLines(Listing& listing, const std::array<int, 4>& baselines);
// The search has found so many cells that larger ones are of no use.
void ListVolumeLimit(Listing& listing, Stage stage, float volume);
// Any trial that indexes enough lines, where the keywords ask for all.
void ListAnyTrial(Listing& listing, const TreorCandidate& candidate);

// Of a candidate: the cell as the search found it, the cycles, and the symmetry it is tried with.
void ListUnrefined(Listing& listing, const CellAndVolume& cell);
void ListCycle(Listing& listing, std::span<const float> parameters);
void ListFewEquations(Listing& listing);
void ListHigherSymmetry(Listing& listing, CrystalSystem system);
// The block that readers of the listing look for, and the table of lines with the figures of merit.
void ListCell(Listing& listing, const TreorSolution& solution, int singles, int lines);
void ListLines(Listing& listing, const LineTest& test, float wave);
// The line that closes a candidate.
void ListTest(Listing& listing, const LineTest& test);
void ListGoodLuck(Listing& listing);
// What to look at in a solution, and how to look for a better one.
void ListSolved(const TreorSearch& search, CrystalSystem system);
void ListAdvice(Listing& listing, const LineTest& test);
// That no cell passed for want of time.
void ListStopped(Listing& listing);
