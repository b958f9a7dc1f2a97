// Reflections of a range: the plain loop over all indices, and well-known patterns.
#include "crystal/reflections.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <string>

#include "crystal/laue.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr float kCu = 1.54056f;

class Cells {
 public:
  UnitCell Next(float shortest, float longest, float lowest, float highest) {
    UnitCell cell;
    for (int k = 1; k <= 3; ++k) cell(k) = Between(shortest, longest);
    for (int k = 4; k <= 6; ++k) cell(k) = Between(lowest, highest);
    return cell;
  }
  float Between(float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random_);
  }

 private:
  std::mt19937 random_{5};
};

bool Allows(int centering, const Hkl& r) {
  const auto [h, k, l] = r;
  const bool even[] = {true, (k + l) % 2 == 0, (h + l) % 2 == 0, (h + k) % 2 == 0,
                       (h + k + l) % 2 == 0};
  if (centering == 6) return even[1] && even[2] && even[3];
  return centering == 7 ? (l + k - h) % 3 == 0 : even[centering - 1];
}

// The codes of all members in range, an index at a time, with the limits that the cell gives.
std::vector<int> PlainCodes(const UnitCell& cell, int laueclass, int centering, float low,
                            float high) {
  const Metric q = *SineMetric(cell);
  const auto most = [&](int k) {
    return std::min(99, nint(1.5f * cell(k) * (2 * std::sqrt(high))));
  };
  std::vector<int> codes;
  for (int h = -most(1); h <= most(1); ++h)
    for (int k = -most(2); k <= most(2); ++k)
      for (int l = -most(3); l <= most(3); ++l) {
        const float value = QuadraticForm(q, {h, k, l});
        if (value < low || value > high || !Allows(centering, {h, k, l})) continue;
        if (h == 0 && k == 0 && l == 0) continue;
        codes.push_back(PackHkl(CanonicalIndices({h, k, l}, laueclass)));
        if (codes.size() == 10000) return codes;
      }
  return codes;
}

std::vector<Reflection> PlainReflections(const UnitCell& cell, int laueclass, int centering,
                                         const TthRange& range, float wavelength) {
  const auto limit = [&](float tth) {
    const float s = std::sin(tth / 2 / RadToDeg) / wavelength;
    return s * s;
  };
  const float low = limit(range.low);
  float high = limit(range.high);
  std::vector<int> codes = PlainCodes(cell, laueclass, centering, low, high);
  while (codes.size() == 10000) {
    high = (low + high) / 2;
    codes = PlainCodes(cell, laueclass, centering, low, high);
  }
  std::map<int, int> families;
  for (int code : codes) ++families[code];
  const int n = static_cast<int>(families.size());
  std::vector<float> table;
  for (const auto& [code, members] : families)
    table.push_back(
        TwoRadToDeg *
        std::asin(std::sqrt(QuadraticForm(*SineMetric(cell), UnpackHkl(code))) * wavelength));
  for (const auto& [code, members] : families) table.push_back(static_cast<float>(code));
  for (const auto& [code, members] : families) table.push_back(static_cast<float>(members));
  RowSort(table.data(), n, 3, n, 1);
  std::vector<Reflection> list;
  for (int j = 0; j < std::min(n, 200); ++j)
    list.push_back(
        {table[j], UnpackHkl(static_cast<int>(table[n + j])), static_cast<int>(table[2 * n + j])});
  return list;
}

struct Request {
  UnitCell cell;
  int laueclass, centering;
  TthRange range;
  float wavelength;
};

// Small and large cells, blunt and sharp, short ranges and long ones, some of which are cut down.
std::vector<Request> Requests() {
  std::vector<Request> requests{
      {{{25, 25.5f, 26, 90, 90, 90}}, 5, 1, {0, 150}, kCu},
      {{{9, 10, 11, 62, 63, 121}}, 1, 1, {5, 150}, kCu},     // nearly flat
      {{{9, 300, 11, 90, 95, 90}}, 3, 4, {1, 20}, kCu},      // indices beyond 99
      {{{400, 410, 420, 80, 85, 88}}, 1, 1, {10, 13}, kCu},  // thin shell of a huge cell
      {{{5, 6, 7, 90, 90, 90}}, 5, 5, {40, 200}, kCu},       // beyond 180 the range comes back
      {{{5, 6, 7, 90, 90, 90}}, 5, 1, {60, 20}, kCu},        // reversed: none
  };
  Cells cells;
  for (int n = 0; n < 60; ++n)
    requests.push_back({cells.Next(4, 12, 60, 118),
                        1 + n % kLaueClasses,
                        1 + n % 6,
                        {cells.Between(0, 30), cells.Between(20, 170)},
                        cells.Between(0.7f, 2)});
  return requests;
}

TEST(AssignReflections, EqualsThePlainLoopBitForBit) {
  for (Request& r : Requests()) {
    SCOPED_TRACE(testing::PrintToString(r.cell.cells) + " " + std::to_string(r.laueclass));
    const auto list = AssignReflections(r.cell, r.laueclass, r.centering, r.range, r.wavelength);
    if (!list) continue;
    const auto plain = PlainReflections(r.cell, r.laueclass, r.centering, r.range, r.wavelength);
    ASSERT_EQ(list->size(), plain.size());
    for (std::size_t j = 0; j < plain.size(); ++j) {
      ASSERT_EQ((*list)[j].tth, plain[j].tth);
      ASSERT_EQ(PackHkl((*list)[j].hkl), PackHkl(plain[j].hkl));
      ASSERT_EQ((*list)[j].multiplicity, plain[j].multiplicity);
    }
  }
}

struct Line {
  double d;
  int multiplicity;
};

void ExpectLines(UnitCell cell, int laueclass, int centering, float high,
                 const std::vector<Line>& lines) {
  float wavelength = kCu;
  const auto list = AssignReflections(cell, laueclass, centering, {10, high}, wavelength);
  ASSERT_TRUE(list);
  ASSERT_EQ(list->size(), lines.size());
  for (std::size_t j = 0; j < lines.size(); ++j) {
    EXPECT_NEAR(kCu / 2 / std::sin((*list)[j].tth / TwoRadToDeg), lines[j].d, 1e-3);
    EXPECT_EQ((*list)[j].multiplicity, lines[j].multiplicity) << lines[j].d;
  }
}

TEST(AssignReflections, OfKnownSubstances) {
  // Silicon, with 200 and 222 that only its glide planes forbid.
  const std::vector<Line> silicon{
      {3.1355, 8}, {2.7155, 6}, {1.9201, 12}, {1.6375, 24}, {1.5678, 8}};
  ExpectLines({{5.4309f, 1, 1, 1, 1, 1}}, 16, 6, 60, silicon);
  // 003, 101, 012, 104, 110, 015, 006, 113.
  const std::vector<Line> corundum{{4.331, 2},  {3.9283, 6}, {3.480, 6},  {2.551, 6},
                                   {2.3794, 6}, {2.1977, 6}, {2.1655, 2}, {2.0854, 12}};
  ExpectLines({{4.7588f, 0, 12.993f, 0, 0, 0}}, 8, 7, 44, corundum);
  // 001, 100, 101, 011, 002, 110, 102, 012: of two families at one place both are there.
  const std::vector<Line> quartz{{5.405, 2}, {4.255, 6}, {3.343, 6}, {3.343, 6},
                                 {2.703, 2}, {2.457, 6}, {2.282, 6}, {2.282, 6}};
  ExpectLines({{4.9134f, 0, 5.4052f, 0, 0, 0}}, 8, 1, 40, quartz);
}

TEST(AssignReflections, ForcesCellCenteringAndWavelength) {
  std::vector<std::string> texts;
  const auto report = [&](const char* text) { texts.emplace_back(text); };
  UnitCell cell{{5, 6, 7, 65, 75, 85}};
  int centering = 7;
  float wavelength = 0;
  ASSERT_TRUE(AssignReflections(cell, 10, centering, {5, 60}, wavelength, report));
  EXPECT_EQ(cell.cells, (UnitCell{{5, 5, 5, 65, 65, 65}}.cells));
  EXPECT_EQ(centering, 1);
  EXPECT_EQ(wavelength, 1.540598f);
  EXPECT_EQ(texts,
            (std::vector<std::string>{"Laueclass found", "Cell conversion done", "Limits found",
                                      "Before first sorting", "Before second sorting"}));
  // Hexagonal axes keep the centering.
  centering = 7;
  ASSERT_TRUE(AssignReflections(cell, 6, centering, {5, 60}, wavelength));
  EXPECT_EQ(centering, 7);
  // A cell without volume is forced, and that is all.
  cell = {{5, 6, 7, 120, 0, 0}};
  wavelength = -1;
  EXPECT_FALSE(AssignReflections(cell, 7, centering, {5, 60}, wavelength));
  EXPECT_EQ(cell(3), 5);
  EXPECT_EQ(centering, 7);
  EXPECT_EQ(wavelength, -1);
}

TEST(AssignReflections, KeepsTheFirstTwoHundred) {
  UnitCell cell{{20, 21, 22, 80, 85, 95}};
  int centering = 1;
  float wavelength = kCu;
  const auto list = AssignReflections(cell, 1, centering, {5, 60}, wavelength);
  ASSERT_EQ(list->size(), 200u);
  EXPECT_LT(list->back().tth, 30);
}

TEST(AssignReflections, OfNonsenseEndsInTime) {
  const float nan = std::numeric_limits<float>::quiet_NaN(), inf = HUGE_VALF;
  const float strange[] = {0, -5, 1e-30f, 1e-5f, 1e6f, 1e12f, 1e30f, nan, inf, -inf};
  int lists = 0;
  for (float s : strange)
    for (int field = 0; field < 10; ++field) {
      UnitCell cell{{5, 6, 7, 62, 63, 121}};  // nearly flat: rows far off the origin
      TthRange range{5, 60};
      float wavelength = kCu;
      float* const fields[] = {&cell(1), &cell(2),   &cell(3),    &cell(4),   &cell(5),
                               &cell(6), &range.low, &range.high, &wavelength};
      if (field < 9) *fields[field] = s;
      if (field == 9) cell(1) = cell(2) = cell(3) = s;
      int centering = 1;
      const auto list = AssignReflections(cell, 1, centering, range, wavelength);
      lists += list.has_value();
      if (!list) continue;
      for (const Reflection& r : *list) ASSERT_TRUE(r.tth >= 0 && r.tth <= 180.001f) << r.tth;
    }
  EXPECT_GT(lists, 30);
}

TEST(MergeCodes, LosesALastCodeThatStandsAlone) {
  const auto merged = [](const std::vector<int>& codes) {
    std::vector<int> flat;
    for (const Family& family : MergeCodes(codes))
      flat.insert(flat.end(), {family.code, family.multiplicity});
    return flat;
  };
  using List = std::vector<int>;
  EXPECT_EQ(merged({3, 3, 4, 7, 7}), (List{3, 2, 4, 1, 7, 2}));
  EXPECT_EQ(merged({3, 3, 7}), (List{3, 3}));
  EXPECT_EQ(merged({3, 7}), (List{3, 2}));
  EXPECT_EQ(merged({3, 3}), (List{3, 2}));
  EXPECT_EQ(merged({3}), List{});
  EXPECT_EQ(merged({}), List{});
}

}  // namespace
