// The Modify menu: corrections, grid operations and filters on the loaded pattern. All read their
// parameters from the Workspace, change a slot in place and redraw.
#pragma once

#include <span>

// Corrections of raw data; refuse with a message when the active pattern is not slot 1.
void Autodivergence();
void Alpha2Strip();
void AbsorptionCylinder();
void AbsorptionPlate();
void LpCorrect();

// Fills curve[0..901) with 1/A* of a cylinder for theta from 0 to 90 degrees in steps of 0.1. False
// if mu R lies above the table, whose last rows then go on.
bool CylinderAbsorptionCurve(float muR, std::span<float> curve);

// Grid operations on the active slot.
void ZeroShift();
void Truncate();
void ConvertPattern();
void AddPolynomial();
void ScalePattern();

// Filters on the active slot; the Chebyshev fit goes to the background.
void SmoothPattern();
void SavitzkyGolay();
void ChebyshevFit();

// Starts the editor on the pattern's file.
void EditData();
