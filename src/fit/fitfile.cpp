// Fit files (.fit): the parameters of a whole-pattern fit and its reflections.
//
// A line is a key in ten columns and numbers, which any reader may part by blanks:
//
//   LATT         16    7
//   LSCT         25    0    1    2    2
//   LSPR          0.3000         6    1.0500    0.1000      20.0     148.0
//   ELAM         1.54056   1.54433   0.50000
//   ...
//   CELL        4.156860   4.156860   4.156860  90.000000  90.000000  90.000000
//   BKGR          1520.3    -310.2      55.0       0.0       0.0
//                h   k   l   Int    TwoTh     FWHM    p.s.
//   REFL         1   0   0  5230.  21.3580  0.0812  0.5000  0.0790  0.4800      6.
#include "fit/fitfile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <variant>
#include <vector>

#include "crystal/hklcode.h"
#include "workspace/lines.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

constexpr std::size_t kKeyField = 10;
constexpr float kLargest = 1e12f;  // accidents lie beyond; its cube is still a 32-bit real
constexpr float kEqualWaves = 0.001f;
constexpr const char* kReflectionHeader = "             h   k   l   Int    TwoTh     FWHM    p.s.";
// A reflection's reals, which follow its three indices.
constexpr std::array kReflectionReals{pint, ptth, pfwhm, pshape, pfwhmr, pshaper, pmult};
constexpr int kReflectionFields = 3 + std::ssize(kReflectionReals);

// A line of the file: how it is written and read, and what its fields are in a file without it.
struct Section {
  std::string_view key;
  Format written, read;  // without items: not read
  std::vector<ReadTarget> fields;
  std::vector<float> absent;  // empty: what stands
};

template <class... T>
std::vector<ReadTarget> Each(T&... tables) {
  std::vector<ReadTarget> all;
  const auto add = [&](auto& table) {
    for (auto& cell : table.cells) all.emplace_back(&cell);
  };
  (add(tables), ...);
  return all;
}

// Coefficients first to first + 4.
std::vector<ReadTarget> Five(Table<float, MaxChebyshev>& c, int first) {
  std::vector<ReadTarget> five;
  for (int k = first; k < first + 5; ++k) five.emplace_back(&c(k));
  return five;
}

template <FormatText Written, FormatText Read>
Section Row(std::string_view key, std::vector<ReadTarget> fields, std::vector<float> absent = {}) {
  return {key, FormatOf<Written>(), FormatOf<Read>(), std::move(fields), std::move(absent)};
}

// All lines but the reflections, in the file's order.
std::vector<Section> Sections(FitParameters& f, Table<float, 3>& scanwave) {
  const std::vector<float> six(6), nine(9), five(5);
  // clang-format off
  return {
      Row<"(a,2i5)", "(2i5)">("LATT      ", {&f.laueclass, &f.centering}, {1, 1}),
      Row<"(a,5i5)", "(5i5)">(
          "LSCT      ", {&f.ncycles, &f.nbkgcycles, &f.everynth, &f.fitposmode, &f.fitfwhmmode},
          {25, 2, 1, 2, 2}),
      Row<"(a,f10.4,i10,2f10.4,2f10.1)", "(f10.0,i10,4f10.0)">(
          "LSPR      ", {&f.maxshift, &f.nfwhmpeak, &f.diagdamp, &f.minfwhmsep, &f.fitmin2th,
                         &f.fitmax2th},
          {0.3f, 6, 1, 0.1f, 0, 0}),
      Row<"(a,3f10.5)", "(3f10.0)">("ELAM      ", Each(scanwave), {1.54058f, 1.54433f, 0}),
      Row<"(a,2i5)", "(2i5)">("GLOB      ", {&f.bgorder, &f.tthzerorefine}, {0, 0}),
      Row<"(a,9i5)", "(9i5)">("HWTC      ", Each(f.fwhmrefine, f.fwhmtie), nine),
      Row<"(a,9i5)", "(9i5)">("PKSC      ", Each(f.shaperefine, f.shapetie), nine),
      Row<"(a,6i5)", "(6i5)">("CELC      ", Each(f.cellrefine), six),
      Row<"(a,6f11.6)", "(6f12.0)">("CELL      ", Each(f.cell)),
      {"SDCE      ", FormatOf<"(a,6f11.6)">(), {}, Each(f.cellesd), {}},
      Row<"(a,6f10.6)", "(6f10.0)">("HWTH      ", Each(f.fwhmleft, f.fwhmright)),
      Row<"(a,6f10.6)", "(6f10.0)">("PKSH      ", Each(f.shapeleft, f.shaperight)),
      Row<"(a, f10.6)", "(f10.0)">("ZETT      ", {&f.tthzero}),
      Row<"(a,5f10.1)", "(5f10.0)">("BKGR      ", Five(f.bgcoef, 1), five),
      Row<"(a,5f10.1)", "(5f10.0)">("BKGR      ", Five(f.bgcoef, 6), five),
      Row<"(a,5f10.1)", "(5f10.0)">("BKGR      ", Five(f.bgcoef, 11), five),
  };
  // clang-format on
}

// The descriptors of a format, their numbers in fields of another width.
std::vector<Format::Item> OfWidth(int width, const Format& format) {
  std::vector<Format::Item> items(format.items.begin(), format.items.end());
  for (Format::Item& item : items)
    if (item.kind != Format::Kind::Text) item.width = width;
  return items;
}

int Numbers(std::string_view cleaned) {
  return static_cast<int>(std::ranges::count(cleaned, ',')) + 1;
}

// Whether a reader finds all numbers behind the key. Those that touch each other are one to him.
bool IsReadable(std::string_view line, std::size_t n) {
  std::string numbers(line.substr(kKeyField));
  if (numbers.find_first_not_of(" -.0123456789") != std::string::npos) return false;
  CleanNumberLine(numbers);
  return Numbers(numbers) == static_cast<int>(n);
}

// A line of the file in its columns, or in wide ones if it is not readable otherwise. The first of
// all that have no room for their numbers even there is kept in `bad`.
std::string Line(std::string_view key, const Format& format, std::vector<WriteValue> values,
                 std::string& bad) {
  constexpr int wide = 16;  // ten of them are still within a line
  const std::size_t n = values.size();
  values.insert(values.begin(), key);
  const std::string line = WriteValues(format, values);
  if (IsReadable(line, n)) return line;
  std::string wider = WriteValues({OfWidth(wide, format), format.restart}, values);
  if (!IsReadable(wider, n) && bad.empty()) bad = line;
  return wider;
}

std::vector<WriteValue> Values(const std::vector<ReadTarget>& fields) {
  std::vector<WriteValue> values;
  for (const ReadTarget& field : fields)
    values.push_back(std::visit([](auto* value) { return WriteValue(*value); }, field));
  return values;
}

std::vector<WriteValue> Reflection(const PeakTable& p, int row) {
  const Hkl r = UnpackHkl(nint(p(phkl, row)));
  std::vector<WriteValue> values{r.h, r.k, r.l};
  for (PeakField field : kReflectionReals) values.emplace_back(p(field, row));
  return values;
}

// Numbers of a line into their fields, which hold anything after a failure. Those of a line without
// blanks are parted by commas and as long as they are; those of others stand in the format's
// columns.
bool ReadNumbers(const std::string& line, const Format& format, std::span<const ReadTarget> to) {
  const bool parted = line.find(' ') == std::string::npos;
  const auto wide = OfWidth(Format::MaxWidth, format);
  const Format fitting{parted ? wide : format.items, format.restart};
  const auto moderate = [](const ReadTarget& field) {
    const auto* real = std::get_if<float*>(&field);
    return !real || std::fabs(**real) <= kLargest;
  };
  return ReadValues(line, fitting, to) == std::ssize(to) && std::ranges::all_of(to, moderate);
}

void Put(const ReadTarget& field, float value) {
  if (auto* whole = std::get_if<int*>(&field)) **whole = static_cast<int>(value);
  if (auto* real = std::get_if<float*>(&field)) **real = value;
}

float Get(const ReadTarget& field) { return *std::get<float*>(field); }

// True if the file has it.
bool ReadSection(RecordStore& store, const Section& section) {
  if (section.read.items.empty()) return false;
  std::vector<float> otherwise = section.absent;
  if (otherwise.empty()) std::ranges::transform(section.fields, std::back_inserter(otherwise), Get);
  std::string line;
  const bool found = FindRecord(store, section.key, line);
  if (found && ReadNumbers(line, section.read, section.fields)) return true;
  for (std::size_t k = 0; k < section.fields.size(); ++k) Put(section.fields[k], otherwise[k]);
  return found;
}

// What has no meaning, or is an index of tables elsewhere.
void MendChoices(FitParameters& f) {
  const auto choose = [](int& choice, int last, int otherwise) {
    if (choice < 1 || choice > last) choice = otherwise;
  };
  choose(f.laueclass, 16, 1);
  choose(f.centering, 7, 1);
  choose(f.fitposmode, 2, 2);
  choose(f.fitfwhmmode, 2, 2);
  f.bgorder = std::clamp(f.bgorder, 0, MaxChebyshev);
  for (const ReadTarget& flag :
       Each(f.cellrefine, f.fwhmrefine, f.fwhmtie, f.shaperefine, f.shapetie))
    *std::get<int*>(flag) = *std::get<int*>(flag) != 0;
  f.tthzerorefine = f.tthzerorefine != 0;
}

bool ReadReflection(RecordStore& store, PeakTable& p, int row) {
  std::string line;
  if (!FindRecord(store, "REFL", line)) return false;
  const std::string found = line;
  CleanNumberLine(line);
  // Where a word or asterisks stood for a number, those behind would be taken for the wrong field.
  if (line != found && Numbers(line) < kReflectionFields) return false;

  Hkl r;
  std::array<float, 8> v{};  // the last is of other programs
  std::vector<ReadTarget> fields{&r.h, &r.k, &r.l};
  for (float& value : v) fields.emplace_back(&value);
  if (!ReadNumbers(line, FormatOf<"(3i5,8f10.0)">(), fields)) return false;
  for (std::size_t k = 0; k < kReflectionReals.size(); ++k) p(kReflectionReals[k], row) = v[k];
  p(phkl, row) = static_cast<float>(PackHkl(r));
  return true;
}

}  // namespace

std::string WriteFit(const std::string& path, const FitParameters& fit, const PeakTable& peaks,
                     int npeaks, const Table<float, 3>& scanwave) {
  FitParameters parameters = fit;
  Table<float, 3> waves = scanwave;
  std::string bad;
  std::vector<std::string> lines;
  for (const Section& section : Sections(parameters, waves))
    lines.push_back(Line(section.key, section.written, Values(section.fields), bad));
  lines.push_back(kReflectionHeader);
  for (int row = 1; row <= std::min(npeaks, MaxPeaks); ++row)
    lines.push_back(Line("REFL      ", FormatOf<"(a,3i4,f7.0,f9.4,4f8.4,f8.0)">(),
                         Reflection(peaks, row), bad));
  if (!bad.empty()) return "no room for a number in the line " + bad;

  LineWriter out(path);
  for (const std::string& line : lines) out.Write(line);
  out.Close();
  return out.Reason();
}

RecordFailure ReadFit(const std::string& path, FitParameters& fit, PeakTable& peaks, int& npeaks,
                      Table<float, 3>& scanwave, Table<float, 9>& wavelen) {
  RecordStore store;
  RecordFailure failure;
  if (ReadRecords(path, store, failure) < 1) return failure;
  FitParameters parameters = fit;
  Table<float, 3> waves = scanwave;
  int found = 0;
  for (const Section& section : Sections(parameters, waves)) found += ReadSection(store, section);
  PeakTable rows = peaks;
  int count = 0;
  while (count < MaxPeaks && ReadReflection(store, rows, count + 1)) ++count;
  if (found + count == 0) return {"Error reading recfile", "nothing of a fit in it"};

  MendChoices(parameters);
  fit = parameters;
  peaks = rows;
  // None is taken for a list that has gone to its end; the rows are those of before.
  npeaks = count < 1 ? MaxPeaks : count;
  scanwave = waves;
  for (int k = 1; k <= 3; ++k) wavelen(k) = scanwave(k);
  if (std::fabs(scanwave(1) - scanwave(2)) < kEqualWaves) scanwave(3) = 0;
  return failure;
}
