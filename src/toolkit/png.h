// The bytes of a .png file.
#pragma once

#include <cstdint>
#include <span>
#include <string>

// Not compressed, for want of a library. Three bytes a pixel from the top left, red, green and
// blue; or with `colours`, as those of a pen, one byte that counts them from 0, and the first of
// them is seen through.
std::string PngBytes(int width, int height, std::span<const std::uint8_t> pixels,
                     std::span<const std::uint32_t> colours = {});
