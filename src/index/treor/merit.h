// How well a cell explains the lines: which calculated line belongs to which observed one, and the
// figures of merit M and F.
#pragma once

#include <optional>
#include <vector>

#include "index/treor/forms.h"

// A row of the table of lines: an observed line, a calculated one, or both if they belong together.
struct LineRow {
  const TreorLine* observed = nullptr;
  std::optional<CalculatedLine> calculated{};
};

// M(n) = s(n) / (2 mean |s obs - s calc| Ncalc), F(n) = n / (mean |two-theta difference| Ncalc).
struct FigureOfMerit {
  int lines = 0;  // n
  int m = 0, f = 0;
  float epsilon = 0, delta = 0;  // mean differences of s and of two-theta in degrees
  int calculated = 0;            // calculated lines up to the n-th observed one
};

struct LineTest {
  std::vector<LineRow> rows{};             // rising s
  std::vector<FigureOfMerit> figures{};    // of 20, of 30 and of all lines
  int observed = 0, calculated = 0;        // lines
  int m = 0;                               // M of 20 lines, or of all if they are fewer
  int unindexed = 0, unindexedintest = 0;  // of all lines, and of those that m is about
};

LineTest TestLines(CrystalSystem system, const Constants& constants,
                   const std::vector<TreorLine>& lines, const TreorOptions& options);

float TwoThetaAt(float s);  // degrees
