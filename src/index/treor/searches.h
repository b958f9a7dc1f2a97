// The searches of TREOR90, each for cells of one kind.
//
// A search goes through the trial indices of its base lines, solves for the constants, passes over
// what breaks the limits, counts the test lines (the first options.use of search.lines) that the
// cell indexes, and keeps the best in search.candidates, which is empty at the start. Within the
// search the limits are those of search.limits; what moves (the volume limit) moves in a copy. With
// fewer lines than its base lines need, a search finds nothing. It ends early when search.GoOn()
// says so, which it asks at least ten times a second. What the listing says of trials goes through
// listing.h; headings and end notes are not the search's.
#pragma once

#include "index/treor/run.h"

void SearchCubic(TreorSearch& search);
void SearchTetragonal(TreorSearch& search);
void SearchHexagonal(TreorSearch& search);
void SearchOrthorhombicZone(TreorSearch& search);
void SearchOrthorhombic(TreorSearch& search);
// Cells whose axis b is told by a line that is the order 0 2 0.
void SearchMonoclinic020(TreorSearch& search);
void SearchMonoclinicZone(TreorSearch& search);
void SearchMonoclinic(TreorSearch& search);
void SearchTriclinicZone(TreorSearch& search);
void SearchTriclinic(TreorSearch& search);
