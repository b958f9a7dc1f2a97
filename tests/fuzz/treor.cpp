// Fuzz target: the bytes are the lines and control cards of TREOR90.
#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "fuzz/memoryfile.h"
#include "index/treor/keywords.h"
#include "index/treor/lines.h"

namespace {

void Check(const TreorSearch& search) {
  const TreorOptions& o = search.options;
  const auto within = [](int v, int first, int last) { return v >= first && v <= last; };
  if (search.all.size() > kTreorMostLines || search.lines.size() > search.all.size() ||
      !within(o.use, 0, search.Lines()) || !within(o.select, 0, search.Lines()) ||
      !std::ranges::is_sorted(search.all, {}, &TreorLine::s))
    std::abort();
  for (const TreorLine& line : search.all)
    if (!(line.s >= 0 && line.s <= 1) || !within(line.code, 0, 100000)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const MemoryFile file;
  file.Hold(data, size);
  TreorRun run;
  Listing listing("/dev/null");
  TreorSearch search{run, listing};
  LineReader input(file.Path());
  if (!ReadLines(input, search) || !ReadKeywords(input, search.options)) return 0;
  PrepareLines(search);
  SetLimits(search);
  Check(search);
  return 0;
}
