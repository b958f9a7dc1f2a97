// A problem of ITO from its cards to the point where the search begins.
#include "index/ito/problem.h"

#include <algorithm>
#include <cmath>

#include "index/ito/cards.h"
#include "index/ito/ito.h"  // for the limits
#include "index/ito/lines.h"
#include "index/ito/notes.h"

namespace {

void PutHeading(const ItoCards& p, Listing& listing) {
  listing.Put<"(1h1,a)">(p.title);
  if (p.manual) PutCardsManual(listing);
  if (p.features) PutFeatures(listing);
  listing.Put<
      "('0wavelength',f10.5,' angstrom,  zero correction',f9.4,' degrees two-theta'/"
      "' tolerance of zones',f6.2,', of lattices',f6.2,' in q'/"
      "' a lattice needs',f6.1,' lines and a figure of merit of',f6.1/"
      "' preference for orthorhombic',i3,',  monoclinic',i3,',  triclinic',i3/"
      "' lines combined',2i4,',  zones combined',2i4,',  solutions printed',i3,', listed',i3"
      ")">(p.wavel, p.zercor, p.tol2, p.tol3, p.prntln, p.prntmr, p.nsyst[0], p.nsyst[1],
           p.nsyst[2], p.nq1, p.nq2, p.nz1, p.nz2, p.nsolmx, p.list);
  if (p.wmol >= 0.1f)
    listing.Put<"(' molecular weight',f10.2,',  observed density',f8.4)">(p.wmol, p.dobs);
}

void PutLines(const std::vector<ItoLine>& lines, Listing& listing) {
  listing.Lines("0  nr  two-theta         d         q  intensity");
  for (int i = 0; i < std::ssize(lines); ++i)
    listing.Put<"(1h ,i4,f11.4,f10.5,f10.2,6x,a)">(
        i + 1, lines[i].twotheta, 100 / std::sqrt(lines[i].q), lines[i].q, lines[i].label);
}

void PutTooFewLines(int count, Listing& listing) {
  listing.Put<
      "9930('0the number of useful lines  is ',i3,', which is below the minimum of',i3,'.'/"
      "' the first',i3,' are used where there are more. this problem is skipped')">(
      count, kItoLeastLines, kItoMostLines);
}

// Whether both lines can be there, and the cross constant belongs to a lattice.
bool IsZone(const LineCombination& c, float wavelength) {
  const float farthest = 40000 / (wavelength * wavelength);
  const auto line = [&](float q) { return q >= 0.1f && q <= farthest; };
  return line(c.q1) && line(c.q2) && c.cross * c.cross < 4 * c.q1 * c.q2;
}

// Combinations given by hand.
void CheckCombinations(ItoProblem& problem, Listing& listing) {
  listing.Lines("0lines and zones that are combined:  q1, q2, cross constant, quality");
  for (const LineCombination& c : problem.combinations)
    listing.Put<"(1h ,3f10.2,f14.1,a)">(
        c.q1, c.q2, c.cross, c.quality,
        IsZone(c, problem.cards.wavel) ? "" : "  no lines or no zone, ignored");
  std::erase_if(problem.combinations,
                [&](const LineCombination& c) { return !IsZone(c, problem.cards.wavel); });
  problem.cards.nq2 = static_cast<int>(problem.lines.size());
}

bool IsLattice(const Lattice& t, float least) {
  return t.a > least && t.b > least && t.c > least && t.d * t.d < 4 * t.b * t.c &&
         t.e * t.e < 4 * t.c * t.a && t.f * t.f < 4 * t.a * t.b;
}

// False if trial lattices were given but none is one.
bool CheckTrials(ItoProblem& problem, Listing& listing) {
  if (problem.trials.empty()) return true;
  listing.Lines("0trial lattices:");
  for (const Lattice& t : problem.trials)
    listing.Put<"(1h ,6f9.2,a)">(t.a, t.b, t.c, t.d, t.e, t.f,
                                 IsLattice(t, problem.abclimit) ? "" : "  no lattice, ignored");
  std::erase_if(problem.trials, [&](const Lattice& t) { return !IsLattice(t, problem.abclimit); });
  if (problem.trials.empty()) listing.Lines("0no trial lattice is left. this problem is skipped");
  return !problem.trials.empty();
}

}  // namespace

std::vector<LineCombination> CombineLines(const std::vector<ItoLine>& lines, const ItoCards& cards,
                                          Listing& listing) {
  constexpr std::size_t most = 40;
  constexpr float closest = 6;
  std::vector<LineCombination> combinations;
  const int n1 = std::min(cards.nq1, static_cast<int>(lines.size())),
            n2 = std::min(cards.nq2, static_cast<int>(lines.size()));
  for (int i = 0; i < n1; ++i)
    for (int j = i; j < n2 && combinations.size() < most; ++j)
      if (!(std::abs(4 * lines[i].q - lines[j].q) < closest))
        combinations.push_back({lines[i].q, lines[j].q});
  listing.Put<"9932(35h0the program will combine the first ,i3, 21h lines with the first  ,i3)">(
      cards.nq1, cards.nq2);
  return combinations;
}

ItoReading ReadProblem(LineReader& input, ItoProblem& problem, Listing& listing) {
  problem = {};
  std::vector<InputLine> given;
  if (!ReadCards(input, problem, given, listing)) return ItoReading::End;
  PutHeading(problem.cards, listing);
  problem.lines = UsefulLines(given, problem.cards, listing);
  PutLines(problem.lines, listing);
  const int count = static_cast<int>(problem.lines.size());
  if (count < kItoLeastLines) {
    PutTooFewLines(count, listing);
    return ItoReading::Skip;
  }
  if (!AdaptTolerance(problem, listing)) return ItoReading::Skip;
  SetEqualTolerance(problem, listing);
  if (!SetCellLimit(problem, listing)) return ItoReading::Skip;
  if (problem.cards.linco > 0)
    CheckCombinations(problem, listing);
  else
    problem.combinations = CombineLines(problem.lines, problem.cards, listing);
  if (!CheckTrials(problem, listing)) return ItoReading::Skip;
  SetProbabilities(problem, listing);
  return ItoReading::Run;
}
