// What the listing of TREOR90 says of the searches.
#pragma once

#include "index/treor/run.h"

// A trial of the (020) search or of the dominant zone, with the base lines it came from.
void ListTrial020(Listing& listing, int count, const std::array<float, 4>& baselines);
void ListZoneTrial(Listing& listing, int count, const std::array<float, 4>& baselines);
// The zone of a trial has indexed no line at all.
void ListNoZoneIndex(Listing& listing);
// The base lines of the general monoclinic search: the first three sets, and each one that follows.
void ListFirstBaseLines(Listing& listing, int select);
void ListBaseLines(Listing& listing, const std::array<int, 4>& baselines);
// The search has found so many cells that larger ones are of no use.
void ListVolumeLimit(Listing& listing, CrystalSystem system, float volume);
// Any trial that indexes enough lines, where the keywords ask for all.
void ListAnyTrial(Listing& listing, const Candidate& candidate);
