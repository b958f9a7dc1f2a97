// The cards of ITO's input.
#include "index/ito/cards.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "workspace/text.h"

namespace {

constexpr int kTitleLength = 80;
constexpr std::size_t kMostInputLines = 190;
constexpr int kMostCombinationCards = 39;
constexpr float kLeastValue = 0.1f;  // smaller ones are blank fields
constexpr int kLinesInCards = 5;     // of indat: lines up to a blank card
constexpr int kAllStages = 99;

// Takes cards from the input, and tells the first that is missing or cannot be read.
class CardReader {
 public:
  CardReader(LineReader& input, Listing& listing) : input_(input), listing_(listing) {}

  bool Read(const Format& format, std::span<const ReadTarget> fields) {
    if (!input_.Read(card_)) return Refuse("the input ends within a problem");
    const auto all = static_cast<int>(fields.size());
    return ReadValues(card_, format, fields) == all || Refuse("a card that cannot be read");
  }
  template <FormatText F, class... V>
  bool Read(V&... value) {
    const ReadTarget fields[] = {ReadTarget(&value)...};
    return Read(FormatOf<F>(), fields);
  }

 private:
  LineReader& input_;
  Listing& listing_;
  std::string card_;

  bool Refuse(std::string_view why) {
    listing_.Put<"('0input line ',i5,': ',a/1x,a)">(input_.LineNumber(), why, card_);
    return false;
  }
};

void FillBlanks(ItoCards& p) {
  const ItoCards standard;
  for (auto field : {&ItoCards::nsolmx, &ItoCards::nq1, &ItoCards::nq2, &ItoCards::nz1,
                     &ItoCards::nz2, &ItoCards::indat, &ItoCards::list})
    if (p.*field == 0) p.*field = standard.*field;
  for (auto field :
       {&ItoCards::tol2, &ItoCards::tol3, &ItoCards::wavel, &ItoCards::prntmr, &ItoCards::prntln})
    if (p.*field < kLeastValue) p.*field = standard.*field;
}

bool ReadParameters(CardReader& cards, ItoCards& p) {
  std::string manual, features, intensities;
  int zerocheck = 0;
  float hundredths = 0;
  if (!cards.Read<"9902( 3a1,i1,3i2,2f5.2,f10.5, i2,2i1,8i2, 2f10.5,f8.4,i2)">(
          manual, features, intensities, p.nsolmx, p.nsyst[0], p.nsyst[1], p.nsyst[2], p.tol2,
          p.tol3, p.wavel, p.linco, zerocheck, p.print, p.nq1, p.nq2, p.nz1, p.nz2, p.nr, p.indat,
          p.list, p.test, p.wmol, p.dobs, hundredths, p.teststage) ||
      !cards.Read<"9903( 8f10.5 )">(p.zercor, p.prntmr, p.prntln))
    return false;
  p.manual = manual != "9";
  p.features = features == "1";
  p.intensities = intensities == "1";
  p.zerocheck = zerocheck > 0;
  p.fixedtolg = hundredths >= kLeastValue;
  p.tolg = 0.01f * (p.fixedtolg ? hundredths : 6.0f);
  if (p.test >= 1 && p.teststage == 0) p.teststage = kAllStages;
  FillBlanks(p);
  if (p.nq1 > p.nq2) std::swap(p.nq1, p.nq2);
  if (p.nz1 > p.nz2) std::swap(p.nz1, p.nz2);
  return true;
}

using LineCard = std::array<InputLine, 8>;

bool ReadLineCard(CardReader& cards, bool intensities, LineCard& card) {
  std::vector<ReadTarget> fields;
  for (InputLine& line : card) {
    fields.emplace_back(&line.value);
    if (intensities) fields.emplace_back(&line.label);
  }
  return cards.Read(
      intensities ? FormatOf<"9912( 8(f7.3,a2,1x) )">() : FormatOf<"9903( 8f10.5 )">(), fields);
}

bool IsBlank(const LineCard& card) {
  float sum = 0;
  for (const InputLine& line : card) sum += std::abs(line.value);
  return sum < kLeastValue;
}

// Lines that were made negative by hand are not wanted.
void Take(const InputLine& line, std::vector<InputLine>& lines) {
  if (line.value > kLeastValue && lines.size() < kMostInputLines) lines.push_back(line);
}

bool ReadLines(CardReader& cards, bool intensities, std::vector<InputLine>& lines) {
  LineCard card;
  for (;;) {
    if (!ReadLineCard(cards, intensities, card)) return false;
    if (IsBlank(card)) return true;
    for (const InputLine& line : card) Take(line, lines);
  }
}

// A count of lines, and then so many, four to a card: "9905(i10/  4 (f10.5,10x )   )".
bool ReadCountedLines(CardReader& cards, std::vector<InputLine>& lines) {
  int count = 0;
  if (!cards.Read<"(i10)">(count)) return false;
  for (int left = count; left > 0; left -= 4) {
    std::array<float, 4> card;
    if (!cards.Read<"(4(f10.5,10x))">(card[0], card[1], card[2], card[3])) return false;
    for (int i = 0; i < std::min(left, 4); ++i) Take({card[i], ""}, lines);
  }
  return true;
}

bool ReadCombinations(CardReader& cards, std::vector<LineCombination>& combinations) {
  for (int i = 0; i < kMostCombinationCards; ++i) {
    LineCombination c;
    if (!cards.Read<"9919(3f10.2, f10.1)">(c.q1, c.q2, c.cross, c.quality)) return false;
    if (c.q1 < kLeastValue) break;
    combinations.push_back(c);
  }
  return true;
}

bool ReadTrials(CardReader& cards, int count, std::vector<Lattice>& trials) {
  for (int i = 0; i < count; ++i) {
    Lattice t;
    if (!cards.Read<"(8f10.5)">(t.a, t.b, t.c, t.d, t.e, t.f)) return false;
    trials.push_back(t);
  }
  return true;
}

}  // namespace

bool EndsTheRun(std::string_view title) {
  return title.starts_with("end") || (title.size() >= 4 && title.substr(1).starts_with("end"));
}

bool ReadCards(LineReader& input, ItoProblem& problem, std::vector<InputLine>& lines,
               Listing& listing) {
  ItoCards& p = problem.cards;
  if (!input.Read(p.title) || EndsTheRun(p.title)) return false;
  p.title = Field(p.title, kTitleLength);
  CardReader cards(input, listing);
  return ReadParameters(cards, p) &&
         (p.indat == kLinesInCards ? ReadLines(cards, p.intensities, lines)
                                   : ReadCountedLines(cards, lines)) &&
         (p.linco <= 0 || ReadCombinations(cards, problem.combinations)) &&
         ReadTrials(cards, p.nr, problem.trials);
}
