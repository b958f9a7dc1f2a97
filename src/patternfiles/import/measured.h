// What a file of a diffractometer or a journal tells, before it is made a pattern of the workbench.
#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

enum class ScanAxis { TwoTheta, D, Q };  // degrees, angstrom, 1/angstrom (2 pi / d)

struct MeasuredScan {
  std::string
      label;  // tells it from the other scans of its file: "range 3", "25.0 C"; may be blank
  ScanAxis axis = ScanAxis::TwoTheta;
  std::vector<double> x, counts;         // as they stand in the file, as many of each
  std::vector<double> esd;               // of the counts; as many, or none
  std::array<double, 2> wavelengths{};   // alpha1 and alpha2, angstrom; 0 where not stated
  double ratio = 0;                      // of the intensities alpha2 / alpha1
  double seconds = 0;                    // of counting, by point
  std::string sample, instrument, date;  // the date as YYYY-MM-DD or YYYY-MM-DD hh:mm:ss
};

struct MeasuredFile {
  std::vector<MeasuredScan> scans;  // one at least
  std::string note;                 // what the user should know: "2 masked points left out"
};

// Thrown by the readers of the import: what is wrong with the file, as the end of a sentence, "it
// holds a pole figure".
struct NotReadable : std::runtime_error {
  using std::runtime_error::runtime_error;
};
// The same where the file is sound but is no pattern: a pole figure, a rocking curve, a structure.
struct NoPattern : NotReadable {
  using NotReadable::NotReadable;
};
