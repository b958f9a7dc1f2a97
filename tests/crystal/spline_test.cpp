// The cubic spline against closed forms.
#include "crystal/spline.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

std::vector<float> Through(const std::vector<float>& x, const std::vector<float>& y, float d1,
                           float dn, const std::vector<float>& at) {
  std::vector<float> y2(x.size()), out(at.size());
  SplineSetup(x, y, d1, dn, y2);
  SplineEval(x, y, y2, at, out);
  return out;
}

// Natural ends over 0, 1, 0: the middle second derivative is -3, so S(t) = 1.5 t - 0.5 t^3 rising.
TEST(Spline, NaturalEnds) {
  const auto s = Through({0, 1, 2}, {0, 1, 0}, NaturalEnd, NaturalEnd, {0, 0.5f, 1, 1.5f, 2});
  const float expected[] = {0, 0.6875f, 1, 0.6875f, 0};
  for (int i = 0; i < 5; ++i) EXPECT_FLOAT_EQ(s[i], expected[i]) << i;
}

// With the slopes of t^3 at its ends the spline is t^3 itself, on an uneven grid and past its end.
TEST(Spline, GivenSlopesReproduceACubic) {
  const std::vector<float> x{-1, 0, 0.5f, 2, 3}, at{-1, -0.5f, 0.25f, 0.3f, 1, 2.5f, 3, 3.5f};
  std::vector<float> y;
  for (float t : x) y.push_back(t * t * t);
  const auto s = Through(x, y, 3, 27, at);
  for (std::size_t i = 0; i < at.size(); ++i)
    EXPECT_NEAR(s[i], at[i] * at[i] * at[i], 2e-5) << at[i];
}

TEST(Spline, DegenerateListsStayFinite) {
  const std::vector<float> at{0, 1, 2};
  EXPECT_EQ(Through({}, {}, NaturalEnd, NaturalEnd, at), (std::vector<float>{0, 0, 0}));
  EXPECT_EQ(Through({1}, {7}, NaturalEnd, NaturalEnd, at), (std::vector<float>{7, 7, 7}));
  EXPECT_EQ(Through({0, 2}, {0, 4}, NaturalEnd, NaturalEnd, at), (std::vector<float>{0, 2, 4}));
  for (const auto& x : {std::vector<float>{0, 0, 0, 0}, {0, 1, 1, 2}, {2, 1, 0, -1}})
    for (float end : {0.0f, NaturalEnd})
      for (float v : Through(x, {1, 5, 2, 3}, end, end, at)) EXPECT_TRUE(std::isfinite(v));
}

}  // namespace
