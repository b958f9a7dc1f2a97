// Pictures of a display list as files made of pixels.
#include "toolkit/replay/image.h"

#include <algorithm>
#include <iterator>

#include "toolkit/png.h"
#include "toolkit/vectorpath.h"

namespace replay {
namespace {

void Append(std::string& out, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) out += static_cast<char>(value >> (8 * i) & 255);
}

}  // namespace

std::string BmpFile(const Image& image) {
  constexpr int headers = 54, density = 3780;  // bytes; pixels a metre, 96 an inch
  const int row = (image.width * 3 + 3) / 4 * 4, size = row * image.height;
  std::string out = "BM";
  Append(out, headers + size, 4);
  Append(out, 0, 4);
  Append(out, headers, 4);
  Append(out, 40, 4);
  Append(out, image.width, 4);
  Append(out, image.height, 4);
  Append(out, 1, 2);
  Append(out, 24, 2);
  Append(out, 0, 4);
  Append(out, size, 4);
  for (int value : {density, density, 0, 0}) Append(out, value, 4);
  for (int y = image.height - 1; y >= 0; --y) {
    const std::uint8_t* pixel = &image.rgb[std::size_t(y) * image.width * 3];
    for (int x = 0; x < image.width; ++x, pixel += 3)
      for (int c : {2, 1, 0}) out += static_cast<char>(pixel[c]);
    out.append(row - image.width * 3, '\0');
  }
  return out;
}

std::string PngFile(const Image& image) { return PngBytes(image.width, image.height, image.rgb); }

bool WriteImage(const DisplayList& list, const std::string& path, const std::string& format,
                int width, int height) {
  static constexpr struct {
    const char* format;
    std::string (*bytes)(const Image& image);
  } kWriters[] = {{".bmp", BmpFile}, {".jpg", JpegFile}, {".jpeg", JpegFile}, {".png", PngFile}};
  const auto writer =
      std::ranges::find_if(kWriters, [&](const auto& known) { return format == known.format; });
  if (width < 1 || height < 1 || writer == std::end(kWriters)) return false;
  const std::string bytes = writer->bytes(Rasterise(list, width, height));
  return !bytes.empty() && WriteWholeFile(path, bytes);
}

}  // namespace replay
