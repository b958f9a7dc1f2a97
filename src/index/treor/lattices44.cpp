// The 44 reduced forms of lattices.
#include "index/treor/lattices44.h"

#include <algorithm>
#include <cmath>

#include "workspace/record.h"

namespace {

enum class Equal { None, AB, BC, ABC };

// What a product of two axes has to be, by size: the signs are the type's. With the squares A and B
// of the two shortest axes, and D = b.c, E = a.c; its own: any.
enum Tie { O, A_2, A_3, A_4, B_2, D, D2, E, E2, Own };

// Sum: |D| + |E| + |F| = (A + B)/2; Both: 2 |D| + |F| = B as well.
enum class Relation { None, Sum, Both };

struct Row {
  ReducedForm form;
  int type;
  Equal equal;
  Tie d, e, f;
  Relation relation;
};

using enum Relation;
constexpr Equal ABC = Equal::ABC, AB = Equal::AB, BC = Equal::BC, Any = Equal::None;

// Number, class and conventional axes; type and conditions. The order is that of the search: the
// first row that fits is the form. Form 43 is given by its C-centred cell, as all of its class.
constexpr std::array kRows = std::to_array<Row>({
    {{1, 1, {{{1, -1, 1}, {1, 1, -1}, {-1, 1, 1}}}}, 1, ABC, A_2, A_2, A_2, None},
    {{2, 2, {{{1, -1, 0}, {-1, 0, 1}, {-1, -1, -1}}}}, 1, ABC, Own, D, D, None},
    {{3, 3, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}}, 2, ABC, O, O, O, None},
    {{5, 4, {{{1, 0, 1}, {1, 1, 0}, {0, 1, 1}}}}, 2, ABC, A_3, A_3, A_3, None},
    {{4, 2, {{{1, -1, 0}, {-1, 0, 1}, {-1, -1, -1}}}}, 2, ABC, Own, D, D, None},
    {{6, 5, {{{0, 1, 1}, {1, 0, 1}, {1, 1, 0}}}}, 2, ABC, Own, D, Own, Sum},
    {{7, 5, {{{1, 0, 1}, {1, 1, 0}, {0, 1, 1}}}}, 2, ABC, Own, Own, E, Sum},
    {{8, 6, {{{-1, -1, 0}, {-1, 0, -1}, {0, -1, -1}}}}, 2, ABC, Own, Own, Own, Sum},
    {{9, 2, {{{1, 0, 0}, {-1, 1, 0}, {-1, -1, 3}}}}, 1, AB, A_2, A_2, A_2, None},
    {{10, 7, {{{1, 1, 0}, {1, -1, 0}, {0, 0, -1}}}}, 1, AB, Own, D, Own, None},
    {{11, 8, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}}, 2, AB, O, O, O, None},
    {{12, 9, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}}, 2, AB, O, O, A_2, None},
    {{13, 10, {{{1, 1, 0}, {-1, 1, 0}, {0, 0, 1}}}}, 2, AB, O, O, Own, None},
    {{15, 5, {{{1, 0, 0}, {0, 1, 0}, {1, 1, 2}}}}, 2, AB, A_2, A_2, O, None},
    {{16, 12, {{{-1, -1, 0}, {1, -1, 0}, {1, 1, 2}}}}, 2, AB, Own, D, Own, Sum},
    {{14, 7, {{{1, 1, 0}, {-1, 1, 0}, {0, 0, 1}}}}, 2, AB, Own, D, Own, None},
    {{17, 7, {{{1, -1, 0}, {-1, -1, 0}, {-1, 0, -1}}}}, 2, AB, Own, Own, Own, Sum},
    {{18, 5, {{{0, -1, 1}, {1, -1, -1}, {1, 0, 0}}}}, 1, BC, A_4, A_2, A_2, None},
    {{19, 6, {{{-1, 0, 0}, {0, -1, 1}, {-1, 1, 1}}}}, 1, BC, Own, A_2, A_2, None},
    {{20, 7, {{{0, 1, 1}, {0, 1, -1}, {-1, 0, 0}}}}, 1, BC, Own, Own, E, None},
    {{21, 8, {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}}}, 2, BC, O, O, O, None},
    {{22, 9, {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}}}, 2, BC, B_2, O, O, None},
    {{23, 10, {{{0, 1, 1}, {0, -1, 1}, {1, 0, 0}}}}, 2, BC, Own, O, O, None},
    {{24, 2, {{{1, 2, 1}, {0, -1, 1}, {1, 0, 0}}}}, 2, BC, Own, A_3, A_3, Sum},
    {{25, 7, {{{0, 1, 1}, {0, -1, 1}, {1, 0, 0}}}}, 2, BC, Own, Own, E, None},
    {{26, 12, {{{1, 0, 0}, {-1, 2, 0}, {-1, 0, 2}}}}, 1, Any, A_4, A_2, A_2, None},
    {{27, 7, {{{-1, 2, 0}, {-1, 0, 0}, {0, -1, 1}}}}, 1, Any, Own, A_2, A_2, None},
    {{28, 7, {{{-1, 0, 0}, {-1, 0, 2}, {0, 1, 0}}}}, 1, Any, Own, A_2, D2, None},
    {{29, 7, {{{1, 0, 0}, {1, -2, 0}, {0, 0, -1}}}}, 1, Any, Own, D2, A_2, None},
    {{30, 7, {{{0, 1, 0}, {0, 1, -2}, {-1, 0, 0}}}}, 1, Any, B_2, Own, E2, None},
    {{31, 11, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}}, 1, Any, Own, Own, Own, None},
    {{32, 13, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}}, 2, Any, O, O, O, None},
    {{40, 10, {{{0, -1, 0}, {0, 1, 2}, {-1, 0, 0}}}}, 2, Any, B_2, O, O, None},
    {{35, 14, {{{0, -1, 0}, {-1, 0, 0}, {0, 0, -1}}}}, 2, Any, Own, O, O, None},
    {{36, 10, {{{1, 0, 0}, {-1, 0, -2}, {0, 1, 0}}}}, 2, Any, O, A_2, O, None},
    {{33, 14, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}}, 2, Any, O, Own, O, None},
    {{38, 10, {{{-1, 0, 0}, {1, 2, 0}, {0, 0, -1}}}}, 2, Any, O, O, A_2, None},
    {{34, 14, {{{-1, 0, 0}, {0, 0, -1}, {0, -1, 0}}}}, 2, Any, O, O, Own, None},
    {{42, 6, {{{-1, 0, 0}, {0, -1, 0}, {1, 1, 2}}}}, 2, Any, B_2, A_2, O, None},
    {{41, 7, {{{0, -1, -2}, {0, -1, 0}, {-1, 0, 0}}}}, 2, Any, B_2, Own, O, None},
    {{37, 7, {{{1, 0, 2}, {1, 0, 0}, {0, 1, 0}}}}, 2, Any, Own, A_2, O, None},
    {{39, 7, {{{-1, -2, 0}, {-1, 0, 0}, {0, 0, -1}}}}, 2, Any, Own, O, A_2, None},
    {{43, 7, {{{-1, -1, 0}, {-1, -1, -2}, {1, 0, 0}}}}, 2, Any, Own, Own, Own, Both},
    {{44, 11, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}}, 2, Any, Own, Own, Own, None},
});

bool Near(float x, float y, float tolerance) { return std::abs(x - y) <= tolerance; }

bool HasEqualAxes(const AxisProducts& m, Equal equal, float tolerance) {
  const bool ab = equal == Equal::AB || equal == Equal::ABC;
  const bool bc = equal == Equal::BC || equal == Equal::ABC;
  return (!ab || Near(m.aa, m.bb, tolerance)) && (!bc || Near(m.bb, m.cc, tolerance));
}

bool Fits(const Row& row, const AxisProducts& m, int type, float tolerance) {
  if (row.type != type || !HasEqualAxes(m, row.equal, tolerance)) return false;
  const float d = std::abs(m.bc), e = std::abs(m.ac), f = std::abs(m.ab);
  const auto is = [&](float size, Tie tie) {
    const float due[] = {0, m.aa / 2, m.aa / 3, m.aa / 4, m.bb / 2, d, 2 * d, e, 2 * e};
    return tie == Own || Near(size, due[tie], tolerance);
  };
  return is(d, row.d) && is(e, row.e) && is(f, row.f) &&
         (row.relation == None || Near(d + e + f, (m.aa + m.bb) / 2, tolerance)) &&
         (row.relation != Both || Near(2 * d + f, m.bb, tolerance));
}

template <FormatText F>
std::string Named(std::string_view letter) {
  return WriteRecord<F>(letter);
}

constexpr AxesMatrix kAsTheyAre{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
constexpr AxesMatrix kRoundAbout{{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}};
constexpr AxesMatrix kRoundAboutAcute{{{0, -1, 0}, {0, 0, -1}, {1, 0, 0}}};
constexpr AxesMatrix kBackwards{{{0, 0, -1}, {0, -1, 0}, {-1, 0, 0}}};

struct LatticeClass {
  std::string (*line)(std::string_view letter);
  std::string_view letter;
  AxesMatrix order, orderacute;  // the second for cells of type 1
};

constexpr auto kCubic = Named<"707('      CUBIC ',A)">;
constexpr auto kTetragonal = Named<"706('      TETRAGONAL ',A)">;
constexpr auto kRhombohedral = Named<"705('      RHOMBOHEDRAL ',A)">;
constexpr auto kHexagonal = Named<"704('      HEXAGONAL ',A)">;
constexpr auto kOrthorhombic = Named<"703('      ORTHORHOMBIC ',A)">;
constexpr auto kMonoclinic = Named<"702('      MONOCLINIC ',A)">;
constexpr auto kTriclinic = Named<"701('      TRICLINIC ',A)">;

constexpr LatticeClass kClasses[] = {
    {kCubic, "F", kAsTheyAre, kAsTheyAre},
    {kRhombohedral, "R", kAsTheyAre, kAsTheyAre},
    {kCubic, "P", kAsTheyAre, kAsTheyAre},
    {kCubic, "I", kAsTheyAre, kAsTheyAre},
    {kTetragonal, "I", kAsTheyAre, kAsTheyAre},
    {kOrthorhombic, "I", kRoundAbout, kRoundAbout},
    {kMonoclinic, "C", kAsTheyAre, kAsTheyAre},
    {kTetragonal, "P", kAsTheyAre, kAsTheyAre},
    {kHexagonal, "P", kAsTheyAre, kAsTheyAre},
    {kOrthorhombic, "C", kAsTheyAre, kAsTheyAre},
    {kTriclinic, "P", kRoundAbout, kRoundAboutAcute},
    {kOrthorhombic, "F", kRoundAbout, kRoundAbout},
    {kOrthorhombic, "P", kRoundAbout, kRoundAbout},
    {kMonoclinic, "P", kBackwards, kBackwards},
};

const LatticeClass& Class(int latticeclass) { return kClasses[latticeclass - 1]; }

}  // namespace

const ReducedForm& FormOf(const AxisProducts& m, int type, float tolerance) {
  // Forms 31 and 44 take in all that is left of their types.
  return std::ranges::find_if(kRows, [&](const Row& r) { return Fits(r, m, type, tolerance); })
      ->form;
}

std::string ClassLine(int latticeclass) {
  return Class(latticeclass).line(Class(latticeclass).letter);
}

const AxesMatrix& AxesOrder(int latticeclass, int type) {
  return type == 1 ? Class(latticeclass).orderacute : Class(latticeclass).order;
}
