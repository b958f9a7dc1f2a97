// A small file of every format with what it holds, and long ones.
#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "patternfiles/patternfiles.h"

struct FormatSample {
  const char* extension;
  float x1;  // the step is 0.02
  std::vector<float> counts;
  float wave[3];  // scanwave after the load
  const char *scandate, *sampleid, *instrument;
  const char* exposure;  // seconds
  std::string text() const {
    std::ostringstream content;
    content << std::ifstream(QUILLAGRAM_SOURCE "/tests/patternfiles/samples/small." +
                             std::string(extension))
                   .rdbuf();
    return content.str();
  }
};

// The sample's name is "stem" where it is the file's.
inline const std::vector<FormatSample>& FormatSamples() {
  // clang-format off
  static const std::vector<FormatSample> samples = {
      {"xy", 5, {100, 120, -90.5f}, {1.54056f, 1.54433f, 0}, "", "stem", "", ""},
      {"chi", 1, {15, 25, 35}, {1.54056f, 1.54433f, 0}, "", "stem", "", ""},
      // 3 points of 2.5 s: 7.5, rounded half away from zero.
      {"txt", 5, {126, 131, 140}, {1.7889f, 1.7928f, 0.5f},
       "05/07/2014  09:30:00", "stem", "Bruker D8 Advance", "         8"},
      {"uxd", 3, {187, 183, 178}, {1.5406f, 1.54439f, 0.5f},
       "04-Mar-2010 20:59:14", "stem", "Bruker D8 Advance", "         2"},
      {"udf", 5, {8000, 7000, 6000, 5000, 4000, 3000, 2000, 1000, 800, 700, 600},
       {1.540598f, 1.544426f, 0.5f}, "11-mar-2025 12:27", "Sample5", "Stoe STADI", "       110"},
      {"gdf", 5, {151, 132, 144}, {1.54056f, 1.54056f, 0},
       "15/07/2014 12:00", "fluorite", "Huber G670", " 21753"},
      {"dat", 10, {179, 147, 165, 172, 150, 165, 150, 158, 134, 146, 167, 159.5f},
       {1.54056f, 1.54433f, 0}, "", "stem", "", ""},
      {"cif", 5, {151.5f, 132, 144}, {0.70932f, 0.70932f, 0}, "", "stem", "", ""},
      {"xrdml", 5, {187, 183, 178, 0}, {1.540598f, 1.544426f, 0.5f},
       "2014-01-31 12:00:00", "stem", "Philips PW 3710", "       100"},
  };
  // clang-format on
  return samples;
}

// Files of more points than a slot takes, made of one line again and again.
struct LongPattern {
  const char* extension;
  std::string head, line, tail;
  int perline, limit;  // points of a line, and those that are read
  std::string text(int points = 20100) const {
    std::string all = head;
    for (int i = 0; i < points; i += perline) all += line;
    return all + tail;
  }
};

inline const std::vector<LongPattern>& LongPatterns() {
  static const std::vector<LongPattern> patterns = {
      {"xy", "", "5 1\n", "", 1, 19998},
      {"chi", "1\n2\n3\n4\n", "5 1\n", "", 1, 19998},
      {"txt", "[Data]\n\n", "5, 1\n", "", 1, 20000},
      {"uxd", "_2THETACOUNTS\n", "5 1\n", "", 1, 19991},
      {"udf", "RawScan\n", "1,1,1,1,1,1,1,1\n", "", 8, 19992},
      {"gdf", "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n13\n14\n15\n16\n", "1\n", "", 1, 19991},
      {"dat", "1 1\n", "1,1,1,1,1,1,1,1,1,1\n", "", 10, 19990},
      {"cif", "  _pd_meas_intensity_total\n\n", "1\n", "", 1, 19991},
      {"xrdml", "<intensities>10", " 1", "</intensities>", 1, 20000},
  };
  return patterns;
}

inline int ReadAs(const std::string& extension, int slot, const std::string& path) {
  return FindFormatByExtension("x." + extension)->read(slot, path);
}
