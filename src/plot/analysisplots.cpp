// Plots of the fitted peak list: FWHM, peak shape, particle size, Williamson-Hall.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <numeric>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "crystal/matrix.h"  // for PolyFit
#include "peaks/peaklist.h"  // for HasFittedProfile
#include "plot/page.h"
#include "plot/scales.h"
#include "plot/views.h"
#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/workspace.h"

namespace {

constexpr int kCurvePoints = 200;
// Parameters of the models. PolyFit fits only where there are more points, and no model is drawn
// without a fit.
constexpr int kWidthTerms = 3, kLineTerms = 2;
constexpr float kSmallestNetWidth = 1.0e-6f;  // degrees; its square is the least difference too

// Points with the scale of NiceRange behind them.
struct Points {
  float x[3 * MaxPeaks + 3], y[3 * MaxPeaks + 3];
  int n = 0;

  void Add(float px, float py) {
    if (!std::isfinite(px) || !std::isfinite(py)) return;
    x[n] = px;
    y[n++] = py;
  }
  std::span<const float> Xs() const { return {x, static_cast<std::size_t>(n)}; }
  std::span<const float> Ys() const { return {y, static_cast<std::size_t>(n)}; }
};

struct Frame {
  PageLayout page;
  float xlo = 0, xhi = 0, xfactor = 0, ylo = 0, yhi = 0, yfactor = 0;

  float X(float value) const { return (value - xlo) * xfactor; }
  float Y(float value) const { return (value - ylo) * yfactor; }
};

constexpr std::ptrdiff_t kEnoughFitted = 2;

// The rows of the list that are plotted: those that have been fitted, or all as long as these are
// too few.
std::vector<int> PlottedRows() {
  std::vector<int> rows(PeakRows());
  std::iota(rows.begin(), rows.end(), 1);
  if (std::ranges::count_if(rows, HasFittedProfile) >= kEnoughFitted)
    std::erase_if(rows, [](int row) { return !HasFittedProfile(row); });
  return rows;
}

// What the title says of the others; blank if there are none.
std::string LeftOutText() {
  const int left = PeakRows() - static_cast<int>(PlottedRows().size());
  if (left == 0) return "";
  return "     " + std::to_string(left) +
         (left == 1 ? " row never fitted is left out" : " rows never fitted are left out");
}

// With too few peaks, or where no model can be fitted, the frame stays without the curve.
bool TooFewPeaks() { return ws.npeaks < 2; }
ViewComplaint TooFewPoints() { return {"Warning", "Too few points to plot"}; }
ViewComplaint NoFit() { return {"Error", "LS error"}; }

// The page with its title, the origin at the lower left corner of the frame.
void BeginFrame(Frame& frame) {
  frame.page = BeginPage();
  const float line = frame.page.scale * TextUnits;
  MoveOrigin(ws.plotx0, ws.plotheight * 1.07f + ws.ploty0);
  const std::string title = ws.stem20 + "     " + DateTimeStamp() + LeftOutText();
  const float room = ws.plotwidth / WInfoGrReal(GraphicsGlyphX);
  DrawName(ws.plotwidth * 0.5f, -2 * line, title, FittingHeight(title, room, frame.page.textheight),
           0, 6);
  MoveOrigin(0, -(ws.plotheight + 5 * line));
}

void RoundRanges(Frame& frame, Points& points) {
  const int n = points.n;
  NiceRange(points.x, n, ws.plotwidth);
  NiceRange(points.y, n, ws.plotheight);
  frame.xlo = points.x[n];
  frame.xfactor = points.x[n + 1];
  frame.xhi = points.x[n + 2];
  frame.ylo = points.y[n];
  frame.yfactor = points.y[n + 1];
  frame.yhi = points.y[n + 2];
}

void RoundToDegrees(Frame& frame) {
  frame.xlo = std::floor(frame.xlo + 0.001f);
  frame.xhi = std::floor(frame.xhi + 0.999f);
  frame.xfactor = frame.xhi > frame.xlo ? ws.plotwidth / (frame.xhi - frame.xlo) : 0.0f;
}

// Frame and y axis; the x axis in degrees where it has no label of its own.
void DrawFrame(const Frame& f, std::string_view ylabel, std::string_view xlabel = {}) {
  const PageLayout& page = f.page;
  SetPen(1, 2, colours::kBlack);
  Rectangle(0, 0, ws.plotwidth, ws.plotheight, 0);
  SetPen(1, 1, colours::kBlack);
  if (xlabel.empty())
    AxisTwoTheta(ws.plotwidth, f.xlo, f.xhi, f.xfactor, page.tick, page.textheight, "2|q");
  else
    AxisLinear(ws.plotwidth, f.xlo, f.xhi, f.xfactor, page.tick, page.textheight, 0, xlabel);
  AxisLinear(ws.plotheight, f.ylo, f.yhi, f.yfactor, page.tick, page.textheight, -270, ylabel);
}

void DrawMarkers(const Frame& f, const Points& points, int from, int to, int colour) {
  SetPen(1, 1, colour);
  for (int i = from; i < to; ++i)
    Marker(1, f.X(points.x[i]), f.Y(points.y[i]), 0.67f * f.page.textheight);
}

// A fitted curve and the text of its parameters.
struct Model {
  std::function<float(float)> curve;
  std::string text;
};

// Writes a text in the upper left corner of the frame, or in the corner with the fewest points
// under it.
void DrawInCorner(const Frame& f, const Points& points, const std::string& text) {
  const float h = f.page.textheight, glyph = WInfoGrReal(GraphicsGlyphX);
  const float letters = FittingHeight(text, (ws.plotwidth - 2 * h) / glyph, 1.2f * h);
  const float height = letters * WInfoGrReal(GraphicsGlyphY),
              width = TextWidth(text, letters) * glyph;
  struct Corner {
    bool right;
    float x, top;  // of the text
  } best{};
  std::ptrdiff_t fewest = PTRDIFF_MAX;
  for (const bool low : {false, true})
    for (const bool right : {false, true}) {
      const Corner corner{right, right ? ws.plotwidth - h - width : h,
                          low ? h + height : ws.plotheight - h};
      const Range x{corner.x - h / 2, corner.x + width + h / 2},
          y{corner.top - height - h / 2, corner.top + h / 2};
      std::ptrdiff_t under = 0;
      for (int i = 0; i < points.n; ++i)
        under += x.Holds(f.X(points.x[i])) && y.Holds(f.Y(points.y[i]));
      if (under >= fewest) continue;
      fewest = under;
      best = corner;
    }
  DrawText(best.right ? ws.plotwidth - h : h, best.top, text, letters, 0, best.right ? 5 : 7);
}

// The curve over the whole width, limited to the y range, and its parameters.
void DrawModel(const Frame& f, const Points& points, const Model& model) {
  const float step = (f.xhi - f.xlo) / (kCurvePoints - 1);
  SetPen(1, 1, colours::kBlack);
  for (int i = 0; i < kCurvePoints; ++i) {
    const float x = f.xlo + step * static_cast<float>(i), value = model.curve(x);
    const float y = std::max(f.ylo, std::min(f.yhi, value == value ? value : f.ylo));
    (i == 0 ? PenUp : PenDown)(f.X(x), f.Y(y));
  }
  DrawInCorner(f, points, model.text);
}

// Least-squares polynomial; false if there is none.
bool Fit(std::span<const float> x, std::span<const float> y, float* coef, int terms) {
  return PolyFit(x, y, coef, terms) == 0;
}

float TanTheta(float tth) { return std::tan(tth * 0.5f / RadToDeg); }

float PositiveRoot(float square) { return square > 1.0e-20f ? std::sqrt(square) : 0.0f; }

// FWHM squared as a polynomial in tan(theta), after Caglioti.
bool FitWidths(std::span<const float> tth, std::span<const float> fwhm, Model& model) {
  float tangent[MaxPeaks], square[MaxPeaks];
  for (std::size_t i = 0; i < tth.size(); ++i) {
    tangent[i] = TanTheta(tth[i]);
    square[i] = fwhm[i] * fwhm[i];
  }
  float c[kWidthTerms] = {};
  if (!Fit({tangent, tth.size()}, {square, tth.size()}, c, kWidthTerms)) return false;
  const float u = c[2], v = c[1], w = c[0];
  model.curve = [=](float x) {
    const float t = TanTheta(x);
    return PositiveRoot((u * t + v) * t + w);
  };
  model.text = WriteRecord<"('u =',f8.5,' v =',f8.5,' w =',f8.5)">(u, v, w);
  return true;
}

bool FitShapes(std::span<const float> tth, std::span<const float> shape, Model& model) {
  float g[kWidthTerms] = {};
  if (!Fit(tth, shape, g, kWidthTerms)) return false;
  const float g1 = g[0], g2 = g[1], g3 = g[2];
  model.curve = [=](float x) { return (g3 * x + g2) * x + g1; };
  model.text = WriteRecord<"('|g1 =',f8.5,' |g2 =',f8.5,' |g3 =',f8.5)">(g1, g2, g3);
  return true;
}

// The points of the width plots: all average values, then the right ones, then the left ones.
struct WidthPoints : Points {
  int averages = 0, rights = 0;

  WidthPoints(int average, int right) {
    const std::vector<int> rows = PlottedRows();
    for (const int j : rows) Add(ws.peaks(ptth, j), ws.peaks(average, j));
    averages = n;
    for (const int j : rows)
      if (ws.peaks(right, j) > 0) Add(ws.peaks(ptth, j), ws.peaks(right, j));
    rights = n;
    for (const int j : rows)  // the left value is not kept: it follows from the others
      if (ws.peaks(average, j) - ws.peaks(right, j) * 0.5f > 0)
        Add(ws.peaks(ptth, j), 2 * ws.peaks(average, j) - ws.peaks(right, j));
  }
};

}  // namespace

ViewComplaint DrawWidthPlot() {
  const bool shapes = ws.analysiskind == 2;
  Frame frame;
  BeginFrame(frame);
  WidthPoints points(shapes ? pshape : pfwhm, shapes ? pshaper : pfwhmr);
  RoundRanges(frame, points);
  RoundToDegrees(frame);
  DrawFrame(frame, shapes ? "|g" : "FWHM");
  if (TooFewPeaks()) return TooFewPoints();

  const int averages = points.averages;
  DrawMarkers(frame, points, 0, averages, colours::kBlack);
  Model model;
  const bool enough = averages > kWidthTerms;
  if (enough && !(shapes ? FitShapes : FitWidths)(points.Xs().first(averages),
                                                  points.Ys().first(averages), model))
    return NoFit();
  DrawMarkers(frame, points, averages, points.rights, colours::kRed);
  DrawMarkers(frame, points, points.rights, points.n, colours::kGreen);
  if (enough) DrawModel(frame, points, model);
  return {};
}

namespace {

// Width that the instrument gives a peak, squared.
float InstrumentSquare(float tangent) {
  if (ws.spmode == 2) {
    const float width = PositiveRoot((ws.spu * tangent + ws.spv) * tangent + ws.spw);
    return width * width;
  }
  return ws.spminhw * ws.spminhw;
}

float NetWidth(int peak) {
  const float fwhm = ws.peaks(pfwhm, peak);
  const float square = fwhm * fwhm - InstrumentSquare(TanTheta(ws.peaks(ptth, peak)));
  return square < kSmallestNetWidth ? kSmallestNetWidth : std::sqrt(square);
}

Points SizePoints() {
  Points points;
  const float k = ws.spgeom * ws.wavelen(1) * RadToDeg;
  for (const int j : PlottedRows()) {
    const float tth = ws.peaks(ptth, j), net = NetWidth(j);
    points.Add(tth, net > 1.0e-31f ? k / (net * std::cos(tth * 0.5f / RadToDeg)) : 0.0f);
  }
  return points;
}

ViewComplaint DrawMean(const Frame& frame, const Points& points) {
  if (points.n < 1) return {};
  float sum = 0;
  for (const float size : points.Ys()) sum += size;
  const float mean = frame.Y(sum / static_cast<float>(points.n));
  PenUp(frame.X(points.x[0]), mean);
  PenDown(frame.X(points.x[points.n - 1]), mean);
  return {};
}

// Net width times cos(theta) against 4 sin(theta): the slope is the strain, the intercept goes with
// the reciprocal of the size.
Points WilliamsonHallPoints() {
  Points points;
  for (const int j : PlottedRows()) {
    const float theta = ws.peaks(ptth, j) * 0.5f / RadToDeg;
    points.Add(4 * std::sin(theta), std::cos(theta) * NetWidth(j) / RadToDeg);
  }
  return points;
}

ViewComplaint DrawStrainLine(const Frame& frame, const Points& points) {
  float line[kLineTerms] = {};
  if (points.n <= kLineTerms) return {};
  if (!Fit(points.Xs(), points.Ys(), line, kLineTerms)) return NoFit();
  const float strain = line[1], b = line[0], size = b > 0 ? ws.wavelen(1) / b : 0.0f;
  DrawModel(frame, points,
            {[=](float x) { return strain * x + b; },
             WriteRecord<"('Size =',f8.1,' (A)  Strain =',f8.6)">(size, strain)});
  return {};
}

}  // namespace

ViewComplaint DrawSizePlot() {
  const bool line = ws.analysiskind == 2;
  Frame frame;
  BeginFrame(frame);
  Points points = line ? WilliamsonHallPoints() : SizePoints();
  RoundRanges(frame, points);
  if (line)
    DrawFrame(frame, "Size parameter", "4*sin(|q)");
  else
    DrawFrame(frame, "Particle size (A)");
  if (TooFewPeaks()) return TooFewPoints();
  DrawMarkers(frame, points, 0, points.n, colours::kBlack);
  return (line ? DrawStrainLine : DrawMean)(frame, points);
}
