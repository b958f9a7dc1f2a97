// Reflections that glide planes and screw axes leave out.
#include "index/find/absences.h"

namespace {

constexpr bool Odd(int n) { return n % 2 != 0; }
constexpr bool Not3(int n) { return n % 3 != 0; }
constexpr bool Not4(int n) { return n % 4 != 0; }
constexpr bool Not6(int n) { return n % 6 != 0; }

constexpr AbsenceKind kMonoclinic[] = {
    // h0l
    {{[](int h, int k, int) { return k == 0 && Odd(h); },
      [](int, int k, int l) { return k == 0 && Odd(l); },
      [](int h, int k, int l) { return k == 0 && Odd(h + l); }}},
    // 0k0
    {{[](int h, int k, int l) { return h == 0 && l == 0 && Odd(k); }}},
};

constexpr AbsenceKind kOrthorhombic[] = {
    // 0kl, h0l, hk0
    {{[](int h, int k, int) { return h == 0 && Odd(k); },
      [](int h, int, int l) { return h == 0 && Odd(l); },
      [](int h, int k, int l) { return h == 0 && Odd(k + l); },
      [](int h, int k, int l) { return h == 0 && Not4(k + l); }}},
    {{[](int h, int k, int) { return k == 0 && Odd(h); },
      [](int, int k, int l) { return k == 0 && Odd(l); },
      [](int h, int k, int l) { return k == 0 && Odd(h + l); },
      [](int h, int k, int l) { return k == 0 && Not4(h + l); }}},
    {{[](int h, int, int l) { return l == 0 && Odd(h); },
      [](int, int k, int l) { return l == 0 && Odd(k); },
      [](int h, int k, int l) { return l == 0 && Odd(h + k); },
      [](int h, int k, int l) { return l == 0 && Not4(h + k); }}},
    // h00, 0k0, 00l
    {{[](int h, int k, int l) { return k == 0 && l == 0 && Odd(h); }}},
    {{[](int h, int k, int l) { return h == 0 && l == 0 && Odd(k); }}},
    {{[](int h, int k, int l) { return h == 0 && k == 0 && Odd(l); }}},
};

constexpr AbsenceKind kTetragonal[] = {
    // hk0
    {{[](int h, int k, int l) { return l == 0 && Odd(h + k); },
      [](int h, int k, int l) { return l == 0 && (Odd(h) || Odd(k)); }}},
    // 0kl and h0l
    {{[](int h, int k, int) { return h * k == 0 && Odd(h + k); },
      [](int h, int k, int l) { return h * k == 0 && Odd(l); },
      [](int h, int k, int l) { return h * k == 0 && Odd(h + k + l); }}},
    // hhl
    {{[](int h, int k, int l) { return h * h == k * k && Odd(l); },
      [](int h, int k, int l) { return h * h == k * k && Not4(2 * h + l); }}},
    // 00l
    {{[](int h, int k, int l) { return h == 0 && k == 0 && Odd(l); },
      [](int h, int k, int l) { return h == 0 && k == 0 && Not4(l); }}},
    // h00 and 0k0
    {{[](int h, int k, int l) { return l == 0 && h * k == 0 && Odd(h + k); }}},
};

constexpr bool IsH0l(int h, int k) { return h == 0 || k == 0 || h == -k; }
constexpr bool IsHhl(int h, int k) { return h == k || h == -2 * k || k == -2 * h; }

constexpr AbsenceKind kHexagonal[] = {
    {{[](int h, int k, int l) { return IsH0l(h, k) && Odd(l); }}},
    {{[](int h, int k, int l) { return IsHhl(h, k) && Odd(l); }}},
    {{[](int h, int k, int l) { return h == 0 && k == 0 && Odd(l); },
      [](int h, int k, int l) { return h == 0 && k == 0 && Not3(l); },
      [](int h, int k, int l) { return h == 0 && k == 0 && Not6(l); }}},
};

constexpr AbsenceKind kRhombohedral[] = {
    {{[](int h, int k, int l) { return IsH0l(h, k) && Odd(l); }}},
};

// One index, two indices that are equal but for their sign: whichever they are.
constexpr bool IsH00(int h, int k, int l) { return (h == 0) + (k == 0) + (l == 0) == 2; }
constexpr bool Is0kl(int h, int k, int l) { return h == 0 || k == 0 || l == 0; }
constexpr bool HhlMissing(int h, int k, int l, bool (*missing)(int twice, int other)) {
  return (h * h == k * k && missing(h, l)) || (k * k == l * l && missing(k, h)) ||
         (h * h == l * l && missing(h, k));
}

constexpr AbsenceKind kCubic[] = {
    // 0kl; with k = 2n alone the roles go round
    {{[](int h, int k, int l) {
        return (h == 0 && Odd(k)) || (k == 0 && Odd(l)) || (l == 0 && Odd(h));
      },
      [](int h, int k, int l) { return Is0kl(h, k, l) && Odd(h + k + l); },
      [](int h, int k, int l) { return Is0kl(h, k, l) && (Odd(h) || Odd(k) || Odd(l)); },
      [](int h, int k, int l) { return Is0kl(h, k, l) && Not4(h + k + l); }}},
    // hhl
    {{[](int h, int k, int l) {
        return HhlMissing(h, k, l, [](int, int other) { return Odd(other); });
      },
      [](int h, int k, int l) {
        return HhlMissing(h, k, l, [](int twice, int other) { return Not4(2 * twice + other); });
      }}},
    // h00
    {{[](int h, int k, int l) { return IsH00(h, k, l) && Odd(h + k + l); },
      [](int h, int k, int l) { return IsH00(h, k, l) && Not4(h + k + l); }}},
};

}  // namespace

std::span<const AbsenceKind> AbsencesOf(LatticeSystem system) {
  using enum LatticeSystem;
  switch (system) {
    case Triclinic:
      return {};
    case Monoclinic:
      return kMonoclinic;
    case Orthorhombic:
      return kOrthorhombic;
    case Tetragonal:
      return kTetragonal;
    case Rhombohedral:
      return kRhombohedral;
    case Hexagonal:
      return kHexagonal;
    case Cubic:
      return kCubic;
  }
  return {};
}
