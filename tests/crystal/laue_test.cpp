// Laue classes: the families by the operators of the groups, the cells they force.
#include "crystal/laue.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "laueorbits.h"

namespace {

constexpr int kMost = 5;

template <class Body>
void ForAllIndices(Body body) {
  for (int h = -kMost; h <= kMost; ++h)
    for (int k = -kMost; k <= kMost; ++k)
      for (int l = -kMost; l <= kMost; ++l) body(Hkl{h, k, l});
}

TEST(CanonicalIndices, AreOneMemberOfEachFamily) {
  for (int laueclass = 1; laueclass <= kLaueClasses; ++laueclass) {
    if (laueclass == 11) continue;
    ForAllIndices([&](const Hkl& r) {
      const std::set<int> orbit = Orbit(r, laueclass);
      const int canonical = PackHkl(CanonicalIndices(r, laueclass));
      EXPECT_TRUE(orbit.contains(canonical)) << laueclass << ": " << r.h << r.k << r.l;
      for (int code : orbit)
        ASSERT_EQ(PackHkl(CanonicalIndices(UnpackHkl(code), laueclass)), canonical)
            << laueclass << ": " << r.h << " " << r.k << " " << r.l;
    });
  }
  EXPECT_EQ(PackHkl(CanonicalIndices({0, -1, 2}, 17)), PackHkl({0, 1, -2}));  // as class 1
}

TEST(CanonicalIndices, OfOneReflectionInEachClass) {
  const Hkl canonical[] = {{3, -1, 2},  {3, 1, -2},  {3, 1, 2},  {3, -1, 2},
                           {3, 1, 2},   {-1, -2, 2}, {-1, 2, 3}, {-1, -2, 2},
                           {-1, -2, 2}, {-1, 2, 3},  {3, -1, 2}, {1, 3, 2},
                           {1, 2, 2},   {1, 2, 2},   {1, 2, 3},  {1, 2, 3}};
  for (int laueclass = 1; laueclass <= kLaueClasses; ++laueclass)
    EXPECT_EQ(PackHkl(CanonicalIndices({-3, 1, -2}, laueclass)), PackHkl(canonical[laueclass - 1]))
        << laueclass;
  // The other hand, whose absolute values fall.
  EXPECT_EQ(PackHkl(CanonicalIndices({-1, 3, 2}, 7)), PackHkl({3, 2, -1}));
  EXPECT_EQ(PackHkl(CanonicalIndices({-1, 3, 2}, 15)), PackHkl({3, 2, 1}));
}

// (k,h,l) stands for (-k,h,l): on the planes where 4/m and 4/mmm do not differ that is right, and
// elsewhere each family has half of its members from the other one.
TEST(CanonicalIndices, OfTetragonal4PairTheWrongHands) {
  std::map<int, int> members;
  ForAllIndices([&](const Hkl& r) {
    const int code = PackHkl(CanonicalIndices(r, 11));
    ++members[code];
    for (const Hkl& same : {Hkl{r.k, r.h, r.l}, {-r.h, -r.k, r.l}, {r.h, r.k, -r.l}})
      EXPECT_EQ(PackHkl(CanonicalIndices(same, 11)), code);
    const bool special = r.h == 0 || r.k == 0 || std::abs(r.h) == std::abs(r.k);
    EXPECT_EQ(PackHkl(CanonicalIndices({-r.k, r.h, r.l}, 11)) == code, special);
  });
  for (const auto& [code, count] : members)
    EXPECT_EQ(count, static_cast<int>(Orbit(UnpackHkl(code), 11).size())) << code;
}

TEST(LaueClass, ForcesTheCell) {
  const UnitCell odd{{4, 5, 6, 70, 80, 95}}, monoa{{4, 5, 6, 70, 90, 90}},
      monob{{4, 5, 6, 90, 80, 90}}, monoc{{4, 5, 6, 90, 90, 95}}, ortho{{4, 5, 6, 90, 90, 90}},
      hexa{{4, 4, 6, 90, 90, 120}}, rhombo{{4, 4, 4, 70, 70, 70}}, tetra{{4, 4, 6, 90, 90, 90}},
      cubic{{4, 4, 4, 90, 90, 90}};
  const UnitCell forced[] = {odd,    monoa, monob, monoc, ortho, hexa,  rhombo, hexa, hexa,
                             rhombo, tetra, tetra, hexa,  hexa,  cubic, cubic,  odd};
  for (int laueclass = 1; laueclass <= kLaueClasses + 1; ++laueclass) {
    UnitCell cell = odd;
    ForceCell(cell, laueclass);
    EXPECT_EQ(cell.cells, forced[laueclass - 1].cells) << laueclass;
  }
}

}  // namespace
