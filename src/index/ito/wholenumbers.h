#pragma once

#include <algorithm>

// A real cut to a whole number, which is limited to what an index may ever be; 0 for what is not a
// number.
inline int Whole(float x) {
  constexpr float most = 1e6f;
  return x >= -most ? static_cast<int>(std::min(x, most)) : x < -most ? -1000000 : 0;
}
