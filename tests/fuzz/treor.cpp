// Fuzz target: the bytes are the lines and control cards of TREOR90.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "index/treor/keywords.h"
#include "index/treor/lines.h"

namespace {

int file = -1;  // lies in memory
std::string path;

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

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  file = memfd_create("cards", 0);
  path = "/proc/self/fd/" + std::to_string(file);
  return file < 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size))
    std::abort();
  TreorRun run;
  Listing listing("/dev/null");
  TreorSearch search{run, listing};
  LineReader input(path);
  if (!ReadLines(input, search) || !ReadKeywords(input, search.options)) return 0;
  PrepareLines(search);
  SetLimits(search);
  Check(search);
  return 0;
}
