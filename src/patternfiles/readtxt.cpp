// The txt format: keys up to [Data], a line of headings, then two-theta and a whole count.
//
//   Date=7/15/14
//   Time=09:30:00
//   Alpha1=1.540600
//   Alpha2=1.544390
//   AlphaRatio=0.500000
//   Time=0.5
//   [Data]
//        Angle,       PSD,
//       5.0000,       126,
//       5.0200,       131,
//
// The first Time is the hour of the day, the second the seconds per point.
#include "patternfiles/patternfiles.h"

#include <algorithm>

#include "patternfiles/readcommon.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr std::string_view kDataKey = "[Data]";

struct Header {
  std::string date, time;
  float steptime = 0;
  int timelines = 0;
};

// Takes what a header line holds.
void ReadHeaderLine(std::string_view line, int slot, Header& header) {
  const RealKey keys[] = {{"Alpha1=", &ws.scanwave(1)},
                          {"Alpha2=", &ws.scanwave(2)},
                          {"AlphaRatio=", &ws.scanwave(3)},
                          {"AlphaAverage= ", &ws.wavelen(slot)}};
  if (HasKey(line, "Date=")) {
    header.date = Cut(Columns(line, 6), 15);
  } else if (HasKey(line, "Time=")) {
    ++header.timelines;
    if (header.timelines == 1) header.time = Cut(Columns(line, 6), 8);
    if (header.timelines == 2) ReadFreeReal(Columns(line, 6), header.steptime);
  } else if (HasKey(line, "NumberOfCompleteData= ")) {
    int n;
    if (ReadRecord<"(i6)">(Columns(line, 23), n)) ws.npts(slot) = std::clamp(n, 0, MaxPoints);
  } else {
    ReadRealKeys(line, slot, keys);
  }
}

int ReadData(LineReader& in, int slot) {
  std::string line;
  int n = 0;
  while (n < MaxPoints && in.Read(line, DataWidth)) {
    float x;
    int count;
    if (!ReadRecord<"(f15.0,i15)">(line, x, count)) break;
    ++n;
    ws.xval(AxisTth, slot, n) = x;
    ws.yval(slot, n) = static_cast<float>(count);
  }
  return n;
}

}  // namespace

int ReadTxt(int slot, const std::string& path) {
  ClearCounts(slot);
  LineReader in(path);
  if (!in.IsOpen()) return ReadFailure("Error", "Error opening txt-file", in);
  Header header;
  std::string line;
  do {
    if (!in.Read(line)) return ReadFailure("Error", "Error reading txt-file", in, NoLine(kDataKey));
    ReadHeaderLine(line, slot, header);
  } while (!HasKey(line, kDataKey));
  if (!SkipLines(in, 1)) return ReadFailure("Error", "Error reading txt-file", in);

  ws.wavelen(slot) = ws.scanwave(1);
  const int n = ReadData(in, slot);
  if (n < 1) return ReadFailure("Error", "Nothing read from txt-file1", in, NoPoints(n));
  if (!CutAtLastPoint(slot, n))
    return ReadFailure("Error", "Nothing read from txt-file2", in, NoPoints(n));
  SetExposure(header.steptime * static_cast<float>(ws.npts(SlotInput)));
  if (slot != SlotInput) return 1;

  const SlashDate date = SplitDate(header.date);
  const std::string year(Cut(Columns(date.rest, 2), 2));
  ws.scandate =
      Field(date.day + "/" + date.month + "/20" + year + "  " + std::string(Trim(header.time)));
  ws.instrument = "Bruker D8 Advance";
  FinishInput(ws.stem20);
  return 1;
}
