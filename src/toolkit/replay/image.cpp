// Pictures of a display list as .bmp and .jpg files.
#include "toolkit/replay/image.h"

#include <filesystem>

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

bool WriteImage(const DisplayList& list, const std::string& path, int width, int height) {
  std::string extension = std::filesystem::path(path).extension().string();
  for (char& c : extension)
    if (c >= 'A' && c <= 'Z') c += 'a' - 'A';
  if (width < 1 || height < 1) return false;
  if (extension == ".bmp") return WriteWholeFile(path, BmpFile(Rasterise(list, width, height)));
  if (extension != ".jpg" && extension != ".jpeg") return false;
  const std::string jpeg = JpegFile(Rasterise(list, width, height));
  return !jpeg.empty() && WriteWholeFile(path, jpeg);
}

}  // namespace replay
