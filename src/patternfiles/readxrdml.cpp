// The xrdml format, read line by line by the first tag of each line.
//
//   <kAlpha1 unit="Angstrom">1.5405980</kAlpha1>
//   <kAlpha2 unit="Angstrom">1.5444260</kAlpha2>
//   <ratioKAlpha2KAlpha1>0.5000</ratioKAlpha2KAlpha1>
//   <endTimeStamp>2014-01-31T12:00:00+01:00</endTimeStamp>
//   <positions axis="2Theta" unit="deg">
//     <startPosition>5.0000</startPosition>
//     <endPosition>79.9800</endPosition>
//   </positions>
//   <positions axis="Omega" unit="deg">
//   <commonCountingTime unit="seconds">43.605</commonCountingTime>
//   <intensities unit="counts">187 183 178 </intensities>
//
// Positions count in front of the first axis whose name begins with O. All intensities stand on one
// line, of which 50000 characters are read; a later such line goes over an earlier one.
#include "patternfiles/patternfiles.h"

#include <algorithm>
#include <limits>

#include "patternfiles/readcommon.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr int kWidth = 50000;

struct Scan {
  float start = 0, stop = 0, countingtime = 0;
  bool omegaseen = false;
};

// What stands between the first ">" and the first "</".
std::string_view Content(std::string_view line) {
  return Columns(line, FindText(line, ">") + 1, FindText(line, "</") - 1);
}

// "2014-01-31T12:00:00+01:00" as "2014-01-31 12:00:00".
std::string PlainTime(std::string_view stamp) {
  constexpr std::size_t kZone = 6, kTee = 10;
  std::string text(stamp.substr(0, stamp.size() - std::min(stamp.size(), kZone)));
  if (text.size() > kTee) text[kTee] = ' ';
  return Field(text);
}

// The counts of a line, parted by single blanks: a further blank stands for a count of 0. A first
// count of one digit is taken for no count at all, and so is one that is no number.
void ReadIntensities(std::string_view line, int slot) {
  constexpr int kTokenLimit = 20;
  const int length = static_cast<int>(line.size());
  bool end = false;
  int q = FindText(line, ">") + 1;
  for (int n = 1; n <= MaxPoints; ++n) {
    int e = q + 1;
    while (e < q + kTokenLimit && e <= length && line[e - 1] != ' ' && line[e - 1] != '<') ++e;
    end = e <= length && line[e - 1] == '<';
    --e;
    if (q < e && ReadFreeReal(Columns(line, q, e), ws.yval(slot, n))) ws.npts(slot) = n;
    q = e + 1;
    if (q >= length || end) break;
  }
}

// Takes the value if the line's tag is one that only the main pattern is asked for.
bool ReadInputTag(std::string_view line, std::string_view tag, Scan& scan) {
  const RealKey keys[] = {{"kAlpha1", &ws.scanwave(1)},
                          {"kAlpha2", &ws.scanwave(2)},
                          {"ratioKAlpha2", &ws.scanwave(3)},
                          {"commonCountingTime", &scan.countingtime}};
  if (HasKey(tag, "endTimeStamp")) {
    ws.scandate = PlainTime(Content(line));
    return true;
  }
  for (const RealKey& row : keys) {
    if (!HasKey(tag, row.key)) continue;
    if (ReadFreeReal(Content(line), *row.value) && row.value == &ws.scanwave(1))
      StateWavelength(SlotInput);
    return true;
  }
  return false;
}

void ReadLine(std::string_view line, int slot, Scan& scan) {
  const std::string_view tag = line.substr(FindText(line, "<"));
  if (slot == SlotInput && ReadInputTag(line, tag, scan)) return;
  if (HasKey(tag, "positions axis=\"O")) {
    scan.omegaseen = true;
  } else if (HasKey(tag, "startPosition") && !scan.omegaseen) {
    ReadFreeReal(Content(line), scan.start);
  } else if (HasKey(tag, "endPosition") && !scan.omegaseen) {
    ReadFreeReal(Content(line), scan.stop);
  } else if (HasKey(tag, "intensities")) {
    ReadIntensities(line, slot);
  }
}

}  // namespace

int ReadXrdml(int slot, const std::string& path) {
  ClearCounts(slot);
  LineReader in(path);
  if (!in.IsOpen()) return ReadFailure("File error", "Error opening xrdml file", in);
  Scan scan;
  ws.npts(slot) = 0;
  std::string line;
  while (in.Read(line, kWidth)) ReadLine(line, slot, scan);

  const int n = ws.npts(slot);
  if (n < 1) return ReadFailure("File Error", "Nothing read from xrdml file", in, NoPoints(n));
  FillGrid(slot, n, scan.start, (scan.stop - scan.start) / static_cast<float>(n - 1));
  // A single point has no step, and its two-theta is not a number.
  if (n == 1) ws.xval(AxisTth, slot, 1) = std::numeric_limits<float>::quiet_NaN();
  ws.wavelen(slot) = ws.scanwave(1);
  if (slot != SlotInput) return 1;

  ws.instrument = "Philips PW 3710";
  SetExposure(scan.countingtime * static_cast<float>(n));
  FinishInput(ws.stem20);
  return 1;
}
