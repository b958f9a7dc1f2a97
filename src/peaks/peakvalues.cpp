// The values that the peak table shows, as cells and as lines of text.
#include <algorithm>
#include <cmath>
#include <limits>

#include "crystal/hklcode.h"
#include "peaks/peaklist.h"
#include "peaks/peaktable.h"
#include "peaks/splitpeak.h"
#include "plot/dataposition.h"
#include "plot/penplot.h"  // for NearestIndex
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

// What is known of a row besides its position; the other fields hold what an earlier list has left
// there.
struct OriginRow {
  const char* text;
  bool counts;   // the intensity is the counts at the top
  bool width;    // FWHM
  bool profile;  // area, FWHM and shape
};
constexpr OriginRow kOrigins[] = {
    {"", false, false, false},           {"searched", true, true, false},
    {"picked", false, false, false},     {"fitted", false, true, true},
    {"calculated", false, true, true},   {"loaded", false, true, true},
    {"calculated", false, false, false},  // a line of a cell
};
constexpr OriginRow kLoadedSearch{"loaded", true, true, false};

const OriginRow& OriginOf(int row) {
  const bool search = ws.peakorigin(row) == PeakLoaded && !HasFittedProfile(row);
  return search ? kLoadedSearch : kOrigins[ws.peakorigin(row)];
}

float Positive(float value) { return value > 0 && std::isfinite(value) ? value : kNone; }

float NumberOf(int row) { return static_cast<float>(row); }
float TthOfRow(int row) { return ws.peaks(ptth, row); }
float SpacingOfRow(int row) { return Positive(SpacingOf(Positive(TthOfRow(row)))); }
float AreaOf(int row) { return OriginOf(row).profile ? ws.peaks(pint, row) : kNone; }
float ShapeOf(int row) { return OriginOf(row).profile ? ws.peaks(pshape, row) : kNone; }
float FwhmOf(int row) { return OriginOf(row).width ? Positive(ws.peaks(pfwhm, row)) : kNone; }

// The background curve under a peak; 0 without one.
float BackgroundAt(float tth) {
  const auto xs = TthOf(SlotInput);
  return xs.empty()
             ? 0.0f
             : ws.yval(SlotBackground, NearestIndex(tth, xs.data(), static_cast<int>(xs.size())));
}

// Of the profile with this area, whose other side is as far from the mean as the one that is kept;
// or of the counts at the top.
float HeightOf(int row) {
  if (OriginOf(row).counts) return ws.peaks(pint, row) - BackgroundAt(TthOfRow(row));
  if (!OriginOf(row).profile) return kNone;
  const float side = ws.peaks(pfwhmr, row), shape = ws.peaks(pshaper, row);
  const float other = 2 * ws.peaks(pfwhm, row) - side;
  if (!(side > 0 && other > 0)) return kNone;
  const double unit = AreaOfHeight({.left = other,
                                    .leftshape = 2 * ws.peaks(pshape, row) - shape,
                                    .right = side,
                                    .rightshape = shape},
                                   1);
  return unit > 0 ? static_cast<float>(AreaOf(row) / unit) : kNone;
}

// Indices, where there are any: a line of a file without them has those of no reflection.
bool HklOf(int row, Hkl& r) {
  const float code = ws.peaks(phkl, row);
  if (!ws.peakindexed(row) || !(code > 0 && code < 8e6f)) return false;
  r = UnpackHkl(nint(code));
  return r.h != 0 || r.k != 0 || r.l != 0;
}

// Rising h, then k, then l.
float HklOrder(int row) {
  Hkl r;
  return HklOf(row, r) ? static_cast<float>(PackHkl({r.l, r.k, r.h})) : kNone;
}

float MultiplicityOf(int row) {
  Hkl r;
  return HklOf(row, r) ? Positive(ws.peaks(pmult, row)) : kNone;
}

float OriginOrder(int row) { return static_cast<float>(ws.peakorigin(row)); }

struct Column {
  const char* heads;  // of the text, parted by "|"
  float (*value)(int row);
  int decimals;  // in the table, without an e.s.d.
  int esd;       // row of peakesd, 0: none
};

// In the order of PeakColumn.
constexpr Column kColumns[] = {
    {"No.", NumberOf, 0, 0},
    {"2theta (deg.)|e.s.d. (deg.)", TthOfRow, 4, 1},
    {"d (A)", SpacingOfRow, 5, 0},
    {"area (counts deg.)|e.s.d. (counts deg.)", AreaOf, 1, 2},
    {"height (counts)", HeightOf, 1, 0},
    {"FWHM (deg.)|e.s.d. (deg.)", FwhmOf, 4, 3},
    {"shape", ShapeOf, 3, 0},
    {"h|k|l", HklOrder, 0, 0},
    {"multiplicity", MultiplicityOf, 0, 0},
    {"origin|fit", OriginOrder, 0, 0},
};

std::string FitNote(int row) { return ws.peakfailed(row) ? "not converged" : ""; }

std::string HklText(int row, const char* separator) {
  Hkl r;
  if (!HklOf(row, r)) return *separator == ' ' ? "" : std::string(separator) + separator;
  return std::to_string(r.h) + separator + std::to_string(r.k) + separator + std::to_string(r.l);
}

std::string CellText(int column, int row) {
  if (column == ColumnHkl) return HklText(row, " ");
  if (column == ColumnOrigin)
    return OriginOf(row).text + (ws.peakfailed(row) ? ", " + FitNote(row) : "");
  const Column& c = kColumns[column - 1];
  const float value = c.value(row);
  if (!std::isfinite(value)) return "";
  return WithEsd(value, c.esd > 0 ? ws.peakesd(c.esd, row) : 0, c.decimals);
}

// As the heads of the column, parted by "|".
std::string LineText(int column, int row) {
  if (column == ColumnHkl) return HklText(row, "|");
  if (column == ColumnOrigin) return OriginOf(row).text + ("|" + FitNote(row));
  const Column& c = kColumns[column - 1];
  const float value = c.value(row);
  if (c.esd == 0) return AllDigits(value);
  const float esd = std::isfinite(value) ? Positive(ws.peakesd(c.esd, row)) : kNone;
  return AllDigits(value) + "|" + AllDigits(esd);
}

template <class Text>
std::string Line(char separator, Text text) {
  std::string line;
  for (int column = ColumnNumber; column <= ColumnOrigin; ++column)
    line += (column == ColumnNumber ? "" : "|") + std::string(text(column));
  std::ranges::replace(line, '|', separator);
  return line;
}

}  // namespace

std::vector<std::string> PeakCells(int row) {
  std::vector<std::string> cells;
  for (int column = ColumnNumber; column <= ColumnOrigin; ++column)
    cells.push_back(CellText(column, row));
  return cells;
}

std::vector<int> PeaksBy(int column) {
  const Column& c = kColumns[std::abs(column) - 1];
  struct Entry {
    int row;
    float value;
  };
  std::vector<Entry> entries;
  for (int row = 1; row <= PeakRows(); ++row) entries.push_back({row, c.value(row)});
  std::ranges::stable_sort(entries, [column](const Entry& a, const Entry& b) {
    if (!std::isfinite(a.value) || !std::isfinite(b.value))
      return std::isfinite(a.value) && !std::isfinite(b.value);
    return column > 0 ? a.value < b.value : a.value > b.value;
  });
  std::vector<int> rows;
  for (const Entry& entry : entries) rows.push_back(entry.row);
  return rows;
}

std::vector<std::string> PeakLines(std::span<const int> rows, char separator) {
  std::vector<std::string> lines{
      Line(separator, [](int column) { return kColumns[column - 1].heads; })};
  for (const int row : rows)
    lines.push_back(Line(separator, [row](int column) { return LineText(column, row); }));
  return lines;
}
