// Writes the seeds of fuzz_readers into a directory.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "patternfiles/samples.h"
#include "workspace/workspace.h"

namespace {

// The byte in front tells fuzz_readers the format's place in the list and the slot.
void WriteSeed(const std::filesystem::path& directory, const std::string& extension, int slot,
               const std::string& text) {
  const auto formats = PatternFormats();
  const auto place = FindFormatByExtension("x." + extension) - formats.data();
  const char first = static_cast<char>((slot - 1) * static_cast<int>(formats.size()) + place);
  std::ofstream(directory / (extension + std::to_string(slot)), std::ios::binary) << first << text;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: fuzz_seeds DIRECTORY\n", stderr);
    return 1;
  }
  std::filesystem::create_directories(argv[1]);
  for (const FormatSample& sample : FormatSamples())
    WriteSeed(argv[1], sample.extension, SlotInput, sample.text());
  for (const LongPattern& pattern : LongPatterns())
    WriteSeed(argv[1], pattern.extension, MaxSlots, pattern.text());
}
