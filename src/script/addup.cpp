// The table in which a script adds up the counts of all its files.
//
//   2theta   quartz_0 quartz_1
//     5.0000      182      175
//     5.0200      176      181
#include "script/addup.h"

#include <algorithm>

#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/record.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr int kMostFiles = 100, kMostRows = 10000, kTitleLength = 8;

// At the left of a field.
std::string Title(std::string_view text) {
  const std::string title = Field(text, kTitleLength);
  return title + std::string(RightAlign(title, kTitleLength).size() - title.size(), ' ');
}

int RowsOfPattern() {
  const int rows = ws.npts(SlotInput);
  if (rows > kMostRows) MessageBoxError("Pattern Error", "More than 10000 data points");
  return std::min(rows, kMostRows);
}

// As many values as both have.
void CopyInto(std::vector<float>& column, std::span<const float> values) {
  std::copy_n(values.begin(), std::min(column.size(), values.size()), column.begin());
}

bool CannotWrite(const char* text, const LineWriter& out) {
  MessageBoxError("File Error", FileMessage(text, out.Path(), out.Reason()));
  return false;
}

}  // namespace

void AddUpTable::CountFile(const std::string& path) {
  if (++files_ <= kMostFiles) titles_.push_back(Title(path));
}

int AddUpTable::FilesLeftOut() const { return std::max(files_ - kMostFiles, 0); }

void AddUpTable::Store() {
  if (files_ < 1 || files_ > kMostFiles) return;
  if (columns_.empty()) {
    columns_.emplace_back(RowsOfPattern());
    CopyInto(columns_[0], TthOf(SlotInput));
  }
  columns_.resize(files_ + 1, std::vector<float>(columns_[0].size()));
  CopyInto(columns_[files_], IntensityOf(SlotInput));
}

// A field for each file counted, those without a column too.
bool AddUpTable::WriteTitles(LineWriter& out) const {
  std::string line = Title("2theta");
  for (int i = 0; i < files_; ++i) line += ' ' + (i < kMostFiles ? titles_[i] : Title(""));
  return out.Write(line);
}

bool AddUpTable::WriteRow(LineWriter& out, std::size_t row) const {
  std::string line = WriteRecord<"(f8.4)">(columns_[0][row]);
  for (int i = 1; i <= std::min(files_, kMostFiles); ++i) {
    const bool stored = i < static_cast<int>(columns_.size());
    line += WriteRecord<"(i9)">(stored ? nint(columns_[i][row]) : 0);
  }
  return out.Write(line);
}

bool AddUpTable::Write(const std::string& path) const {
  LineWriter out(path);
  if (!out.IsOpen()) return CannotWrite("Error opening sum file", out);
  bool good = WriteTitles(out);
  const std::size_t rows = columns_.empty() ? 0 : columns_[0].size();
  for (std::size_t row = 0; row < rows && good; ++row) good = WriteRow(out, row);
  return out.Close() && good ? true : CannotWrite("Error writing sum file", out);
}
