// The Modify menu: corrections, grid operations and filters on the loaded pattern. All read their
// parameters from the Workspace and change a slot in place.
#pragma once

#include <span>

#include "workspace/command.h"

// Corrections of raw data; refuse with a message when the active pattern is not slot 1.
Outcome Autodivergence();
Outcome Alpha2Strip();
Outcome AbsorptionCylinder();
Outcome AbsorptionPlate();
Outcome LpCorrect();

// Fills curve[0..901) with 1/A* of a cylinder for theta from 0 to 90 degrees in steps of 0.1. False
// if mu R lies above the table, whose last rows then go on.
bool CylinderAbsorptionCurve(float muR, std::span<float> curve);

// Grid operations on the active slot.
Outcome ZeroShift();
Outcome Truncate();
Outcome ConvertPattern();
Outcome AddPolynomial();
Outcome ScalePattern();

// Filters on the active slot; the Chebyshev fit goes to the background.
Outcome SmoothPattern();
Outcome SavitzkyGolay();
Outcome ChebyshevFit();

// Starts the editor on the pattern's file.
Outcome EditData();

// The rows of the menu, from its popup down.
std::span<const Command> ModifyCommands();
