// First angle, step and last angle in the first line, then the counts, so many a line as the
// program that wrote them liked. Lines of title may stand in front, and text behind the
// three angles.
//
//    10.000   0.025 160.000  corundum
//        179     147     165     172     150     165     150     158
//
// The angles may touch in columns of eight, stand behind a remark in /* */ or in lines of their
// own. Twice as many numbers as angles are either pairs, the number of detectors in front of each
// count, or all the counts and then all the e.s.d.
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

constexpr int kTitleLines = 20;

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

constexpr double kSpare = 12;  // numbers too many or too few that a last line may have

bool Near(std::size_t numbers, double wanted) {
  return std::abs(static_cast<double>(numbers) - wanted) <= kSpare;
}

// Numbers up to a line that holds something else; and how many the first line has.
std::vector<double> NumbersOf(std::string_view body, std::size_t& inrow) {
  std::vector<double> numbers;
  TextLines lines(body);
  inrow = 0;
  for (std::string_view line; lines.Next(line);) {
    const std::size_t old = numbers.size();
    if (!AppendNumbers(line, numbers)) {
      numbers.resize(old);
      if (!AppendColumns(line, 8, numbers)) {
        numbers.resize(old);
        break;
      }
    }
    if (inrow == 0) inrow = numbers.size();
  }
  return numbers;
}

// Each count behind the number of detectors that counted.
bool TakePairs(const std::vector<double>& numbers, MeasuredScan& scan) {
  for (std::size_t i = 0; i < numbers.size(); i += 2)
    if (!(numbers[i] >= 1 && numbers[i] <= 99 && numbers[i] == std::floor(numbers[i])))
      return false;
  for (std::size_t i = 0; i < numbers.size(); i += 2) {
    scan.counts.push_back(numbers[i + 1]);
    scan.esd.push_back(std::sqrt(std::max(numbers[i + 1], 1.0) / numbers[i]));
  }
  return true;
}

// The second half as e.s.d. of the first: nowhere negative, much the same times the root, and well
// below the counts.
bool TakeHalves(const std::vector<double>& numbers, MeasuredScan& scan) {
  const auto half = static_cast<std::ptrdiff_t>(numbers.size() / 2);
  std::vector<double> ratio;
  std::ptrdiff_t small = 0;
  for (std::ptrdiff_t i = 0; i < half; ++i) {
    const double counts = numbers[i], esd = numbers[half + i];
    if (!(counts >= 0 && esd >= 0)) return false;
    if (counts > 0) ratio.push_back(esd / std::sqrt(counts));
    small += esd < counts / 2;
  }
  std::sort(ratio.begin(), ratio.end());
  if (small * 2 < half || ratio[ratio.size() / 4] * 2 < ratio[ratio.size() * 3 / 4]) return false;
  scan.counts.assign(numbers.begin(), numbers.begin() + half);
  scan.esd.assign(numbers.begin() + half, numbers.end());
  return true;
}

// Few files that begin with three such numbers are anything else; that the counts are as many
// decides, or that there are many a line.
bool TakeCounts(std::string_view body, double points, MeasuredScan& scan) {
  std::size_t inrow;
  const std::vector<double> numbers = NumbersOf(body, inrow);
  if (points > 4 * kSpare && numbers.size() % 2 == 0 && Near(numbers.size(), 2 * points))
    return TakePairs(numbers, scan) || TakeHalves(numbers, scan);
  const double filled = static_cast<double>(numbers.size()) / points;
  if (!Near(numbers.size(), points) && !(inrow >= 5 && filled > 0.5 && filled < 1.5)) return false;
  scan.counts = numbers;
  return true;
}

bool TakeMeanCounts(std::string_view body, double points, MeasuredScan& scan) {
  TextLines lines(body);
  for (std::string_view line; lines.Next(line);)
    if (!AppendMeanCounts(line, scan.counts, scan.esd)) break;
  DropPlainEsd(scan);
  return Near(scan.counts.size(), points);
}

// Three numbers and the counts, a number a line.
std::optional<MeasuredScan> ScanOfLines(std::string_view body, const MeasuredScan& heading) {
  std::size_t inrow;
  const std::vector<double> numbers = NumbersOf(body, inrow);
  if (numbers.size() < 13) return std::nullopt;
  const Angles angles{numbers[0], numbers[1], numbers[2], {}};
  if (!IsPlausible(angles) || !Near(numbers.size() - 3, angles.Points())) return std::nullopt;
  MeasuredScan scan = heading;
  scan.counts.assign(numbers.begin() + 3, numbers.end());
  FillEvenGrid(scan, angles.start, angles.step);
  return scan;
}

std::optional<MeasuredScan> ScanBehind(const Angles& angles, std::string_view body,
                                       const MeasuredScan& heading) {
  MeasuredScan scan = heading;
  if (!TakeCounts(body, angles.Points(), scan)) {
    scan = heading;
    if (!TakeMeanCounts(body, angles.Points(), scan)) return std::nullopt;
  }
  FillEvenGrid(scan, angles.start, angles.step);
  return scan;
}

std::string_view WithoutRemark(std::string_view line) {
  const std::size_t end = line.find("*/");
  return end == line.npos ? line : line.substr(end + 2);
}

std::optional<MeasuredScan> StepScanOf(std::string_view bytes) {
  TextLines lines(bytes);
  TextHeader header;
  std::string_view here = lines.Rest(), line;
  for (int i = 0; i <= kTitleLines && lines.Next(line); ++i) {
    if (const auto angles = AnglesOf(WithoutRemark(line))) {
      if (!angles->text.empty() && !NumberOf(angles->text.substr(0, 1)))
        TakeKey(header, "sample", angles->text);
      return ScanBehind(*angles, lines.Rest(), header.scan);
    }
    if (NumberOf(line)) return ScanOfLines(here, header.scan);
    here = lines.Rest();
    TakeKeyLine(header, line);
    if (i == 0) TakeKey(header, "sample", line);
  }
  return std::nullopt;
}

}  // namespace

bool IsStartStepStop(std::string_view bytes) {
  if (!LooksText(bytes)) return false;
  try {
    return StepScanOf(bytes).has_value();
  } catch (const NotReadable&) {
    return true;  // it has been too large; the reader says so again
  }
}

MeasuredFile ReadStartStepStop(const ImportSource& source) {
  std::optional<MeasuredScan> scan = StepScanOf(source.bytes);
  if (!scan) throw NotReadable("its counts are not as many as its first line tells");
  MeasuredFile file;
  AddScan(file, std::move(*scan));
  return file;
}
