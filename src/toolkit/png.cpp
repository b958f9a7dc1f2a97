// The bytes of a .png file.
#include "toolkit/png.h"

#include <array>
#include <string_view>

namespace {

void Append(std::string& out, std::uint32_t value) {
  for (int shift : {24, 16, 8, 0}) out += static_cast<char>(value >> shift & 255);
}

// Remainders of all bytes by the polynomial of CRC-32, whose bits run backwards.
constexpr auto kRemainders = [] {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
    std::uint32_t rest = byte;
    for (int bit = 0; bit < 8; ++bit) rest = rest & 1 ? 0xedb88320 ^ rest >> 1 : rest >> 1;
    table[byte] = rest;
  }
  return table;
}();

std::uint32_t Crc32(std::string_view bytes) {
  std::uint32_t rest = 0xffffffff;
  for (const unsigned char byte : bytes) rest = kRemainders[(rest ^ byte) & 255] ^ rest >> 8;
  return ~rest;
}

std::uint32_t Adler32(std::string_view bytes) {
  constexpr std::uint32_t prime = 65521;
  std::uint32_t a = 1, b = 0;
  for (const unsigned char byte : bytes) {
    a = (a + byte) % prime;
    b = (b + a) % prime;
  }
  return b << 16 | a;
}

void AppendChunk(std::string& out, std::string_view name, std::string_view data) {
  const std::string checked = std::string(name) += data;
  Append(out, static_cast<std::uint32_t>(data.size()));
  out += checked;
  Append(out, Crc32(checked));
}

// A zlib stream of blocks that are stored as they are.
std::string Stored(std::string_view bytes) {
  constexpr std::size_t longest = 65535;
  std::string out = "\x78\x01";
  for (std::size_t at = 0; at < bytes.size(); at += longest) {
    const std::string_view block = bytes.substr(at, longest);
    const auto length = static_cast<std::uint32_t>(block.size());
    out += static_cast<char>(at + longest >= bytes.size());
    for (const std::uint32_t value : {length, ~length}) {
      out += static_cast<char>(value & 255);
      out += static_cast<char>(value >> 8 & 255);
    }
    out += block;
  }
  Append(out, Adler32(bytes));
  return out;
}

}  // namespace

std::string PngBytes(int width, int height, std::span<const std::uint8_t> pixels,
                     std::span<const std::uint32_t> colours) {
  constexpr char kPlain = 2, kPalette = 3;
  std::string header, table, rows, out = "\x89PNG\r\n\x1a\n";
  Append(header, static_cast<std::uint32_t>(width));
  Append(header, static_cast<std::uint32_t>(height));
  // Bits, kind of colours, and the only methods there are.
  header += {8, colours.empty() ? kPlain : kPalette, 0, 0, 0};
  for (const std::uint32_t colour : colours)
    for (const int shift : {0, 8, 16}) table += static_cast<char>(colour >> shift & 255);
  const std::size_t row = std::size_t(width) * (colours.empty() ? 3 : 1);
  for (int y = 0; y < height; ++y) {
    rows += '\0';  // not filtered
    rows.append(reinterpret_cast<const char*>(&pixels[y * row]), row);
  }
  AppendChunk(out, "IHDR", header);
  if (!table.empty()) {
    AppendChunk(out, "PLTE", table);
    AppendChunk(out, "tRNS", std::string(1, '\0'));
  }
  AppendChunk(out, "IDAT", Stored(rows));
  AppendChunk(out, "IEND", "");
  return out;
}
