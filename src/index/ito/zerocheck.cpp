// Zero-error check: higher orders of the first lines fall upon later lines if the zero is right.
#include "index/ito/zerocheck.h"

#include <cmath>

#include "index/ito/lines.h"

namespace {

constexpr int kMostShift = 10;  // hundredths of a degree
constexpr int kBases = 6, kOrders = 5;

struct Fits {
  int count = 0;
  float mean = 0;  // difference, in q of the first order
};

// The lines as they would be with a shift in degrees two-theta, and their windows.
std::vector<ItoLine> Shifted(const ItoProblem& problem, float shift) {
  std::vector<ItoLine> lines = problem.lines;
  for (ItoLine& line : lines) {
    line.twotheta += shift;
    line.q = QOfTwoTheta(line.twotheta, problem.cards.wavel);
    SetWindow(line, problem.cards);
  }
  return lines;
}

Fits FitsOf(const std::vector<ItoLine>& lines) {
  Fits fits;
  for (int base = 0; base < kBases; ++base)
    for (int n = 2; n <= kOrders; ++n) {
      const float nn = static_cast<float>(n * n), q = nn * lines[base].q;
      if (q > lines.back().high) break;
      for (std::size_t i = base + 1; i < lines.size(); ++i)
        if (lines[i].low <= q && q <= lines[i].high) {
          ++fits.count;
          fits.mean += (lines[i].q - q) / nn;
        }
    }
  if (fits.count > 0) fits.mean /= static_cast<float>(fits.count);
  return fits;
}

// Most fits, and the smaller mean difference among as many.
bool IsBetter(const Fits& left, const Fits& right) {
  return left.count != right.count ? left.count > right.count
                                   : std::abs(left.mean) < std::abs(right.mean);
}

}  // namespace

void ZeroCheck(const ItoProblem& problem, Listing& listing) {
  std::vector<WriteValue> shifts, counts, means;
  int bestshift = 0;
  Fits best;
  for (int shift = -kMostShift; shift <= kMostShift; ++shift) {
    const Fits fits = FitsOf(Shifted(problem, 0.01f * static_cast<float>(shift)));
    shifts.emplace_back(shift);
    counts.emplace_back(fits.count);
    means.emplace_back(fits.mean);
    if (!IsBetter(fits, best)) continue;
    best = fits;
    bestshift = shift;
  }
  listing.Lines(
      "0zero check: how many lines are higher orders of the first six when all are shifted, and "
      "by\n"
      " how much they miss. whether there is an error of the zero is for you to judge");
  listing.Lines(WriteValues(FormatOf<"(15h0shifts (x0.01),21i5)">(), shifts));
  listing.Lines(WriteValues(FormatOf<"(15h nr of fits    ,21i5)">(), counts));
  listing.Lines(WriteValues(FormatOf<"(15h mean delta q  ,21f5.2)">(), means));
  if (best.count > 0)
    listing.Put<"('0most fits with a zero correction of ',f5.2,' degrees two-theta more')">(
        0.01f * static_cast<float>(bestshift));
}
