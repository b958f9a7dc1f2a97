// Reduction of a primitive cell.
#include "index/treor/reduction.h"

#include <algorithm>
#include <cmath>

namespace {

using Product = float AxisProducts::*;
constexpr Product kMixed[] = {&AxisProducts::bc, &AxisProducts::ac, &AxisProducts::ab};

constexpr float kDegree = 0.0174533f;

AxisProducts ProductsOf(const UnitCell& c) {
  return {c(1) * c(1), c(2) * c(3) * std::cos(c(4) * kDegree),
          c(2) * c(2), c(1) * c(3) * std::cos(c(5) * kDegree),
          c(3) * c(3), c(1) * c(2) * std::cos(c(6) * kDegree)};
}

float VolumeOf(const AxisProducts& m) {
  const float p = m.aa * m.bb * m.cc;
  return std::sqrt(p * (1 - (m.bc * m.bc * m.aa + m.ac * m.ac * m.bb + m.ab * m.ab * m.cc) / p +
                        2 * m.bc * m.ac * m.ab / p));
}

// Not numbers where the products are those of no cell.
CellWithVolume CellOf(const AxisProducts& m) {
  const float a = std::sqrt(m.aa), b = std::sqrt(m.bb), c = std::sqrt(m.cc);
  return {{{a, b, c, std::acos(m.bc / (b * c)) / kDegree, std::acos(m.ac / (a * c)) / kDegree,
            std::acos(m.ab / (a * b)) / kDegree}},
          VolumeOf(m)};
}

bool IsCell(const CellWithVolume& cell) {
  return std::isfinite(cell.volume) && cell.volume > 0 &&
         std::ranges::all_of(cell.cell.cells, [](float x) { return std::isfinite(x); });
}

// Angles this near to 90 degrees, by cosine or product, are right ones.
void RightAngle(float& product, float square1, float square2) {
  constexpr float cosine = 0.0001f, size = 0.001f;
  if (std::abs(product) / std::sqrt(square1 * square2) < cosine) product = cosine;
  if (std::abs(product) < size) product = 0;
}

// Turns axes round until the products of different axes are all positive, type 1, or none is, type
// 2.
int CellType(AxisProducts& m) {
  RightAngle(m.bc, m.cc, m.bb);
  RightAngle(m.ac, m.cc, m.aa);
  RightAngle(m.ab, m.bb, m.aa);
  const bool acute = m.bc * m.ac * m.ab > 0;
  for (Product p : kMixed) m.*p = acute ? std::abs(m.*p) : -std::abs(m.*p);
  return acute ? 1 : 2;
}

// Turns axes of a cell of type 1 round so that only the least of the products stays positive, which
// makes it one of type 2 if that is no more than an error of measurement.
AxisProducts Obtuse(AxisProducts m) {
  Product least = &AxisProducts::bc;
  for (Product p : kMixed) {
    if (std::abs(m.*p) < std::abs(m.*least)) least = p;
    m.*p = -std::abs(m.*p);
  }
  m.*least = std::abs(m.*least);
  return m;
}

void SortAxes(AxisProducts& m) {
  const auto firsttwo = [&] {
    if (m.aa <= m.bb) return;
    std::swap(m.aa, m.bb);
    std::swap(m.bc, m.ac);
  };
  firsttwo();
  if (m.bb > m.cc) {
    std::swap(m.bb, m.cc);
    std::swap(m.ac, m.ab);
  }
  firsttwo();
}

// True for three shortest axes that are no coplanar ones.
bool ReducedTest(const AxisProducts& m, int type, float tolerance) {
  const float d = std::abs(m.bc), e = std::abs(m.ac), f = std::abs(m.ab);
  return d <= m.bb / 2 + tolerance && e <= m.aa / 2 + tolerance && f <= m.aa / 2 + tolerance &&
         (type == 1 || d + e + f <= (m.aa + m.bb) / 2 + tolerance);
}

float Between(const AxisProducts& m, const std::array<int, 3>& u, const std::array<int, 3>& v) {
  const auto both = [&](int i, int j) { return static_cast<float>(u[i] * v[j] + u[j] * v[i]); };
  const auto own = [&](int i) { return static_cast<float>(u[i] * v[i]); };
  return own(0) * m.aa + own(1) * m.bb + own(2) * m.cc + both(1, 2) * m.bc + both(0, 2) * m.ac +
         both(0, 1) * m.ab;
}

AxisProducts Transform(const AxisProducts& m, const AxesMatrix& axes) {
  const auto& [a, b, c] = axes;
  return {Between(m, a, a), Between(m, b, c), Between(m, b, b),
          Between(m, a, c), Between(m, c, c), Between(m, a, b)};
}

// All axes of a search, with the given element on the diagonal.
using AxisRow = std::array<int, 3>;
constexpr int kRowCount = 3 * 7 * 7;
using AxisRows = std::array<AxisRow, kRowCount>;

constexpr AxisRows RowsWithDiagonal(int place) {
  AxisRows rows{};
  std::size_t n = 0;
  for (int diagonal : {1, 2, -2})
    for (int p : {0, 1, -1, 2, -2, 3, -3})
      for (int q : {0, 1, -1, 2, -2, 3, -3}) {
        AxisRow& row = rows[n++];
        row[place] = diagonal;
        row[(place + 1) % 3] = p;
        row[(place + 2) % 3] = q;
      }
  return rows;
}

// Calls use with every matrix of the search that leaves the volume as it is, until that says no.
template <class Use>
void ForEachAxes(Use use) {
  static constexpr AxisRows first = RowsWithDiagonal(0), second = RowsWithDiagonal(1),
                            third = RowsWithDiagonal(2);
  for (const AxisRow& a : first)
    for (const AxisRow& b : second) {
      const AxisRow normal{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                           a[0] * b[1] - a[1] * b[0]};
      for (const AxisRow& c : third) {
        const int volume = normal[0] * c[0] + normal[1] * c[1] + normal[2] * c[2];
        if (std::abs(volume) == 1 && !use(AxesMatrix{a, b, c})) return;
      }
    }
}

struct Typed {
  AxisProducts m;
  int type;
};

float Size(const AxisProducts& m) { return m.aa + m.bb + m.cc; }

// The first cell of the search that is reduced within the tolerance, or else the shortest.
Typed ShortestCell(const AxisProducts& start, float tolerance, bool& reduced) {
  Typed best{start, 0};
  reduced = false;
  ForEachAxes([&](const AxesMatrix& axes) {
    Typed cell{Transform(start, axes), 0};
    cell.type = CellType(cell.m);
    SortAxes(cell.m);
    reduced = ReducedTest(cell.m, cell.type, tolerance);
    if (reduced || best.type == 0 || Size(cell.m) < Size(best.m)) best = cell;
    return !reduced;
  });
  return best;
}

AxisProducts SpaceDiagonal(const AxisProducts& m) {
  return {m.aa,
          m.ab + m.bb + m.bc,
          m.bb,
          m.ab + m.aa + m.ac,
          2 * (m.bc + m.ac + m.ab) + m.aa + m.bb + m.cc,
          m.ab};
}

// A product that is half of a square leaves a choice of axes, which another product decides.
struct HalfRule {
  Product half, square, judge, changed;
};

constexpr HalfRule kHalfRules[] = {
    {&AxisProducts::bc, &AxisProducts::bb, &AxisProducts::ab, &AxisProducts::ac},
    {&AxisProducts::ac, &AxisProducts::aa, &AxisProducts::ab, &AxisProducts::bc},
    {&AxisProducts::ab, &AxisProducts::aa, &AxisProducts::ac, &AxisProducts::bc},
};

bool ApplyHalfRule(const HalfRule& rule, Typed& cell, float tolerance) {
  auto& [m, type] = cell;
  const float half = std::abs(m.*rule.half), judge = std::abs(m.*rule.judge),
              changed = std::abs(m.*rule.changed);
  if (std::abs(half - m.*rule.square / 2) > tolerance) return false;
  if (type == 1 && judge - 2 * changed > tolerance) {
    m.*rule.changed = judge - changed;
    return true;
  }
  if (type == 2 && judge > tolerance) {
    m.*rule.half = half;
    m.*rule.judge = judge;
    m.*rule.changed = changed + judge;
    type = 1;
    return true;
  }
  return false;
}

// Brings the one out of several equally short cells that is the reduced one a step nearer. False if
// this is the one.
bool ApplyReducedCondition(Typed& cell, float tolerance) {
  auto& [m, type] = cell;
  const auto equal = [&](float x, float y) { return std::abs(x - y) <= tolerance; };
  const float d = std::abs(m.bc), e = std::abs(m.ac), f = std::abs(m.ab);
  if (equal(m.aa, m.bb) && d - e > tolerance) {
    std::swap(m.bc, m.ac);
    return true;
  }
  if (equal(m.bb, m.cc) && e - f > tolerance) {
    std::swap(m.ac, m.ab);
    return true;
  }
  for (const HalfRule& rule : kHalfRules)
    if (ApplyHalfRule(rule, cell, tolerance)) return true;
  if (type == 2 && equal(d + e + f, (m.aa + m.bb) / 2) && m.aa - 2 * e - f > tolerance) {
    m.bc = f + d - m.bb;
    m.ac = f + e - m.aa;
    return true;
  }
  return false;
}

void ReducedConditions(Typed& cell, float tolerance) {
  constexpr int most = 50;  // if errors make two conditions contradict each other
  for (int n = 0; n < most && ApplyReducedCondition(cell, tolerance); ++n) {
  }
}

// An angle that is right within the tolerance may lie on either side of 90 degrees: a cell with
// such a one is tried as one of type 2, whose forms those with right angles are.
const ReducedForm& FormOfMeasured(Typed& cell, float tolerance) {
  if (cell.type == 1 && std::min({cell.m.bc, cell.m.ac, cell.m.ab}) <= tolerance) {
    Typed other{Obtuse(cell.m), 2};
    ReducedConditions(other, tolerance);
    const ReducedForm& form = FormOf(other.m, other.type, tolerance);
    if (form.latticeclass != kTriclinicClass) {
      cell = other;
      return form;
    }
  }
  return FormOf(cell.m, cell.type, tolerance);
}

AxisProducts Conventional(const Typed& reduced, const ReducedForm& form) {
  AxisProducts m = Transform(Transform(reduced.m, form.conventional),
                             AxesOrder(form.latticeclass, reduced.type));
  // Only in a triclinic cell can all three angles be acute.
  if (CellType(m) == 1 && form.latticeclass != kTriclinicClass) m = Obtuse(m);
  return m;
}

void PutCell(const UnitCell& c, Listing& listing) {
  listing.Put<
      "211(5X,' A=',F10.5,' B=',F10.5,' C=',F10.5,/,"
      "5X,' ALFA=',F8.4,' BETA=',F8.4,' GAMMA=',F8.4,/)">(c(1), c(2), c(3), c(4), c(5), c(6));
}

}  // namespace

std::optional<Reduction> Reduce(const UnitCell& cell, float tolerance) {
  constexpr int most = 30;  // each time the cell gets shorter, until only its errors do
  Reduction result;
  AxisProducts m = ProductsOf(cell);
  CellType(m);
  if (!IsCell(CellOf(m))) return {};
  bool reduced;
  Typed shortest = ShortestCell(m, tolerance, reduced);
  for (; !reduced; ++result.spacediagonals) {
    if (result.spacediagonals == most) return {};
    shortest = ShortestCell(SpaceDiagonal(shortest.m), tolerance, reduced);
  }
  ReducedConditions(shortest, tolerance);
  result.form = &FormOfMeasured(shortest, tolerance);
  result.reduced = CellOf(shortest.m);
  result.conventional = CellOf(Conventional(shortest, *result.form));
  return IsCell(result.reduced) && IsCell(result.conventional) ? std::optional(result)
                                                               : std::nullopt;
}

void ReduceCell(const UnitCell& cell, float tolerance, Listing& listing) {
  listing.Put<
      "777(' The following unit cell reduction is ONLY valid if,',/,"
      "       ' and ONLY IF the unit cell found is PRIMITIVE.',/,"
      "       ' If the unit cell found is not primitive, you have to',/,"
      "       ' convert the cell to a primitive one and run a cell ',/,"
      "       ' reduction program separately. ')">();
  listing.Put<"201(/,6X, ' *** INPUT CELL *** ')">();
  listing.Put<
      "210(5X,' A=',F9.5,' B=',F9.5,' C=',F9.5,/,"
      "5X,' ALFA=',F7.3,' BETA=',F7.3,' GAMMA=',F7.3,/,5X,' TOLERANCE=',F6.4,/)">(
      cell(1), cell(2), cell(3), cell(4), cell(5), cell(6), tolerance);
  const std::optional<Reduction> found = Reduce(cell, tolerance);
  if (!found) {
    listing.Put<"990(6X,'.... WARNING IMPOSSIBLE DATA.....')">();
    return;
  }
  listing.Put<"225(5X, ' VOLUME OF INPUT CELL=',F10.2,' A3',/)">(VolumeOf(ProductsOf(cell)));
  for (int n = 0; n < found->spacediagonals; ++n) listing.Lines("SPACE DIAGONAL TEST");
  listing.Put<"235(6X, ' *** REDUCED-CELL *** ')">();
  PutCell(found->reduced.cell, listing);
  listing.Put<"240(5X, ' VOLUME OF THE REDUCED CELL=', F12.2,' A3',/)">(found->reduced.volume);
  listing.Put<"285(6X,'REDUCED FORM NUMBER =',I3,' INT.TAB.1,SECT. 5.1',/)">(found->form->number);
  listing.Put<"290(6X, ' *** CONVENTIONAL CELL  (METRIC SYMMETRY) *** ')">();
  listing.Lines(ClassLine(found->form->latticeclass));
  PutCell(found->conventional.cell, listing);
  listing.Put<"265(5X, ' VOLUME OF THE CONVENTIONAL CELL=',F12.2,' A3')">(
      found->conventional.volume);
}
