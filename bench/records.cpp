// Reading and writing two numbers a line, against the bare conversions over the same bytes.
#include <benchmark/benchmark.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <string>

#include "workspace/lines.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

constexpr int Points = 19998;

float TwoTheta(int i) { return 5.0f + 0.01f * static_cast<float>(i); }
float Counts(int i) { return static_cast<float>(100 + i * 7919 % 20011); }

std::string PatternText() {
  std::string text;
  for (int i = 0; i < Points; ++i)
    text += WriteRecord<"(f9.4,f10.0)">(TwoTheta(i), Counts(i)) + "\n";
  return text;
}

// The file that the readers' loop goes through.
class PatternFile {
 public:
  PatternFile() : path((std::filesystem::temp_directory_path() / "bench_records.xy").string()) {
    std::ofstream(path, std::ios::binary) << PatternText();
  }
  ~PatternFile() { std::filesystem::remove(path); }
  std::string path;
};

void ReadWithFromChars(benchmark::State& state) {
  const std::string text = PatternText();
  for (auto _ : state) {
    const char *at = text.data(), *end = at + text.size();
    float sum = 0, value = 0;
    while (at != end) {
      if (*at == ' ' || *at == '\n') {
        ++at;
        continue;
      }
      at = std::from_chars(at, end, value).ptr;
      sum += value;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(ReadWithFromChars);

void ReadLinesOfNumbers(benchmark::State& state) {
  const PatternFile file;
  for (auto _ : state) {
    LineReader reader(file.path);
    float x = 0, y = 0, sum = 0;
    for (std::string line; reader.Read(line) && CleanNumberLine(line) == 0;)
      if (ReadRecord<"(2f15.0)">(line, x, y)) sum += x + y;
    benchmark::DoNotOptimize(sum);
  }
  state.SetBytesProcessed(
      static_cast<int64_t>(state.iterations() * std::filesystem::file_size(file.path)));
}
BENCHMARK(ReadLinesOfNumbers);

void WriteWithToChars(benchmark::State& state) {
  char text[64];
  for (auto _ : state)
    for (int i = 0; i < Points; ++i) {
      char* end = std::to_chars(text, std::end(text), TwoTheta(i), std::chars_format::fixed, 4).ptr;
      end = std::to_chars(end, std::end(text), Counts(i), std::chars_format::fixed, 0).ptr;
      benchmark::DoNotOptimize(end);
    }
  state.SetItemsProcessed(state.iterations() * Points);
}
BENCHMARK(WriteWithToChars);

void WriteRecords(benchmark::State& state) {
  for (auto _ : state)
    for (int i = 0; i < Points; ++i)
      benchmark::DoNotOptimize(WriteRecord<"(f9.4,f10.0)">(TwoTheta(i), Counts(i)));
  state.SetItemsProcessed(state.iterations() * Points);
}
BENCHMARK(WriteRecords);

}  // namespace

BENCHMARK_MAIN();
