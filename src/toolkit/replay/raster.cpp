// Rasters and smooth lines of a display list on a field of pixels.
#include <algorithm>
#include <cmath>

#include "toolkit/common.h"
#include "toolkit/raster.h"
#include "toolkit/replay/image.h"
#include "toolkit/vectorpath.h"

namespace replay {
namespace {

struct Place {
  float x, y;
};

// How far each pixel is covered by one stroke. Where its segments overlap the larger value counts,
// so that a stroke is as dark at its bends as between them.
class Cover {
 public:
  Cover(int width, int height)
      : width_(width), height_(height), cover_(std::size_t(width) * height) {}

  void Segment(Place a, Place b, float radius);
  // Puts the covered pixels on the image in a colour, and starts anew.
  void Paint(Image& image, std::uint32_t colour);

 private:
  // The pixels of row y between two places along it, by their distance from the segment.
  void Row(int y, float x1, float x2, Place a, Place b, float reach);

  int width_, height_;
  std::vector<std::uint8_t> cover_;
  int left_ = 1 << 30, right_ = -1, top_ = 1 << 30, bottom_ = -1;  // what may be covered
};

void Cover::Segment(Place a, Place b, float radius) {
  if (a.y > b.y) std::swap(a, b);
  const float reach = radius + 0.5f, dy = b.y - a.y;
  const int first = std::max(0, static_cast<int>(std::floor(a.y - reach)));
  const int last = std::min(height_ - 1, static_cast<int>(std::ceil(b.y + reach)));
  const auto along = [&](float y) {
    return a.x + std::clamp((y - a.y) / dy, 0.0f, 1.0f) * (b.x - a.x);
  };
  for (int y = first; y <= last; ++y) {
    // Only the part of the segment that reaches the row bounds its columns.
    const float middle = y + 0.5f;
    const float x1 = dy > 0 ? along(middle - reach) : a.x;
    const float x2 = dy > 0 ? along(middle + reach) : b.x;
    Row(y, std::min(x1, x2), std::max(x1, x2), a, b, reach);
  }
}

void Cover::Row(int y, float x1, float x2, Place a, Place b, float reach) {
  const int begin = std::max(0, static_cast<int>(std::floor(x1 - reach)));
  const int end = std::min(width_ - 1, static_cast<int>(std::ceil(x2 + reach)));
  if (begin > end) return;
  const float dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
  for (int x = begin; x <= end; ++x) {
    const float px = x + 0.5f - a.x, py = y + 0.5f - a.y;
    const float t = square > 0 ? std::clamp((px * dx + py * dy) / square, 0.0f, 1.0f) : 0.0f;
    const float distance = std::hypot(px - t * dx, py - t * dy);
    const float part = std::clamp(reach - distance, 0.0f, 1.0f);
    std::uint8_t& cover = cover_[std::size_t(y) * width_ + x];
    cover = std::max(cover, static_cast<std::uint8_t>(part * 255 + 0.5f));
  }
  left_ = std::min(left_, begin);
  right_ = std::max(right_, end);
  top_ = std::min(top_, y);
  bottom_ = std::max(bottom_, y);
}

void Cover::Paint(Image& image, std::uint32_t colour) {
  for (int y = top_; y <= bottom_; ++y)
    for (int x = left_; x <= right_; ++x) {
      std::uint8_t& cover = cover_[std::size_t(y) * width_ + x];
      if (cover == 0) continue;
      std::uint8_t* pixel = &image.rgb[(std::size_t(y) * width_ + x) * 3];
      for (int c = 0; c < 3; ++c) {
        const int wanted = colour >> (8 * c) & 255;
        pixel[c] = static_cast<std::uint8_t>((pixel[c] * (255 - cover) + wanted * cover) / 255);
      }
      cover = 0;
    }
  left_ = top_ = 1 << 30;
  right_ = bottom_ = -1;
}

// Covers a segment in a dash pattern; `walked` is the length of the stroke so far.
void DashedSegment(Cover& cover, Place a, Place b, float radius, std::span<const float> dashes,
                   float& walked) {
  const float length = std::hypot(b.x - a.x, b.y - a.y);
  float period = 0;
  for (float dash : dashes) period += dash;
  const auto at = [&](float s) {
    return Place{a.x + (b.x - a.x) * s / length, a.y + (b.y - a.y) * s / length};
  };
  float begin = -std::fmod(walked, period);
  for (std::size_t i = 0; begin < length && length > 0; i = (i + 1) % dashes.size()) {
    const float end = begin + dashes[i];
    if (i % 2 == 0 && end > 0)
      cover.Segment(at(std::max(begin, 0.0f)), at(std::min(end, length)), radius);
    begin = end;
  }
  walked += length;
}

void PutLevels(Image& image, const PixelPicture& pixels, const LevelColours& colours) {
  const LevelPicture& picture = pixels.picture;
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x) {
      const std::uint8_t level = picture.levels[std::size_t(y) * picture.width + x];
      if (level == 0) continue;
      std::uint8_t* pixel =
          &image.rgb[(std::size_t(pixels.top + y) * image.width + pixels.left + x) * 3];
      for (int c = 0; c < 3; ++c)
        pixel[c] = static_cast<std::uint8_t>(colours[level] >> (8 * c) & 255);
    }
}

}  // namespace

Image Rasterise(const DisplayList& list, int width, int height) {
  Image image{width, height, std::vector<std::uint8_t>(std::size_t(width) * height * 3, 255)};
  const PageMap map(list, static_cast<float>(width), static_cast<float>(height), false);
  const auto place = [&](const DrawPoint& p) {
    constexpr double furthest = 1e5;  // keeps the whole numbers of pixels in range
    return Place{static_cast<float>(std::clamp(map.X(p.x), -furthest, furthest)),
                 static_cast<float>(std::clamp(map.Y(p.y), -furthest, furthest))};
  };
  Cover cover(width, height);
  const auto paintraster = [&](const Raster& raster) {
    const DrawRect& cells = raster.place;
    const PlaceRect on{map.X(cells.x1), map.Y(cells.y2), map.X(cells.x2), map.Y(cells.y1)};
    PutLevels(image, PixelsInWindow(raster, on, width, height), raster.colours);
  };
  const auto paintstroke = [&](const Stroke& stroke) {
    const auto dashes = DashPattern(stroke.pen.linetype);
    const float radius = std::max(stroke.pen.width, 1.0f) / 2;
    float walked = 0;
    for (std::size_t i = stroke.first + 1; i < stroke.first + stroke.count; ++i) {
      const Place a = place(list.points[i - 1]), b = place(list.points[i]);
      if (dashes.empty())
        cover.Segment(a, b, radius);
      else
        DashedSegment(cover, a, b, radius, dashes, walked);
    }
    cover.Paint(image, stroke.pen.colour);
  };
  ForEachDrawn(list, paintraster, paintstroke);
  return image;
}

}  // namespace replay
