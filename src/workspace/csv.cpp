// Tables for other programs.
#include "workspace/csv.h"

#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/text.h"

namespace {

std::string Cell(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string(2, c) : std::string(1, c);
  return quoted + '"';
}

}  // namespace

std::string CsvLine(std::span<const std::string> cells) {
  std::string line;
  for (const std::string& cell : cells) line += (&cell == &cells.front() ? "" : ",") + Cell(cell);
  return line;
}

std::vector<std::string> CsvCells(std::string_view line) {
  std::vector<std::string> cells(1);
  bool quoted = false;
  for (std::size_t k = 0; k < line.size(); ++k) {
    const char c = line[k];
    if (quoted && c == '"' && k + 1 < line.size() && line[k + 1] == '"') {
      cells.back() += line[++k];
    } else if (c == '"' && (quoted || cells.back().empty())) {
      quoted = !quoted;
    } else if (c == ',' && !quoted) {
      cells.emplace_back();
    } else {
      cells.back() += c;
    }
  }
  return cells;
}

std::string WriteLines(const std::string& path, std::span<const std::string> lines,
                       const std::string& failure, const char* end) {
  LineWriter file(path);
  for (const std::string& line : lines) file.Write(line + end);
  if (file.Close()) return "";
  const std::string text = FileMessage(failure, path, file.Reason());
  MessageBoxError("File Error", text);
  return text;
}
