// The drawing state and the display lists of screen and paper.
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "toolkit/common.h"
#include "toolkit/journal.h"

namespace {

struct Target {
  DisplayList list;
  int feed;  // degrees by which the target turns what it is given
};

Target screen{.list = {}, .feed = 0};
Target paper{.list = {}, .feed = 90};  // printers take their pages sideways
Target* target = &screen;
bool screenchanged = false;
void (*waiting)() = nullptr;  // draws what the screen shows, once somebody looks at it

Pen pen;
DrawPoint position{};
bool drawing = false;  // the last thing done was a line: the next one goes on with its stroke
int turn = 0;          // degrees of IGrUnitsRotate
int quarter = 0;       // quarters of a turn between user units and those of the list

struct TextStyle {
  float height = 15, angle = 0;
  int alignment = -1;
};
TextStyle textstyle;

void SetTurn(int degrees) {
  turn = degrees;
  quarter = (((target->feed + turn) / 90) % 4 + 4) % 4;
}

// User units to those of the list, turned about the middle of the area.
DrawPoint Turned(float x, float y) {
  if (quarter == 0) return {x, y};
  const DrawRect& u = target->list.units;
  const float fx = (x - u.x1) / (u.x2 - u.x1), fy = (y - u.y1) / (u.y2 - u.y1);
  const DrawPoint places[] = {{fx, fy}, {1 - fy, fx}, {1 - fx, 1 - fy}, {fy, 1 - fx}};
  const DrawPoint& f = places[quarter];
  return {u.x1 + f.x * (u.x2 - u.x1), u.y1 + f.y * (u.y2 - u.y1)};
}

// True if a line from the present position goes on with the list's last stroke.
bool ContinuesStroke() {
  const DisplayList& list = target->list;
  if (!list.rasters.empty() && list.rasters.back().strokes == list.strokes.size()) return false;
  return !list.strokes.empty() && list.strokes.back().pen == pen && list.points.back() == position;
}

// For a line to `end`, which is also where it begins if the pen is nowhere.
void BeginStroke(DrawPoint end) {
  if (!std::isfinite(position.x) || !std::isfinite(position.y)) position = end;
  if (ContinuesStroke()) return;
  DisplayList& list = target->list;
  list.strokes.push_back({pen, list.points.size(), 1});
  list.points.push_back(position);
}

void TakePen(const Pen& taken) {
  pen = taken;
  drawing = false;
}

void NoteChange() {
  if (target == &screen) screenchanged = true;
}

}  // namespace

const DisplayList& ScreenList() {
  IGrFinish();
  return screen.list;
}
const DisplayList& PaperList() { return paper.list; }

void ShowDrawing() {
  if (!screenchanged) return;
  screenchanged = false;
  frontend::Repaint();
}

std::span<const float> DashPattern(int linetype) {
  static constexpr std::array<float, 2> dots{1, 3}, shortdashes{4, 3}, longdashes{9, 4};
  static constexpr std::array<float, 4> dashdots{9, 3, 1, 3};
  switch (linetype) {
    case 1:
      return dots;
    case 2:
      return shortdashes;
    case 3:
      return longdashes;
    case 4:
      return dashdots;
    default:
      return {};
  }
}

void IGrFinish() {
  if (void (*const draw)() = std::exchange(waiting, nullptr)) draw();
}

void IGrShow(void (*draw)()) {
  IGrAreaClear();
  if (target == &screen && !frontend::IsWatched())
    waiting = draw;
  else
    draw();
}

void IGrInit(const std::string& mode) {
  IGrFinish();
  target = mode == "H" ? &paper : &screen;
  if (target == &paper) paper.list = {};
  pen = {};
  position = {};
  drawing = false;
  textstyle = {};
  SetTurn(0);
}

void IGrSelect(int, int) {}

void IGrArea(float x1, float y1, float x2, float y2) { target->list.area = {x1, y1, x2, y2}; }
void IGrUnits(float x1, float y1, float x2, float y2) { target->list.units = {x1, y1, x2, y2}; }
void IGrUnitsRotate(int degrees) { SetTurn(degrees); }

void IGrAreaClear() {
  if (target == &screen) waiting = nullptr;
  target->list.points.clear();
  target->list.strokes.clear();
  target->list.rasters.clear();
  target->list.texts.clear();
  drawing = false;
  NoteChange();
}

// Colours are always red, green, blue: model 24.
void IGrColourModel(int) {}
void IGrLineType(int n) { TakePen({std::clamp(n, 0, 4), pen.width, pen.colour}); }
void IGrLineWidth(float w) { TakePen({pen.linetype, w > 0 ? w : 1, pen.colour}); }
void IGrColourN(int n) {
  TakePen({pen.linetype, pen.width, static_cast<std::uint32_t>(n) & 0xffffff});
}

void IGrColour(const std::string& name) {
  static constexpr std::pair<std::string_view, int> colours[] = {
      {"Black", 0x000000}, {"White", 0xffffff}, {"Red", 0x0000ff},     {"Green", 0x00ff00},
      {"Blue", 0xff0000},  {"Cyan", 0xffff00},  {"Magenta", 0xff00ff}, {"Yellow", 0x00ffff}};
  for (const auto& [known, colour] : colours)
    if (name == known) IGrColourN(colour);
}

void IGrMoveTo(float x, float y) {
  position = Turned(x, y);
  drawing = false;
}

void IGrLineTo(float x, float y) {
  const DrawPoint end = Turned(x, y);
  if (!std::isfinite(end.x) || !std::isfinite(end.y)) return;
  if (!drawing) BeginStroke(end);
  DisplayList& list = target->list;
  list.points.push_back(end);
  ++list.strokes.back().count;
  position = end;
  drawing = true;
  NoteChange();
}

void IGrRaster(std::shared_ptr<const RasterCells> cells, const LevelColours& colours,
               const DrawRect& place, const DrawRect& window) {
  DisplayList& list = target->list;
  const DrawRect seen{std::max(place.x1, window.x1), std::max(place.y1, window.y1),
                      std::min(place.x2, window.x2), std::min(place.y2, window.y2)};
  if (!(seen.x1 < seen.x2 && seen.y1 < seen.y2)) return;
  list.rasters.push_back({std::move(cells), colours, place, seen, list.strokes.size()});
  drawing = false;
  NoteChange();
}

void WGrTextFont(int, int, float height) { textstyle.height = height; }

void WGrTextOrientation(int alignment, float angle) {
  textstyle.alignment = alignment;
  textstyle.angle = angle;
}

void WGrTextString(float x, float y, const std::string& text) {
  const DrawPoint place = Turned(x, y);
  target->list.texts.push_back({place.x, place.y, textstyle.height,
                                textstyle.angle + 90.0f * quarter, textstyle.alignment, pen.colour,
                                text});
  NoteChange();
}

float WInfoGrReal(int n) {
  if (n == GraphicsPaper) return target == &paper ? 1.0f : 0.0f;
  float width = PaperWidth, height = PaperHeight;
  if (target == &screen) {
    int columns = 0, rows = 0;
    frontend::AreaPixels(columns, rows);
    width = static_cast<float>(columns);
    height = static_cast<float>(rows);
  }
  const DisplayList& list = target->list;
  width *= list.area.x2 - list.area.x1;
  height *= list.area.y2 - list.area.y1;
  if (quarter % 2) std::swap(width, height);
  const float ux = std::abs(width / (list.units.x2 - list.units.x1));
  const float uy = std::abs(height / (list.units.y2 - list.units.y1));
  if (n == GraphicsPixels) return target == &paper ? 0.0f : std::min(ux, uy);
  const float one = n == GraphicsGlyphX ? ux : uy;
  return one > 0 && std::isfinite(one) ? std::min(ux, uy) / one : 1.0f;
}

void WGrInput(int mode, float x, float y, float& endx, float& endy, int& ending,
              const std::function<void(float x, float y)>& moved) {
  const PauseBusy pause;
  ShowDrawing();
  const bool band = mode == GraphicsBand;
  DrawPoint end{x, y};
  ending = frontend::TrackDrag(band, end, [&](DrawPoint at) {
    if (moved) moved(at.x, at.y);
    ShowDrawing();
  });
  endx = end.x;
  endy = end.y;
  JournalDrag(band, ending == MessageMouseUp, {x, y}, end);
}

void WCursorShape(int n) { frontend::SetCursor(n); }
