#include "index/treor/trials.h"

#include <algorithm>
#include <cmath>

#include "index/treor/candidates.h"
#include "index/treor/lines.h"
#include "index/treor/listing.h"
#include "index/treor/oblique.h"  // for DeterminantOf

namespace {

constexpr int kCellsOfLimit = 25;  // after so many the volume limit moves
// Between two questions whether to go on.
constexpr long kMostBetween = 100000;
constexpr int kMostTimes = 1000;

// What becomes less as the volume grows: lambda6 / V^2, but for hexagonal cells, whose limits are
// wider by a factor of their own.
float ProductOf(CrystalSystem system, const Constants& s) {
  switch (system) {
    case CrystalSystem::Hexagonal:
      return s.a * s.b * s.c * 9 / 16;
    case CrystalSystem::Triclinic:
      return DeterminantOf(s);
    default:
      return s.b * (s.a * s.c - s.d * s.d / 4);
  }
}

bool MovesLimit(Stage stage, const TreorOptions& options) {
  return stage == Stage::Triclinic || (stage >= Stage::Monoclinic020 && options.stepped);
}

}  // namespace

Trials::Trials(TreorSearch& search, Stage stage, CrystalSystem system)
    : search_(search),
      stage_(stage),
      system_(system),
      moves_(MovesLimit(stage, search.options)),
      limits_(search.limits),
      counter_(search) {}

bool Trials::AllowsProduct(float product) const {
  if (!(product >= limits_.testlimit)) return false;
  return limits_.density.empty() || std::ranges::any_of(limits_.density, [&](const auto& window) {
           return product >= window[0] && product <= window[1];
         });
}

int Trials::Test(const Constants& constants) {
  const float product = ProductOf(system_, constants);
  if (!AllowsProduct(product)) return 0;
  const int count = counter_.Count(system_, constants);
  if (count < search_.options.iq) return 0;
  const float volume = std::sqrt(limits_.lambda6 / product);
  const TreorCandidate candidate{system_, constants, product, volume, count};
  if (search_.options.list != 0) ListAnyTrial(search_.listing, candidate);
  stored_ = StoreCandidate(search_.candidates, candidate);
  if (moves_) MoveLimit(volume);
  return count;
}

void Trials::MoveLimit(float volume) {
  foundvolume_ += volume;
  if (++found_ < kCellsOfLimit) return;
  SetVolume(limits_, (limits_.stagevol + foundvolume_ / kCellsOfLimit) / 2);
  ListVolumeLimit(search_.listing, stage_, limits_.stagevol);
  found_ = 0;
  foundvolume_ = 0;
}

bool Trials::GoOn() {
  if (++calls_ < kMostTimes && counter_.Calculated() - asked_ < kMostBetween)
    return !search_.run.stopped;
  calls_ = 0;
  asked_ = counter_.Calculated();
  return search_.GoOn();
}
