#include "index/treor/hits.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kMargin = 60;       // above the last line, to which lines are calculated
constexpr int kFarOut = 1000000;  // what is calculated with such a constant hits nothing
constexpr int kLeastFirstLines = 11;

int CodeOf(float constant) { return std::clamp(LineCode(constant), -kFarOut, kFarOut); }

// Constants less than this reach lines without number.
constexpr float kLeastCoded = 0.5f;
constexpr float kMostSkew = 10000;  // steps along one axis for one along another

// Calls use with a x x + linear x + constant, from x on, as long as that rises to top.
template <class Use>
void WalkUp(long x, long a, long linear, long constant, long top, Use use) {
  for (;; ++x) {
    const long value = (a * x + linear) * x + constant;
    if (value > top) return;
    use(value);
  }
}

// The same for all x of both signs.
template <class Use>
void Walk(long a, long linear, long constant, long top, Use use) {
  const float lowest = -std::floor(static_cast<float>(linear) / (2.0f * static_cast<float>(a)));
  const long begin = static_cast<long>(lowest);
  WalkUp(begin, a, linear, constant, top, use);
  WalkUp(1 - begin, a, -linear, constant, top, use);
}

}  // namespace

HitCounter::HitCounter(const TreorSearch& search)
    : allowed_(search.options.use - search.options.iq) {
  const int use = std::clamp(search.options.use, 0, search.Lines());
  for (int i = 1; i <= use; ++i) codes_.push_back(search.Line(i).code);
  marked_.resize(codes_.size());
  const int last = codes_.empty() ? 0 : codes_.back() + kMargin;
  hits_.resize(static_cast<std::size_t>(last) + 1);
  for (int code = 0; code <= last; ++code) {
    const SearchLimits& limits = search.limits;
    const int tolerance =
        std::clamp(code < limits.ssqtl ? limits.d1 : limits.d2, -kFarOut, kFarOut);
    const auto place = [&](auto bound) {
      return static_cast<std::uint8_t>(bound - codes_.begin());
    };
    hits_[static_cast<std::size_t>(code)] = {
        place(std::ranges::lower_bound(codes_, code - tolerance)),
        place(std::ranges::upper_bound(codes_, code + tolerance))};
  }
}

void HitCounter::Begin(int lines) {
  lines_ = lines;
  top_ = codes_[static_cast<std::size_t>(lines - 1)] + kMargin;
  hit_ = 0;
  std::ranges::fill(marked_, 0);
}

inline void HitCounter::Mark(long code) {
  ++calculated_;
  const HitLines hits = hits_[static_cast<std::size_t>(std::max(code, 0L))];
  for (int i = hits.first; i < hits.end && i < lines_; ++i) {
    hit_ += 1 - marked_[static_cast<std::size_t>(i)];
    marked_[static_cast<std::size_t>(i)] = 1;
  }
}

// All systems but the oblique ones; of the cross constants hexagonal cells have e.
void HitCounter::CountUpright(const Coded& m) {
  for (long l = 0; m.c * l * l <= top_; ++l)
    WalkUp(0, m.b, 0, m.c * l * l, top_, [&, k = 0](long layer) mutable {
      WalkUp(0, m.a, m.e * k++, layer, top_, [&](long code) { Mark(code); });
    });
}

void HitCounter::CountMonoclinic(const Coded& m) {
  const auto rows = [&](long zone) {
    WalkUp(0, m.b, 0, zone, top_, [&](long code) { Mark(code); });
  };
  const float a = static_cast<float>(m.a), d = static_cast<float>(m.d);
  const float least = static_cast<float>(m.c) - d * d / (4 * a);  // of a layer, over l l
  if (!(least >= kLeastCoded)) return;
  WalkUp(0, m.a, 0, 0, top_, rows);
  for (long l = 1; least * static_cast<float>(l * l) <= static_cast<float>(top_); ++l)
    Walk(m.a, m.d * l, m.c * l * l, top_, rows);
}

void HitCounter::CountTriclinic(const Coded& m) {
  const auto [a, b, c, d, e, f] =
      std::array{static_cast<float>(m.a), static_cast<float>(m.b), static_cast<float>(m.c),
                 static_cast<float>(m.d), static_cast<float>(m.e), static_cast<float>(m.f)};
  // What is left of the form where h, and then k as well, make it least.
  const float bb = b - e * e / (4 * a), cc = c - d * d / (4 * a), ff = f - d * e / (2 * a);
  const float least = cc - ff * ff / (4 * bb);
  if (!(bb >= kLeastCoded && least >= kLeastCoded)) return;
  for (long l = 0;; ++l) {
    const float ll = static_cast<float>(l), rest = static_cast<float>(top_) - least * ll * ll;
    const float middle = -ff * ll / (2 * bb);
    if (rest < 0 || std::abs(middle) > kMostSkew) return;
    const float width = std::sqrt(rest / bb) + 0.01f;
    const long klast = static_cast<long>(std::floor(middle + width));
    for (long k = l == 0 ? 0 : static_cast<long>(std::ceil(middle - width)); k <= klast; ++k)
      Walk(m.a, m.d * l + m.e * k, (m.b * k + m.f * l) * k + m.c * l * l, top_,
           [&](long code) { Mark(code); });
  }
}

int HitCounter::Count(CrystalSystem system, const Constants& s) {
  const Coded m{CodeOf(s.a), CodeOf(s.b), CodeOf(s.c), CodeOf(s.d), CodeOf(s.e), CodeOf(s.f)};
  const int lines = static_cast<int>(codes_.size());
  if (m.a < 1 || m.b < 1 || m.c < 1 || lines == 0) return 0;
  if (system == CrystalSystem::Triclinic) {
    const int first = 2 * lines / 3 + 3;
    if (first >= kLeastFirstLines && first < lines) {
      Begin(first);
      CountTriclinic(m);
      if (first - hit_ > allowed_) return 0;
    }
    Begin(lines);
    CountTriclinic(m);
  } else {
    Begin(lines);
    if (system == CrystalSystem::Monoclinic)
      CountMonoclinic(m);
    else
      CountUpright(m);
  }
  return hit_;
}
