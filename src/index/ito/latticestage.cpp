#include "index/ito/latticestage.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "index/ito/latticefit.h"
#include "index/ito/teststages.h"

namespace {

struct Combination {
  Lattice lattice;  // without d
  int i, j;         // its zones
};

// Of the best zones every two, and each with itself.
std::vector<Combination> Combine(const std::vector<Zone>& zones, std::size_t nz1, std::size_t nz2) {
  std::vector<Combination> combinations;
  for (std::size_t i = 1; i <= nz1; ++i)
    for (std::size_t j = i; j <= nz2; ++j)
      for (const Lattice& lattice : CombineZones(zones[i - 1], zones[j - 1], i == j))
        combinations.push_back({lattice, static_cast<int>(i), static_cast<int>(j)});
  return combinations;
}

// Takes more zones where the best ones make too few lattices.
std::vector<Combination> CombineEnough(const ItoProblem& problem, const std::vector<Zone>& zones) {
  constexpr std::size_t enough = 5;
  std::size_t nz1 = static_cast<std::size_t>(std::max(problem.cards.nz1, 1));
  std::size_t nz2 = static_cast<std::size_t>(std::max(problem.cards.nz2, 1));
  for (;;) {
    nz1 = std::min(nz1, zones.size());
    nz2 = std::min(nz2, zones.size());
    std::vector<Combination> found = Combine(zones, nz1, nz2);
    if (found.size() > enough || nz1 == zones.size()) return found;
    nz1 *= 2;
    nz2 *= 2;
  }
}

std::vector<Lattice> BuildLattices(const ItoProblem& problem, const std::vector<Zone>& zones,
                                   Listing& listing) {
  std::vector<Lattice> lattices;
  Listing* test = TestOutput(problem.cards, StageThreed, listing);
  int before = 0, place = 0;
  for (const Combination& c : CombineEnough(problem, zones)) {
    const Lattice& x = c.lattice;
    const int pedigree = 10 * c.i + c.j;
    listing.Put<"9907(1h ,2i3,3f8.1,8h     xxx,2f8.1,i6)">(c.i, c.j, x.a, x.b, x.c, x.e, x.f,
                                                           pedigree);
    if (pedigree != before) place = 0;
    before = pedigree;
    for (Lattice& found : Threed(x, problem)) {
      if (test) test->Put<"('  threed      d',f9.2,' with',f5.0,' hits')">(found.d, found.lines);
      if (lattices.size() == kMostLattices) return lattices;
      found.merit = static_cast<float>(10 * pedigree + place++ % 10);
      lattices.push_back(found);
    }
  }
  return lattices;
}

// A lattice of those before that one repeats takes the better of both counts.
void MarkTwins(std::vector<Lattice>& lattices, const ItoProblem& problem) {
  for (std::size_t m = 1; m < lattices.size(); ++m)
    for (std::size_t n = 0; n < m; ++n) {
      Lattice &one = lattices[n], &other = lattices[m];
      if (one.lines == 0 || other.lines == 0 || !(Difference(one, other) <= problem.eqtol))
        continue;
      Lattice& lesser = other.lines > one.lines ? one : other;
      lesser.lines = 0;
      lesser.type = (&lesser == &one ? other : one).merit;
    }
}

// Refines and straightens until the constants rest.
void Refine(Lattice& x, const ItoProblem& problem, Listing& listing) {
  constexpr int mostrounds = 10, cycles = 3;
  constexpr float rest = 0.1f;
  Listing* test = TestOutput(problem.cards, StageRefpar, listing);
  for (int round = 0; round < mostrounds; ++round) {
    x.lines = 0;
    if (Refpar(x, problem, cycles, FitLines::First20, test).singular) PutSingular(listing);
    if (x.lines < problem.cards.prntln || x.merit < problem.cards.prntmr) return;
    const Lattice before = x;
    if (!Norm3(x, problem, TestOutput(problem.cards, StageNorm3, listing))) return;
    if (!(Difference(before, x) > rest)) return;
  }
}

// Tells what a lattice has come to; true if it is accepted.
bool Classify(const Lattice& x, bool twin, int number, const ItoProblem& problem,
              Listing& listing) {
  if (x.a < problem.eqtol) {
    listing.Put<"9910(1h ,i5,6f8.1,24x,f8.0,20h discarded by norm3  )">(number, x.a, x.b, x.c, x.d,
                                                                        x.e, x.f, x.pedigree);
  } else if (twin) {
    listing.Put<"9911(1h ,i5,6f8.1,f1.0,23x,f8.0,23h is the same as lattice,  f6.0)">(
        number, x.a, x.b, x.c, x.d, x.e, x.f, x.lines, x.merit, x.type);
  } else if (!(x.lines > problem.cards.prntln)) {
    listing.Put<"9912(1h ,i5,6f8.1,4f8.0,25h not enough lines indexed  )">(
        number, x.a, x.b, x.c, x.d, x.e, x.f, x.lines, x.merit, x.type, x.pedigree);
  } else if (!(x.merit > problem.cards.prntmr)) {
    listing.Put<"9913(1h ,i5,6f8.1,4f8.0,28h figure of merit is too low.  )">(
        number, x.a, x.b, x.c, x.d, x.e, x.f, x.lines, x.merit, x.type, x.pedigree);
  } else {
    listing.Put<"9914(1h ,i5,6f8.1,4f8.0, 20h lattice accepted.   )">(
        number, x.a, x.b, x.c, x.d, x.e, x.f, x.lines, x.merit, x.type, x.pedigree);
    return true;
  }
  return false;
}

void List(std::string_view heading, const std::vector<Lattice>& lattices, Listing& listing) {
  listing.Put<
      "('0  ',a/'    nr       a       b       c       d"
      "       e       f    hits  pedigree')">(heading);
  int number = 0;
  for (const Lattice& x : lattices)
    listing.Put<"9937(1h ,i5,6f8.1, 2f8.0)">(++number, x.a, x.b, x.c, x.d, x.e, x.f, x.lines,
                                             x.merit);
}

}  // namespace

std::vector<Lattice> LatticeStage(const ItoProblem& problem, const std::vector<Zone>& zones,
                                  Listing& listing, EngineRun& run) {
  std::vector<Lattice> lattices = problem.trials;
  if (lattices.empty() && !zones.empty()) lattices = BuildLattices(problem, zones, listing);
  if (lattices.empty() && !run.stopped) {
    listing.Put<
        "9925(50h no lattices have been found. try again with e.g. ,"
        "50hlarger tol3 (col. 16-20).  this problem is skipped)">();
  }
  if (lattices.empty()) return {};
  List("the lattices that have been found", lattices, listing);
  for (Lattice& x : lattices) Norm3(x, problem, TestOutput(problem.cards, StageNorm3, listing));
  if (problem.cards.print > 0) List("in standard form", lattices, listing);
  MarkTwins(lattices, problem);
  listing.Put<
      "('0  after refinement'/'    nr       a       b       c       d       e       f"
      "   lines   merit    type  pedigree')">();
  std::vector<Lattice> accepted;
  int number = 0;
  for (Lattice& x : lattices) {
    ++number;
    x.pedigree = x.merit;
    run.stopped =
        run.stopped || (run.report && !run.report("ITO: lattice " + std::to_string(number) +
                                                  " of " + std::to_string(lattices.size())));
    if (run.stopped) break;
    const bool twin = x.lines == 0 && problem.trials.empty();
    if (!twin && x.a > 0) Refine(x, problem, listing);
    if (Classify(x, twin, number, problem, listing)) accepted.push_back(x);
  }
  if (accepted.empty() && !run.stopped)
    listing.Put<
        "('0not one acceptable lattice has been found for this problem.'/"
        "' more lines, other tolerances (col. 11-20), a zero correction or lower demands on lines'/"
        "' and merit on the second card may help')">();
  return accepted;
}
