// Derivatives of the whole-pattern fit against differences of an independent model, and the sums
// made of them against plain loops.
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "crystal/laue.h"
#include "fit/normalequations.h"
#include "fit/simulate.h"

namespace {

using namespace simulate;

// A value that moves, its number, and the step of the difference.
struct Mover {
  std::string name;
  int number;
  double step;
  std::function<void(Truth&, double)> move;
};

// The intensity at x, with what the derivatives leave out held where it was: the ratio of the
// halves, the widths of a peak that moves, the background under the zero, and the way of alpha2,
// which goes with alpha1 step by step and count by count.
double Intensity(const Truth& t, const Truth& held, double x) {
  double y = BackgroundAt(t, x + held.zero);
  for (int j = 0; j < t.Rows(); ++j) {
    const double tth = PositionOf(held, j), moved = PositionOf(t, j) - tth;
    const Peak p = PeakAt(t, tth, 0), p0 = PeakAt(held, tth, 0);
    const auto line = [&](double position, double area) {
      const double d = x + t.zero - position;
      const double hl = PseudoVoigt(0, p0.left, p0.leftshape);
      const double hr = PseudoVoigt(0, p0.right, p0.rightshape);
      const double top = area / (0.5 / hl + 0.5 / hr);
      y += d < 0 ? top / hl * PseudoVoigt(d, p.left, p.leftshape)
                 : top / hr * PseudoVoigt(d, p.right, p.rightshape);
    };
    line(tth + moved, t.area[j]);
    if (t.ratio > 0)
      line(Alpha2Position(tth) + moved, t.ratio * held.area[j] + t.area[j] - held.area[j]);
  }
  return y;
}

// The derivatives of all points, and differences of the model for a value.
struct Derived {
  explicit Derived(const Truth& t) : truth(t), data(MakeFit(t)) {
    data.fit.tthzerorefine = 1;
    data.fit.cellrefine.fill(1);
    data.fit.fwhmrefine.fill(1);
    data.fit.shaperefine.fill(1);
    FitModel model = data.Model();
    numbers = AssignParameters(model);
    const std::vector<RowState> rows = PrepareRows(model);
    points.resize(data.x.size());
    for (int i = 1; i <= model.Points(); ++i)
      EvaluatePoint(model, numbers, rows, i, data.fit.tthzero + data.x[i - 1], points[i - 1]);
  }
  Truth truth;
  FitData data;
  ParameterNumbers numbers;
  std::vector<Derivatives> points;

  // The largest departure as a part of the largest derivative.
  double Departure(const Mover& m) const {
    Truth up = truth, down = truth;
    m.move(up, m.step), m.move(down, -m.step);
    double largest = 0, departure = 0;
    for (std::size_t i = 0; i < points.size(); i += 3) {
      const double x = data.x[i];
      const double d = (Intensity(up, truth, x) - Intensity(down, truth, x)) / (2 * m.step);
      largest = std::max(largest, std::abs(d));
      departure = std::max(departure, std::abs(d - points[i].values[m.number]));
    }
    return largest > 0 && m.number > 0 ? departure / largest : 1;
  }
};

Truth SplitPeaks(double ratio, bool individual) {
  Truth t;
  t.left = {0.02, -0.01, 0.03}, t.right = {0.01, 0.02, 0.01};
  t.leftshape = {0.3, 0.004, -0.00001}, t.rightshape = {0.8, -0.005, 0.00002};
  t.background = {100, -20, 5, 3};
  t.zero = 0.013;
  t.ratio = ratio;
  t.points = 1001;
  t.reach = 10000;
  t.area = {400, 300};
  if (individual) t.position = {25.002, 33.5};
  t.laueclass = 5;
  t.cell = {5.1, 6.2, 7.3, 90, 90, 90};
  t.hkl = {{1, 1, 1}, {0, 2, 1}};
  return t;
}

void AddTriple(std::vector<Mover>& movers, const std::string& name, int entry,
               const ParameterNumbers& p, Triple Truth::*triple) {
  for (int k = 0; k < 3; ++k)
    movers.push_back({name + std::to_string(k + 1), p.profparam(entry + k), 1e-5 / std::pow(30, k),
                      [=](Truth& t, double h) { (t.*triple)[k] += h; }});
}

std::vector<Mover> AllMovers(const ParameterNumbers& p, bool individual) {
  std::vector<Mover> movers;
  for (int k = 0; k < 4; ++k)
    movers.push_back({"background " + std::to_string(k), p.bgparam(k + 1), 1e-3,
                      [=](Truth& t, double h) { t.background[k] += h; }});
  AddTriple(movers, "left width ", FwhmNumbers, p, &Truth::left);
  AddTriple(movers, "right width ", FwhmNumbers + 3, p, &Truth::right);
  AddTriple(movers, "left shape ", ShapeNumbers, p, &Truth::leftshape);
  AddTriple(movers, "right shape ", ShapeNumbers + 3, p, &Truth::rightshape);
  for (int j = 0; j < 2; ++j)
    movers.push_back({"intensity " + std::to_string(j), p.intparam(j + 1), 1e-3,
                      [=](Truth& t, double h) { t.area[j] += h; }});
  for (int j = 0; individual && j < 2; ++j)
    movers.push_back({"position " + std::to_string(j), p.posparam(j + 1), 1e-5,
                      [=](Truth& t, double h) { t.position[j] += h; }});
  if (individual) return movers;
  movers.push_back({"zero", p.zeroparam, 1e-5, [](Truth& t, double h) { t.zero += h; }});
  return movers;
}

// For alpha2 the laws of the shape are taken at its own position, not at that of alpha1.
TEST(FitDerivatives, FollowAnIndependentModel) {
  for (double ratio : {0.0, 0.5})
    for (bool individual : {false, true}) {
      const Derived d(SplitPeaks(ratio, individual));
      for (const Mover& m : AllMovers(d.numbers, individual)) {
        const bool leans = ratio > 0 && m.name.find("shape") != std::string::npos;
        EXPECT_LT(d.Departure(m), leans ? 4e-3 : 1e-4) << m.name << " " << ratio << individual;
      }
    }
}

// Constants that follow another one move with it. The gradient of angles is not that of 1/d, so it
// is taken as it is: what counts is its sign and that it goes through the position.
TEST(FitDerivatives, FollowTheCellOfEveryClass) {
  for (int laueclass = 1; laueclass <= kLaueClasses; ++laueclass) {
    Truth t = SplitPeaks(0, false);
    UnitCell cell{{5.1f, 6.2f, 7.3f, 94, 101, 107}};
    ForceCell(cell, laueclass);
    for (int k = 0; k < 6; ++k) t.cell[k] = cell(k + 1);
    t.laueclass = laueclass;
    t.hkl = {{1, 2, 1}}, t.area = {500};
    const Derived d(t);
    const auto& master = LaueClassOf(laueclass).master;
    const auto gradient = CellGradient(laueclass, PackHkl(t.hkl[0]), cell);
    const double theta = PositionOf(t, 0) / 2 * kDegree;
    for (int k = 0; k < 6; ++k) {
      const int number = d.numbers.profparam(CellNumbers + k);
      if (master[k] != k) {
        EXPECT_EQ(number, master[k] < 0 ? 0 : d.numbers.profparam(CellNumbers + master[k]));
        continue;
      }
      double sum = 0;  // of the gradients of angles that move together
      for (int l = 3; l < 6; ++l) sum -= master[l] == k ? gradient[l] : 0;
      const Mover m{"", number, 1e-5, [&](Truth& s, double h) {
                      for (int l = 0; l < 3; ++l)
                        if (master[l] == k) s.cell[l] += h;
                      // A zero that falls is a peak that moves up.
                      s.zero -= h * sum * Lambda1 / std::cos(theta) / kDegree;
                    }};
      EXPECT_LT(d.Departure(m), 3e-4) << laueclass << " " << k;
    }
  }
}

TEST(FitDerivatives, SumsHaveTheBitsOfPlainLoops) {
  constexpr int kNumbers = 101, kPoints = 500;
  std::mt19937 random(1);
  std::normal_distribution<float> value;
  std::vector<float> matrix(kNumbers * kNumbers), right(kNumbers);
  NormalEquations equations(kNumbers);
  Derivatives d;
  for (int i = 0; i < kPoints; ++i) {
    d.Clear();
    for (int k = 1; k <= 15; ++k) d.Add(k, value(random));
    const int first = 16 + static_cast<int>(random() % 80);
    for (int k = first; k < std::min(first + static_cast<int>(random() % 12), kNumbers + 1); ++k)
      d.Add(k, value(random));
    const float e = value(random);
    equations.Add(d, e);
    for (int k = 1; k <= kNumbers; ++k) {
      right[k - 1] += e * d.values[k];
      for (int l = k; l <= kNumbers; ++l)
        matrix[(k - 1) * kNumbers + l - 1] += d.values[k] * d.values[l];
    }
  }
  const std::vector<float> sums = equations.Matrix(kNumbers);
  int unequal = 0;
  for (int k = 1; k <= kNumbers; ++k) {
    unequal += equations.Right(k) != right[k - 1];
    for (int l = 1; l <= kNumbers; ++l)
      unequal += sums[(k - 1) * kNumbers + l - 1] !=
                 matrix[(std::min(k, l) - 1) * kNumbers + std::max(k, l) - 1];
  }
  EXPECT_EQ(unequal, 0);
}

}  // namespace
