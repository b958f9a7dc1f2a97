// What the pattern readers share: keys, grids, rows of counts, the end of a load.
#include "patternfiles/readcommon.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "toolkit/toolkit.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

int ReadFailure(const std::string& caption, const std::string& text, const LineReader& in,
                const std::string& reason) {
  std::string why = in.Reason().empty() ? reason : in.Reason();
  if (why.empty() && in.LineNumber() == 0) why = "is empty";
  if (why.empty()) why = "ends with line " + std::to_string(in.LineNumber());
  MessageBoxError(caption, FileMessage(text, in.Path(), why));
  return 0;
}

std::string NoLine(std::string_view key) { return "no line " + std::string(key) + " in it"; }

std::string NoNumber(const LineReader& in) {
  return "line " + std::to_string(in.LineNumber()) + " is no number";
}

std::string NoPoints(int n) { return n < 1 ? "no points in it" : "no counts in it"; }

bool SkipLines(LineReader& in, int lines) {
  std::string line;
  for (int i = 0; i < lines; ++i)
    if (!in.Read(line)) return false;
  return true;
}

bool HasKey(std::string_view line, std::string_view key) {
  return TrimRight(line.substr(0, key.size())) == TrimRight(key);
}

std::string_view Columns(std::string_view line, int first, int last) {
  const int length = static_cast<int>(line.size());
  last = std::min(last, length);
  if (first > last) return {};
  return line.substr(first - 1, last - first + 1);
}

void ReadRealKeys(std::string_view line, int slot, std::span<const RealKey> keys) {
  for (const RealKey& row : keys) {
    if (!HasKey(line, row.key)) continue;
    const bool read =
        ReadRecord<"(f10.6)">(Columns(line, static_cast<int>(row.key.size()) + 1), *row.value);
    if (read && row.value == &ws.scanwave(1)) StateWavelength(slot);
    return;
  }
}

void StateWavelength(int slot) {
  if (slot == SlotInput) ws.statedwave = ws.scanwave(1);
}

int ReadCountRows(LineReader& in, int slot, const Format& format, int fields, int limit) {
  float* counts = ws.yval.row(slot).data();
  std::vector<ReadTarget> targets(fields);
  std::string line;
  int perline = fields;
  int last = 0;
  for (int first = 1; last < limit && in.Read(line, RowWidth); first += fields) {
    for (int k = 0; k < perline; ++k) targets[k] = counts + first - 1 + k;
    perline = ReadValues(line, format, {targets.data(), static_cast<std::size_t>(perline)});
    if (perline == 0) break;
    last = first + perline - 1;
  }
  return last;
}

void DropCommaBehind(std::string& line, std::size_t width) {
  if (line.find(',') == width) line.erase(width, 1);
}

void FillGrid(int slot, int n, float start, float step) {
  float* x = ws.xval.row(AxisTth, slot).data();
  for (int i = 1; i <= n; ++i) {
    const float tth = step * static_cast<float>(i - 1) + start;
    x[i - 1] = std::isfinite(tth) ? tth : start;
  }
}

bool CutAtLastPoint(int slot, int n, bool negative) {
  const float* y = ws.yval.row(slot).data();
  while (n > 0 && !(negative ? y[n - 1] != 0 : y[n - 1] > 0)) --n;
  if (n > 0) ws.npts(slot) = n;
  return n > 0;
}

void FinishInput(const std::string& sample, bool copyx) {
  const int n = ws.npts(SlotInput);
  std::copy_n(ws.yval.row(SlotInput).data(), n, ws.yval.row(SlotNet).data());
  if (copyx)
    std::copy_n(ws.xval.row(AxisTth, SlotInput).data(), n, ws.xval.row(AxisTth, SlotNet).data());
  ws.npts(SlotNet) = n;
  ws.wavelen(2) = ws.scanwave(2);
  ws.wavelen(3) = ws.scanwave(3);
  ws.sampleid = std::string(Trim(sample));
  ws.infoline.clear();
}

void SetExposure(float seconds) { ws.gdfhead(8) = WriteRecord<"(i10)">(nint(seconds)); }

SlashDate SplitDate(std::string_view text) {
  const auto twodigits = [&](std::size_t from, std::size_t to) {
    std::string field(Cut(text.substr(from, to - from), 2));
    if (to - from == 1) field.insert(0, "0");
    return field;
  };
  SlashDate date;
  const std::string_view head = Cut(text, 10);
  const std::size_t k = head.find('/');
  if (k == std::string_view::npos) return date;
  date.month = twodigits(0, k);
  const std::size_t m = head.find('/', k + 1);
  if (m == std::string_view::npos) return date;
  date.day = twodigits(k + 1, m);
  date.rest = text.substr(m);
  return date;
}
