// The search for the cell of the peak list.
#include "index/findsearch.h"

#include "index/alphatwo.h"
#include "index/cellsources.h"
#include "peaks/peaklist.h"
#include "toolkit/toolkit.h"
#include "workspace/text.h"

namespace {

// What the program has calculated is no observation.
bool IsMeasured(int row) {
  const int origin = ws.peakorigin(row);
  const float tth = ws.peaks(ptth, row);
  return origin != PeakCalculated && origin != PeakIndexed && tth > 0 && tth < 180;
}

// Then what a search took for a peak and no fit bears out is noise.
bool AreFitted() {
  std::size_t fitted = 0;
  for (int row = 1; row <= PeakRows(); ++row) fitted += ws.peakorigin(row) == PeakFitted;
  return fitted >= kAdvisedLines;
}

// A place that was picked has nothing but that.
PeakOfList PeakOfRow(int row) {
  if (ws.peakorigin(row) == PeakPicked) return {ws.peaks(ptth, row), 0, 0};
  return {ws.peaks(ptth, row), ws.peaks(pint, row), ws.peaks(pfwhm, row), ws.peakesd(1, row)};
}

struct Findings {
  FoundCells found;
  std::string trouble;  // with an engine
};

std::string Trouble(const IndexingEngine& engine, const std::string& failure) {
  return failure.empty() ? "" : std::string(engine.name) + " did not run: " + failure;
}

Findings Search(const LineList& list) {
  const IndexingEngine &ito = EngineOf(EngineIto), &treor = EngineOf(EngineTreor);
  std::string itofailure, treorfailure;
  FoundCells found = FindCells(
      {.lines = list.lines,
       .wavelength = WavelengthInUse(),
       .sources = {EngineSource(ito, list.lines, WavelengthInUse(), itofailure),
                   EngineSource(treor, list.lines, WavelengthInUse(), treorfailure)}},
      [](double done, const FoundCell* best) {
        return WProgress(3, best ? ShortText(*best) : "Searching", static_cast<float>(done));
      });
  const std::string trouble = Trouble(ito, itofailure);
  return {std::move(found), trouble.empty() ? Trouble(treor, treorfailure) : trouble};
}

std::string Count(std::size_t n, const char* what) {
  return std::to_string(n) + " " + what + (n == 1 ? "" : "s");
}

// Of the list; blank if it has all peaks.
std::string LeftOut(const LineList& list) {
  std::string text;
  if (list.alpha2 > 0) text = "without " + Count(list.alpha2, "alpha2 line");
  if (list.noise > 0)
    text += (text.empty() ? "without " : " and ") + Count(list.noise, "peak") +
            " that no fit bears out";
  return text;
}

// Why there is no table.
Outcome TellNothingFound(const LineList& list, const Findings& findings) {
  const std::size_t lines = list.lines.size();
  const FindCellEnd end = findings.found.end;
  if (end == FindCellEnd::Stopped) {
    WindowOutStatusBar(3, "Stopped before a cell was found");
    return Outcome::Cancelled;
  }
  std::string text = "No cell explains the " + Count(lines, "line");
  if (end == FindCellEnd::TooFewLines)
    text = Count(lines, "line") + ": a search needs " + std::to_string(kLeastLines) +
           " at least, at different positions";
  else if (lines < kAdvisedLines)
    text += "\nCells of low symmetry need " + std::to_string(kAdvisedLines);
  else
    text += "\nLines of several phases have none, nor those of another wavelength";
  for (const std::string& more : {LeftOut(list), findings.trouble})
    if (!more.empty()) text += "\n" + more;
  MessageBoxError("Find cell", text);
  return Outcome::Failed;
}

// How many there were.
std::size_t LeaveOutAlpha2(std::vector<PeakOfList>& peaks, std::vector<int>& rows) {
  const std::vector<bool> seconds = AreAlpha2(peaks, WavelengthInUse(), ws.wavelen(2));
  std::size_t kept = 0;
  for (std::size_t i = 0; i < peaks.size(); ++i) {
    if (seconds[i]) continue;
    peaks[kept] = peaks[i];
    rows[kept++] = rows[i];
  }
  const std::size_t left = peaks.size() - kept;
  peaks.resize(kept);
  rows.resize(kept);
  return left;
}

std::string Summary(const LineList& list, const Findings& findings) {
  const std::size_t lines = list.lines.size();
  const auto& [found, trouble] = findings;
  const std::string leftout = LeftOut(list);
  return (found.end == FindCellEnd::Stopped ? "Stopped: " : "") +
         Count(found.cells.size(), "cell") + " found" +
         (found.cells.front().likelihood < 0 ? ", none better than chance" : "") +
         (lines < kAdvisedLines ? ", by few lines" : "") + (leftout.empty() ? "" : ", " + leftout) +
         (trouble.empty() ? "" : "; " + OnOneLine(trouble));
}

}  // namespace

float WavelengthInUse() { return ws.wavelen(1) > 0 ? float{ws.wavelen(1)} : CuKalpha1; }

LineList MeasuredLines() {
  LineList list;
  std::vector<PeakOfList> peaks;
  std::vector<int> rows;
  const bool arefitted = AreFitted();
  for (int row = 1; row <= PeakRows(); ++row) {
    if (!IsMeasured(row)) continue;
    if (arefitted && ws.peakorigin(row) == PeakSearched) {
      ++list.noise;
      continue;
    }
    rows.push_back(row);
    peaks.push_back(PeakOfRow(row));
  }
  list.alpha2 = LeaveOutAlpha2(peaks, rows);
  list.lines = ObservedLines(peaks, WavelengthInUse());
  // Of equal positions there is one line.
  std::size_t peak = 0;
  for (const ObservedLine& line : list.lines) {
    while (peaks[peak].tth != line.tth) ++peak;
    list.numbers.push_back(rows[peak]);
  }
  return list;
}

LineList UnexplainedLines(const FoundTable& table, std::size_t row) {
  LineList list;
  for (const int number : table.cells[row].unindexed) {
    const auto at = static_cast<std::size_t>(number - 1);
    list.lines.push_back(table.lines[at]);
    list.numbers.push_back(table.numbers[at]);
  }
  return list;
}

Outcome SearchFor(const LineList& list, FoundTable& table) {
  Findings findings = Search(list);
  if (findings.found.cells.empty()) return TellNothingFound(list, findings);
  const std::string summary = Summary(list, findings);
  table = {std::move(findings.found.cells), list.lines, list.numbers, summary};
  return Outcome::Done;
}
