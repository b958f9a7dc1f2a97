// Listings of the indexing engines as their readers have to find them, with cells of their own for
// each solution.
#pragma once

#include <cstdio>
#include <string>

namespace listings {

template <class... V>
std::string Text(const char* format, V... value) {
  char text[400];
  std::snprintf(text, sizeof text, format, value...);
  return text;
}

// Solution k: edges 4 + k, 5 + k, 6 + k, angles 90, 91 and 92 degrees, volume 100 k, figure of
// merit 50 - k / 2 and k lines.
inline std::string Ito(int solutions) {
  std::string text = "1a title\n\n\n" + std::string(30, ' ') + "the  4 most probable solutions \n" +
                     "\n\n\n" + std::string(58, ' ') + "lines  figure of           bravais\n" +
                     "    q(a)     q(b)     q(c)      q(d)     q(e)     q(f)   indexed   merit   "
                     "pedigree  lattice        \n";
  for (int k = 1; k <= solutions; ++k)
    text += Text("    100.00   200.00   300.00     0.00    10.00    20.00%8d.%9.1f      11.%8sp\n",
                 k, 50 - k / 2.0, "");
  text +=
      "0                    the direct constants of these lattices\n\n"
      "     a        b        c       alfa     beta     gamma      volume\n";
  for (int k = 1; k <= solutions; ++k)
    text += Text(" %9.3f%9.3f%9.3f   90.000   91.000   92.000%12.2f\n", 4.0 + k, 5.0 + k, 6.0 + k,
                 100.0 * k);
  return text + "0a title\n";
}

inline std::string TreorCell(int k) {
  return Text(
      "   NUMBER OF SINGLE INDEXED LINES =   18\n"
      "   TOTAL NUMBER OF LINES =   25\n"
      "   A =%10.6f  0.000123 A   ALFA = 90.000000  0.000000 DEG\n"
      "   B =%10.6f  0.000123 A   BETA = 91.000000  0.001000 DEG\n"
      "   C =%10.6f  0.000123 A  GAMMA = 92.000000  0.001000 DEG\n"
      "   UNIT CELL VOLUME =%10.2f A**3\n",
      4.0 + k, 5.0 + k, 6.0 + k, 100.0 * k);
}
inline std::string TreorTest(int k) {
  return Text("     1  LINES ARE UNINDEXED \n M-TEST=%5d UNINDEXED IN THE TEST=%5d\n\n", 50 - k, k);
}
inline std::string Treor(int solutions) {
  std::string text = "1 TREOR90\n  CYCLE RESULTS\n";
  for (int k = 1; k <= solutions; ++k) text += TreorCell(k) + TreorTest(k);
  return text;
}

}  // namespace listings
