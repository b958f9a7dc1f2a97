// The searches, one a system: each tries all metrics that simple indices of the first lines allow.
#pragma once

#include "index/find/trials.h"

void SearchForCubic(const SearchLines& lines, TrialList& list);
void SearchForTetragonal(const SearchLines& lines, TrialList& list);
void SearchForHexagonal(const SearchLines& lines, TrialList& list);  // and rhombohedral
void SearchForOrthorhombic(const SearchLines& lines, TrialList& list);
void SearchForMonoclinic(const SearchLines& lines, TrialList& list);
void SearchForMonoclinicZone(const SearchLines& lines, TrialList& list);
void SearchForTriclinic(const SearchLines& lines, TrialList& list);
