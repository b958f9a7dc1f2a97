// Quadratic forms of three whole numbers.
#include "index/find/form.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

Axes MatrixOf(const Form& f) {
  return {{{f[0], f[3] / 2, f[4] / 2}, {f[3] / 2, f[1], f[5] / 2}, {f[4] / 2, f[5] / 2, f[2]}}};
}

Form FormOfMatrix(const Axes& m) {
  return {m[0][0], m[1][1], m[2][2], 2 * m[0][1], 2 * m[0][2], 2 * m[1][2]};
}

// One pass through the steps of I. Krivy and B. Gruber, Acta Cryst. A32 (1976) 297; their letters.
class Reduction {
 public:
  Reduction(Form& f, double tolerance)
      : a_(f[0]), b_(f[1]), c_(f[2]), xi_(f[5]), eta_(f[4]), zeta_(f[3]), e_(tolerance) {}

  // False once there is nothing more to do.
  bool Step() {
    Order();
    Signs();
    return Shorten(b_, c_, xi_, eta_, zeta_) || Shorten(a_, c_, eta_, xi_, zeta_) ||
           Shorten(a_, b_, zeta_, xi_, eta_) || ShortenDiagonal();
  }

 private:
  double &a_, &b_, &c_, &xi_, &eta_, &zeta_;
  double e_;

  bool Equal(double x, double y) const { return std::abs(x - y) <= e_; }
  bool Less(double x, double y) const { return x < y - e_; }

  void Order() {
    const auto swapped = [&](double& p, double& q, double& dp, double& dq) {
      if (!Less(q, p) && !(Equal(p, q) && Less(std::abs(dq), std::abs(dp)))) return false;
      std::swap(p, q);
      std::swap(dp, dq);
      return true;
    };
    swapped(a_, b_, xi_, eta_);
    if (swapped(b_, c_, eta_, zeta_)) swapped(a_, b_, xi_, eta_);
  }

  // Three acute angles if that can be had, else none.
  void Signs() {
    const auto sign = [&](double x) { return x > e_ ? 1 : x < -e_ ? -1 : 0; };
    const double all = sign(xi_) * sign(eta_) * sign(zeta_) > 0 ? 1 : -1;
    for (double* x : {&xi_, &eta_, &zeta_}) *x = all * std::abs(*x);
  }

  // The longer axis less or plus the shorter one, whose product it is about.
  bool Shorten(double shorter, double& longer, double& product, double& otherproduct,
               double third) {
    const bool must = Less(shorter, std::abs(product)) ||
                      (Equal(product, shorter) && Less(2 * otherproduct, third)) ||
                      (Equal(product, -shorter) && Less(third, 0));
    if (!must) return false;
    const double sign = product > 0 ? 1 : -1;
    longer += shorter - product * sign;
    otherproduct -= third * sign;
    product -= 2 * shorter * sign;
    return true;
  }

  bool ShortenDiagonal() {
    const double sum = xi_ + eta_ + zeta_ + a_ + b_;
    if (!Less(sum, 0) && !(Equal(sum, 0) && Less(0, 2 * (a_ + eta_) + zeta_))) return false;
    c_ += sum;
    xi_ += 2 * b_ + zeta_;
    eta_ += 2 * a_ + zeta_;
    return true;
  }
};

}  // namespace

double Determinant(const Axes& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

Axes Inverse(const Axes& m) {
  const double d = Determinant(m);
  Axes inverse;
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) {
      const std::size_t r = (j + 1) % 3, s = (j + 2) % 3, t = (i + 1) % 3, u = (i + 2) % 3;
      inverse[i][j] = (m[r][t] * m[s][u] - m[r][u] * m[s][t]) / d;
    }
  return inverse;
}

double Determinant(const Form& form) { return Determinant(MatrixOf(form)); }

Form Reciprocal(const Form& form) { return FormOfMatrix(Inverse(MatrixOf(form))); }

Form OnAxes(const Form& form, const Axes& axes) {
  const Axes m = MatrixOf(form);
  Axes result{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = 0; k < 3; ++k)
        for (std::size_t l = 0; l < 3; ++l) result[i][j] += axes[i][k] * m[k][l] * axes[j][l];
  return FormOfMatrix(result);
}

Form Reduced(Form form) {
  // Rounding can make a lattice with equal axes go round in circles, so the steps are counted.
  constexpr int kMostSteps = 300;
  constexpr double kEqual = 1e-5;
  Reduction reduction(form, kEqual * std::cbrt(Determinant(form)));
  for (int step = 0; step < kMostSteps && reduction.Step(); ++step) {
  }
  return form;
}
