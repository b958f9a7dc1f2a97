// Split pseudo-Voigt profile in double precision with all its derivatives, for peaks that are
// fitted together.
#pragma once

#include <array>

#include "peaks/peakprofile.h"  // for FitWavelengths

// The peak of PeakProfileFit: both halves meet at the position, and the whole has the area. In
// degrees, and counts times degrees, of alpha1 alone.
struct SplitPeak {
  double area = 0, position = 0;
  double left = 0, leftshape = 0.5, right = 0, rightshape = 0.5;  // FWHM, and Lorentzian share

  double Fwhm() const { return (left + right) / 2; }
  double Shape() const { return (leftshape + rightshape) / 2; }
};

// What a peak is refined by; widths by their logarithm, which keeps them above 0.
enum SplitParameter { Area, Position, LogLeft, LeftShape, LogRight, RightShape, SplitParameters };
using SplitDerivatives = std::array<double, SplitParameters>;

// Where the alpha2 line lies; the position itself if there is none, or none at this angle.
double Alpha2Position(double position, const FitWavelengths& lines);

// The profile of a peak and its alpha2 line.
class DoubletProfile {
 public:
  DoubletProfile(const SplitPeak& peak, const FitWavelengths& lines);
  // The value at a two-theta; derivatives by the parameters.
  double At(double x) const;
  double At(double x, SplitDerivatives& derivatives) const;

 private:
  struct Line {
    double position, ratio;  // ratio of its area to alpha1's
    double shift;            // derivative of its position by alpha1's
  };
  struct Side {
    double width, shape;
    double norm;      // of the sum of a Gaussian and a Lorentzian, to be 1 at the top
    double halfarea;  // of the side with a height of 1, times 2
  };
  const Side& SideOf(double d) const { return sides_[d < 0 ? 0 : 1]; }

  double area_, height_;  // the height of an area of 1
  std::array<Side, 2> sides_;
  std::array<Line, 2> lines_;
  int count_ = 1;
};

// The area of a peak of this height; the area it has stays out of it.
double AreaOfHeight(const SplitPeak& peak, double height);
