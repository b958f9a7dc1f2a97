// Unit cell and its reciprocal: volume, lengths of reciprocal vectors and how they follow the cell.
#pragma once

#include <array>
#include <optional>

#include "crystal/hklcode.h"
#include "workspace/table.h"

// a, b, c in angstrom, alpha, beta, gamma in degrees.
using UnitCell = Table<float, 6>;

// A quadratic form of the indices: the coefficients of h^2, k^2, l^2, hk, hl and kl.
using Metric = std::array<float, 6>;
float QuadraticForm(const Metric& m, const Hkl& hkl);

// 0 for a cell without volume, as one whose angles close no corner.
float CellVolume(const UnitCell& cell);

// The form of 1/d^2, not numbers for a cell without volume.
Metric ReciprocalMetric(const UnitCell& cell);
// The form of 1/(4 d^2), directly from the cell. None if the cell has no volume, or so huge or tiny
// a one that the form does not fit single precision.
std::optional<Metric> SineMetric(const UnitCell& cell);

// 1/d by the form of 1/d^2, 0 where the form is not positive.
float InverseD(const Metric& r, const Hkl& hkl);

// Two-theta in degrees for sin(theta); 180 beyond 1, which no reflection reaches.
float TwoThetaOfSine(float sine);

// How 1/d follows the six constants of the cell, by angstrom and by degree; by the angles only for
// classes that leave one free, else 0. There each reciprocal angle counts with the opposite sign
// and times its sine: the shifts of the fit, which turns the signs of the angles, are made so. No
// indices, or a cell without volume, give 0.
std::array<float, 6> CellGradient(int laueclass, int code, const UnitCell& cell);
