// Reflection indices packed in one number, as the peak list keeps them.
#pragma once

struct Hkl {
  int h = 0, k = 0, l = 0;
};

// l runs slowest, so that codes sort by l, then k, then h. The largest code is an exact 32-bit
// real. Indices outside -100..99 have no code of their own: the result is 0, that of no reflection
// in use.
constexpr int PackHkl(const Hkl& r) {
  for (int index : {r.h, r.k, r.l})
    if (index < -100 || index > 99) return 0;
  return (r.h + 100) + 200 * (r.k + 100) + 40000 * (r.l + 100);
}

constexpr Hkl UnpackHkl(int code) {
  return {code % 40000 % 200 - 100, code % 40000 / 200 - 100, code / 40000 - 100};
}
