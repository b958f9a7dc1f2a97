// The gdf format: sixteen header lines, then a whole count a line.
//
//   Imaging plate scan              1, 2   text
//    7251                           3      a whole number, columns 1 to 5
//   fluorite                        4      sample
//   Cu anode                        5, 6   text
//   7/15/2014 12:00:00              7      date, the month first
//        21753                      8      counting time
//   Gain >1.00< arbitrary           10     a value between ">" and "<"
//        5.000                      11     first two-theta
//      150.000                      12     last two-theta, not needed
//        0.020                      13     step
//        151                        17 on  counts, columns 1 to 8
#include "patternfiles/patternfiles.h"
#include "patternfiles/readcommon.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr int kHeaderLines = 16;

struct Header {
  float start = 0, stop = 0, step = 0;
};

// Behind the first ">" up to and including the first "<", which stays to mark the value's end.
std::string MarkedValue(std::string_view line) {
  line.remove_prefix(FindText(line, ">"));
  return std::string(line.substr(0, FindText(line, "<")));
}

// Takes a header line; returns 1, or shows a message and returns 0.
int ReadHeaderLine(const LineReader& in, const std::string& line, int slot, Header& header) {
  const int number = in.LineNumber();
  if (slot == SlotInput) ws.gdfhead(number) = line;
  int unused;
  switch (number) {
    case 3:
      if (ReadRecord<"(i5)">(line, unused)) return 1;
      return ReadFailure("File Read Error", std::string(Trim(line)), in, NoNumber(in));
    case 10:
      if (slot < SlotRefined) ws.gdfhead(10) = MarkedValue(line);
      return 1;
    case 11:
      if (ReadRecord<"(f10.0)">(line, header.start)) return 1;
      return ReadFailure("Error", "Error reading gdf file2", in, NoNumber(in));
    case 12:
      if (ReadRecord<"(f10.0)">(line, header.stop)) return 1;
      return ReadFailure("Error", "Error reading gdf file3", in, NoNumber(in));
    case 13:
      if (ReadRecord<"(f10.0)">(line, header.step)) return 1;
      return ReadFailure("Error", "Error reading gdf file4", in, NoNumber(in));
    default:
      return 1;
  }
}

// "7/15/2014 12:00" as "15/07/2014 12:00"; a file without a date stays so.
std::string DayFirst(const std::string& text) {
  const SlashDate date = SplitDate(text);
  return text.empty() ? "" : Field(date.day + "/" + date.month + date.rest);
}

}  // namespace

int ReadGdf(int slot, const std::string& path) {
  ClearCounts(slot);
  LineReader in(path);
  if (!in.IsOpen()) return ReadFailure("Error", "Error opening gdf-file", in);
  Header header;
  std::string line;
  for (int i = 0; i < kHeaderLines; ++i) {
    if (!in.Read(line)) return ReadFailure("Error", "Error reading gdf-file", in);
    if (!ReadHeaderLine(in, line, slot, header)) return 0;
  }
  ws.wavelen(slot) = CuKalpha1;
  ws.npts(slot) = 0;

  int n = 0, count;
  while (n < PointLimit && in.Read(line) && ReadRecord<"(i8)">(line, count))
    ws.yval(slot, ++n) = static_cast<float>(count);
  FillGrid(slot, n, header.start, header.step);
  if (n < 1) return ReadFailure("Error", "Nothing read from gdf file1", in, NoPoints(n));
  if (!CutAtLastPoint(slot, n))
    return ReadFailure("Error", "Nothing read from gdf file2", in, NoPoints(n));
  if (slot != SlotInput) return 1;

  ws.scanwave(1) = ws.scanwave(2) = CuKalpha1;
  ws.scanwave(3) = 0;
  ws.scandate = DayFirst(ws.gdfhead(7));
  ws.instrument = "Huber G670";
  FinishInput(Trim(ws.gdfhead(4)).empty() ? ws.stem20 : ws.gdfhead(4));
  return 1;
}
