// What a whole-pattern fit refines: numbers of the parameters, and the values that bear them.
#pragma once

#include <string>
#include <vector>

#include "fit/model.h"

// Rows of the normal matrix. A fit with more parameters must not be started.
inline constexpr int MaxFitParameters = 230;

// Rows of `profparam`: left and right U, V, W, left and right g1, g2, g3, and the cell.
enum { FwhmNumbers = 1, ShapeNumbers = 7, CellNumbers = 13 };

// The number of each value from 1 on, 0 for those that stay. Values with one number move together.
struct ParameterNumbers {
  Table<int, MaxChebyshev> bgparam;
  int zeroparam = 0;
  Table<int, 18> profparam;
  Table<int, MaxPeaks> posparam, intparam;
  int npar = 0;
};

// Numbers what the flags ask for; npar may be above MaxFitParameters. Intensities have the highest
// numbers, and rows that overlap at minfwhmsep FWHM share one. Background terms above `bgorder` and
// fixed angles get the values they have to have. The points of the rows must have been assigned.
ParameterNumbers AssignParameters(FitModel& model);

enum class ParameterKind { Background, Intensity, Position, Fwhm, Shape, Cell, Zero };

// A value that bears a number.
struct RefinedValue {
  int number;
  ParameterKind kind;
  int index;     // term, row, or place among its kind
  float* value;  // in the model
  float* esd;    // where its e.s.d. is kept; null for the rows of the peak list
};

// All of them in the order in which a shift reaches them. They hold as long as the model.
std::vector<RefinedValue> RefinedValues(FitModel& model, const ParameterNumbers& numbers);

// "a", "zero", "left U", "U" for both sides, "background 3", "intensity 1 0 4", and "intensity at
// 28.440" for a row without indices.
std::string ParameterName(std::span<const RefinedValue> values, const FitModel& model, int number);
