// Simulates a series of patterns, in xy, and writes the list of them with what is true of each.
//
//   simulateseries KIND FOLDER [COUNT [SEED]]
//
// The list is FOLDER/KIND.csv: the path of a pattern as FOLDER is given, and the values it was made
// of. Patterns are in folders of a thousand. The same seed gives the same files on every machine.
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

#include "counting.h"
#include "simulateseries.h"
#include "workspace/csv.h"
#include "workspace/lines.h"
#include "workspace/record.h"

namespace {

constexpr int kInFolder = 1000, kMostPatterns = 1000000;

struct Series {
  const SeriesKind& kind;
  std::string folder;
  int count;
  std::uint64_t seed;
};

std::string Padded(int number, int digits) {
  const std::string text = std::to_string(number);
  return std::string(std::max(0, digits - static_cast<int>(text.size())), '0') + text;
}

std::string NineDigits(double value) {
  char digits[32];
  const auto end = std::to_chars(digits, std::end(digits), value, std::chars_format::general, 9);
  return std::string(digits, end.ptr);
}

// "run/003/heating_003120.xy"
std::string PathOf(const Series& series, int number) {
  return series.folder + "/" + Padded(number / kInFolder, 3) + "/" + series.kind.name + "_" +
         Padded(number, 6) + ".xy";
}

std::vector<double> PointsOf(const Grid& grid) {
  std::vector<double> tth;
  for (int i = 0; i < grid.points; ++i) tth.push_back(grid.start + grid.step * i);
  return tth;
}

// Two-theta as it stands in front of the counts.
std::vector<std::string> Heads(const std::vector<double>& tth) {
  std::vector<std::string> heads;
  for (const double x : tth) heads.push_back(WriteRecord<"(f8.4,' ')">(x));
  return heads;
}

bool WritePattern(const std::string& path, const Frame& frame,
                  const std::vector<std::string>& heads, std::mt19937_64 random) {
  std::string text;
  for (std::size_t i = 0; i < heads.size(); ++i) {
    if (i > 0) text += '\n';
    text += heads[i];
    text += std::to_string(Poisson(frame.counts[i], random));
  }
  LineWriter out(path);
  out.Write(text);
  return out.Close();
}

// What cannot be made is told by the files in it.
void MakeFolderOf(const std::string& path) {
  std::error_code ignored;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
}

bool WriteSeries(const Series& series) {
  const SeriesKind& kind = series.kind;
  const std::vector<double> tth = PointsOf(kind.grid);
  const std::vector<std::string> heads = Heads(tth);
  const std::string listpath = series.folder + "/" + kind.name + ".csv";
  MakeFolderOf(listpath);
  LineWriter list(listpath);
  std::vector<std::string> cells{"file"};
  cells.insert(cells.end(), kind.columns.begin(), kind.columns.end());
  list.Write(CsvLine(cells));
  for (int number = 0; number < series.count; ++number) {
    const std::string path = PathOf(series, number);
    if (number % kInFolder == 0) MakeFolderOf(path);
    const Frame frame = kind.frame(number / std::max(1.0, series.count - 1.0), number, tth);
    if (!WritePattern(path, frame, heads, std::mt19937_64(series.seed * 1000003 + number)))
      return false;
    cells = {path};
    for (const double value : frame.truth) cells.push_back(NineDigits(value));
    list.Write(CsvLine(cells));
  }
  return list.Close();
}

// A whole number from 0 on, or -1.
long long NumberOf(std::string_view text) {
  long long number = -1;
  const char* end = text.data() + text.size();
  return std::from_chars(text.data(), end, number).ptr == end ? number : -1;
}

int Usage() {
  std::fputs("usage: simulateseries KIND FOLDER [COUNT [SEED]]\n", stderr);
  for (const SeriesKind& kind : kSeriesKinds)
    std::fprintf(stderr, "  %-14s%s, %d patterns of %d points\n", kind.name, kind.text, kind.count,
                 kind.grid.points);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3 || argc > 5) return Usage();
  const auto kind = std::ranges::find(kSeriesKinds, std::string_view(argv[1]), &SeriesKind::name);
  if (kind == kSeriesKinds.end()) return Usage();
  const long long count = argc > 3 ? NumberOf(argv[3]) : kind->count;
  const long long seed = argc > 4 ? NumberOf(argv[4]) : 1;
  if (count < 1 || count > kMostPatterns || seed < 0) return Usage();
  if (WriteSeries({*kind, argv[2], static_cast<int>(count), static_cast<std::uint64_t>(seed)}))
    return 0;
  std::fprintf(stderr, "%s: not all could be written\n", argv[2]);
  return 1;
}
