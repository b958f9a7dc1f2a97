// First angle, step and last angle in the first line, then the counts, so many a line as the
// program that wrote them liked. Up to six lines of title may stand in front, and text behind the
// three angles.
//
//    10.000   0.025 160.000  corundum
//        179     147     165     172     150     165     150     158
//
// The angles may touch in columns of eight. Twice as many numbers as angles are either pairs, the
// number of detectors in front of each count, or all the counts and then all the e.s.d.
#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "patternfiles/import/headerkeys.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/textreaders.h"

namespace {

constexpr int kTitleLines = 6;

struct Angles {
  double start, step, stop;
  std::string_view text;  // behind them

  double Points() const { return std::round((stop - start) / step) + 1; }
};

bool IsPlausible(const Angles& angles) {
  return std::abs(angles.start) < 180 && angles.stop < 181 && angles.step > 1e-5 &&
         angles.Points() >= 10;
}

std::optional<Angles> FreeAngles(std::string_view line) {
  std::vector<double> numbers;
  line = Stripped(line);
  double value;
  while (numbers.size() < 3 && TakeNumber(line, value)) {
    if (!line.empty() && std::string_view(" ,\t").find(line[0]) == std::string_view::npos)
      return std::nullopt;
    numbers.push_back(value);
    while (!line.empty() && std::string_view(" ,\t").find(line[0]) != std::string_view::npos)
      line.remove_prefix(1);
  }
  if (numbers.size() < 3) return std::nullopt;
  return Angles{numbers[0], numbers[1], numbers[2], Stripped(line)};
}

std::optional<Angles> AnglesInColumns(std::string_view line) {
  if (line.size() < 17) return std::nullopt;
  const auto start = NumberOf(line.substr(0, 8)), step = NumberOf(line.substr(8, 8)),
             stop = NumberOf(line.substr(16, 8));
  if (!start || !step || !stop) return std::nullopt;
  return Angles{*start, *step, *stop, line.size() > 24 ? Stripped(line.substr(24)) : ""};
}

std::optional<Angles> AnglesOf(std::string_view line) {
  for (const auto& angles : {FreeAngles(line), AnglesInColumns(line)})
    if (angles && IsPlausible(*angles)) return angles;
  return std::nullopt;
}

struct StepScan {
  Angles angles{};
  TextHeader header;
  std::vector<double> numbers;
};

// Numbers up to a line that holds something else.
void TakeNumbers(TextLines& lines, std::vector<double>& numbers) {
  for (std::string_view line; lines.Next(line);) {
    const std::size_t old = numbers.size();
    if (AppendNumbers(line, numbers)) continue;
    numbers.resize(old);
    if (!AppendColumns(line, 8, numbers)) {
      numbers.resize(old);
      return;
    }
  }
}

constexpr double kSpare = 12;  // numbers too many or too few that a last line may have

bool Near(double value, double wanted) { return std::abs(value - wanted) <= kSpare; }

bool IsDoubled(const StepScan& scan) {
  const double points = scan.angles.Points(), numbers = static_cast<double>(scan.numbers.size());
  return points > 4 * kSpare && scan.numbers.size() % 2 == 0 && Near(numbers, 2 * points);
}

// Few files that begin with three such numbers are anything else; their counts decide.
bool HasCounts(const StepScan& scan, std::size_t inrow) {
  const double points = scan.angles.Points(), numbers = static_cast<double>(scan.numbers.size());
  if (Near(numbers, points) || IsDoubled(scan)) return true;
  return inrow >= 5 && numbers > points / 2 && numbers < points;
}

std::optional<StepScan> StepScanOf(std::string_view bytes) {
  TextLines lines(bytes);
  StepScan scan;
  std::string_view line;
  for (int i = 0; i <= kTitleLines && lines.Next(line); ++i) {
    if (const auto angles = AnglesOf(line)) {
      scan.angles = *angles;
      if (!angles->text.empty()) TakeKey(scan.header, "sample", angles->text);
      std::vector<double> first;
      if (!lines.Next(line) || !(AppendNumbers(line, first) || AppendColumns(line, 8, first)))
        return std::nullopt;
      scan.numbers = first;
      TakeNumbers(lines, scan.numbers);
      if (HasCounts(scan, first.size())) return scan;
      return std::nullopt;
    }
    TakeKeyLine(scan.header, line);
    if (i == 0) TakeKey(scan.header, "sample", line);
  }
  return std::nullopt;
}

bool ArePairs(const std::vector<double>& numbers) {
  for (std::size_t i = 0; i < numbers.size(); i += 2)
    if (numbers[i] < 1 || numbers[i] > 99 || numbers[i] != std::floor(numbers[i])) return false;
  return true;
}

// The second half as e.s.d. of the first: nowhere negative, and a constant times the root.
bool AreEsdBehindCounts(const std::vector<double>& numbers) {
  const std::size_t half = numbers.size() / 2;
  std::vector<double> ratio;
  for (std::size_t i = 0; i < half; ++i)
    if (numbers[i] > 0) ratio.push_back(numbers[half + i] / std::sqrt(numbers[i]));
  if (ratio.size() * 2 < half) return false;
  std::sort(ratio.begin(), ratio.end());
  return ratio.front() >= 0 && ratio[ratio.size() / 4] * 3 > ratio[ratio.size() * 3 / 4];
}

void TakeCounts(StepScan& scan) {
  MeasuredScan& pattern = scan.header.scan;
  const std::vector<double>& numbers = scan.numbers;
  const std::size_t half = numbers.size() / 2;
  if (!IsDoubled(scan)) {
    pattern.counts = numbers;
  } else if (ArePairs(numbers)) {
    for (std::size_t i = 0; i < numbers.size(); i += 2) {
      pattern.counts.push_back(numbers[i + 1]);
      pattern.esd.push_back(std::sqrt(std::max(numbers[i + 1], 1.0) / numbers[i]));
    }
  } else if (AreEsdBehindCounts(numbers)) {
    pattern.counts.assign(numbers.begin(), numbers.begin() + static_cast<std::ptrdiff_t>(half));
    pattern.esd.assign(numbers.begin() + static_cast<std::ptrdiff_t>(half), numbers.end());
  } else {
    throw NotReadable("it holds twice as many counts as its first line tells");
  }
}

}  // namespace

bool IsStartStepStop(std::string_view bytes) {
  return LooksText(bytes) && StepScanOf(bytes).has_value();
}

MeasuredFile ReadStartStepStop(const ImportSource& source) {
  std::optional<StepScan> scan = StepScanOf(source.bytes);
  if (!scan) throw NotReadable("its counts are not as many as its first line tells");
  TakeCounts(*scan);
  FillEvenGrid(scan->header.scan, scan->angles.start, scan->angles.step);
  MeasuredFile file;
  AddScan(file, std::move(scan->header.scan));
  return file;
}
