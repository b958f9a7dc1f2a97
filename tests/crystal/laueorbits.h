// The Laue groups by their operators: which reflections are equivalent.
#pragma once

#include <map>
#include <set>
#include <vector>

#include "crystal/hklcode.h"

using Operator = Hkl (*)(const Hkl&);

// Generators in the settings of the classes 1 to 16; all groups hold the inversion beside them.
inline const std::vector<Operator>& Generators(int laueclass) {
  static constexpr Operator twofold_a = [](const Hkl& r) { return Hkl{r.h, -r.k, -r.l}; };
  static constexpr Operator twofold_b = [](const Hkl& r) { return Hkl{-r.h, r.k, -r.l}; };
  static constexpr Operator twofold_c = [](const Hkl& r) { return Hkl{-r.h, -r.k, r.l}; };
  static constexpr Operator twofold_ab = [](const Hkl& r) { return Hkl{r.k, r.h, -r.l}; };
  static constexpr Operator mirror_ab = [](const Hkl& r) { return Hkl{r.k, r.h, r.l}; };
  static constexpr Operator threefold_c = [](const Hkl& r) { return Hkl{r.k, -r.h - r.k, r.l}; };
  static constexpr Operator diagonal = [](const Hkl& r) { return Hkl{r.k, r.l, r.h}; };
  static constexpr Operator fourfold_c = [](const Hkl& r) { return Hkl{-r.k, r.h, r.l}; };
  static constexpr Operator sixfold_c = [](const Hkl& r) { return Hkl{-r.k, r.h + r.k, r.l}; };
  static const std::vector<Operator> generators[] = {
      {},                                // 1bar
      {twofold_a},                       // 2/m, unique a
      {twofold_b},                       // 2/m, unique b
      {twofold_c},                       // 2/m, unique c
      {twofold_a, twofold_b},            // mmm
      {threefold_c},                     // 3bar, hexagonal axes
      {diagonal},                        // 3bar, rhombohedral axes
      {threefold_c, twofold_ab},         // 3bar m 1
      {threefold_c, mirror_ab},          // 3bar 1 m
      {diagonal, mirror_ab},             // 3bar m, rhombohedral axes
      {fourfold_c},                      // 4/m
      {fourfold_c, twofold_a},           // 4/mmm
      {sixfold_c},                       // 6/m
      {sixfold_c, twofold_ab},           // 6/mmm
      {diagonal, twofold_a},             // m3
      {diagonal, twofold_a, mirror_ab},  // m3m
  };
  return generators[laueclass - 1];
}

// The codes of all members of a reflection's family.
inline std::set<int> Orbit(const Hkl& hkl, int laueclass) {
  std::set<int> orbit;
  std::vector<Hkl> open{hkl};
  while (!open.empty()) {
    const Hkl r = open.back();
    open.pop_back();
    if (!orbit.insert(PackHkl(r)).second) continue;
    open.push_back({-r.h, -r.k, -r.l});
    for (Operator op : Generators(laueclass)) open.push_back(op(r));
  }
  return orbit;
}
