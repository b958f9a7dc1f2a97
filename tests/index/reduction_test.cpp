// Cell reduction: cells of all 44 reduced forms in random bases, whose conventional cells are held
// to their symmetry and to the lengths of the lattice's vectors.
#include <gtest/gtest.h>

#include <limits>

#include "index/simulate.h"
#include "index/treor/reduction.h"

namespace {

struct Gram {
  double A, B, C, D, E, F;  // aa, bb, cc, bc, ac, ab
  Form AsForm() const { return {A, B, C, 2 * D, 2 * E, 2 * F}; }
};

// What makes a reduced cell one of a form: the published conditions, as assignments that leave such
// a cell alone. In the order in which they are looked through.
struct FormRule {
  int number, type;
  const char* bravais;
  void (*force)(Gram&);
};

void Cube(Gram& g) { g.B = g.C = g.A; }
void Pair(Gram& g) { g.B = g.A; }
void Last(Gram& g) { g.C = g.B; }
template <class T>
void Set(Gram& g, T d, T e, T f) {
  g.D = d, g.E = e, g.F = f;
}

const FormRule kForms[] = {
    {1, 1, "cF", [](Gram& g) { Cube(g), Set(g, g.A / 2, g.A / 2, g.A / 2); }},
    {2, 1, "hR", [](Gram& g) { Cube(g), Set(g, g.D, g.D, g.D); }},
    {3, 2, "cP", [](Gram& g) { Cube(g), Set(g, 0., 0., 0.); }},
    {5, 2, "cI", [](Gram& g) { Cube(g), Set(g, -g.A / 3, -g.A / 3, -g.A / 3); }},
    {4, 2, "hR", [](Gram& g) { Cube(g), Set(g, g.D, g.D, g.D); }},
    {6, 2, "tI", [](Gram& g) { Cube(g), Set(g, -(g.A + g.F) / 2, -(g.A + g.F) / 2, g.F); }},
    {7, 2, "tI", [](Gram& g) { Cube(g), Set(g, g.D, -(g.A + g.D) / 2, -(g.A + g.D) / 2); }},
    {8, 2, "oI", [](Gram& g) { Cube(g), Set(g, g.D, g.E, -(g.A + g.D + g.E)); }},
    {9, 1, "hR", [](Gram& g) { Pair(g), Set(g, g.A / 2, g.A / 2, g.A / 2); }},
    {10, 1, "mC", [](Gram& g) { Pair(g), Set(g, g.D, g.D, g.F); }},
    {11, 2, "tP", [](Gram& g) { Pair(g), Set(g, 0., 0., 0.); }},
    {12, 2, "hP", [](Gram& g) { Pair(g), Set(g, 0., 0., -g.A / 2); }},
    {13, 2, "oC", [](Gram& g) { Pair(g), Set(g, 0., 0., g.F); }},
    {15, 2, "tI", [](Gram& g) { Pair(g), Set(g, -g.A / 2, -g.A / 2, 0.); }},
    {16, 2, "oF", [](Gram& g) { Pair(g), Set(g, g.D, g.D, -(g.A + 2 * g.D)); }},
    {14, 2, "mC", [](Gram& g) { Pair(g), Set(g, g.D, g.D, g.F); }},
    {17, 2, "mC", [](Gram& g) { Pair(g), Set(g, g.D, g.E, -(g.A + g.D + g.E)); }},
    {18, 1, "tI", [](Gram& g) { Last(g), Set(g, g.A / 4, g.A / 2, g.A / 2); }},
    {19, 1, "oI", [](Gram& g) { Last(g), Set(g, g.D, g.A / 2, g.A / 2); }},
    {20, 1, "mC", [](Gram& g) { Last(g), Set(g, g.D, g.E, g.E); }},
    {21, 2, "tP", [](Gram& g) { Last(g), Set(g, 0., 0., 0.); }},
    {22, 2, "hP", [](Gram& g) { Last(g), Set(g, -g.B / 2, 0., 0.); }},
    {23, 2, "oC", [](Gram& g) { Last(g), Set(g, g.D, 0., 0.); }},
    {24, 2, "hR", [](Gram& g) { Last(g), Set(g, -(g.B - g.A / 3) / 2, -g.A / 3, -g.A / 3); }},
    {25, 2, "mC", [](Gram& g) { Last(g), Set(g, g.D, g.E, g.E); }},
    {26, 1, "oF", [](Gram& g) { Set(g, g.A / 4, g.A / 2, g.A / 2); }},
    {27, 1, "mC", [](Gram& g) { Set(g, g.D, g.A / 2, g.A / 2); }},
    {28, 1, "mC", [](Gram& g) { Set(g, g.D, g.A / 2, 2 * g.D); }},
    {29, 1, "mC", [](Gram& g) { Set(g, g.D, 2 * g.D, g.A / 2); }},
    {30, 1, "mC", [](Gram& g) { Set(g, g.B / 2, g.E, 2 * g.E); }},
    {31, 1, "aP", [](Gram&) {}},
    {32, 2, "oP", [](Gram& g) { Set(g, 0., 0., 0.); }},
    {40, 2, "oC", [](Gram& g) { Set(g, -g.B / 2, 0., 0.); }},
    {35, 2, "mP", [](Gram& g) { Set(g, g.D, 0., 0.); }},
    {36, 2, "oC", [](Gram& g) { Set(g, 0., -g.A / 2, 0.); }},
    {33, 2, "mP", [](Gram& g) { Set(g, 0., g.E, 0.); }},
    {38, 2, "oC", [](Gram& g) { Set(g, 0., 0., -g.A / 2); }},
    {34, 2, "mP", [](Gram& g) { Set(g, 0., 0., g.F); }},
    {42, 2, "oI", [](Gram& g) { Set(g, -g.B / 2, -g.A / 2, 0.); }},
    {41, 2, "mC", [](Gram& g) { Set(g, -g.B / 2, g.E, 0.); }},
    {37, 2, "mC", [](Gram& g) { Set(g, g.D, -g.A / 2, 0.); }},
    {39, 2, "mC", [](Gram& g) { Set(g, g.D, 0., -g.A / 2); }},
    {43, 2, "mC", [](Gram& g) { Set(g, -(g.B + g.F) / 2, -(g.A + g.F) / 2, g.F); }},
    {44, 2, "aP", [](Gram&) {}},
};

struct Bravais {
  const char* symbol;
  const char* text;
  int points;  // of the lattice in the conventional cell
  const std::vector<std::array<double, 3>>& centring;
  std::array<int, 3> equal;      // edges with one number are equal
  std::array<double, 3> angles;  // 0: any
};

constexpr double T = 1. / 3;
using Points = std::vector<std::array<double, 3>>;
const Points kP, kC{{.5, .5, 0}}, kI{{.5, .5, .5}}, kF{{0, .5, .5}, {.5, 0, .5}, {.5, .5, 0}},
    kR{{2 * T, T, T}, {T, 2 * T, 2 * T}};
const Bravais kBravais[] = {
    {"cP", "      CUBIC P", 1, kP, {1, 1, 1}, {90, 90, 90}},
    {"cI", "      CUBIC I", 2, kI, {1, 1, 1}, {90, 90, 90}},
    {"cF", "      CUBIC F", 4, kF, {1, 1, 1}, {90, 90, 90}},
    {"tP", "      TETRAGONAL P", 1, kP, {1, 1, 2}, {90, 90, 90}},
    {"tI", "      TETRAGONAL I", 2, kI, {1, 1, 2}, {90, 90, 90}},
    {"hP", "      HEXAGONAL P", 1, kP, {1, 1, 2}, {90, 90, 120}},
    {"hR", "      RHOMBOHEDRAL R", 3, kR, {1, 1, 2}, {90, 90, 120}},
    {"oP", "      ORTHORHOMBIC P", 1, kP, {1, 2, 3}, {90, 90, 90}},
    {"oC", "      ORTHORHOMBIC C", 2, kC, {1, 2, 3}, {90, 90, 90}},
    {"oI", "      ORTHORHOMBIC I", 2, kI, {1, 2, 3}, {90, 90, 90}},
    {"oF", "      ORTHORHOMBIC F", 4, kF, {1, 2, 3}, {90, 90, 90}},
    {"mP", "      MONOCLINIC P", 1, kP, {1, 2, 3}, {90, 0, 90}},
    {"mC", "      MONOCLINIC C", 2, kC, {1, 2, 3}, {90, 0, 90}},
    {"aP", "      TRICLINIC P", 1, kP, {1, 2, 3}, {0, 0, 0}},
};

const Bravais& BravaisOf(const std::string& symbol) {
  return *std::ranges::find_if(kBravais, [&](const Bravais& b) { return symbol == b.symbol; });
}

// Squares of the shortest vectors of a centred lattice, each with its negative counted once.
std::vector<double> ShortestVectors(const Form& q, std::vector<std::array<double, 3>> centring) {
  constexpr int reach = 7;
  centring.push_back({0, 0, 0});
  std::vector<double> squares;
  for (const auto& [u, v, w] : centring)
    for (int x = -reach; x <= reach; ++x)
      for (int y = -reach; y <= reach; ++y)
        for (int z = -reach; z <= reach; ++z) squares.push_back(At(q, x + u, y + v, z + w));
  std::ranges::sort(squares);
  return {squares.begin() + 1, squares.begin() + 41};
}

// Far from, or else exactly on, each border between a condition and its opposite.
bool Below(double x, double limit) { return x < limit - 0.4; }
bool Equals(double x, double y) { return std::abs(x - y) < 1e-9; }
bool BelowOrOn(double x, double limit) { return Below(x, limit) || Equals(x, limit); }

// The published conditions of a reduced cell.
bool IsReduced(const Gram& g, int type) {
  const double d = std::abs(g.D), e = std::abs(g.E), f = std::abs(g.F);
  const auto then = [](bool condition, bool holds) { return !condition || holds; };
  const bool main = BelowOrOn(g.A, g.B) && BelowOrOn(g.B, g.C) && BelowOrOn(d, g.B / 2) &&
                    BelowOrOn(e, g.A / 2) && BelowOrOn(f, g.A / 2) &&
                    then(Equals(g.A, g.B), BelowOrOn(d, e)) &&
                    then(Equals(g.B, g.C), BelowOrOn(e, f)) && Determinant(g.AsForm()) > 50;
  const auto sized = [](double x) { return x == 0 || std::abs(x) > 0.4; };
  if (!main || !sized(g.D) || !sized(g.E) || !sized(g.F)) return false;
  if (type == 1)
    return g.D > 0 && g.E > 0 && g.F > 0 && then(Equals(d, g.B / 2), BelowOrOn(f, 2 * e)) &&
           then(Equals(e, g.A / 2), BelowOrOn(f, 2 * d)) &&
           then(Equals(f, g.A / 2), BelowOrOn(e, 2 * d));
  const double half = (g.A + g.B) / 2;
  return g.D <= 0 && g.E <= 0 && g.F <= 0 && then(Equals(d, g.B / 2), f == 0) &&
         then(Equals(e, g.A / 2), f == 0) && then(Equals(f, g.A / 2), e == 0) &&
         BelowOrOn(d + e + f, half) && then(Equals(d + e + f, half), BelowOrOn(g.A, 2 * e + f));
}

class Lattices {
 public:
  std::mt19937 random{44};
  // A reduced cell of the form and of none in front of it.
  Gram Reduced(const FormRule& form) {
    for (;;) {
      const double sign = form.type == 1 ? 1 : -1;
      Gram g{Between(9, 80), Between(9, 120), Between(9, 160), 0, 0, 0};
      Set(g, sign * Between(0, g.B / 2), sign * Between(0, g.A / 2), sign * Between(0, g.A / 2));
      form.force(g);
      if (IsReduced(g, form.type) && IsFirst(g, form)) return g;
    }
  }

 private:
  double Between(double low, double high) {
    return std::uniform_real_distribution(low, high)(random);
  }
  static bool IsFirst(const Gram& g, const FormRule& form) {
    for (const FormRule& other : kForms) {
      if (other.number == form.number) return true;
      Gram forced = g;
      other.force(forced);
      double change = other.type == form.type ? 0 : 1;
      for (int k = 0; k < 6; ++k)
        change = std::max(change, std::abs(forced.AsForm()[k] - g.AsForm()[k]));
      if (change < 0.8) return false;
    }
    return false;
  }
};

void ExpectSymmetry(const UnitCell& c, const Bravais& lattice) {
  for (int i = 1; i <= 3; ++i) {
    for (int k = 1; k < i; ++k)
      if (lattice.equal[i - 1] == lattice.equal[k - 1]) {
        EXPECT_NEAR(c(i), c(k), 1e-3f * c(i));
      }
    const double angle = lattice.angles[i - 1];
    if (angle != 0) {
      EXPECT_NEAR(c(i + 3), angle, 0.02);
    }
  }
  EXPECT_TRUE(lattice.symbol[0] != 'm' || c(5) > 90);
}

void ExpectSameLattice(const Form& input, const UnitCell& c, const Bravais& lattice) {
  const auto expected = ShortestVectors(input, {}),
             found = ShortestVectors(Direct(AsDouble(c)), lattice.centring);
  for (std::size_t n = 0; n < expected.size(); ++n)
    EXPECT_NEAR(found[n], expected[n], 1e-3 * expected[n] + 0.02) << "vector " << n;
}

TEST(Reduction, FindsAll44FormsInRandomBases) {
  Lattices lattices;
  for (const FormRule& form : kForms)
    for (int trial = 0; trial < 8; ++trial) {
      const Form primitive = lattices.Reduced(form).AsForm();
      const UnitCell input = AsFloat(CellOfForm(OtherAxes(primitive, lattices.random)));
      SCOPED_TRACE(testing::Message() << "form " << form.number << " trial " << trial);
      const std::optional<Reduction> result = Reduce(input, kReductionTolerance);
      ASSERT_TRUE(result);
      EXPECT_EQ(result->form->number, form.number);
      const Bravais& lattice = BravaisOf(form.bravais);
      EXPECT_EQ(ClassLine(result->form->latticeclass), lattice.text);
      const Cell reduced = CellOfForm(primitive);
      for (int k = 1; k <= 6; ++k)
        EXPECT_NEAR(result->reduced.cell(k), reduced[k - 1], k <= 3 ? 2e-3 : 0.03) << k;
      const double volume = std::sqrt(Determinant(primitive));
      EXPECT_NEAR(result->conventional.volume, lattice.points * volume,
                  2e-3 * lattice.points * volume);
      ExpectSymmetry(result->conventional.cell, lattice);
      ExpectSameLattice(primitive, result->conventional.cell, lattice);
      if (HasFailure()) return;
    }
}

TEST(Reduction, BringsMeasuredCellsIntoTheUsualSetting) {
  const struct {
    const char* what;
    UnitCell input;
    int form;
    UnitCell conventional;
  } cases[] = {
      {"right angles, not quite, all below 90",
       {{6, 4, 5, 89.95f, 89.98f, 89.96f}},
       32,
       {{5, 6, 4, 90.04f, 90.05f, 89.98f}}},
      {"hexagonal, not quite",
       {{5, 5.002f, 8, 90.03f, 90.02f, 119.98f}},
       12,
       {{5, 5.002f, 8, 90.03f, 90.02f, 119.98f}}},
      {"monoclinic, one right angle not quite",
       {{6, 7, 8, 89.98f, 80, 89.97f}},
       33,
       {{8, 7, 6, 90.03f, 100, 89.98f}}},
      {"triclinic, acute", {{5, 6, 7, 80, 75, 70}}, 31, {{6, 7, 5, 75, 70, 80}}},
      {"triclinic, obtuse", {{5, 6, 7, 100, 95, 105}}, 44, {{6, 7, 5, 95, 105, 100}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const std::optional<Reduction> result = Reduce(c.input, kReductionTolerance);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->form->number, c.form);
    for (int k = 1; k <= 6; ++k)
      EXPECT_NEAR(result->conventional.cell(k), c.conventional(k), k <= 3 ? 0.001 : 0.005) << k;
  }
}

// Far more than the search for the shortest axes can reach at once, it gets there in steps.
TEST(Reduction, ComesBackFromLongAxes) {
  // a, b + 6 a, c + 9 a - 11 b.
  const Form skew = Rebased({25, 36, 64}, {{{1, 0, 0}, {6, 1, 0}, {9, -11, 1}}});
  const std::optional<Reduction> result = Reduce(AsFloat(CellOfForm(skew)), kReductionTolerance);
  ASSERT_TRUE(result);
  EXPECT_GT(result->spacediagonals, 0);
  EXPECT_EQ(result->form->number, 32);
}

TEST(Reduction, ListsBothCellsOrAWarning) {
  const float none = std::numeric_limits<float>::quiet_NaN();
  const std::string text = ListingOf([&](Listing& listing) {
    for (const UnitCell& cell :
         {UnitCell{{6, 4, 5, 90, 90, 90}}, UnitCell{{5, 5, 5, 130, 130, 130}},
          UnitCell{{0, 5, 5, 90, 90, 90}}, UnitCell{{none, 5, 5, 90, 90, 90}},
          UnitCell{{1e30f, 1e30f, 1e30f, 90, 90, 90}}})
      ReduceCell(cell, kReductionTolerance, listing);
  });
  const auto found = [&](const std::string& part) { return text.find(part); };
  EXPECT_LT(found(" *** INPUT CELL *** \n      A=  6.00000 B=  4.00000 C=  5.00000\n"
                  "      ALFA= 90.000 BETA= 90.000 GAMMA= 90.000\n      TOLERANCE=0.0500\n"),
            found("      VOLUME OF INPUT CELL=    120.00 A3\n"));
  EXPECT_LT(found("      VOLUME OF THE REDUCED CELL=      120.00 A3\n"),
            found("      REDUCED FORM NUMBER = 32 INT.TAB.1,SECT. 5.1\n"));
  EXPECT_NE(found("      ORTHORHOMBIC P\n      A=   5.00000 B=   6.00000 C=   4.00000\n"),
            std::string::npos);
  EXPECT_EQ(Count(text, "WARNING IMPOSSIBLE DATA"), 4);
}

}  // namespace
