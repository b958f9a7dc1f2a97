// Fixed tables that count from 1, as the domain does.
#pragma once

#include <array>
#include <cassert>
#include <concepts>
#include <cstddef>
#include <span>
#include <type_traits>

template <class T>
concept TableIndex = std::integral<T> || std::is_enum_v<T>;

// Table<float, 3, 9, 20000> t; t(axis, slot, point) with each index from 1 to its extent.
// The last index runs fastest, so row(axis, slot) is one contiguous run of points.
// Indices are checked in debug builds and free of charge in release builds.
template <class T, int... N>
struct Table {
  static constexpr std::size_t kRank = sizeof...(N);
  static constexpr std::array<int, kRank> kExtent{N...};
  static constexpr std::size_t kSize = (static_cast<std::size_t>(N) * ...);

  std::array<T, kSize> cells{};

  template <TableIndex... I>
  requires(sizeof...(I) == kRank) T& operator()(I... index) { return cells[Place(index...)]; }
  template <TableIndex... I>
  requires(sizeof...(I) == kRank) const T& operator()(I... index) const {
    return cells[Place(index...)];
  }

  // The run of the last index for fixed leading indices; element [0] is index 1.
  template <TableIndex... I>
  requires(sizeof...(I) + 1 == kRank) std::span<T> row(I... index) {
    return {&cells[Place(index..., 1)], static_cast<std::size_t>(kExtent[kRank - 1])};
  }

  void fill(const T& value) { cells.fill(value); }

  bool operator==(const Table&) const = default;

 private:
  template <class... I>
  static std::size_t Place(I... index) {
    const std::array<int, sizeof...(I)> at{static_cast<int>(index)...};
    std::size_t place = 0;
    for (std::size_t k = 0; k < sizeof...(I); ++k) {
      assert(at[k] >= 1 && at[k] <= kExtent[k]);
      place = place * static_cast<std::size_t>(kExtent[k]) + static_cast<std::size_t>(at[k] - 1);
    }
    return place;
  }
};
