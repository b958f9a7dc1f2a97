// Reading a pattern of 19000 points in every format, by its strict reader and by the import that
// looks at what the file holds, against a bare loop over the same bytes.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "patternfiles/import/import.h"
#include "patternfiles/import/prepared.h"
#include "patternfiles/patternfiles.h"
#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/workspace.h"

namespace {

constexpr int kPoints = 19000;

float TwoTheta(int i) { return 5.0f + 0.005f * static_cast<float>(i); }
float Count(int i) { return static_cast<float>(100 + i * 7919 % 30011); }

// The records of a format: a head, then one for each `perline` points.
std::string File(const std::string& head, int perline,
                 const std::function<std::string(int first)>& record) {
  std::string text = head;
  for (int i = 0; i < kPoints; i += perline) text += record(i) + "\n";
  return text;
}

template <FormatText F, int N>
std::string Row(int first) {
  std::array<WriteValue, N> values;
  for (int k = 0; k < N; ++k) values[k] = Count(first + k);
  return WriteValues(FormatOf<F>(), values);
}

std::string Scientific(float value) {
  char text[16];
  return {text, std::to_chars(text, std::end(text), value, std::chars_format::scientific, 7).ptr};
}

std::string Content(const std::string& extension) {
  const auto pair = [](int i) { return WriteRecord<"(f10.4,f12.0)">(TwoTheta(i), Count(i)); };
  if (extension == "xy") return File("", 1, pair);
  if (extension == "chi")
    return File("a\nb\nc\n19000\n", 1, [](int i) {
      return " " + Scientific(TwoTheta(i)) + "  " + Scientific(Count(i) * 1.037f);
    });
  if (extension == "txt")
    return File("[Data]\n\n", 1, [](int i) {
      return WriteRecord<"(f10.4,',',i10,',')">(TwoTheta(i), static_cast<int>(Count(i)));
    });
  if (extension == "uxd") return File("_2THETACOUNTS\n", 1, pair);
  if (extension == "udf") return File("RawScan\n", 8, Row<"(f8.0,7(',',f8.0))", 8>);
  if (extension == "gdf")
    return File(std::string(16, '\n'), 1,
                [](int i) { return WriteRecord<"(i8)">(static_cast<int>(Count(i))); });
  if (extension == "dat") return File("5.0,0.005\n", 10, Row<"(10f8.0)", 10>);
  if (extension == "cif")
    return File("  _pd_meas_intensity_total\n\n", 1,
                [](int i) { return WriteRecord<"(f15.5)">(Count(i)); });
  std::string text =
      "<startPosition>5</startPosition>\n<endPosition>100</endPosition>\n<intensities>";
  for (int i = 0; i < 8000; ++i) text += std::to_string(static_cast<int>(Count(i))) + " ";
  return text + "</intensities>\n";
}

// Takes every number of a text, and nothing else.
float BareLoop(const std::string& text) {
  float sum = 0;
  const char* const end = text.data() + text.size();
  for (const char* at = text.data(); at < end;) {
    if (*at != '-' && (*at < '0' || *at > '9')) {
      ++at;
      continue;
    }
    float value = 0;
    const char* const next = std::from_chars(at, end, value).ptr;
    sum += value;
    at = std::max(next, at + 1);
  }
  return sum;
}

// Processor time, so that other programs do not count.
double Seconds() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

double SecondsOfBareLoop(const std::string& text) {
  constexpr int kRuns = 200;
  const double start = Seconds();
  for (int i = 0; i < kRuns; ++i) benchmark::DoNotOptimize(BareLoop(text));
  return (Seconds() - start) / kRuns;
}

bool Import(const std::string& path) {
  const Imported imported = ImportFile(path);
  return !imported.file.scans.empty() &&
         !Prepared(imported.file.scans[0], CuKalpha1, MaxPoints).tth.empty();
}

void Reading(benchmark::State& state, const PatternFormat& format, bool import) {
  const std::string text = Content(format.extension);
  const std::string path =
      std::filesystem::temp_directory_path() / ("quillagram-bench-" + std::to_string(getpid()));
  std::ofstream(path, std::ios::binary) << text;
  const double start = Seconds();
  for (auto _ : state)
    if (!(import ? Import(path) : format.read(1, path) != 0)) state.SkipWithError("not read");
  const double seconds = Seconds() - start;
  std::filesystem::remove(path);
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
  state.counters["times_bare_loop"] =
      seconds / static_cast<double>(state.iterations()) / SecondsOfBareLoop(text);
}

}  // namespace

int main(int argc, char** argv) {
  // The others have no heading here, by which the import would know them.
  const std::string known = "xy chi txt uxd";
  const auto add = [](const std::string& name, const PatternFormat& format, bool import) {
    benchmark::RegisterBenchmark(
        name.c_str(), [&format, import](benchmark::State& s) { Reading(s, format, import); });
  };
  for (const PatternFormat& format : PatternFormats()) {
    add(format.extension, format, false);
    if (known.find(format.extension) != known.npos)
      add(format.extension + std::string(" import"), format, true);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
