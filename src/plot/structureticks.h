// The lines of the structures that the pattern is compared with.
#pragma once

#include <string>

#include "plot/page.h"
#include "plot/scales.h"

// Each structure has a colour that also those can tell from the others who do not see red or green.
int StructureColour(int k);
// Name and formula.
std::string StructureLabel(int k);

// What a row of ticks for each structure needs below the frame; 0 where there is none.
float StructureRoom();
// The rows from `top` down: ticks as long as the square root of the intensity, and the labels.
// xfactor is drawing units per unit of the x axis.
void DrawStructureRows(const PageLayout& page, const Range& x, float xfactor, float top);
// The lines over the pattern instead, from the floor of the frame: the strongest of a structure as
// high as the highest point of the pattern.
void DrawStructureSticks(const Range& x, float xfactor, const Range& y, float yfactor);
