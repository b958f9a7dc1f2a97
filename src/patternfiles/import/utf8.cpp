// Texts of other encodings.
#include "patternfiles/import/utf8.h"

#include <cstdint>

namespace {

void AppendUtf8(std::string& text, std::uint32_t code) {
  const auto tail = [&](int shift) { text += static_cast<char>(0x80 | (code >> shift & 0x3F)); };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0 | code >> 6);
    tail(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0 | code >> 12);
    tail(6), tail(0);
  } else {
    text += static_cast<char>(0xF0 | code >> 18);
    tail(12), tail(6), tail(0);
  }
}

// Half a surrogate pair comes out as a question mark.
std::string FromUtf16(std::string_view bytes, bool bigendian) {
  const auto unit = [&](std::size_t i) -> std::uint32_t {
    const auto first = static_cast<unsigned char>(bytes[i]);
    const auto second = static_cast<unsigned char>(bytes[i + 1]);
    return bigendian ? first << 8 | second : second << 8 | first;
  };
  std::string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    std::uint32_t code = unit(i);
    const bool high = code >= 0xD800 && code < 0xDC00;
    if (high && i + 3 < bytes.size() && unit(i + 2) >> 10 == 0xDC00 >> 10) {
      i += 2;
      code = 0x10000 + ((code - 0xD800) << 10) + (unit(i) - 0xDC00);
    } else if (code >= 0xD800 && code < 0xE000) {
      code = '?';
    }
    AppendUtf8(text, code);
  }
  return text;
}

}  // namespace

std::string AsUtf8(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE")) return FromUtf16(bytes.substr(2), false);
  if (bytes.starts_with("\xFE\xFF")) return FromUtf16(bytes.substr(2), true);
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  return std::string(bytes);
}
