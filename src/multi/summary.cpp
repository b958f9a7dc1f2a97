// Summary files (.sum): two-theta of the first pattern, and the rounded counts of each.
//
//        tth   quartz silicon-
//     5.0000      152       98
//     5.0200      149      101
//
// The number of columns follows from the width of the first line, in letters.
#include "multi/summary.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <vector>

#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/paths.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace fs = std::filesystem;

namespace {

constexpr int kMostColumns = 100;
constexpr int kTthWidth = 8, kNameWidth = 8, kColumnWidth = 1 + kNameWidth;
constexpr Format kRow = FormatOf<"(f8.4,100i9)">();
constexpr const char* kCopyName = "temp.sum";  // of the old table, while a column comes to it
constexpr const char* kCannotOpen = "Error opening summary file";
constexpr const char* kCannotCopy = "Error copying summary file";

Outcome Fail(const std::string& text) {
  MessageBoxError("File error", text);
  return Outcome::Failed;
}

Outcome Fail(const char* text, const std::string& path, const std::string& reason) {
  return Fail(FileMessage(text, path, reason));
}

constexpr int WidthOf(int columns) { return kTthWidth + kColumnWidth * columns; }

void Tell(const std::string& text) {
  const std::string name = ws.sumfile.substr(FileDirectory(ws.sumfile).size());
  const std::string patterns = ws.sumcount == 1 ? " pattern" : " patterns";
  WindowOutStatusBar(3, text + ": " + std::to_string(ws.sumcount) + patterns + " in " + name);
}

// ---- Lines of the table ----

struct Header {
  bool whole = true;  // or no line of a table
  std::vector<std::string> names;
};

// An empty file has no names. Blank lines in front do not count.
Header ReadHeader(LineReader& in) {
  Header header;
  std::string line;
  while (line.empty())
    if (!in.Read(line, WidthOf(kMostColumns + 1))) return header;
  std::string_view rest = line;
  const auto take = [&rest](int letters) {
    const std::string_view taken = Cut(rest, letters);
    rest.remove_prefix(taken.size());
    return taken;
  };
  header.whole = Trim(take(kTthWidth)) == "tth" && !rest.empty();
  while (!rest.empty()) {
    const bool gap = take(1) == " ";
    const std::string_view name = take(kNameWidth);
    // Names are right-justified, so that the last one ends where its column does.
    header.whole = header.whole && gap && Cut(name, kNameWidth - 1) != name;
    header.names.emplace_back(name);
  }
  return header;
}

std::string WriteHeader(const std::vector<std::string>& names) {
  std::string columns;
  for (const std::string& name : names) columns += " " + RightAlign(name, kNameWidth);
  return WriteRecord<"(a8,a)">("tth", columns);
}

// A name without letters would be no column to the reader of the line.
std::string ColumnName() {
  const std::string name = Field(OnOneLine(ws.patternstem), kNameWidth);
  return name.empty() ? "-" : name;
}

struct Row {
  float tth = 0;
  std::vector<int> counts;
};

// Whether a line has the width of its columns and nothing but numbers in it: neither asterisks for
// one without room, nor commas, which would end a column early.
bool HoldsNumbers(std::string_view line, std::size_t columns) {
  return std::ssize(line) == WidthOf(static_cast<int>(columns)) &&
         line.find_first_not_of(" +-.0123456789") == std::string_view::npos;
}

// As many counts as the row has.
bool ReadRow(const std::string& line, Row& row) {
  std::vector<ReadTarget> fields{&row.tth};
  for (int& count : row.counts) fields.emplace_back(&count);
  return HoldsNumbers(line, row.counts.size()) &&
         ReadValues(line, kRow, fields) == std::ssize(fields);
}

std::string WriteRow(const Row& row) {
  std::vector<WriteValue> values{row.tth};
  values.insert(values.end(), row.counts.begin(), row.counts.end());
  return WriteValues(kRow, values);
}

// ---- The table with one column more ----

struct NewTable {
  std::vector<std::string> lines;
  std::string fault;  // why it cannot be made; blank: it is whole

  // Row i, its last count that of the pattern.
  void Add(Row row, int i) {
    row.counts.push_back(nint(ws.yval(SlotInput, i)));
    lines.push_back(WriteRow(row));
    if (!HoldsNumbers(lines.back(), row.counts.size()))
      fault = "point " + std::to_string(i) + " of the pattern has no room in its columns";
  }
};

NewTable FirstColumn() {
  NewTable table{{WriteHeader({ColumnName()})}, {}};
  for (int i = 1; i <= ws.npts(SlotInput) && table.fault.empty(); ++i)
    table.Add({ws.xval(AxisTth, SlotInput, i), {}}, i);
  return table;
}

// The rows keep the two-theta of the first pattern: others go in by the number of the point.
NewTable NextColumn(LineReader& old) {
  Header header = ReadHeader(old);
  Row row{0, std::vector<int>(header.names.size())};
  header.names.push_back(ColumnName());
  NewTable table{{WriteHeader(header.names)}, {}};
  int i = 0, blank = 0;  // number of the first line without a row
  for (std::string line; table.fault.empty() && old.Read(line, WidthOf(kMostColumns + 1));) {
    if (line.empty()) {
      if (blank == 0) blank = old.LineNumber();
    } else if (blank > 0 || !ReadRow(line, row)) {
      table.fault = "line " + std::to_string(blank > 0 ? blank : old.LineNumber()) +
                    " is not a row of " + std::to_string(row.counts.size()) + " columns";
    } else if (++i > MaxPoints) {
      table.fault = "it has more than " + std::to_string(MaxPoints) + " rows";
    } else {
      table.Add(row, i);
    }
  }
  if (!old.Reason().empty()) table.fault = old.Reason();
  return table;
}

// ---- Files ----

// The columns in a file, none in an empty one; false, after a box, for what is no summary file.
bool CountColumns(const std::string& path, int& columns) {
  LineReader in(path);
  const Header header = ReadHeader(in);
  std::string reason = in.Reason();
  if (reason.empty() && !header.whole) reason = "its first line is not that of a summary file";
  if (!reason.empty()) return Fail(kCannotOpen, path, reason) == Outcome::Done;
  columns = static_cast<int>(header.names.size());
  return true;
}

bool IsThere(const std::string& path) {
  std::error_code failure;
  return fs::exists(fs::symlink_status(path, failure));
}

int CopySumFile(const std::string& from, const std::string& to) {
  IOsCopyFile(from, to);
  return WInfoError(1) == 0;
}

int DeleteSumFile(const std::string& name) {
  IOsDeleteFile(name);
  return WInfoError(1) == 0;
}

std::string LastReason() { return std::generic_category().message(WInfoError(1)); }

// Beside the table, where there is leave to write: the folder of the pattern may belong to others.
std::string PathOfCopy() { return FileDirectory(ws.sumfile) + kCopyName; }

// Whether the copy holds what the summary file does.
bool CopyIsSame() {
  std::error_code failure;
  if (!fs::is_regular_file(PathOfCopy(), failure)) return false;
  std::ifstream copy(PathOfCopy(), std::ios::binary), table(ws.sumfile, std::ios::binary);
  using Bytes = std::istreambuf_iterator<char>;
  return std::equal(Bytes(copy), Bytes(), Bytes(table), Bytes());
}

// The old table goes aside. A file of the copy's name that is more than an old copy stays.
bool SetAside() {
  std::error_code failure;
  std::string reason;
  if (fs::equivalent(PathOfCopy(), ws.sumfile, failure))
    reason = "is the name of the copy, and cannot be that of the table";
  else if (IsThere(PathOfCopy()) && !CopyIsSame())
    reason = "is there already and holds something else; move it away";
  if (!reason.empty()) return Fail(kCannotCopy, PathOfCopy(), reason) == Outcome::Done;
  if (CopySumFile(ws.sumfile, PathOfCopy())) return true;
  Fail(kCannotCopy, ws.sumfile + " to " + PathOfCopy(), LastReason());
  DeleteSumFile(PathOfCopy());
  return false;
}

// Where the table could not be replaced as a whole, the copy is what is left of it.
Outcome FailedToWrite(const LineWriter& out, bool copied) {
  std::string reason = out.Reason();
  if (copied && CopyIsSame())
    DeleteSumFile(PathOfCopy());
  else if (copied)
    reason += "\nThe table of before is in " + PathOfCopy();
  return Fail("Error writing summary file", out.Path(), reason);
}

Outcome WriteTable(const NewTable& table, bool copied) {
  LineWriter out(ws.sumfile);
  if (!out.IsOpen()) return Fail(kCannotOpen, ws.sumfile, out.Reason());
  for (const std::string& line : table.lines) out.Write(line);
  return out.Close() ? Outcome::Done : FailedToWrite(out, copied);
}

// What the new column has in common with the rows, where that is not all of them.
std::string Mismatch(int rows) {
  const int points = ws.npts(SlotInput);
  if (points > rows) return ", cut to " + std::to_string(rows) + " rows";
  if (points < rows) return ", which ends at row " + std::to_string(points);
  return "";
}

}  // namespace

Outcome OpenSumFile(const std::string& path) {
  if (!AcceptPath(path)) return Outcome::Failed;
  if (!IsThere(path)) {
    LineWriter made(path);
    if (!made.Close()) return Fail(kCannotOpen, path, made.Reason());
  }
  int columns = 0;
  if (!CountColumns(path, columns)) return Outcome::Failed;
  ws.sumfile = path;
  ws.sumopen = 1;
  ws.sumcount = columns;
  Tell("Summary");
  return Outcome::Done;
}

Outcome AddToSumFile() {
  if (ws.sumopen != 1) return Outcome::Idle;
  if (ws.npts(SlotInput) < 1) return Fail("There is no pattern to add");
  // An editor may have been at the table.
  if (IsThere(ws.sumfile) && !CountColumns(ws.sumfile, ws.sumcount)) return Outcome::Failed;
  if (ws.sumcount >= kMostColumns) return Fail("Too many files in summary file");

  NewTable table;
  const bool copied = ws.sumcount > 0;
  if (copied) {
    if (!SetAside()) return Outcome::Failed;
    LineReader old(PathOfCopy());
    if (!old.IsOpen())
      return Fail("Error opening temporary summary file", PathOfCopy(), old.Reason());
    table = NextColumn(old);
  } else {
    table = FirstColumn();
  }
  if (!table.fault.empty()) {
    if (copied) DeleteSumFile(PathOfCopy());
    return Fail("Cannot add to summary file", ws.sumfile, table.fault);
  }
  if (WriteTable(table, copied) != Outcome::Done) return Outcome::Failed;
  ++ws.sumcount;
  Tell(ws.patternstem + " added" + Mismatch(static_cast<int>(table.lines.size()) - 1));
  if (copied && !DeleteSumFile(PathOfCopy()))
    Fail("Error deleteing temporary summary file", PathOfCopy(), LastReason());
  return Outcome::Done;
}

Outcome EditSumFile() {
  if (ws.sumopen != 1) return Outcome::Idle;
  IOsCommandOnFile(ws.editorpath, ws.sumfile);
  return Outcome::Done;
}

Outcome CloseSumFile() {
  ws.sumopen = ws.sumcount = 0;
  return Outcome::Done;
}
