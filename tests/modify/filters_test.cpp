// Smoothing, Savitzky-Golay and the Chebyshev fit on curves whose result is known.
#include "modify/filters.h"

#include <gtest/gtest.h>

#include "crystal/chebyshev.h"
#include "modify/modify.h"
#include "modify/patterns.h"

namespace {

TEST(MovingAverage, KeepsALineAndShrinksAtTheEnds) {
  std::vector<float> x{0, 0, 10, 0, 0, 0, 0, 0, 5}, y{1, 2, 3, 4, 5, 6, 7, 8, 9};
  for (int w : {-3, 0, 1, 11, 5}) MovingAverage(x, y, w);  // only the last of them averages
  EXPECT_EQ(y, (std::vector<float>{2, 2.5f, 3, 4, 5, 6, 7, 7.5f, 8}));
  EXPECT_EQ(x, (std::vector<float>{0, 0, 2, 2, 2, 0, 1, 0, 5}));
}

// The tables keep a parabola, all but two of them, whose integers do not add up to the norm. The
// points in front of the first window take a value from within, those behind the last one 0.
TEST(SGFilter, KeepsAParabola) {
  const auto parabola = [](int i) { return 40 + 0.25f * static_cast<float>(i * i); };
  for (int w = 5; w <= 25; w += 2) {
    const int n = 60, half = w / 2;
    std::vector<float> y(n);
    for (int i = 0; i < n; ++i) y[i] = w < 23 ? parabola(i) : 1000;
    SGFilter(y, w);
    const float level = w == 23 ? 1000 * 805.0f / 8059 : 1000 * 5135.0f / 5175;
    for (int i = 0; i < n; ++i) {
      const float kept = w < 23 ? parabola(i < half ? 2 * half : i) : level;
      EXPECT_NEAR(y[i], i < n - half ? kept : 0, 2e-3) << w << " " << i;
    }
  }
  std::vector<float> odd(30, 10.0f), nine = odd, few(8, 10.0f);
  odd[15] = nine[15] = 99;
  SGFilter(odd, 27);  // no such table
  SGFilter(nine, 9);
  EXPECT_EQ(odd, nine);
  EXPECT_NEAR(nine[15], 10 + 89 * 59.0 / 231, 1e-4);
  SGFilter(few, 9);
  EXPECT_EQ(few, std::vector<float>(8, 10.0f));
}

TEST(ChebyshevFit, BecomesTheBackground) {
  const float given[] = {300, 40, -25};
  PutPattern(10, 0.1f, 801, [&](double x) { return ChebyshevValue(given, x, 10, 90); });
  ws.chebyorder = 15;  // fits 14 terms
  ChebyshevFit();
  EXPECT_EQ(ws.chebyused, 14);
  EXPECT_EQ(ws.npts(2), 801);
  EXPECT_EQ(ws.bgintstart, 10);
  EXPECT_EQ(ws.bgintend, 90);
  EXPECT_EQ(ws.wavelen(2), ws.wavelen(1));
  for (int i = 1; i <= 801; ++i) ASSERT_NEAR(ws.yval(2, i), ws.yval(1, i), 0.01);
  for (int k = 1; k <= MaxChebyshev; ++k)
    EXPECT_NEAR(ws.chebycoef(k), k <= 3 ? given[k - 1] : 0, 0.01);
  const Lines events = Events();
  ASSERT_EQ(events.size(), 24u);
  // The mean square over the square of point 15 of slot 1; all that follow are exact.
  double squares = 0;
  for (int i = 1; i <= 801; ++i) squares += ws.yval(1, i) * ws.yval(1, i) / 801.0;
  char first[40];
  std::snprintf(first, sizeof first, "status\t3\tCycle   1  Rw %6.4f",
                std::sqrt(squares) / ws.yval(1, 15));
  EXPECT_EQ(events.front(), first);
  EXPECT_EQ(events.back(), "status\t3\tCycle  24  Rw 0.0000");

  ws.chebyorder = 0;
  ChebyshevFit();
  EXPECT_EQ(ws.yval(2, 400), 0);
  for (int n : {0, 1, 2, 5}) {  // fewer points than terms
    PutPattern(10, 1, n, [](double) { return 42; });
    ws.chebyorder = 14;
    ChebyshevFit();
    for (int i = 1; i <= n; ++i) EXPECT_NEAR(ws.yval(2, i), 42, 0.1) << n;
  }
}

}  // namespace
