// Writes the seeds of fuzz_readers into a directory.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "fit/fitfile.h"
#include "fuzz/selector.h"
#include "index/solutionlistings.h"
#include "patternfiles/samples.h"
#include "workspace/workspace.h"

namespace {

void WriteSeed(const std::filesystem::path& directory, const std::string& extension, int slot,
               const std::string& text) {
  const auto formats = PatternFormats();
  const auto place = FindFormatByExtension("x." + extension) - formats.data();
  const char first = static_cast<char>((slot - 1) * static_cast<int>(formats.size()) + place);
  std::ofstream(directory / (extension + std::to_string(slot)), std::ios::binary) << first << text;
}

void WriteImportSeed(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << static_cast<char>(kImportSelector) << text;
}

void WriteFitSeed(const std::filesystem::path& directory) {
  const std::string path = directory / "fit";
  WriteFit(path, {}, {}, 3, {{CuKalpha1, CuKalpha2, 0.5f}});
  std::ostringstream content;
  content << std::ifstream(path).rdbuf();
  std::ofstream(path, std::ios::binary) << static_cast<char>(kFitFileSelector) << content.str();
}

void WriteListingSeed(const std::filesystem::path& path, const std::string& listing) {
  std::ofstream(path, std::ios::binary) << static_cast<char>(kListingSelector) << listing;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: fuzz_seeds DIRECTORY\n", stderr);
    return 1;
  }
  std::filesystem::create_directories(argv[1]);
  for (const FormatSample& sample : FormatSamples()) {
    WriteSeed(argv[1], sample.extension, SlotInput, sample.text());
    WriteImportSeed(std::filesystem::path(argv[1]) / (std::string("any-") + sample.extension),
                    sample.text());
  }
  for (const LongPattern& pattern : LongPatterns())
    WriteSeed(argv[1], pattern.extension, MaxSlots, pattern.text());
  WriteFitSeed(argv[1]);
  const std::filesystem::path directory = argv[1];
  WriteListingSeed(directory / "ito", listings::Ito(3));
  WriteListingSeed(directory / "treor", listings::Treor(3));
}
