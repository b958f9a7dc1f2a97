// The bytes of a baseline JPEG file: three full-size components that share one quantisation table
// and the standard Huffman tables of the brightness.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "toolkit/replay/image.h"

namespace replay {
namespace {

constexpr int Quality = 92;

constexpr std::uint8_t ZigZag[64] = {
    0,  1,  8,  16, 9,  2,  3,  10, 17, 24, 32, 25, 18, 11, 4,  5,  12, 19, 26, 33, 40, 48,
    41, 34, 27, 20, 13, 6,  7,  14, 21, 28, 35, 42, 49, 56, 57, 50, 43, 36, 29, 22, 15, 23,
    30, 37, 44, 51, 58, 59, 52, 45, 38, 31, 39, 46, 53, 60, 61, 54, 47, 55, 62, 63};

constexpr std::uint8_t BaseSteps[64] = {
    16, 11, 10, 16, 24,  40,  51,  61,  12, 12, 14, 19, 26,  58,  60,  55,
    14, 13, 16, 24, 40,  57,  69,  56,  14, 17, 22, 29, 51,  87,  80,  62,
    18, 22, 37, 56, 68,  109, 103, 77,  24, 35, 55, 64, 81,  104, 113, 92,
    49, 64, 78, 87, 103, 121, 120, 101, 72, 92, 95, 98, 112, 100, 103, 99};

// A Huffman table as the file holds it: how many codes have 1 to 16 bits, and what they stand for.
struct HuffmanTable {
  std::array<std::uint8_t, 16> counts;
  std::vector<std::uint8_t> symbols;
};

const HuffmanTable DcTable{{0, 1, 5, 1, 1, 1, 1, 1, 1}, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}};

const HuffmanTable AcTable{
    {0, 2, 1, 3, 3, 2, 4, 3, 5, 5, 4, 4, 0, 0, 1, 125},
    {0x01, 0x02, 0x03, 0x00, 0x04, 0x11, 0x05, 0x12, 0x21, 0x31, 0x41, 0x06, 0x13, 0x51, 0x61,
     0x07, 0x22, 0x71, 0x14, 0x32, 0x81, 0x91, 0xa1, 0x08, 0x23, 0x42, 0xb1, 0xc1, 0x15, 0x52,
     0xd1, 0xf0, 0x24, 0x33, 0x62, 0x72, 0x82, 0x09, 0x0a, 0x16, 0x17, 0x18, 0x19, 0x1a, 0x25,
     0x26, 0x27, 0x28, 0x29, 0x2a, 0x34, 0x35, 0x36, 0x37, 0x38, 0x39, 0x3a, 0x43, 0x44, 0x45,
     0x46, 0x47, 0x48, 0x49, 0x4a, 0x53, 0x54, 0x55, 0x56, 0x57, 0x58, 0x59, 0x5a, 0x63, 0x64,
     0x65, 0x66, 0x67, 0x68, 0x69, 0x6a, 0x73, 0x74, 0x75, 0x76, 0x77, 0x78, 0x79, 0x7a, 0x83,
     0x84, 0x85, 0x86, 0x87, 0x88, 0x89, 0x8a, 0x92, 0x93, 0x94, 0x95, 0x96, 0x97, 0x98, 0x99,
     0x9a, 0xa2, 0xa3, 0xa4, 0xa5, 0xa6, 0xa7, 0xa8, 0xa9, 0xaa, 0xb2, 0xb3, 0xb4, 0xb5, 0xb6,
     0xb7, 0xb8, 0xb9, 0xba, 0xc2, 0xc3, 0xc4, 0xc5, 0xc6, 0xc7, 0xc8, 0xc9, 0xca, 0xd2, 0xd3,
     0xd4, 0xd5, 0xd6, 0xd7, 0xd8, 0xd9, 0xda, 0xe1, 0xe2, 0xe3, 0xe4, 0xe5, 0xe6, 0xe7, 0xe8,
     0xe9, 0xea, 0xf1, 0xf2, 0xf3, 0xf4, 0xf5, 0xf6, 0xf7, 0xf8, 0xf9, 0xfa}};

struct Code {
  std::uint16_t bits = 0;
  std::uint8_t length = 0;
};

// Code of each symbol: codes of a length follow each other, as do the lengths.
std::array<Code, 256> CodesOf(const HuffmanTable& table) {
  std::array<Code, 256> codes{};
  std::uint16_t next = 0;
  std::size_t symbol = 0;
  for (std::uint8_t length = 1; length <= 16; ++length, next *= 2)
    for (int i = 0; i < table.counts[length - 1]; ++i)
      codes[table.symbols[symbol++]] = {next++, length};
  return codes;
}

class BitWriter {
 public:
  explicit BitWriter(std::string& out) : out_(out) {}
  void Put(unsigned bits, int length) {
    for (int i = length - 1; i >= 0; --i) {
      byte_ = byte_ << 1 | (bits >> i & 1);
      if (++filled_ == 8) Flush();
    }
  }
  // The last byte is filled up with ones.
  void Finish() {
    while (filled_) Put(1, 1);
  }

 private:
  void Flush() {
    out_ += static_cast<char>(byte_);
    if ((byte_ & 255) == 255) out_ += '\0';  // so that no marker seems to begin
    byte_ = 0;
    filled_ = 0;
  }
  std::string& out_;
  unsigned byte_ = 0;
  int filled_ = 0;
};

using Block = std::array<float, 64>;

// Cosine transform of the rows into the columns; done twice it transforms both ways.
Block TransformRows(const Block& in) {
  static const Block cosines = [] {
    Block table{};
    for (int u = 0; u < 8; ++u)
      for (int x = 0; x < 8; ++x)
        table[u * 8 + x] = static_cast<float>((u ? 0.5 : std::numbers::sqrt2 / 4) *
                                              std::cos((2 * x + 1) * u * std::numbers::pi / 16));
    return table;
  }();
  Block out{};
  for (int y = 0; y < 8; ++y)
    for (int u = 0; u < 8; ++u)
      for (int x = 0; x < 8; ++x) out[u * 8 + y] += cosines[u * 8 + x] * in[y * 8 + x];
  return out;
}

// The 8 by 8 values of component 0 (brightness), 1 or 2 from (x0, y0); the edge goes on outside.
Block Component(const Image& image, int x0, int y0, int component) {
  static constexpr float weights[3][3] = {
      {0.299f, 0.587f, 0.114f}, {-0.168736f, -0.331264f, 0.5f}, {0.5f, -0.418688f, -0.081312f}};
  Block block;
  for (int i = 0; i < 64; ++i) {
    const int x = std::min(x0 + i % 8, image.width - 1), y = std::min(y0 + i / 8, image.height - 1);
    const std::uint8_t* p = &image.rgb[(std::size_t(y) * image.width + x) * 3];
    const float* w = weights[component];
    block[i] = w[0] * p[0] + w[1] * p[1] + w[2] * p[2] - (component == 0 ? 128 : 0);
  }
  return block;
}

class ScanWriter {
 public:
  ScanWriter(std::string& out, const std::array<std::uint8_t, 64>& steps)
      : bits_(out), steps_(steps) {}

  void Write(const Block& values, int component) {
    const Block frequencies = TransformRows(TransformRows(values));
    std::array<int, 64> levels;
    for (int i = 0; i < 64; ++i)
      levels[i] = static_cast<int>(std::lround(frequencies[ZigZag[i]] / steps_[i]));
    WriteLevel(dc_, 0, levels[0] - before_[component]);
    before_[component] = levels[0];
    int zeros = 0;
    for (int i = 1; i < 64; ++i) {
      if (levels[i] == 0) {
        ++zeros;
        continue;
      }
      for (; zeros > 15; zeros -= 16) WriteLevel(ac_, 15, 0);
      WriteLevel(ac_, zeros, levels[i]);
      zeros = 0;
    }
    if (zeros) WriteLevel(ac_, 0, 0);
  }

  void Finish() { bits_.Finish(); }

 private:
  // A run of zeros and the level behind it: a code for run and size, then the level's bits.
  void WriteLevel(const std::array<Code, 256>& codes, int run, int level) {
    int size = 0;
    while (std::abs(level) >> size) ++size;
    const Code& code = codes[run << 4 | size];
    bits_.Put(code.bits, code.length);
    bits_.Put(static_cast<unsigned>(level < 0 ? level - 1 : level), size);
  }

  BitWriter bits_;
  const std::array<std::uint8_t, 64>& steps_;
  std::array<Code, 256> dc_ = CodesOf(DcTable), ac_ = CodesOf(AcTable);
  std::array<int, 3> before_{};
};

void AppendBytes(std::string& out, std::initializer_list<int> bytes) {
  for (int byte : bytes) out += static_cast<char>(byte);
}

void AppendSegment(std::string& out, int marker, const std::string& content) {
  const int length = static_cast<int>(content.size()) + 2;
  AppendBytes(out, {0xff, marker, length >> 8, length & 255});
  out += content;
}

std::string TableContent(int id, const HuffmanTable& table) {
  std::string out(1, static_cast<char>(id));
  out.append(table.counts.begin(), table.counts.end());
  return out.append(table.symbols.begin(), table.symbols.end());
}

}  // namespace

std::string JpegFile(const Image& image) {
  std::array<std::uint8_t, 64> steps;  // in zigzag order
  for (int i = 0; i < 64; ++i)
    steps[i] = static_cast<std::uint8_t>(
        std::max(1, (BaseSteps[ZigZag[i]] * (200 - 2 * Quality) + 50) / 100));

  std::string out, frame, scan;
  AppendBytes(out, {0xff, 0xd8});
  AppendSegment(out, 0xe0, std::string("JFIF\0\1\1\1\0\x60\0\x60\0\0", 14));
  AppendSegment(out, 0xdb, '\0' + std::string(steps.begin(), steps.end()));
  AppendBytes(frame,
              {8, image.height >> 8, image.height & 255, image.width >> 8, image.width & 255, 3});
  for (int id : {1, 2, 3}) AppendBytes(frame, {id, 0x11, 0});
  AppendSegment(out, 0xc0, frame);
  AppendSegment(out, 0xc4, TableContent(0x00, DcTable));
  AppendSegment(out, 0xc4, TableContent(0x10, AcTable));
  AppendBytes(scan, {3, 1, 0, 2, 0, 3, 0, 0, 63, 0});
  AppendSegment(out, 0xda, scan);

  ScanWriter writer(out, steps);
  for (int y = 0; y < image.height; y += 8)
    for (int x = 0; x < image.width; x += 8)
      for (int component : {0, 1, 2}) writer.Write(Component(image, x, y, component), component);
  writer.Finish();
  AppendBytes(out, {0xff, 0xd9});
  return out;
}

}  // namespace replay
