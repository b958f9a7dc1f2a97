// The cell of a list of lines.
#include "index/find/findcell.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <numbers>
#include <optional>

#include "index/find/centering.h"
#include "index/find/crew.h"
#include "index/find/described.h"
#include "index/find/ranking.h"
#include "index/find/searches.h"

namespace {

constexpr const char* kOwnName = "Search";
constexpr double kTie = 3;            // of likelihoods: a difference of less decides nothing
constexpr double kSameOrigin = 0.02;  // lattices that differ by less have been found as one

// Zero shifts, degrees, that are searched at in turn until a lattice convinces.
constexpr double kShifts[] = {0.05, 0.1};
constexpr double kBorne = 0.4;  // of a line's width: a shift that the windows of the search bear

using Search = void (*)(const SearchLines& lines, TrialList& list);
// The longest ones first, so that no thread is left with one at the end.
constexpr Search kSearches[] = {SearchForTriclinic,  SearchForMonoclinic, SearchForOrthorhombic,
                                SearchForTetragonal, SearchForHexagonal,  SearchForMonoclinicZone,
                                SearchForCubic};

Form FormOf(const std::array<double, 6>& cell) {
  const auto cosine = [&](std::size_t i) { return std::cos(cell[i] * std::numbers::pi / 180); };
  return {cell[0] * cell[0],
          cell[1] * cell[1],
          cell[2] * cell[2],
          2 * cell[0] * cell[1] * cosine(5),
          2 * cell[0] * cell[2] * cosine(4),
          2 * cell[1] * cell[2] * cosine(3)};
}

bool IsLattice(const Form& direct) {
  return std::ranges::all_of(direct, [](double x) { return std::isfinite(x); }) && direct[0] > 0 &&
         direct[1] > 0 && direct[2] > 0 &&
         Determinant(direct) > 1e-6 * direct[0] * direct[1] * direct[2];
}

// On the reduced axes of the primitive lattice.
void AddPrimitive(const Form& conventional, char centering, std::vector<Form>& lattices) {
  const Form primitive = OnAxes(conventional, PrimitiveAxes(centering));
  if (IsLattice(primitive)) lattices.push_back(Reduced(primitive));
}

std::vector<Form> Searched(Search search, const SearchLines& lines) {
  TrialList list;
  search(lines, list);
  std::vector<Form> lattices;
  for (const TrialLattice& c : list.All())
    AddPrimitive(Reciprocal(c.reciprocal), c.centering, lattices);
  return lattices;
}

std::vector<Form> Proposed(const std::vector<ProposedCell>& cells) {
  std::vector<Form> lattices;
  for (const auto& [cell, centering] : cells) {
    const bool hexagonal = std::abs(cell[5] - 120) < 1;
    const std::string letters = centering != ' ' ? std::string(1, centering)
                                : hexagonal      ? "PR"
                                                 : "PABCIF";
    for (char letter : letters) AddPrimitive(FormOf(cell), letter, lattices);
  }
  return lattices;
}

class Run {
 public:
  Run(const FindCellTask& task, const FindCellReport& report)
      : task_(task),
        lines_(std::span(task.lines).first(std::min(kLinesJudged, task.lines.size()))),
        crew_(task.threads,
              report ? [this, &report] { return Tell(report); } : std::function<bool()>()) {}

  FoundCells Find() {
    if (lines_.size() < kLeastLines) return {FindCellEnd::TooFewLines, {}};
    SearchAt(std::array{0.0}, true, kOnePhase);
    for (double shift : kShifts)
      if (shift > kBorne * lines_[lines_.size() / 2].width && !IsConvinced())
        SearchAt(std::array{shift, -shift}, false, kOnePhase);
    Ranking ranking = Ranked(Distinct(TakeAll()), kOnePhase);
    if (!IsConvinced() && MayBeMixture()) {
      SearchAt(std::array{0.0}, false, kMixture);
      std::ranges::move(TakeAll(), std::back_inserter(ranking));
      ranking = Ranked(Distinct(std::move(ranking)), kMixture);
    }
    return {crew_.Stopped() ? FindCellEnd::Stopped : FindCellEnd::Done, Table(ranking)};
  }

 private:
  // What one searcher has found.
  struct Catch {
    std::string origin;
    Ranking lattices;
  };

  const FindCellTask& task_;
  std::span<const ObservedLine> lines_;
  Crew crew_;
  std::vector<Catch> catches_;
  std::mutex bestmutex_;
  std::optional<Assessment> best_;

  bool Tell(const FindCellReport& report) {
    std::optional<Assessment> best;
    {
      const std::scoped_lock lock(bestmutex_);
      best = best_;
    }
    if (!best) return report(crew_.Done(), nullptr);
    const auto cell = Described(task_.lines, *best);
    return report(crew_.Done(), cell ? &*cell : nullptr);
  }

  // With the relatives of the best ones.
  Ranking Ranked(Ranking distinct, const PhaseModel& model) {
    if (crew_.Stopped()) return distinct;
    const Ranking ranking =
        WithRelatives(lines_, std::move(distinct), model,
                      [&](std::size_t n, const std::function<void(std::size_t)>& work) {
                        crew_.Expect(n);
                        crew_.Each(n, work);
                      });
    if (!ranking.empty()) Note(ranking.front());
    return ranking;
  }

  void Note(const Assessment& a) {
    const std::scoped_lock lock(bestmutex_);
    if (a.likelihood > Best()) best_ = a;
  }

  // Nothing asks for another search.
  bool IsConvinced() const {
    const double n = static_cast<double>(lines_.size());
    return best_ && (best_->likelihood > 10 || (best_->hits >= n - 2 && best_->positions < 2 * n));
  }

  // What explains most lines, and better than chance, is rather a large cell whose lines are poor.
  bool MayBeMixture() const {
    constexpr double kMost = 0.8;
    return Best() < 0 || best_->hits <= kMost * static_cast<double>(lines_.size());
  }

  double Best() const { return best_ ? best_->likelihood : -1e9; }

  void Take(Catch& taken, const std::vector<Form>& lattices, double zero, const PhaseModel& model) {
    for (const Form& lattice : lattices) {
      if (crew_.Stopped()) return;
      AddAssessed(lines_, lattice, zero, model, taken.lattices);
    }
    const auto best = std::ranges::max_element(taken.lattices, {}, &Assessment::likelihood);
    if (best != taken.lattices.end()) Note(*best);
  }

  void SearchAt(std::span<const double> shifts, bool withsources, const PhaseModel& model) {
    struct Piece {
      const CellSource* source;
      Search search;
      double zero;
      const SearchLines* lines;
    };
    std::vector<SearchLines> lines;
    for (double zero : shifts) lines.emplace_back(lines_, -zero, model);
    std::vector<Piece> pieces;
    if (withsources)
      for (const CellSource& source : task_.sources)
        pieces.push_back({&source, nullptr, 0, nullptr});
    for (Search search : kSearches)
      for (std::size_t i = 0; i < shifts.size(); ++i)
        pieces.push_back({nullptr, search, shifts[i], &lines[i]});
    const std::size_t first = catches_.size();
    catches_.resize(first + pieces.size());
    crew_.Expect(pieces.size());
    crew_.Each(pieces.size(), [&](std::size_t i) {
      const auto& [source, search, zero, its] = pieces[i];
      Catch& taken = catches_[first + i];
      taken.origin = source ? source->name : kOwnName;
      Take(taken,
           source ? Proposed(source->propose([&] { return crew_.Stopped(); }))
                  : Searched(search, *its),
           zero, model);
    });
  }

  Ranking TakeAll() const {
    Ranking all;
    for (const Catch& taken : catches_) std::ranges::copy(taken.lattices, std::back_inserter(all));
    return all;
  }

  std::vector<std::string> OriginsOf(const Assessment& a) const {
    std::vector<std::string> origins;
    for (const auto& [origin, lattices] : catches_) {
      if (std::ranges::count(origins, origin) > 0) continue;
      if (std::ranges::any_of(lattices, [&](const Assessment& other) {
            return IsSameLattice(a.lattice.direct, other.lattice.direct, kSameOrigin);
          }))
        origins.push_back(origin);
    }
    // One that only its relatives have been found of.
    if (origins.empty()) origins.emplace_back(kOwnName);
    return origins;
  }

  // Without lattices of which the lines do not tell a constant.
  std::vector<FoundCell> Table(const Ranking& ranking) const {
    std::vector<FoundCell> cells;
    std::vector<const Assessment*> above;
    for (const Assessment& a : ranking) {
      if (cells.size() == kMostFound) break;
      auto cell = Described(task_.lines, a);
      if (!cell) continue;
      cell->origins = OriginsOf(a);
      const auto better = std::ranges::find_if(above, [&](const Assessment* other) {
        return AreRelatives(a.lattice.direct, other->lattice.direct);
      });
      if (better != above.end()) cell->relativeof = static_cast<int>(better - above.begin());
      // One that its symmetry has put first may be the less likely of the two.
      cell->tie = !above.empty() && above.back()->likelihood - a.likelihood < kTie;
      cells.push_back(std::move(*cell));
      above.push_back(&a);
    }
    return cells;
  }
};

}  // namespace

FoundCells FindCells(const FindCellTask& task, const FindCellReport& report) {
  return Run(task, report).Find();
}
