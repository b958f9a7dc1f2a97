// The solutions of a problem in the listing.
#include "index/ito/solutions.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "index/ito/directcell.h"
#include "index/ito/latticefit.h"
#include "index/ito/notes.h"
#include "index/ito/speciallattices.h"
#include "workspace/text.h"

namespace {

void Sort(std::vector<Lattice>& lattices) {
  std::stable_sort(lattices.begin(), lattices.end(), [](const Lattice& one, const Lattice& other) {
    return one.lines != other.lines ? one.lines > other.lines : one.merit > other.merit;
  });
}

std::string_view LetterOf(const Lattice& x) {
  return kTypeLetters.substr(static_cast<std::size_t>(x.type) - 1, 1);
}

void PutAccepted(const std::vector<Lattice>& lattices, Listing& listing) {
  listing.Put<
      "9951('0  the accepted lattices, by the lines that they index'/"
      "'        a        b        c        d        e        f    lines    merit  bravais"
      " pedigree  volume'/)">();
  const Lattice* before = nullptr;
  for (const Lattice& x : lattices) {
    if (before && before->lines != x.lines) listing.Lines("");
    before = &x;
    listing.Put<"9953(1h ,6f9.1,f9.0,f9.1,8x,a1,f9.0,f8.1 )">(x.a, x.b, x.c, x.d, x.e, x.f, x.lines,
                                                              x.merit, LetterOf(x), x.pedigree,
                                                              CellOfLattice(x).volume);
  }
}

// Orthorhombic, monoclinic, triclinic.
enum System { Orthorhombic, Monoclinic, Triclinic };
System SystemOf(const Lattice& x) {
  const int cross = (x.d != 0) + (x.e != 0) + (x.f != 0);
  return cross == 0 ? Orthorhombic : cross == 1 ? Monoclinic : Triclinic;
}

// Where one system or several are wanted only those pass, else all but those that are not.
bool IsWanted(const Lattice& x, const ItoCards& cards) {
  const bool choice = std::ranges::any_of(cards.nsyst, [](int wish) { return wish > 0; });
  const int wish = cards.nsyst[SystemOf(x)];
  return choice ? wish > 0 : wish >= 0;
}

void Prefer(std::vector<Lattice>& lattices, ItoProblem& problem, Listing& listing) {
  if (std::ranges::all_of(problem.cards.nsyst, [](int wish) { return wish == 0; })) return;
  for (ItoLine& line : problem.lines) {
    const float window = line.high - line.q;
    line.high += window;
    line.low -= window;
  }
  listing.Lines("0crystal systems are preferred:");
  constexpr std::string_view systems[] = {"orthorhombic", "monoclinic", "triclinic"};
  for (std::size_t i = 0; i < problem.cards.nsyst.size(); ++i)
    if (const int wish = problem.cards.nsyst[i]; wish > 0)
      listing.Put<"9965(' ',a,' lattices are wanted')">(systems[i]);
    else if (wish < 0)
      listing.Put<"9966(' ',a,' lattices are not wanted')">(systems[i]);
  listing.Put<"9967(' the tolerance of all lines is doubled')">();
  std::erase_if(lattices, [&](const Lattice& x) { return !IsWanted(x, problem.cards); });
}

// A line of the list: observed, or calculated.
struct ListedLine {
  float twotheta, q;
  const ItoLine* observed = nullptr;
  Calculated calculated{};
  bool indexed = false;
};

float TwoThetaOf(float q, float wavelength) {
  return TwoThetaOfSine(std::sqrt(q) * wavelength / 200);
}

// The calculated lines, and the observed ones as far as they took part, by two-theta.
std::vector<ListedLine> ListedLines(const LatticeFit& fit, const ItoProblem& problem) {
  std::vector<ListedLine> list;
  for (std::size_t i = 0; i < fit.candidates.size(); ++i) {
    const ItoLine& line = problem.lines[i];
    list.push_back({line.twotheta, line.q, &line, {}, !fit.candidates[i].empty()});
  }
  for (const Calculated& c : fit.calculated)
    list.push_back({TwoThetaOf(c.q, problem.cards.wavel), c.q, nullptr, c});
  std::stable_sort(list.begin(), list.end(), [](const ListedLine& one, const ListedLine& other) {
    return one.twotheta < other.twotheta;
  });
  return list;
}

bool WasUsedBefore(const LatticeFit& fit, const ItoLine& line, const ItoProblem& problem) {
  const auto& candidates = fit.candidates[static_cast<std::size_t>(&line - problem.lines.data())];
  return std::ranges::any_of(candidates, &Calculated::used);
}

void PutLineList(const LatticeFit& fit, const ItoProblem& problem, Listing& listing) {
  constexpr int most = 100;
  if (fit.ncalc > most) {
    listing.Put<
        "9942(35h0the number of calculated lines is  ,i4,50h. no listing is printed when n20 is "
        "more than 100   )">(fit.ncalc);
    return;
  }
  listing.Put<"9910(41h0twotheta     d       q       h    k    l)">();
  for (const ListedLine& line : ListedLines(fit, problem)) {
    const float d = 100 / std::sqrt(line.q);
    if (!line.observed) {
      const Hkl& r = line.calculated.hkl;
      listing.Put<"9914(1h ,f8.2,f8.3,f9.1, 3i5)">(line.twotheta, d, line.q, r.h, r.k, r.l);
      continue;
    }
    listing.Put<"9911(1h0, f8.2, f8.3, f9.1, 18h    *observed**    ,a2)">(
        line.twotheta, d, line.q, std::string_view(line.observed->label));
    if (!line.indexed) listing.Put<"9912(1h+,45x ,  12h not indexed)">();
    if (WasUsedBefore(fit, *line.observed, problem))
      listing.Put<"9915(1h+,40x,32h hkl-combination was used before  )">();
  }
}

void PutConstants(const Lattice& x, const LatticeFit& fit, Listing& listing) {
  listing.Put<
      "('0reciprocal lattice constants after refinement, with their standard deviations'/"
      "1h ,6f10.3/1h ,6f10.3)">(x.a, x.b, x.c, x.d, x.e, x.f, fit.esd[0], fit.esd[1], fit.esd[2],
                                fit.esd[3], fit.esd[4], fit.esd[5]);
  if (fit.singular) PutSingular(listing);
}

// Refines a solution once more on the first 20 lines and prints it.
void PutSolution(Lattice& x, int number, const ItoProblem& problem, Listing& listing) {
  const LatticeFit fit = Refpar(x, problem, 1, FitLines::First20, nullptr);
  listing.Put<"9916(1h1,a,14h   solution nr,i3)">(problem.cards.title, number);
  listing.Put<"9926(1h ,6f9.2, f9.0,f9.1, 2f9.0 )">(x.a, x.b, x.c, x.d, x.e, x.f, x.lines, x.merit,
                                                    x.type, x.pedigree);
  PutConstants(x, fit, listing);
  if (number == 1) {
    PutRefinementNote(listing);
    PutMeritNote(listing);
  }
  if (number <= problem.cards.list) PutLineList(fit, problem, listing);
}

void PutBestOnAllLines(Lattice x, const ItoProblem& problem, Listing& listing) {
  listing.Put<"9902(50h1the best solution is now used to try and index al,        9hl lines.  )">();
  const LatticeFit fit = Refpar(x, problem, 2, FitLines::All, nullptr);
  const auto unindexed = std::ranges::count_if(fit.candidates, &std::vector<Calculated>::empty);
  listing.Put<"9943('0figure of merit',f9.1,',  lines that are not indexed',i4)">(
      x.merit, static_cast<int>(unindexed));
  PutConstants(x, fit, listing);
  PutLineList(fit, problem, listing);
}

// Both tables are read again by what shows the solutions: their columns stay.
void PutMostProbable(const std::vector<Lattice>& printed, const ItoProblem& problem,
                     Listing& listing) {
  listing.Put<
      "9954(1h1,a /// 30x, 4hthe ,i2,        25h most probable solutions //// 58x,"
      "34hlines  figure of           bravais/60h    q(a)     q(b)     q(c)      q(d)     q(e)     "
      "q(f)   ind,33hexed   merit   pedigree  lattice        )">(problem.cards.title,
                                                                 static_cast<int>(printed.size()));
  for (const Lattice& x : printed)
    listing.Put<"9955(1h ,6f9.2,f9.0,f9.1,f9.0,8x,a1)">(x.a, x.b, x.c, x.d, x.e, x.f, x.lines,
                                                        x.merit, x.pedigree, LetterOf(x));
  listing.Put<
      "9956(1h0,20x,38hthe direct constants of these lattices//60h     a        b        c       "
      "alfa     beta     gamma      , 6hvolume)">();
  for (const Lattice& x : printed) PutDirectCell(x, problem.cards, listing);
}

// The first ones, each once, refined and printed.
std::vector<Lattice> PrintSolutions(const std::vector<Lattice>& lattices, const ItoProblem& problem,
                                    Listing& listing) {
  std::vector<Lattice> printed;
  int number = 0;
  for (std::size_t i = 0; i < lattices.size() && number < problem.cards.nsolmx; ++i) {
    if (i > 0 && Difference(lattices[i - 1], lattices[i]) <= problem.eqtol) {
      listing.Put<"9949(9h0solution,i3,35h is not printed, it is the same as , 9hsolution ,i2)">(
          static_cast<int>(i) + 1, static_cast<int>(i));
      continue;
    }
    Lattice x = lattices[i];
    PutSolution(x, ++number, problem, listing);
    printed.push_back(x);
  }
  Sort(printed);
  return printed;
}

}  // namespace

void PutSolutions(std::vector<Lattice> lattices, ItoProblem& problem, Listing& listing,
                  EngineRun& run) {
  constexpr float manylines = 17.9f, goodmerit = 10.0f;
  Sort(lattices);
  PutAccepted(lattices, listing);
  PutAcceptedNote(listing);
  Prefer(lattices, problem, listing);
  const std::vector<Lattice> printed = PrintSolutions(lattices, problem, listing);
  if (printed.empty()) {
    listing.Lines("0no lattice is of a system that is wanted.");
    return;
  }
  PutMostProbable(printed, problem, listing);
  for (const Lattice& x : printed) SpecialLattices(x, problem.eqtol, listing);
  PutSpecialNote(listing);
  listing.Put<"9958(1h0,a)">(problem.cards.title);
  const Lattice& best = printed.front();
  if (best.lines >= manylines && best.merit >= goodmerit && !run.stopped)
    PutBestOnAllLines(best, problem, listing);
}
