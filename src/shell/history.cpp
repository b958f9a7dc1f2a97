// What the user has done, as lines of a transcript that does it again.
#include "shell/history.h"

#include <algorithm>
#include <iterator>

#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/record.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

std::vector<std::string> history;
// Where what was done to a pattern begins that has come in beside other things, as one of a series.
std::size_t begins = 0;
int loads = 0;

using Lines = std::vector<std::string>;

// "file", "open" or "menu" is the line's first word.
bool Is(const std::string& line, const char* word) {
  return line.starts_with(word + std::string(" "));
}

// A pattern is opened by its path, or by an item of the menu that is answered with it.
bool OpensPattern(const std::string& line) {
  return Is(line, "open") || (Is(line, "menu") && line.ends_with("  # Open pattern"));
}

// What was done since the last pattern was opened, which is the first line.
Lines SinceOpened() {
  const auto last = std::find_if(history.rbegin(), history.rend(), OpensPattern);
  const auto behind = history.begin() + static_cast<std::ptrdiff_t>(begins);
  if (last.base() <= behind && begins > 0) {
    Lines lines{"open \"{file}\""};
    lines.insert(lines.end(), behind, history.end());
    return lines;
  }
  if (last == history.rend()) return {};
  Lines lines(std::prev(last.base()), history.end());
  if (!Is(lines[0], "open") && lines.size() > 1 && Is(lines[1], "file")) lines.erase(lines.begin());
  lines[0] = "open \"{file}\"";
  return lines;
}

// Lines that get what has been found.
Lines GetsOfResults() {
  Lines gets;
  if (ws.npeaks > 0 && ws.fitnpar == 0)
    gets.insert(gets.end(), {"get npeaks as peaks",
                             "get peaks(1:3,1) as \"position 1\" \"intensity 1\" \"FWHM 1\""});
  if (ws.npeaks > 0 && ws.fitnpar == 0 && ws.peakorigin(1) == PeakFitted)
    gets.push_back("get peakesd(1:3,1) as \"position 1 esd\" \"intensity 1 esd\" \"FWHM 1 esd\"");
  if (ws.fitnpar > 0)
    gets.insert(
        gets.end(),
        {"get cell(1:6) as a b c alpha beta gamma",
         "get cellesd(1:6) as \"a esd\" \"b esd\" \"c esd\" \"alpha esd\" \"beta esd\" "
         "\"gamma esd\"",
         "get tthzero as zero", "get fitcycles as cycles", "get fitcorrelation as correlation",
         "get fitrwp as \"Rwp, fraction\"", "get fitgof as GoF"});
  if (ws.spposition > 0)
    gets.insert(gets.end(),
                {"get spposition as position", "get sparea as area", "get spfwhmmean as FWHM"});
  if (ws.humparea != 0)
    gets.insert(gets.end(),
                {"get humparea as \"hump area\"", "get humpposition as \"hump position\""});
  if (ws.crystallinity > 0) gets.push_back("get crystallinity");
  if (gets.empty()) gets.push_back("get npts(1) as points");
  return gets;
}

bool WriteTranscript(const std::string& path, const Lines& lines, const std::string& failure) {
  LineWriter file(path);
  for (const std::string& line : lines) file.Write(line);
  if (file.Close()) return true;
  MessageBoxError("File Error", FileMessage(failure, path, file.Reason()));
  return false;
}

void Append(Lines& lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

}  // namespace

void NoteHistory(const std::vector<std::string>& lines) {
  history.insert(history.end(), lines.begin(), lines.end());
  if (ws.loadcount > loads && std::ranges::none_of(lines, OpensPattern)) begins = history.size();
  loads = ws.loadcount;
}

bool HasHistory() { return !history.empty(); }
void ForgetHistory() {
  history.clear();
  begins = 0;
  loads = ws.loadcount;
}

bool WriteHistory(const std::string& path) {
  const int date = IOsDate();
  Lines lines{WriteRecord<"('# What was done in Quillagram up to ',i4.4,'-',i2.2,'-',i2.2,'.')">(
                  date / 10000, date / 100 % 100, date % 100),
              "# quillagram-replay does it again, with the files where they were."};
  Append(lines, history);
  return WriteTranscript(path, lines, "Error writing history");
}

bool WriteRecipe(const std::string& path) {
  Lines lines{
      "# What was done to " + OnOneLine(ws.patternstem) + ", for any pattern:",
      "# quillagram-series does it to each of many files. Every get is a column of the table."};
  Append(lines, SinceOpened());
  Append(lines, GetsOfResults());
  return WriteTranscript(path, lines, "Error writing recipe");
}
