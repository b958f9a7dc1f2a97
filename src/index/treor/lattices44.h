// The 44 reduced forms of lattices, with the way from each to its conventional cell. From the table
// of reduced forms of International Tables for Crystallography.
#pragma once

#include <array>
#include <span>
#include <string>

using AxesMatrix = std::array<std::array<int, 3>, 3>;  // new axes in rows, as sums of the old ones

// The six products of three axes with each other, square angstrom.
struct AxisProducts {
  float aa, bc, bb, ac, cc, ab;
};

struct ReducedForm {
  int number;        // 1 to 44
  int latticeclass;  // 1 to 14
  AxesMatrix conventional;
};

// The form of a reduced cell; type is 1 if all products of different axes are positive, 2 if none
// is. Squares and products that differ by no more than the tolerance are equal.
const ReducedForm& FormOf(const AxisProducts& m, int type, float tolerance);

inline constexpr int kTriclinicClass = 11;

// The line of the listing that names a lattice class and its centring.
std::string ClassLine(int latticeclass);

// How a class brings the axes of its conventional cell into their usual order, for a reduced cell
// of the given type.
const AxesMatrix& AxesOrder(int latticeclass, int type);
