// The lines of a problem: their q, the windows around them, and what follows from both.
#pragma once

#include <vector>

#include "index/ito/cards.h"

float QOfTwoTheta(float twotheta, float wavelength);

// Sets the window of a line to tolg degrees two-theta on either side, the same in q on both.
void SetWindow(ItoLine& line, const ItoCards& cards);

// The lines of lowest order that the wavelength can reach, in the order of q. Whether the input is
// two-theta, q or d its order and size tell.
std::vector<ItoLine> UsefulLines(std::vector<InputLine> input, const ItoCards& cards,
                                 Listing& listing);

// Sets the windows, and unless the tolerance was given adapts it to the density of the lines.
// False for a tolerance that makes no windows.
bool AdaptTolerance(ItoProblem& problem, Listing& listing);

// From the least distance of two lines.
void SetEqualTolerance(ItoProblem& problem, Listing& listing);

// False if the first line asks for too large a cell.
bool SetCellLimit(ItoProblem& problem, Listing& listing);

void SetProbabilities(ItoProblem& problem, Listing& listing);
