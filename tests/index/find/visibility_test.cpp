// Reflections that are seen and absent: the conditions of space groups, and the chance of what is
// seen.
#include "index/find/visibility.h"

#include <gtest/gtest.h>

#include "index/find/absences.h"
#include "index/find/simulate.h"

using namespace findtest;

namespace {

using enum LatticeSystem;

// Reflections of a space group by its conditions: such as are there, and one that each condition
// leaves out.
struct KnownGroup {
  const char* name;
  LatticeSystem system;
  const char *there, *absent;
};
const KnownGroup kGroups[] = {
    {"P21/c", Monoclinic, "102 020 111 011", "101 010"},
    {"P21/a", Monoclinic, "201 020 111 011", "101 010"},
    {"P2/n", Monoclinic, "101 010 011 110", "102 201"},
    {"Pnma", Orthorhombic, "011 101 102 210 111 201", "012 110 100 010 001"},
    {"Pbca", Orthorhombic, "021 102 210 111", "011 101 110 012 201 120"},
    {"Pcab", Orthorhombic, "012 201 120 111", "011 101 110 021 102 210"},
    {"P2nn", Orthorhombic, "101 110 012 301 111", "102 210"},
    {"P212121", Orthorhombic, "110 011 101 200 020 002 021 102 210", "100 030 001"},
    {"Fdd2", Orthorhombic, "022 040 202 220 111 224", "024 200 402 060"},
    {"Fddd", Orthorhombic, "220 111 022", "240 200"},
    {"P41212", Tetragonal, "004 200 020 101 110 111 012", "001 002 100 030"},
    {"P42", Tetragonal, "002 101 011 100 110 111", "001 003"},
    {"P42/mnm", Tetragonal, "011 110 111 002 210", "012 100 001 201"},
    {"P4/n", Tetragonal, "110 011 001", "100 210"},
    {"P4cc", Tetragonal, "012 112 100 121", "011 111"},
    {"P4bm", Tetragonal, "201 111 210", "011 102 100"},
    {"P42/mbc", Tetragonal, "201 112 211", "111 -113 102"},
    {"I41/amd", Tetragonal, "200 112 004 101 220 202 211", "110 002 330 114"},
    {"I41/a", Tetragonal, "200 004 101 112", "110 002"},
    {"P63/mmc", Hexagonal, "112 101 002 121 110", "111 -123 2-11 001"},
    {"P63/mcm", Hexagonal, "102 111 002 121", "101 013 1-11 001"},
    {"P63", Hexagonal, "002 101 111", "001 003"},
    {"P31", Hexagonal, "003 101 111", "001 002"},
    {"P61", Hexagonal, "006 101 112", "001 002 003"},
    {"R-3c", Rhombohedral, "104 012 113 006 125", "101 015 1-15 003"},
    {"Pa-3", Cubic, "021 102 210 111 200", "012 201 120 110 100"},
    {"Pn-3", Cubic, "110 111 200", "012 201 100"},
    {"Fm-3c", Cubic, "200 220 222 531", "111 311 133"},
    {"Ia-3", Cubic, "200 211 220 420 222", "110 031 301"},
    {"Fd-3", Cubic, "220 111 400", "240 024 200"},
    {"I-43d", Cubic, "211 310 220 321 400", "222 330 114 200"},
    {"P-43n", Cubic, "110 210 112", "111 221 001"},
    {"P4132", Cubic, "400 110 111", "100 020 003"},
    {"P4232", Cubic, "200 110 111", "100 003"},
};

// "1-10 002"
std::vector<Hkl> Indices(const char* text) {
  std::vector<int> all;
  int sign = 1;
  for (; *text; ++text) {
    if (*text >= '0' && *text <= '9') all.push_back(sign * (*text - '0'));
    sign = *text == '-' ? -1 : 1;
  }
  std::vector<Hkl> indices;
  for (std::size_t i = 0; i + 2 < all.size(); i += 3)
    indices.push_back({all[i], all[i + 1], all[i + 2]});
  return indices;
}

// Reflections of a lattice, each a position, as many as are asked for.
std::vector<Hkl> Reflections(std::size_t n, const Form& reciprocal) {
  std::vector<Hkl> all;
  for (int h = 0; h <= 4; ++h)
    for (int k = -4; k <= 4; ++k)
      for (int l = -4; l <= 4; ++l)
        if (h > 0 || k > 0 || (k == 0 && l > 0)) all.push_back({h, k, l});
  std::ranges::sort(all, {}, [&](const Hkl& r) { return Value(reciprocal, r); });
  all.resize(n);
  return all;
}

double LogOf(const std::vector<Hkl>& reflections, const std::vector<bool>& seen,
             const SymmetricLattice& lattice) {
  std::vector<SeenPosition> positions;
  for (std::size_t i = 0; i < seen.size(); ++i)
    positions.push_back({{&reflections[i], 1}, seen[i]});
  return LogVisibility(positions, lattice);
}

SymmetricLattice LatticeOf(const Cell& cell) {
  return SymmetriesOf(Reduced(DirectOf(cell))).front();
}

}  // namespace

TEST(Absences, OfSpaceGroupsAreThereAndLeaveOutNothingElse) {
  for (const auto& [name, system, there, absent] : kGroups)
    for (const Hkl& r : Indices(absent)) {
      const auto kinds = AbsencesOf(system);
      const bool told = std::ranges::any_of(kinds, [&](const AbsenceKind& kind) {
        return std::ranges::any_of(kind.missing, [&](bool (*missing)(int, int, int)) {
          return missing && missing(r.h, r.k, r.l) &&
                 std::ranges::none_of(Indices(there),
                                      [&](const Hkl& s) { return missing(s.h, s.k, s.l); });
        });
      });
      EXPECT_TRUE(told) << name << " " << r.h << r.k << r.l;
    }
  EXPECT_TRUE(AbsencesOf(Triclinic).empty());
}

// Of n positions, of which nothing is known, h are seen with a chance of 1 / ((n + 1) C(n, h)).
TEST(Visibility, OfOneAndTwoPositionsIsThePlainFormula) {
  const SymmetricLattice triclinic = LatticeOf({5, 6, 7, 94, 96, 98});
  const std::vector<Hkl> axes = {{1, 0, 0}, {0, 1, 0}};
  for (bool seen : {false, true})
    EXPECT_NEAR(LogOf(axes, {seen}, triclinic), std::log(1. / 2), 1e-12);
  // Half of the 20 sublattices hold one of the two only: 1/2 and 1/2 in place of 1/3 and of 1/6.
  EXPECT_NEAR(LogOf(axes, {true, true}, triclinic),
              std::log(1. / 3 * (0.75 + 0.25 * (0.5 + 0.5 * 3 / 4))), 1e-12);
  EXPECT_NEAR(LogOf(axes, {true, false}, triclinic),
              std::log(1. / 6 * (0.75 + 0.25 * (0.5 + 0.5 * 6 / 4))), 1e-12);
  EXPECT_EQ(LogVisibility({}, triclinic), 0);
}

// Index 0k0 of a lattice is absent for k = 2n + 1, and h0l for l = 2n + 1, also where the primitive
// axes of a centred lattice lie askew.
TEST(Visibility, AbsencesOfAGroupMakeWhatIsSeenMoreLikely) {
  for (char centering : {'P', 'C'}) {
    const Form primitive = ReducedPrimitive({7, 6, 4.2, 90, 99, 90}, centering);
    const SymmetricLattice lattice = SymmetriesOf(primitive).front();
    const Rotation axes = Conventional(lattice).axes;
    const auto reflections = Reflections(60, Reciprocal(lattice.direct));
    std::vector<bool> seen;
    for (const Hkl& r : reflections) {
      const auto index = [&](std::size_t i) {
        return axes[i][0] * r.h + axes[i][1] * r.k + axes[i][2] * r.l;
      };
      const int h = index(0), k = index(1), l = index(2);
      seen.push_back(!(k == 0 && l % 2 != 0) && !(h == 0 && l == 0 && k % 2 != 0));
    }
    const double group = LogOf(reflections, seen, lattice);
    Random random(31);
    for (int trial = 0; trial < 5; ++trial) {
      std::shuffle(seen.begin(), seen.end(), random);
      EXPECT_GT(group, LogOf(reflections, seen, lattice) + 5) << centering;
    }
    // What remains is all seen: a quarter of 1 / (n + 1), with three and one sets to choose from.
    std::fill(seen.begin(), seen.end(), true);
    EXPECT_LT(LogOf(reflections, seen, lattice), -std::log(61 * 1.0) + 0.1);
    EXPECT_GT(LogOf(reflections, seen, lattice), -std::log(61 * 2.0));
  }
}

TEST(Visibility, WeakSuperlatticeLinesCostLittle) {
  const SymmetricLattice lattice = LatticeOf({5, 6, 7, 94, 96, 98});
  const auto reflections = Reflections(60, Reciprocal(lattice.direct));
  std::vector<bool> seen;
  for (const Hkl& r : reflections) seen.push_back((r.h + r.k) % 2 == 0 || r.l == 3);
  const double superlattice = LogOf(reflections, seen, lattice);
  Random random(32);
  for (int trial = 0; trial < 5; ++trial) {
    std::shuffle(seen.begin(), seen.end(), random);
    EXPECT_GT(superlattice, LogOf(reflections, seen, lattice) + 5);
  }
}

TEST(Visibility, APositionIsAbsentOnlyIfAllItsReflectionsAre) {
  // 010 is seen, of itself or because 110 lies there too: only then can 0k0 be absent for odd k.
  const SymmetricLattice lattice = LatticeOf({5, 6, 8, 90, 97, 90});
  std::vector<Hkl> rest;
  for (int k = 2; k <= 25; ++k) rest.push_back({0, k, 0});
  const auto together = [&](const std::vector<Hkl>& first) {
    std::vector<SeenPosition> positions = {{first, true}};
    for (const Hkl& r : rest) positions.push_back({{&r, 1}, r.k % 6 == 0});
    return LogVisibility(positions, lattice);
  };
  EXPECT_GT(together({{0, 1, 0}, {1, 1, 0}}), together({{0, 1, 0}}) + 0.5);
}
