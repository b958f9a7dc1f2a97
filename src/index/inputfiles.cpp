// What the indexing engines get to read.
#include "index/inputfiles.h"

#include "index/ito/cards.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

constexpr float kMostTth = 180;

// The title, a record for each line, and the blank one that ends them.
std::vector<std::string> TitleAndLines(const std::string& title, std::span<const float> lines,
                                       std::span<const std::string> cards) {
  std::vector<std::string> records{OnOneLine(title)};
  records.insert(records.end(), cards.begin(), cards.end());
  for (float line : lines) records.push_back(WriteRecord<"(f10.4)">(line));
  records.emplace_back();
  return records;
}

}  // namespace

std::vector<float> ReadPeakLines(LineReader& file, float least) {
  std::vector<float> lines;
  std::string text;
  float value = 0;
  while (std::ssize(lines) < MaxPeaks && file.Read(text) && ReadRecord<"(f10.0)">(text, value) &&
         value > least && value <= kMostTth)
    lines.push_back(value);
  return lines;
}

// The figure of merit and the number of lines come without a decimal point, so that the engine
// reads them as hundred thousandths and takes values of its own instead. It finds the form of the
// lines by itself. A file called as the end of the run is, end.pks, is named from its directory.
//
// examples/halite.pks
// 9004 0 0 0 3.00 4.50   1.54056
//     0.0000         4        14
//    27.3700
//
// end
std::vector<std::string> ItoInput(std::span<const float> lines, const Indexing& p) {
  const std::string cards[] = {
      WriteRecord<"('9004 0 0 0',2f5.2,f10.5)">(p.itotol1, p.itotol2, p.itowave),
      WriteRecord<"(f10.4,i10,i10)">(p.itozero, p.itofom, p.itolines),
  };
  std::vector<std::string> records = TitleAndLines(p.peakfilename, lines, cards);
  if (EndsTheRun(records.front())) records.front().insert(0, "./");
  records.push_back("end");
  return records;
}

// The largest cell edge is always the engine's own.
std::vector<std::string> TreorInput(std::span<const float> lines, const Indexing& p) {
  std::vector<std::string> records = TitleAndLines(p.peakfilename, lines, {});
  for (const std::string& keyword : {
           WriteRecord<"('CHOICE=',i1,',')">(p.treform - 1),
           WriteRecord<"('WAVE=',f8.5,',')">(p.trewave),
           WriteRecord<"('VOL=',i5,',')">(nint(p.trevol)),
           WriteRecord<"('NIX=',I2,',')">(p.trenix),
           WriteRecord<"('MERIT=',I3,',')">(p.tremerit),
           WriteRecord<"('D1=',f8.5,',')">(p.tred1),
           WriteRecord<"('D2=',f8.5,',')">(p.tred2),
       })
    records.push_back(SqueezeBlanks(keyword));
  records.push_back("END*");
  return records;
}
