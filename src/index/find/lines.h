// The lines that a cell is searched for.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

struct ObservedLine {
  double tth;    // degrees two-theta
  double width;  // full width at half maximum, degrees
  double error;  // what the position is expected to be good to, degrees
  double intensity;
  double q;      // 1/d^2
  double slope;  // dQ by degree
};

struct PeakOfList {
  double tth, intensity, fwhm;
  double esd = 0;  // of the position; 0 where it is not known
};

// By rising two-theta. A width that is not positive, or out of proportion, is the median of the
// others.
std::vector<ObservedLine> ObservedLines(std::span<const PeakOfList> peaks, double wavelength);
double QOfTwoTheta(double tth, double wavelength);

// Which of the first lines lies at a value of Q: looked up, so that millions of metrics can be
// tried.
class HitTable {
 public:
  // Of the first `count` lines (at most 32), moved by `shift` degrees, with a window of `share` of
  // the width to either side.
  HitTable(std::span<const ObservedLine> lines, std::size_t count, double shift, double share);
  // The bit of the line at q, which lies between 0 and Most(); 0 where there is none.
  std::uint32_t At(float q) const { return bits_[static_cast<std::uint32_t>(q * scale_)]; }
  float Most() const { return most_; }
  int Lines() const { return lines_; }
  // The share of the range that the windows take.
  double Covered() const { return covered_; }

 private:
  static constexpr int kCells = 16384;
  std::vector<std::uint32_t> bits_;
  float most_, scale_;
  int lines_;
  double covered_;
};
