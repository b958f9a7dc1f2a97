// Columns of numbers under headings of any kind: two-theta, d or Q, counts and perhaps their e.s.d.
//
//   # Wavelength: 0.4066 A             [Data]                       2theta;yobs
//   # 2th_deg   I   sigma              Angle,       PSD,            5,02;131,5
//   1.0196E-02  2.43  0.11             5.0000,      126,            5,04;129,0
//
// Lines that are no row of numbers are headings or comments. Where the headings name the columns,
// they choose; else the first column holds positions, the second counts, and the third the e.s.d.
// if it can be that. Positions that fall back begin another scan, and so do new headings behind a
// blank line.
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numeric>
#include <string>
#include <utility>

#include "patternfiles/import/columnnames.h"
#include "patternfiles/import/headerkeys.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/textreaders.h"
#include "workspace/text.h"

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t kHeadingLines = 12;    // kept in front of a block
constexpr std::size_t kMostHeadings = 5000;  // lines of words that are searched for keys
constexpr double kMostTwoTheta = 200;        // what lies above is no angle
constexpr std::size_t kFewPoints = 10, kManyPoints = 100;

struct HeadingLine {
  int number;
  std::string_view text;
};

struct Block {
  std::vector<HeadingLine> heading;
  std::vector<double> cells;  // row by row
  std::vector<std::size_t> ends;

  std::size_t Rows() const { return ends.size(); }
  std::size_t Begin(std::size_t row) const { return row == 0 ? 0 : ends[row - 1]; }
  std::size_t Width(std::size_t row) const { return ends[row] - Begin(row); }
  double Cell(std::size_t row, int column) const {
    return column >= 0 && static_cast<std::size_t>(column) < Width(row) ? cells[Begin(row) + column]
                                                                        : kNone;
  }
};

bool CanBeginRow(std::string_view line) {
  line = Stripped(line);
  return !line.empty() && std::string_view("0123456789+-.,|\"").find(line[0]) != line.npos;
}

// Stands where there is no number.
bool IsMissing(std::string_view cell) {
  static constexpr std::string_view kWords[] = {"nan", "inf", "-inf", "na",  "n/a",
                                                "-",   "--",  "?",    "null"};
  const std::string lower = LowerText(Unquoted(cell));
  return cell.find_first_not_of('*') == cell.npos ||
         std::find(std::begin(kWords), std::end(kWords), lower) != std::end(kWords);
}

// Whether commas are decimal points, by the first lines that tell: "5,02;131" and "5,02 131", not
// "5.02, 131" nor "5,131".
bool HasDecimalCommas(std::string_view bytes) {
  if (bytes.find(',') == bytes.npos) return false;
  int votes = 0, told = 0;
  TextLines lines(bytes);
  std::vector<std::string_view> cells;
  for (std::string_view line; told < 200 && lines.Next(line);) {
    if (line.find(',') == line.npos || line.size() > 1000 || !CanBeginRow(line)) continue;
    SplitCells(line, false, true, cells);
    const bool decimal = cells.size() > 1 && line.find('.') == line.npos &&
                         std::all_of(cells.begin(), cells.end(), [](std::string_view cell) {
                           return cell.empty() || NumberOf(cell, true);
                         });
    SplitCells(line, true, true, cells);
    const bool parts = std::all_of(cells.begin(), cells.end(), [](std::string_view cell) {
      return cell.empty() || NumberOf(cell);
    });
    if (!decimal && !parts) continue;
    ++told;
    votes += decimal ? 1 : -1;
  }
  return votes > 0;
}

class ColumnReader {
 public:
  explicit ColumnReader(std::string_view bytes)
      : lines(bytes), decimalcommas(HasDecimalCommas(bytes)) {}
  void Read();

  TextHeader header;
  std::vector<Block> blocks;
  std::vector<double> singles;  // of lines with one number

 private:
  bool TakeRow(std::string_view line);
  void TakeHeading(std::string_view line);
  bool BeginsBlock() const;

  TextLines lines;
  bool decimalcommas;
  std::vector<std::string_view> split;
  std::vector<double> row;
  std::vector<HeadingLine> heading;  // since the last row
  bool blank = false;                // a blank line since then
  bool sampleid = false;             // the name of the sample is to come
  std::size_t rows = 0, headings = 0;
};

// A row begins with a number and holds another one, or a sign that it is missing.
bool ColumnReader::TakeRow(std::string_view line) {
  if (!CanBeginRow(line)) return false;
  SplitCells(line, !decimalcommas, true, split);
  row.clear();
  int numbers = 0, missing = 0;
  for (const std::string_view cell : split) {
    const auto value = NumberOf(cell, decimalcommas || cell.starts_with('"'));
    row.push_back(value.value_or(kNone));
    if (cell.empty()) continue;
    numbers += value.has_value();
    missing += !value && IsMissing(cell);
    if (numbers == 0) return false;
  }
  if (numbers == 1 && split.size() == 1) {
    CheckPoints(singles.size() + 1);
    singles.push_back(row[0]);
  }
  if (numbers + missing < 2) return false;
  if (blocks.empty() || BeginsBlock()) {
    CheckScans(blocks.size());
    blocks.push_back({std::move(heading), {}, {}});
  }
  heading.clear();
  blank = false;
  Block& block = blocks.back();
  block.cells.insert(block.cells.end(), row.begin(), row.end());
  block.ends.push_back(block.cells.size());
  CheckPoints(++rows);
  return true;
}

// Whether what stands in front of a row parts it from the rows above.
bool ColumnReader::BeginsBlock() const {
  return std::any_of(heading.begin(), heading.end(), [&](const HeadingLine& line) {
    return blank || line.text.starts_with('[') || ColumnsNamed(line.text, split.size()).x >= 0;
  });
}

void ColumnReader::TakeHeading(std::string_view line) {
  line = Stripped(line);
  blank = blank || line.empty();
  if (line.empty()) return;
  if (line.starts_with("Type=")) sampleid = line.ends_with("=SAMPLEID");
  if (sampleid && line.starts_with("Value=")) TakeKey(header, "sample", line.substr(6));
  if (heading.size() == kHeadingLines) heading.erase(heading.begin());
  heading.push_back({lines.Number(), line});
  const std::size_t text = std::min(line.find_first_not_of("#;'!/*%_$& \t"), line.size());
  if (++headings < kMostHeadings) TakeKeyLine(header, line.substr(text));
}

void ColumnReader::Read() {
  for (std::string_view line; lines.Next(line);)
    if (!TakeRow(line)) TakeHeading(line);
}

// The number of cells that most rows have.
std::size_t UsualWidth(const Block& block) {
  std::map<std::size_t, std::size_t> rows;
  for (std::size_t i = 0; i < block.Rows(); ++i) ++rows[block.Width(i)];
  return std::max_element(rows.begin(), rows.end(),
                          [](const auto& a, const auto& b) { return a.second < b.second; })
      ->first;
}

bool HoldsNumbers(const Block& block, int column) {
  for (std::size_t i = 0; i < block.Rows(); ++i)
    if (!std::isnan(block.Cell(i, column))) return true;
  return false;
}

[[noreturn]] void Refuse(std::string_view foreign) {
  throw NotReadable("its positions are no angles but \"" + std::string(foreign) + '"');
}

// The label of the abscissa in the second of four lines, the last of which is the number of points.
ColumnChoice AxisOfFourLines(const std::vector<HeadingLine>& heading) {
  if (heading.empty() || heading.back().number != 4 || !NumberOf(heading.back().text)) return {};
  for (const HeadingLine& line : heading)
    if (line.number == 2) return AxisNamed(line.text);
  return {};
}

ColumnChoice ColumnsOf(const Block& block, std::size_t width) {
  for (auto line = block.heading.rbegin(); line != block.heading.rend(); ++line) {
    const ColumnChoice named = ColumnsNamed(line->text, width);
    if (!named.foreign.empty()) Refuse(named.foreign);
    if (named.x >= 0 && HoldsNumbers(block, named.x) && HoldsNumbers(block, named.y)) return named;
  }
  ColumnChoice choice = AxisOfFourLines(block.heading);
  if (!choice.foreign.empty()) Refuse(choice.foreign);
  std::vector<int> columns;
  for (int column = 0; column < static_cast<int>(width); ++column)
    if (HoldsNumbers(block, column)) columns.push_back(column);
  if (columns.size() < 2) return choice;
  choice.x = columns[0];
  choice.y = columns[1];
  if (columns.size() == 3) choice.esd = columns[2];
  return choice;
}

bool IsEsd(const std::vector<double>& column) {
  return std::all_of(column.begin(), column.end(), [](double esd) { return esd >= 0; });
}

// Whether a column without a name can be the e.s.d. of the counts: nowhere negative, not always the
// same nor rising or falling all the way, and not about as large as the counts, as a calculated
// pattern is.
bool CanBeEsd(const MeasuredScan& scan) {
  if (scan.esd.empty() || !IsEsd(scan.esd)) return false;
  std::size_t positive = 0, alike = 0, high = 0;
  for (std::size_t i = 0; i < scan.esd.size(); ++i) {
    positive += scan.esd[i] > 0;
    if (!(scan.counts[i] > 4)) continue;
    ++high;
    alike += std::abs(scan.esd[i] / scan.counts[i] - 1) < 0.3;
  }
  const auto [low, top] = std::minmax_element(scan.esd.begin(), scan.esd.end());
  const bool turns = !std::is_sorted(scan.esd.begin(), scan.esd.end()) &&
                     !std::is_sorted(scan.esd.rbegin(), scan.esd.rend());
  return positive * 2 > scan.esd.size() && *low < *top && turns && (high == 0 || alike * 2 < high);
}

// The first row of usual width, or one in front of it that the positions show to go with it; the
// others are of a table in the heading.
std::size_t FirstRow(const Block& block, int x, std::size_t width) {
  std::size_t row = 0;
  while (block.Width(row) != width) ++row;
  for (; row > 0 && row + 1 < block.Rows(); --row) {
    const double step = block.Cell(row, x) - block.Cell(row - 1, x);
    const double next = block.Cell(row + 1, x) - block.Cell(row, x);
    if (!(step * next > 0 && std::abs(step) <= 2 * std::abs(next))) break;
  }
  return row;
}

// The columns of a block as they follow each other, without what cannot be a row of them.
MeasuredScan RowsOf(const Block& block, const ColumnChoice& choice, std::size_t width,
                    const MeasuredScan& heading) {
  MeasuredScan scan = heading;
  scan.axis = choice.axis;
  scan.x.reserve(block.Rows());
  scan.counts.reserve(block.Rows());
  for (std::size_t row = FirstRow(block, choice.x, width); row < block.Rows(); ++row) {
    const double x = block.Cell(row, choice.x), y = block.Cell(row, choice.y);
    if (std::isnan(x) || std::isnan(y)) continue;
    scan.x.push_back(x * choice.scale);
    scan.counts.push_back(y);
    if (choice.esd >= 0) scan.esd.push_back(block.Cell(row, choice.esd));
  }
  return scan;
}

template <class Act>
void ForColumns(MeasuredScan& scan, Act act) {
  for (std::vector<double>* column : {&scan.x, &scan.counts, &scan.esd})
    if (!column->empty()) act(*column);
}

bool RunsDownwards(const std::vector<double>& x) {
  std::size_t rising = 0, falling = 0;
  for (std::size_t i = 1; i < x.size(); ++i) {
    rising += x[i] > x[i - 1];
    falling += x[i] < x[i - 1];
  }
  return falling > rising;
}

// Where scans end: in front of points that fall back by more than half of what has been covered;
// smaller steps back are put in order.
std::vector<std::size_t> EndsOfScans(const std::vector<double>& x) {
  std::vector<std::size_t> ends;
  double low = x.front(), high = low;
  for (std::size_t i = 1; i < x.size(); ++i) {
    if (x[i] < x[i - 1] && high - x[i] > (high - low) / 2) {
      ends.push_back(i);
      low = high = x[i];
    }
    low = std::min(low, x[i]);
    high = std::max(high, x[i]);
  }
  ends.push_back(x.size());
  return ends;
}

void PutInOrder(MeasuredScan& scan) {
  if (std::is_sorted(scan.x.begin(), scan.x.end())) return;
  std::vector<std::size_t> order(scan.x.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return scan.x[a] < scan.x[b]; });
  ForColumns(scan, [&](std::vector<double>& column) {
    std::vector<double> sorted;
    for (const std::size_t i : order) sorted.push_back(column[i]);
    column = std::move(sorted);
  });
}

// Why the rows cannot be a scan; blank if they can.
std::string TroubleWith(const MeasuredScan& rows) {
  if (rows.x.size() < kFewPoints) return "";
  std::size_t back = 0;
  for (std::size_t i = 1; i < rows.x.size(); ++i) back += rows.x[i] < rows.x[i - 1];
  if (back * 5 > rows.x.size()) return "the positions in its lines neither rise nor fall";
  const double middle = rows.x[rows.x.size() / 2];
  if (rows.axis != ScanAxis::TwoTheta || middle < kMostTwoTheta) return "";
  return "its positions are no angles, as " + Fixed(middle, 1) + " among them";
}

std::vector<double> Slice(const std::vector<double>& column, std::size_t first, std::size_t end) {
  if (column.empty()) return {};
  return {column.begin() + static_cast<std::ptrdiff_t>(first),
          column.begin() + static_cast<std::ptrdiff_t>(end)};
}

// Parts rows into rising scans.
void AppendScans(const MeasuredScan& rows, std::vector<MeasuredScan>& scans) {
  const std::vector<std::size_t> ends = EndsOfScans(rows.x);
  CheckScans(scans.size() + ends.size());
  for (std::size_t i = 0, first = 0; i < ends.size(); first = ends[i++]) {
    MeasuredScan scan = Unmeasured(rows);
    scan.axis = rows.axis;
    scan.seconds = rows.seconds;
    scan.x = Slice(rows.x, first, ends[i]);
    scan.counts = Slice(rows.counts, first, ends[i]);
    scan.esd = Slice(rows.esd, first, ends[i]);
    PutInOrder(scan);
    scans.push_back(std::move(scan));
  }
}

// Blocks that cannot be scans are left out if others can; `trouble` tells why of one.
std::vector<MeasuredScan> ScansOf(const ColumnReader& reader, std::string& trouble) {
  std::vector<MeasuredScan> scans;
  for (const Block& block : reader.blocks) {
    const std::size_t width = UsualWidth(block);
    const ColumnChoice choice = ColumnsOf(block, width);
    if (choice.y < 0) continue;
    MeasuredScan rows = RowsOf(block, choice, width, reader.header.scan);
    if (rows.x.empty()) continue;
    if (choice.named ? !IsEsd(rows.esd) : !CanBeEsd(rows)) rows.esd.clear();
    const bool downwards = RunsDownwards(rows.x);
    if (downwards)
      ForColumns(rows, [](std::vector<double>& c) { std::reverse(c.begin(), c.end()); });
    if (std::string why = TroubleWith(rows); !why.empty()) {
      trouble = std::move(why);
      continue;
    }
    const auto old = static_cast<std::ptrdiff_t>(scans.size());
    AppendScans(rows, scans);
    if (downwards) std::reverse(scans.begin() + old, scans.end());
  }
  return scans;
}

// Counts alone, where the heading tells the positions.
MeasuredScan GridOf(const ColumnReader& reader) {
  MeasuredScan scan = reader.header.scan;
  if (reader.singles.size() < kFewPoints) throw NotReadable("no lines of numbers in it");
  if (!reader.header.start || !reader.header.step)
    throw NotReadable("its lines hold one number each, and positions are missing");
  scan.counts = reader.singles;
  FillEvenGrid(scan, *reader.header.start, *reader.header.step);
  return scan;
}

}  // namespace

MeasuredFile ReadColumns(const ImportSource& source) {
  ColumnReader reader(source.bytes);
  reader.Read();
  std::string trouble;
  std::vector<MeasuredScan> scans = ScansOf(reader, trouble);
  std::size_t most = 0;
  for (const MeasuredScan& scan : scans) most = std::max(most, scan.x.size());
  if (most < 3 && !trouble.empty()) throw NotReadable(trouble);
  if (most < 3) scans = {GridOf(reader)};
  // Small tables stand in front of the counts and behind them.
  if (most >= kManyPoints)
    std::erase_if(scans, [](const MeasuredScan& scan) { return scan.x.size() < kFewPoints; });

  MeasuredFile file;
  for (MeasuredScan& scan : scans) AddScan(file, std::move(scan));
  LabelScans(file, "scan");
  return file;
}
