// The printed report: the whole pattern, and a form about its measurement. The page is read from
// its right side: two-theta runs up, counts run to the left, and the form lies beyond them.
#include <cmath>
#include <string>

#include "plot/page.h"
#include "plot/scales.h"
#include "plot/views.h"
#include "workspace/record.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr float kScaleY = 0.223344f;  // along the page, as PaperScale is across it
constexpr float kShrink = 0.8f;       // of the ticks
constexpr float kAxisText = 2.6f, kFormText = 2.2f;
constexpr float kFormWidth = 30, kStrip = 20;  // from the form's edge to its last strip
constexpr float kLineFall = 2.5f * kFormText;
constexpr int kBoxText = 48, kStripText = 73;  // letters
constexpr float kCoarse = 8;                   // degrees; more are rounded to whole ones

// Begin and end of the form's boxes, as shares of the plot's height.
struct Box {
  float from, to;
};
constexpr Box kLeft{0, 0.269f}, kMiddle{kLeft.to, 0.56f}, kRight{kMiddle.to, 1};
constexpr Box kLongStrip{0, kMiddle.to}, kShortStrip = kRight;

Range RoundedTth(const Range& x) {
  const float fine = x.hi - x.lo > kCoarse ? 1.0f : 10.0f;
  return {std::floor(x.lo * fine + 0.001f) / fine, std::floor(x.hi * fine + 0.999f) / fine};
}

// Calls take(tth, counts) for the points of the pattern from its first to its last two-theta.
template <class Take>
void ForEachPoint(Take take) {
  const Range all{FirstTth(SlotInput), LastTth(SlotInput)};
  for (int i = 1; i <= ws.npts(SlotInput); ++i)
    if (all.Holds(ws.xval(AxisTth, SlotInput, i)))
      take(ws.xval(AxisTth, SlotInput, i), ws.yval(SlotInput, i));
}

// The pattern with its axes; the origin is where they meet.
void DrawPlot(float tick) {
  const Range x{ws.viewxmin, ws.viewxmax}, y{ws.viewymin, ws.viewymax};
  const float along = ScaleOf(x, ws.plotheight), across = ScaleOf(y, ws.plotwidth);
  AxisLinear(ws.plotheight, x.lo, x.hi, along, tick, kAxisText, 90, "2|q");
  AxisLinear(ws.plotwidth, y.lo, y.hi, across, tick, kAxisText, -180, "Counts");
  bool begun = false;
  ForEachPoint([&](float tth, float counts) {
    (begun ? PenDown : PenUp)((y.Limit(counts) - y.lo) * -across, (tth - x.lo) * along);
    begun = true;
  });
}

void DrawFrame() {
  SetPen(1, 2, colours::kBlack);
  Rectangle(0, 0, -ws.plotwidth, ws.plotheight, 0);
  Rectangle(-ws.plotwidth, 0, -kFormWidth, ws.plotheight, 0);
  MoveOrigin(-ws.plotwidth - kFormWidth, 0);
  LineAt(kStrip, 0, ws.plotheight, 90);
  LineAt(0, kMiddle.from * ws.plotheight, kStrip, 0);
  LineAt(0, kMiddle.to * ws.plotheight, kFormWidth, 0);
  MoveOrigin(ws.plotwidth + kFormWidth, 0);
  SetPen(1, 1, colours::kBlack);
}

// A line of the form, written smaller rather than beyond its box.
void Write(const Box& box, float across, const std::string& text) {
  const float room = (box.to - box.from) * ws.plotheight - 2 * kFormText;
  DrawName(across, box.from * ws.plotheight + kFormText, text, FittingHeight(text, room, kFormText),
           90, 1);
}

std::string Wavelengths() {
  if (ws.scanwave(3) != 0) return WriteRecord<"(f10.5,'/',f7.5)">(ws.scanwave(1), ws.scanwave(2));
  return WriteRecord<"(f10.5)">(ws.wavelen(1));
}

std::string Exposure() { return ws.gdfhead(8).empty() ? "" : ExposureTime(ws.gdfhead(8)); }

// The end of the path, in this number of letters.
std::string PathWithin(int letters) {
  const float room = NameWidth(std::string(static_cast<std::size_t>(letters), ' '), kFormText);
  return EndOfPath(ws.patternpath, room, kFormText);
}

void DrawForm() {
  const std::string about[][3] = {
      {ws.infodepartment, ws.infocompany, ws.infoaddress},
      {"Diffractometer:  " + ws.instrument, "Wavelength(s) (A): " + Wavelengths(),
       "Exposure time:     " + Exposure()},
      {"Sample:    " + Field(ws.sampleid, kBoxText), "Collected: " + Field(ws.scandate, kBoxText),
       ws.infoline.empty() ? "File:      " + PathWithin(kBoxText)
                           : "Remarks:   " + Field(ws.infoline, kBoxText)},
  };
  const Box boxes[] = {kLeft, kMiddle, kRight};
  for (int box = 0; box < 3; ++box)
    for (int line = 0; line < 3; ++line)
      Write(boxes[box], kLineFall * static_cast<float>(line + 1), about[box][line]);
  const float across = 3 * kFormText + kStrip;
  Write(kLongStrip, across, ws.infoline.empty() ? "Remarks: " : "File: " + PathWithin(kStripText));
  Write(kShortStrip, across, "Date:                Name:");
}

}  // namespace

ViewComplaint LayReport() {
  ws.xaxismode = AxisTth;
  ws.yaxismode = 1;
  ws.plotscalex = PaperScale;
  ws.plotscaley = kScaleY;
  ws.plotwidth = ws.plotscalex * 850;
  ws.plotheight = ws.plotscaley * 850 * 1.24f;
  ws.plotx0 = ws.plotscalex * 400;
  ws.ploty0 = ws.plotscaley * 60 * 1.24f;

  int n = 0;
  Extremes tth, counts;
  ForEachPoint([&](float x, float y) {
    ++n;
    tth.Take(x);
    counts.Take(y);
  });
  if (n < 2) return {"Error", "nstep = 0g"};
  const Range y = Rounded(counts.low, counts.high), x = RoundedTth(Rounded(tth.low, tth.high));
  if (x.lo == x.hi) return {"Error", "amin=amaxg"};
  ws.viewxmin = x.lo;
  ws.viewxmax = x.hi;
  ws.viewymin = y.lo;
  ws.viewymax = y.hi;
  return {};
}

void DrawReport() {
  const PageLayout page = BeginPage();
  MoveOrigin(ws.plotx0 * 0.5f + ws.plotwidth, ws.ploty0);
  DrawFrame();
  DrawPlot(page.tick * kShrink);
  MoveOrigin(-ws.plotwidth - kFormWidth, 0);
  DrawForm();
}
