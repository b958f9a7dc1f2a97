// Laue classes and lattice centerings.
#include "crystal/laue.h"

#include <cstdlib>
#include <utility>

namespace {

void Negate(int& x, int& y) { x = -x, y = -y; }
void Negate(Hkl& r) { r = {-r.h, -r.k, -r.l}; }
void TakeAbsolute(Hkl& r) { r = {std::abs(r.h), std::abs(r.k), std::abs(r.l)}; }
void SortByAbsolute(int& x, int& y) {
  if (std::abs(x) > std::abs(y)) std::swap(x, y);
}
bool AreRising(const Hkl& r) {
  return std::abs(r.h) <= std::abs(r.k) && std::abs(r.k) <= std::abs(r.l);
}
bool AreFalling(const Hkl& r) { return AreRising({r.l, r.k, r.h}); }

// A twofold axis across a plane: x positive, or y on the line where x is 0.
void FoldHalfTurn(int& x, int& y) {
  if (x < 0) Negate(x, y);
  if (x == 0) y = std::abs(y);
}

// The center of the trigonal classes: l positive, or the half plane at l = 0.
void FoldCenter(Hkl& r) {
  if (r.l < 0) Negate(r);
  if (r.l == 0) FoldHalfTurn(r.h, r.k);
}

// The threefold axis turns h, k, i; the largest of them ends as i.
void FoldThreefold(Hkl& r) {
  int i = -(r.h + r.k);
  if (std::abs(r.h) > std::abs(r.k)) r = {r.k, i, r.l}, i = -(r.h + r.k);
  if (std::abs(i) < std::abs(r.k)) r = {i, r.h, r.l};
}

// The threefold axis with the twofold axes or mirrors that swap two of h, k, i: sorted by absolute
// value. lsign -1 where l changes sign with a swap.
void FoldSwaps(Hkl& r, int lsign) {
  const int i = -(r.h + r.k);
  const auto swap_hk = [&] {
    if (std::abs(r.h) > std::abs(r.k)) r = {r.k, r.h, lsign * r.l};
  };
  swap_hk();
  if (std::abs(i) < std::abs(r.k)) r = {r.h, i, lsign * r.l};
  swap_hk();
}

// The threefold axis along the diagonal: rising absolute values, or falling if no turn has them
// rise.
void FoldDiagonal(Hkl& r) {
  const Hkl once{r.k, r.l, r.h}, twice{r.l, r.h, r.k};
  for (const Hkl& turned : {r, once, twice})
    if (AreRising(turned)) {
      r = turned;
      return;
    }
  for (const Hkl& turned : {twice, r})
    if (AreFalling(turned)) {
      r = turned;
      return;
    }
  r = once;
}

// The center of the rhombohedral classes.
void FoldSigns(Hkl& r) {
  auto& [h, k, l] = r;
  if (h <= 0 && k <= 0 && l <= 0) Negate(r);
  const int negative = (h < 0) + (k < 0) + (l < 0);
  if (h == 0 && k < 0)
    Negate(k, l);
  else if (k == 0 && l < 0)
    Negate(h, l);
  else if (l == 0 && h < 0)
    Negate(h, k);
  else if (negative > 0 && std::abs(h) == std::abs(k) && std::abs(k) == std::abs(l))
    r = {std::abs(h), std::abs(h), -std::abs(h)};
  else if (negative >= 2)
    Negate(r);
}

void FoldTriclinic(Hkl& r) {
  const int first = r.h != 0 ? r.h : r.k != 0 ? r.k : r.l;
  if (first < 0) Negate(r);
}

void FoldMonoclinicA(Hkl& r) {
  r.h = std::abs(r.h);
  FoldHalfTurn(r.k, r.l);
}

void FoldMonoclinicB(Hkl& r) {
  r.k = std::abs(r.k);
  FoldHalfTurn(r.h, r.l);
}

void FoldMonoclinicC(Hkl& r) {
  r.l = std::abs(r.l);
  FoldHalfTurn(r.h, r.k);
}

void Fold3H(Hkl& r) {
  FoldThreefold(r);
  FoldCenter(r);
}

void Fold3R(Hkl& r) {
  FoldDiagonal(r);
  FoldSigns(r);
}

void Fold3m1H(Hkl& r) {
  FoldSwaps(r, -1);
  FoldCenter(r);
  if (r.h == r.k && r.h < 0) Negate(r.h, r.k);
}

void Fold31mH(Hkl& r) {
  FoldSwaps(r, 1);
  FoldCenter(r);
  if (r.h == 0) r.k = std::abs(r.k);
}

void SortAbsolute(Hkl& r) {
  SortByAbsolute(r.h, r.k);
  SortByAbsolute(r.k, r.l);
  SortByAbsolute(r.h, r.k);
}

void Fold3mR(Hkl& r) {
  SortAbsolute(r);
  FoldSigns(r);
  auto& [h, k, l] = r;
  if (std::abs(h) == std::abs(k) && h < 0)
    Negate(h, k);
  else if (std::abs(h) == std::abs(l) && h < 0)
    Negate(h, l);
  else if (std::abs(k) == std::abs(l) && k < 0)
    Negate(k, l);
}

// (h,k) and (k,h) fall together, (h,k) and (-k,h) do not.
void Fold4(Hkl& r) {
  r.l = std::abs(r.l);
  if (std::abs(r.h) < std::abs(r.k))
    std::swap(r.h, r.k);
  else if (std::abs(r.h) == std::abs(r.k))
    r.k = r.h;
  FoldHalfTurn(r.h, r.k);
}

void Fold4mm(Hkl& r) {
  TakeAbsolute(r);
  SortByAbsolute(r.h, r.k);
}

void Fold6(Hkl& r) {
  r.l = std::abs(r.l);
  FoldThreefold(r);
  FoldHalfTurn(r.h, r.k);
}

void Fold6mm(Hkl& r) {
  r.l = std::abs(r.l);
  FoldSwaps(r, 1);
  FoldHalfTurn(r.h, r.k);
}

void FoldM3(Hkl& r) {
  TakeAbsolute(r);
  FoldDiagonal(r);
}

void FoldM3m(Hkl& r) {
  TakeAbsolute(r);
  SortAbsolute(r);
}

using Master = std::array<int, 6>;
constexpr Master kTriclinic{0, 1, 2, 3, 4, 5};
constexpr Master kMonoclinicA{0, 1, 2, 3, -90, -90};
constexpr Master kMonoclinicB{0, 1, 2, -90, 4, -90};
constexpr Master kMonoclinicC{0, 1, 2, -90, -90, 5};
constexpr Master kOrthorhombic{0, 1, 2, -90, -90, -90};
constexpr Master kHexagonal{0, 0, 2, -90, -90, -120};
constexpr Master kRhombohedral{0, 0, 0, 3, 3, 3};
constexpr Master kTetragonal{0, 0, 2, -90, -90, -90};
constexpr Master kCubic{0, 0, 0, -90, -90, -90};

constexpr LaueClass kClass[kLaueClasses] = {
    {"1bar", "triclinic", kTriclinic, FoldTriclinic},                  // 1
    {"2/m-a", "monoclinic, unique a", kMonoclinicA, FoldMonoclinicA},  // 2
    {"2/m-b", "monoclinic, unique b", kMonoclinicB, FoldMonoclinicB},  // 3
    {"2/m-c", "monoclinic, unique c", kMonoclinicC, FoldMonoclinicC},  // 4
    {"mmm", "orthorhombic", kOrthorhombic, TakeAbsolute},              // 5
    {"3barH", "trigonal, hexagonal axes", kHexagonal, Fold3H},         // 6
    {"3barR", "trigonal, rhombohedral axes", kRhombohedral, Fold3R},   // 7
    {"3m1H", "trigonal, hexagonal axes", kHexagonal, Fold3m1H},        // 8
    {"31mH", "trigonal, hexagonal axes", kHexagonal, Fold31mH},        // 9
    {"3mR", "trigonal, rhombohedral axes", kRhombohedral, Fold3mR},    // 10
    {"4/m", "tetragonal", kTetragonal, Fold4},                         // 11
    {"4/mmm", "tetragonal", kTetragonal, Fold4mm},                     // 12
    {"6/m", "hexagonal", kHexagonal, Fold6},                           // 13
    {"6/mmm", "hexagonal", kHexagonal, Fold6mm},                       // 14
    {"m3", "cubic", kCubic, FoldM3},                                   // 15
    {"m3m", "cubic", kCubic, FoldM3m},                                 // 16
};

bool IsEven(int n) { return n % 2 == 0; }

constexpr Centering kCentering[kCenterings] = {
    {"P", [](const Hkl&) { return true; }},
    {"A", [](const Hkl& r) { return IsEven(r.k + r.l); }},
    {"B", [](const Hkl& r) { return IsEven(r.h + r.l); }},
    {"C", [](const Hkl& r) { return IsEven(r.h + r.k); }},
    {"I", [](const Hkl& r) { return IsEven(r.h + r.k + r.l); }},
    {"F", [](const Hkl& r) { return IsEven(r.h + r.k) && IsEven(r.h + r.l); }},  // and so k + l
    {"R", [](const Hkl& r) { return (r.l + r.k - r.h) % 3 == 0; }},
};

}  // namespace

const LaueClass& LaueClassOf(int laueclass) {
  return kClass[laueclass >= 1 && laueclass <= kLaueClasses ? laueclass - 1 : 0];
}

const Centering& CenteringOf(int centering) {
  return kCentering[centering >= 1 && centering <= kCenterings ? centering - 1 : 0];
}

void ForceCell(UnitCell& cell, int laueclass) {
  const auto& master = LaueClassOf(laueclass).master;
  for (int k = 0; k < 6; ++k)
    cell(k + 1) = master[k] < 0 ? static_cast<float>(-master[k]) : cell(master[k] + 1);
}

Hkl CanonicalIndices(Hkl hkl, int laueclass) {
  LaueClassOf(laueclass).fold(hkl);
  return hkl;
}
