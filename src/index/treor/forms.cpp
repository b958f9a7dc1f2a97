#include "index/treor/forms.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

constexpr int kConstants = 6;
using List = std::array<float, kConstants>;  // the constants a to f
static_assert(sizeof(List) == sizeof(Constants));

constexpr int kNone = -1;

struct SystemRow {
  int parameters;
  std::array<int, kConstants> parameter;  // that each constant a to f follows
  bool (*contains)(const Hkl&);           // the reflections that stand for all
  int lowest[2];                          // signs of h and k: 0 or -1
};

bool AllPositive(const Hkl&) { return true; }
bool EqualAB(const Hkl& r) { return r.h >= r.k; }
bool EqualABC(const Hkl& r) { return r.h >= r.k && r.k >= r.l; }
bool OneAxis(const Hkl& r) { return r.h >= 0 || r.l > 0; }
bool HalfSpace(const Hkl& r) { return r.l > 0 || r.k > 0 || (r.k == 0 && r.h > 0); }

constexpr SystemRow kSystems[] = {
    {1, {0, 0, 0, kNone, kNone, kNone}, EqualABC, {0, 0}},
    {2, {0, 0, 1, kNone, kNone, kNone}, EqualAB, {0, 0}},
    {3, {0, 1, 2, kNone, kNone, kNone}, AllPositive, {0, 0}},
    {2, {0, 0, 1, kNone, 0, kNone}, EqualAB, {0, 0}},
    {4, {0, 1, 2, 3, kNone, kNone}, OneAxis, {-1, 0}},
    {6, {0, 1, 2, 3, 4, 5}, HalfSpace, {-1, -1}},
};

const SystemRow& RowOf(CrystalSystem system) { return kSystems[static_cast<int>(system) - 1]; }

std::array<int, kConstants> Products(const Hkl& r) {
  return {r.h * r.h, r.k * r.k, r.l * r.l, r.h * r.l, r.h * r.k, r.k * r.l};
}

float Form(const List& constants, const Hkl& hkl) {
  const auto products = Products(hkl);
  float s = 0;
  for (int i = 0; i < kConstants; ++i) s += constants[i] * static_cast<float>(products[i]);
  return s;
}

constexpr int kMostIndex = 99;

// The first of each form, 270 at most.
std::vector<CalculatedLine> Distinct(CrystalSystem system,
                                     const std::vector<CalculatedLine>& lines) {
  std::vector<CalculatedLine> distinct;
  std::vector<std::array<int, kMostUnknowns>> forms;
  for (const CalculatedLine& line : lines) {
    const auto form = FormOf(system, line.hkl);
    if (std::ranges::find(forms, form) != forms.end()) continue;
    if (forms.size() == kMostCalculated) break;
    forms.push_back(form);
    distinct.push_back(line);
  }
  return distinct;
}

// Of many lines the lowest are enough; lowers smax to what is left.
constexpr std::size_t kEnoughLines = 4096;
void KeepLowest(std::vector<CalculatedLine>& lines, float& smax) {
  const auto end = lines.begin() + kEnoughLines;
  std::ranges::nth_element(lines, end, {}, &CalculatedLine::s);
  smax = end->s;
  lines.erase(end, lines.end());
}

int LargestIndex(float constant, float smax) {
  return static_cast<int>(std::min(std::sqrt(smax / constant), static_cast<float>(kMostIndex)));
}

}  // namespace

int ParametersOf(CrystalSystem system) { return RowOf(system).parameters; }

Constants ConstantsOf(CrystalSystem system, const Parameters& parameters) {
  const SystemRow& row = RowOf(system);
  List constants{};
  for (int i = 0; i < kConstants; ++i)
    if (row.parameter[i] != kNone) constants[i] = parameters[row.parameter[i]];
  return std::bit_cast<Constants>(constants);
}

Parameters ParametersOf(CrystalSystem system, const Constants& constants) {
  const SystemRow& row = RowOf(system);
  const auto list = std::bit_cast<List>(constants);
  Parameters parameters{};
  for (int i = kConstants - 1; i >= 0; --i)
    if (row.parameter[i] != kNone) parameters[row.parameter[i]] = list[i];
  return parameters;
}

std::array<int, kMostUnknowns> FormOf(CrystalSystem system, const Hkl& hkl) {
  const SystemRow& row = RowOf(system);
  const auto products = Products(hkl);
  std::array<int, kMostUnknowns> form{};
  for (int i = 0; i < kConstants; ++i)
    if (row.parameter[i] != kNone) form[row.parameter[i]] += products[i];
  return form;
}

std::vector<CalculatedLine> CalculatedLines(CrystalSystem system, const Constants& constants,
                                            float smax) {
  std::vector<CalculatedLine> lines;
  if (!(constants.a > 0 && constants.b > 0 && constants.c > 0 && smax > 0)) return lines;
  const SystemRow& row = RowOf(system);
  const auto list = std::bit_cast<List>(constants);
  const int hmax = LargestIndex(constants.a, smax), kmax = LargestIndex(constants.b, smax),
            lmax = LargestIndex(constants.c, smax);
  Hkl r;
  for (r.h = row.lowest[0] * hmax; r.h <= hmax; ++r.h)
    for (r.k = row.lowest[1] * kmax; r.k <= kmax; ++r.k)
      for (r.l = 0; r.l <= lmax; ++r.l) {
        const float s = Form(list, r);
        if (s > 0 && s <= smax && row.contains(r)) lines.push_back({s, r});
        if (lines.size() == 2 * kEnoughLines) KeepLowest(lines, smax);
      }
  std::ranges::stable_sort(lines, {}, &CalculatedLine::s);
  return Distinct(system, lines);
}
