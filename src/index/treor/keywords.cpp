#include "index/treor/keywords.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "workspace/record.h"
#include "workspace/text.h"

namespace {

constexpr std::string_view kEnd = "END*";
constexpr int kCardWidth = 80;
constexpr std::size_t kLongestKey = 10, kLongestValue = 15, kLongestEntry = 26;
constexpr int kMostIndex = 99;
constexpr float kMostInteger = 999999;

struct LimitKeys {
  std::array<std::string_view, 4> keys;  // h, k, l and their sum
  IndexLimits& (*limits)(TreorOptions&);
};

IndexLimits& Cubic(TreorOptions& o) { return o.cubic; }
IndexLimits& Tetragonal(TreorOptions& o) { return o.tetragonal; }
template <int n>
IndexLimits& Orthorhombic(TreorOptions& o) {
  return o.orthorhombic(n);
}
template <int n>
IndexLimits& Monoclinic(TreorOptions& o) {
  return o.monoclinic(n);
}

constexpr LimitKeys kLimitKeys[] = {
    {{"OH1", "OK1", "OL1", "OS1"}, Orthorhombic<1>},
    {{"OH2", "OK2", "OL2", "OS2"}, Orthorhombic<2>},
    {{"OH3", "OK3", "OL3", "OS3"}, Orthorhombic<3>},
    {{"KH", "KK", "KL", "KS"}, Cubic},
    {{"THH", "THK", "THL", "THS"}, Tetragonal},
    {{"MH1", "MK1", "ML1", "MS1"}, Monoclinic<1>},
    {{"MH2", "MK2", "ML2", "MS2"}, Monoclinic<2>},
    {{"MH3", "MK3", "ML3", "MS3"}, Monoclinic<3>},
    {{"MH4", "MK4", "ML4", "MS4"}, Monoclinic<4>},
};
constexpr int IndexLimits::*kLimits[] = {&IndexLimits::h, &IndexLimits::k, &IndexLimits::l,
                                         &IndexLimits::sum};

template <class T>
struct Key {
  std::string_view key;
  T TreorOptions::*field;
};

using O = TreorOptions;
constexpr Key<int> kIntegerKeys[] = {
    {"MERIT", &O::merit},     {"NIX", &O::nix},         {"LIST", &O::list},
    {"OMIT", &O::omit},       {"SELECT", &O::select},   {"USE", &O::use},
    {"IQ", &O::iq},           {"MONO", &O::mono},       {"CHOICE", &O::choice},
    {"CONTINUE", &O::resume}, {"MONOGAM", &O::monogam}, {"MONOSET", &O::monoset},
    {"MRESONE", &O::mresone}, {"MRESTWO", &O::mrestwo}, {"VCRIT", &O::vcrit},
    {"IDIV", &O::idiv},       {"SHORT", &O::shorttest}, {"TRIC", &O::tric},
};
constexpr Key<float> kRealKeys[] = {
    {"D1", &O::d1},     {"SSQTL", &O::ssqtl}, {"D2", &O::d2},
    {"CEM", &O::cem},   {"VOL", &O::vol},     {"WAVE", &O::wave},
    {"DENS", &O::dens}, {"EDENS", &O::edens}, {"MOLW", &O::molw},
};

// Cut to an integer, within what integers are good for.
int Integer(float value) {
  return static_cast<int>(std::clamp(value, -kMostInteger, kMostInteger));
}

template <class T, std::size_t N>
T* FieldOf(const Key<T> (&keys)[N], TreorOptions& options, std::string_view key) {
  const auto row = std::ranges::find(keys, key, &Key<T>::key);
  return row == std::end(keys) ? nullptr : &(options.*row->field);
}

int* LimitOf(TreorOptions& options, std::string_view key) {
  for (const LimitKeys& row : kLimitKeys) {
    const auto at = std::ranges::find(row.keys, key);
    if (at != row.keys.end()) return &(row.limits(options).*kLimits[at - row.keys.begin()]);
  }
  return nullptr;
}

// False if there is no such key.
bool Set(TreorOptions& options, std::string_view key, float value) {
  if (int* const limit = LimitOf(options, key))
    *limit = std::clamp(Integer(value), 0, kMostIndex);
  else if (int* const integer = FieldOf(kIntegerKeys, options, key))
    *integer = Integer(value);
  else if (float* const real = FieldOf(kRealKeys, options, key))
    *real = value;
  else
    return false;
  return true;
}

// KEY=value
bool ReadEntry(std::string_view entry, TreorOptions& options) {
  const std::size_t equals = entry.find('=');
  if (equals == std::string_view::npos) return false;
  const std::string_view key = entry.substr(0, equals), text = entry.substr(equals + 1);
  float value = 0;
  return key.size() <= kLongestKey && !text.empty() && text.size() <= kLongestValue &&
         ReadRecord<"(f15.0)">(text, value) && Set(options, key, value);
}

}  // namespace

bool ReadKeywords(LineReader& input, TreorOptions& options) {
  std::string entry, card;  // an entry may go on on the next card
  while (input.Read(card, kCardWidth)) {
    for (const char c : SqueezeBlanks(card)) {
      if (c != ',') {
        entry += c;
        if (entry == kEnd) return true;
        if (entry.size() > kLongestEntry) return false;
      } else {
        if (!ReadEntry(entry, options)) return false;
        entry.clear();
      }
    }
  }
  return false;
}
