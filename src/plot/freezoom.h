// Zoom and pan by any amount: the view gets limits that are drawn as they are.
#pragma once

#include "plot/dataposition.h"
#include "plot/scales.h"

// A range by a factor narrower or wider about a place in it, which keeps its share of it: not
// narrower than `least`, and not beyond the ends.
Range ZoomedAbout(const Range& range, float at, float factor, const Range& ends, float least);
// A range moved as far as the ends allow.
Range Shifted(const Range& range, float by, const Range& ends);

// Zooms the view about a position by notches of a wheel, in for positive ones.
void ZoomX(DataPoint about, float notches);
void ZoomY(DataPoint about, float notches);
// Moves the view along x by notches of a wheel, to lower x for positive ones.
void ScrollX(float notches);
// Sets the view to ranges moved by this much in data units.
void PanFrom(const Range& x, const Range& y, DataPoint by);
