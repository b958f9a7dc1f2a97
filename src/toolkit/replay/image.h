// Pictures of a display list made of pixels.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "toolkit/displaylist.h"

namespace replay {

struct Image {
  int width = 0, height = 0;
  std::vector<std::uint8_t> rgb;  // three bytes a pixel, from the top left
};

// The list with smooth lines on white. Texts other than strokes are left out: no font is at hand.
Image Rasterise(const DisplayList& list, int width, int height);

// The bytes of a .bmp file of 24 bits, of a .jpg file, and of a .png file of 24 bits; none of a
// picture too large for that.
std::string BmpFile(const Image& image);
std::string JpegFile(const Image& image);
std::string PngFile(const Image& image);

// The list as a picture in a format, which is an extension; false if that cannot be written.
bool WriteImage(const DisplayList& list, const std::string& path, const std::string& format,
                int width, int height);

}  // namespace replay
