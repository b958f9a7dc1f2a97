// The results of a refinement as a table for other programs.
#include "crystal/cellmetric.h"
#include "crystal/laue.h"
#include "fit/fit.h"
#include "fit/fitbackground.h"
#include "workspace/csv.h"
#include "workspace/text.h"

namespace {

class Rows {
 public:
  void Add(const std::string& name, const std::string& value, float esd = 0,
           const std::string& unit = "") {
    const std::string cells[] = {name, value, esd > 0 ? AllDigits(esd) : "", unit};
    lines.push_back(CsvLine(cells));
  }
  void Add(const std::string& name, float value, float esd = 0, const std::string& unit = "") {
    Add(name, AllDigits(value), esd, unit);
  }
  // Three coefficients of one side.
  void Add(const char* const (&names)[3], const char* side, const Table<float, 3>& values,
           const float* esds, const char* const (&units)[3]) {
    for (int k = 0; k < 3; ++k)
      Add(std::string(names[k]) + ' ' + side, values.cells[k], esds[k], units[k]);
  }
  std::vector<std::string> lines{"name,value,e.s.d.,unit"};
};

constexpr const char* kCell[] = {"a", "b", "c", "alpha", "beta", "gamma"};
constexpr const char* kWidths[] = {"U", "V", "W"};
constexpr const char* kWidthUnits[] = {"deg.^2", "deg.^2", "deg.^2"};
constexpr const char* kShapes[] = {"g1", "g2", "g3"};
constexpr const char* kShapeUnits[] = {"", "1/deg.", "1/deg.^2"};

}  // namespace

std::vector<std::string> FitResultCsv() {
  Rows rows;
  rows.Add("Laue class", LaueClassOf(ws.laueclass).label);
  rows.Add("centering", CenteringOf(ws.centering).label);
  for (int k = 0; k < 6; ++k)
    rows.Add(kCell[k], ws.cell.cells[k], ws.cellesd.cells[k], k < 3 ? "A" : "deg.");
  rows.Add("volume", CellVolume(ws.cell), ws.volumeesd, "A^3");
  rows.Add("two-theta zero", ws.tthzero, ws.zeroesd, "deg.");
  rows.Add(kWidths, "left", ws.fwhmleft, &ws.fwhmesd.cells[0], kWidthUnits);
  rows.Add(kWidths, "right", ws.fwhmright, &ws.fwhmesd.cells[3], kWidthUnits);
  rows.Add(kShapes, "left", ws.shapeleft, &ws.shapeesd.cells[0], kShapeUnits);
  rows.Add(kShapes, "right", ws.shaperight, &ws.shapeesd.cells[3], kShapeUnits);
  for (int k = 1; k <= BackgroundTerms(ws); ++k)
    rows.Add("background " + std::to_string(k), ws.bgcoef(k), ws.bgesd(k), "counts");
  rows.Add("Rp", ws.fitrp);
  rows.Add("Rwp", ws.fitrwp);
  rows.Add("GOF", ws.fitgof);
  rows.Add("points", std::to_string(ws.fitpoints));
  rows.Add("parameters", std::to_string(ws.fitnpar));
  rows.Add("cycles", std::to_string(ws.fitcycles));
  if (!ws.fitcorrelated.empty()) rows.Add("correlation of " + ws.fitcorrelated, ws.fitcorrelation);
  return rows.lines;
}
