// Split pseudo-Voigt profile in double precision.
#include "peaks/splitpeak.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double kLn2 = std::numbers::ln2;
constexpr double kRadian = std::numbers::pi / 180;
// Heights of a Lorentzian and a Gaussian of area 1 and FWHM 1.
constexpr double kLorentz = 2 / std::numbers::pi;
const double kGauss = 2 * std::sqrt(kLn2 / std::numbers::pi);

double Norm(double shape) { return (1 - shape) * kGauss + shape * kLorentz; }

// Sine of the alpha2 line's theta; 1 or more where there is none.
double Alpha2Sine(double position, const FitWavelengths& lines) {
  if (!(lines.ratio > 0 && lines.alpha1 > 0 && lines.alpha2 > 0)) return 2;
  return std::fabs(std::sin(position / 2 * kRadian)) * lines.alpha2 / lines.alpha1;
}

}  // namespace

double Alpha2Position(double position, const FitWavelengths& lines) {
  const double sine = Alpha2Sine(position, lines);
  return sine < 1 ? 2 * std::asin(sine) / kRadian : position;
}

DoubletProfile::DoubletProfile(const SplitPeak& peak, const FitWavelengths& lines)
    : area_(peak.area),
      sides_{{{peak.left, peak.leftshape, Norm(peak.leftshape), 0},
              {peak.right, peak.rightshape, Norm(peak.rightshape), 0}}},
      lines_{{{peak.position, 1, 1}}} {
  for (Side& side : sides_) side.halfarea = side.width / side.norm;
  height_ = 2 / (sides_[0].halfarea + sides_[1].halfarea);
  const double sine = Alpha2Sine(peak.position, lines);
  if (!(sine < 1)) return;
  const double cosine = std::cos(peak.position / 2 * kRadian);
  lines_[count_++] = {Alpha2Position(peak.position, lines), lines.ratio,
                      cosine * lines.alpha2 / lines.alpha1 / std::sqrt(1 - sine * sine)};
}

double DoubletProfile::At(double x) const {
  double sum = 0;
  for (int k = 0; k < count_; ++k) {
    const double d = x - lines_[k].position;
    const Side& s = SideOf(d);
    const double u = 2 * d / s.width;
    sum += lines_[k].ratio *
           ((1 - s.shape) * kGauss * std::exp(-kLn2 * u * u) + s.shape * kLorentz / (1 + u * u)) /
           s.norm;
  }
  return area_ * height_ * sum;
}

double DoubletProfile::At(double x, SplitDerivatives& derivatives) const {
  derivatives = {};
  for (int k = 0; k < count_; ++k) {
    const double d = x - lines_[k].position;
    const Side& s = SideOf(d);
    const double u = 2 * d / s.width;
    const double gauss = kGauss * std::exp(-kLn2 * u * u);
    const double lorentz = 1 / (1 + u * u);
    const double top = area_ * height_ * lines_[k].ratio / s.norm;
    const double mixed = (1 - s.shape) * gauss + s.shape * kLorentz * lorentz;
    const double slope =
        -2 * u * top * ((1 - s.shape) * kLn2 * gauss + s.shape * kLorentz * lorentz * lorentz);
    derivatives[Area] += height_ * lines_[k].ratio / s.norm * mixed;
    derivatives[Position] -= slope * 2 / s.width * lines_[k].shift;
    const int own = d < 0 ? LogLeft : LogRight;
    derivatives[own] -= slope * u;
    derivatives[own + 1] +=
        top * (kLorentz * lorentz - gauss - mixed / s.norm * (kLorentz - kGauss));
  }
  // Width and shape of either side change the height of the whole.
  const double value = area_ * derivatives[Area];
  for (int k = 0; k < 2; ++k) {
    const double part = value * sides_[k].halfarea / (sides_[0].halfarea + sides_[1].halfarea);
    derivatives[LogLeft + 2 * k] -= part;
    derivatives[LeftShape + 2 * k] += part * (kLorentz - kGauss) / sides_[k].norm;
  }
  return value;
}

double AreaOfHeight(const SplitPeak& peak, double height) {
  return height * (peak.left / Norm(peak.leftshape) + peak.right / Norm(peak.rightshape)) / 2;
}
