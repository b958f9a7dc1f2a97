#include "index/treor/cell.h"

#include <cmath>

#include "workspace/workspace.h"  // for RadToDeg

namespace {

constexpr float kPi = 3.1415927f;
constexpr float kLeastCosine = 0.0005f;  // of beta*; below it beta is a right angle

UnitCell RightAngled(const Constants& s, float wave) {
  const auto edge = [&](float constant) { return wave / (2.0f * std::sqrt(constant)); };
  return {edge(s.a), edge(s.b), edge(s.c), 90, 90, 90};
}

UnitCell Hexagonal(const Constants& s, float wave) {
  const float a = wave / std::sqrt(3.0f * s.a);
  return {a, a, wave / (2.0f * std::sqrt(s.c)), 90, 90, 120};
}

UnitCell Monoclinic(const Constants& s, float wave) {
  const float cosine = s.d / (2.0f * std::sqrt(s.a * s.c));
  const float sine = std::sqrt(1.0f - cosine * cosine);
  UnitCell cell = RightAngled(s, wave);
  cell(1) /= sine;
  cell(3) /= sine;
  if (cosine >= kLeastCosine) cell(5) = (kPi - std::atan(sine / cosine)) * RadToDeg;
  return cell;
}

float Sine(float cosine) { return std::sqrt(1.0f - cosine * cosine); }

UnitCell Triclinic(const Constants& s, float wave) {
  const float unit = 4.0f / (wave * wave);
  const float a = std::sqrt(unit * s.a), b = std::sqrt(unit * s.b), c = std::sqrt(unit * s.c);
  const float ca = unit * s.f / (2.0f * b * c), cb = unit * s.d / (2.0f * a * c),
              cg = unit * s.e / (2.0f * a * b);
  const float sa = Sine(ca), sb = Sine(cb), sg = Sine(cg);
  const float root = std::sqrt(1.0f - ca * ca - cb * cb - cg * cg + 2.0f * ca * cb * cg);
  const auto angle = [](float cosine) { return std::acos(cosine) * RadToDeg; };
  return {sa / (a * root),
          sb / (b * root),
          sg / (c * root),
          angle((cb * cg - ca) / (sb * sg)),
          angle((ca * cg - cb) / (sa * sg)),
          angle((ca * cb - cg) / (sa * sb))};
}

UnitCell FormalCell(CrystalSystem system, const Constants& constants, float wave) {
  switch (system) {
    case CrystalSystem::Hexagonal:
      return Hexagonal(constants, wave);
    case CrystalSystem::Monoclinic:
      return Monoclinic(constants, wave);
    case CrystalSystem::Triclinic:
      return Triclinic(constants, wave);
    default:
      return RightAngled(constants, wave);
  }
}

}  // namespace

std::optional<CellAndVolume> CellOf(CrystalSystem system, const Constants& constants, float wave) {
  if (!(constants.a > 0 && constants.b > 0 && constants.c > 0)) return std::nullopt;
  // What is no cell has a root of a negative number, and with it no volume, on its way.
  CellAndVolume found;
  found.cell = FormalCell(system, constants, wave);
  found.volume = CellVolume(found.cell);
  if (!(found.volume > 0) || !std::isfinite(found.volume)) return std::nullopt;
  return found;
}
