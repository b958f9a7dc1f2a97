// The lines of a problem.
#include "index/ito/lines.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "index/ito/ito.h"  // for the limits
#include "index/ito/notes.h"

namespace {

constexpr float kDegrees = 57.295776f;  // of a radian
constexpr float kQType = 180;           // a larger value is no two-theta
constexpr float kMostTolerance = 0.06f;
constexpr int kRatedLines = 20;  // those that tolerances and figures of merit go by
constexpr int kBins = 10;

enum class InputForm { TwoTheta, Q, D };

// The first six lines decide whether the list rises or falls.
InputForm FormOf(const std::vector<InputLine>& input) {
  const auto falls = [](const InputLine& left, const InputLine& right) {
    return left.value > right.value;
  };
  const auto first = input.begin(), sixth = first + std::min<std::ptrdiff_t>(std::ssize(input), 6);
  if (std::adjacent_find(first, sixth, falls) != sixth) return InputForm::D;
  const auto reach = [](const InputLine& line) { return line.value >= kQType; };
  return std::ranges::any_of(input, reach) ? InputForm::Q : InputForm::TwoTheta;
}

// By rising q.
void SortLines(std::vector<InputLine>& input, InputForm form, Listing& listing) {
  if (form == InputForm::D)
    std::ranges::stable_sort(input, std::greater(), &InputLine::value);
  else
    std::ranges::stable_sort(input, std::less(), &InputLine::value);
  for (std::size_t i = 1; i < input.size(); ++i)
    if (input[i].value == input[i - 1].value)
      listing.Put<
          "99(41h0xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx   / 17h the input value  ,f10.5, "
          "15h appears twice   / 27h           check your input    / 41h "
          "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx   )">(input[i].value);
}

float TwoThetaOf(float sine) { return 2 * kDegrees * std::atan(sine / std::sqrt(1 - sine * sine)); }

// None for a value that no line can have.
std::optional<ItoLine> LineOf(const InputLine& input, InputForm form, const ItoCards& cards) {
  constexpr float nozero = 1e-8f;
  const float w = cards.wavel / 200;
  ItoLine line{};
  if (form == InputForm::TwoTheta) {
    line.twotheta = input.value + cards.zercor;
  } else {
    const float s =
        form == InputForm::Q ? std::sqrt(input.value) * w : 0.5f * cards.wavel / input.value;
    line.twotheta = TwoThetaOf(s) + cards.zercor;
  }
  const bool keeps = form == InputForm::Q && std::abs(cards.zercor) < nozero;
  line.q = keeps ? input.value : QOfTwoTheta(line.twotheta, cards.wavel);
  line.label = input.label;
  line.label.resize(2, ' ');
  const bool useful = line.twotheta > 0 && line.twotheta < 180 && line.q > 0;
  return useful ? std::optional(line) : std::nullopt;
}

// The windows of all lines. Their mean half width, of the lines that are rated.
float SetWindows(ItoProblem& problem) {
  for (ItoLine& line : problem.lines) SetWindow(line, problem.cards);
  float sum = 0;
  for (int i = 0; i < kRatedLines; ++i) sum += problem.lines[i].high - problem.lines[i].low;
  return sum / (2 * kRatedLines);
}

int BinOf(float q, float binwidth) {
  return std::clamp(static_cast<int>(0.99f + std::min(q / binwidth, 1.0f * kBins)), 1, kBins);
}

}  // namespace

float QOfTwoTheta(float twotheta, float wavelength) {
  const float w = wavelength / 200, s = std::sin(twotheta / (2 * kDegrees));
  return s * s / (w * w);
}

void SetWindow(ItoLine& line, const ItoCards& cards) {
  line.high = QOfTwoTheta(line.twotheta + cards.tolg, cards.wavel);
  line.low = 2 * line.q - line.high;
}

std::vector<ItoLine> UsefulLines(std::vector<InputLine> input, const ItoCards& cards,
                                 Listing& listing) {
  const InputForm form = FormOf(input);
  constexpr std::string_view names[] = {"two-theta", "q", "d"};
  listing.Put<"('0the input is taken as ',a)">(names[static_cast<int>(form)]);
  SortLines(input, form, listing);
  std::vector<ItoLine> lines;
  for (const InputLine& each : input)
    if (const auto line = LineOf(each, form, cards); !line)
      listing.Put<"('0no line can stand at the input value ',f12.4,', it is ignored')">(each.value);
    else if (lines.size() < kItoMostLines)
      lines.push_back(*line);
  return lines;
}

bool AdaptTolerance(ItoProblem& problem, Listing& listing) {
  ItoCards& cards = problem.cards;
  const float mean = SetWindows(problem);
  if (!(mean > 0) || !(problem.lines.back().high > 0)) {
    listing.Put<"('0a tolerance of ',f10.3,' degrees is too large. this problem is skipped')">(
        cards.tolg);
    return false;
  }
  const float accuracy = cards.tolg * (problem.lines[kRatedLines - 1].q / 1000) / mean;
  PutAccuracyNote(listing);
  listing.Put<
      "9965(1h0,20x,50(1h*)/1h ,20x,14h*   less than , f8.3,5x,       "
      "17hdegrees two theta,5x,1h* / 1h ,20x,50(1h*) )">(accuracy);
  if (!cards.fixedtolg) {
    cards.tolg = std::min(2 * accuracy, kMostTolerance);
    SetWindows(problem);
  }
  listing.Put<"('0calculated and observed lines may differ by ',f8.4,' degrees two-theta')">(
      cards.tolg);
  return true;
}

void SetEqualTolerance(ItoProblem& problem, Listing& listing) {
  const auto& lines = problem.lines;
  float eqtol = std::max(0.0005f * lines[kRatedLines - 1].q, 0.8f);
  float least = 8 * eqtol;
  for (int i = 1; i < std::ssize(lines); ++i) {
    const float d = lines[i].q - lines[i - 1].q;
    if (d > least) continue;
    least = d;
    if (d < 1.6f * eqtol)
      listing.Put<"9914('0lines',i3,' and',i3,' are close:',f7.2,' in q,',f7.3,' degrees')">(
          i, i + 1, d, problem.cards.wavel * kDegrees * d / (200 * std::sqrt(lines[i].q)));
  }
  problem.eqtol = std::max(least / 8, 0.5f);
  listing
      .Put<"9926(67h0q-values will be considered to be equal when they differ less than , f4.1 )">(
          problem.eqtol);
}

bool SetCellLimit(ItoProblem& problem, Listing& listing) {
  constexpr float smallest = 2.0f;
  problem.abclimit = problem.lines[0].q / 17;
  listing.Put<"9925('0no cell edge can be larger than ',f9.2,' angstrom')">(
      100 / std::sqrt(problem.abclimit));
  if (problem.abclimit > smallest) return true;
  listing.Put<
      "9929('0a very large cell is to be expected, as the first line stands at so small a'/"
      "' q. such cells are not looked for. this problem is skipped')">();
  return false;
}

void SetProbabilities(ItoProblem& problem, Listing& listing) {
  const float u = problem.binwidth = problem.lines.back().high / kBins;
  auto& p = problem.probability;
  for (const ItoLine& line : problem.lines) p[BinOf(line.q, u)] += line.high - line.low;
  for (int bin = 1; bin <= kBins; ++bin) {
    p[bin] = p[bin] / u * std::sqrt(static_cast<float>(bin));
    if (p[bin] > 0.5f) p[bin] = 0.5f;
    if (p[bin] < 0.000001f) p[bin] = 0.0001f;
  }
  listing.Put<
      "9916(53h0probabilities of finding a calculated line in the 10, 21h parts of the "
      "q-range / 1h ,10e12.3 )">(p[1], p[2], p[3], p[4], p[5], p[6], p[7], p[8], p[9], p[10]);
}
