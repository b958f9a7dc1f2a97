// The script file: two lists of files, and the commands for every file of the first.
//
//   input.mlt
//   output.mlt
//   INFM    2
//   ZERO     .0500
//   SCAL    2.0000    1    0    0
//   UTFM    2
//
// Paths are taken from the folder of the file. A command is a word of four letters in either case,
// and parameters in fixed columns; other lines mean nothing.
#include "script/scriptfile.h"

#include <algorithm>
#include <filesystem>
#include <span>

#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/paths.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

constexpr ReadTarget kRead[] = {&ws.scriptinfmt}, kZero[] = {&ws.zeroshift},
                     kTruncate[] = {&ws.savestart, &ws.savestop},
                     kScale[] = {&ws.scalefactor, &ws.scaletype, &ws.scalefrom, &ws.scaleto},
                     kSmooth[] = {&ws.smoothwindow}, kGolay[] = {&ws.sgwindow},
                     kBackground[] = {&ws.autosubwindow},
                     kConvert[] = {&ws.wavelen.cells[0], &ws.newwavelength, &ws.convstart,
                                   &ws.convstop, &ws.convstep},
                     kSkip[] = {&ws.headerskip}, kWrite[] = {&ws.scriptoutfmt};

struct CommandLayout {
  ScriptWord command;
  const char* word;
  Format layout;  // of the whole line
  std::span<const ReadTarget> parameters;
  int decimals;       // with which reals are written, in ten columns; integers take five
  int* use;           // whether the script holds it; null for the first and the last, which it must
  const char* error;  // box for parameters that are no numbers
};

// In the order in which they are written.
constexpr CommandLayout kLayouts[] = {
    {ScriptWord::Read, "INFM", FormatOf<"(4x,i5)">(), kRead, 0, nullptr,
     "Error reading INFM command"},
    {ScriptWord::Zero, "ZERO", FormatOf<"(4x,f10.0)">(), kZero, 4, &ws.scriptusezero,
     "Error reading ZERO command"},
    {ScriptWord::Truncate, "TRUN", FormatOf<"(4x,2f10.0)">(), kTruncate, 4, &ws.scriptusetrun, ""},
    {ScriptWord::Scale, "SCAL", FormatOf<"(4x,f10.0,3i5)">(), kScale, 4, &ws.scriptusescal,
     "Error reading SCAL command"},
    {ScriptWord::Smooth, "SMOO", FormatOf<"(4x,i5)">(), kSmooth, 0, &ws.scriptusesmoo,
     "Error reading SMOO command"},
    {ScriptWord::Golay, "SAGO", FormatOf<"(4x,i5)">(), kGolay, 0, &ws.scriptusesago,
     "Error reading SAGO command"},
    {ScriptWord::Background, "BKGR", FormatOf<"(4x,i5)">(), kBackground, 0, &ws.scriptusebkgr,
     "Error reading BKGR command"},
    {ScriptWord::Convert, "CONV", FormatOf<"(4x,5f10.0)">(), kConvert, 5, &ws.scriptuseconv,
     "Error reading CONV command"},
    {ScriptWord::Skip, "SKIP", FormatOf<"(4x,i5)">(), kSkip, 0, &ws.scriptuseskip,
     "Error reading SKIP command"},
    {ScriptWord::Write, "UTFM", FormatOf<"(4x,i5)">(), kWrite, 0, nullptr,
     "Error reading UTFM command"},
};

template <class Visit>
void VisitParameters(const CommandLayout& layout, Visit visit) {
  for (const ReadTarget& parameter : layout.parameters) {
    if (const auto* real = std::get_if<float*>(&parameter)) visit(**real);
    if (const auto* whole = std::get_if<int*>(&parameter)) visit(**whole);
  }
}

constexpr std::size_t kWordLength = 4;

const CommandLayout* FindLayout(std::string_view line) {
  const std::string word = UpperText(line.substr(0, kWordLength));
  const auto found =
      std::ranges::find_if(kLayouts, [&](const CommandLayout& row) { return word == row.word; });
  return found == std::end(kLayouts) ? nullptr : &*found;
}

// ---- Reading ----

struct CommandLine {
  std::string text;
  int number;
};

// The name of a list; false, after a box, if there is none or no field can hold it.
bool ReadListName(LineReader& in, std::string& name) {
  std::string line;
  if (!in.Read(line, TextLength + 1)) {
    MessageBoxError(
        "Read Error",
        FileMessage("Error reading script file", in.Path(),
                    in.Reason().empty() ? "the names of the lists are not in it" : in.Reason()));
    return false;
  }
  if (!AcceptPath(line)) return false;
  name = line;
  return true;
}

// The parameters of all commands, for a script that turns out to be none.
class KeptParameters {
 public:
  KeptParameters() {
    for (const CommandLayout& layout : kLayouts)
      VisitParameters(layout, [this](auto value) { values_.push_back(value); });
  }
  void PutBack() const {
    auto kept = values_.begin();
    for (const CommandLayout& layout : kLayouts)
      VisitParameters(layout, [&](auto& value) {
        value = static_cast<std::remove_reference_t<decltype(value)>>(*kept++);
      });
  }

 private:
  std::vector<double> values_;
};

std::vector<CommandLine> ReadLines(LineReader& in) {
  std::vector<CommandLine> lines;
  for (std::string line; in.Read(line);)
    if (!line.empty()) lines.push_back({line, in.LineNumber()});
  if (ws.debugmode)
    for (const CommandLine& line : lines) MessageBoxInfo("Script buffer:", line.text);
  return lines;
}

bool ReadParameters(const CommandLayout& layout, const CommandLine& line) {
  const int count = static_cast<int>(layout.parameters.size());
  if (ReadValues(line.text, layout.layout, layout.parameters) == count) return true;
  const std::string reason = "line " + std::to_string(line.number) + ": " + line.text;
  if (*layout.error)
    MessageBoxError("Read Error", FileMessage(layout.error, ScriptFile(), reason));
  else
    WindowOutStatusBar(3, "Error in " + reason);
  return false;
}

// ---- Writing ----

std::string LineOf(const CommandLayout& layout) {
  constexpr int kRealWidth = 10, kIntegerWidth = 5;
  std::string line = layout.word;
  VisitParameters(layout, [&]<class Number>(Number value) {
    if constexpr (std::is_same_v<Number, float>)
      line += RealField(value, kRealWidth, layout.decimals);
    else
      line += IntField(value, kIntegerWidth);
  });
  return line;
}

Outcome CannotWrite(const std::string& text, const std::string& reason) {
  MessageBoxError("File Error", FileMessage(text, ScriptFile(), reason));
  return Outcome::Failed;
}

}  // namespace

std::string ScriptFile() { return IOsFullPath(ws.scriptpath); }

std::string FromFolderOf(const std::string& file, const std::string& path) {
  return (std::filesystem::path(file).parent_path() / path).string();
}

std::optional<std::vector<ScriptWord>> ReadScript() {
  LineReader in(ScriptFile());
  if (!in.IsOpen()) {
    MessageBoxError("File error", FileMessage("Error opening script file", in.Path(), in.Reason()));
    return {};
  }
  std::string inlist, outlist;
  if (!ReadListName(in, inlist) || !ReadListName(in, outlist)) return {};
  const KeptParameters before;
  std::vector<ScriptWord> commands;
  for (const CommandLine& line : ReadLines(in)) {
    const CommandLayout* layout = FindLayout(line.text);
    if (!layout) continue;
    if (!ReadParameters(*layout, line)) {
      before.PutBack();
      return {};
    }
    commands.push_back(layout->command);
  }
  ws.scriptinlist = inlist;
  ws.scriptoutlist = outlist;
  return commands;
}

void SetScriptUse(const std::vector<ScriptWord>& commands) {
  for (const CommandLayout& layout : kLayouts)
    if (layout.use) *layout.use = std::ranges::count(commands, layout.command) > 0;
}

Outcome WriteScript() {
  if (ws.scriptpath.empty()) return Outcome::Idle;
  std::vector<std::string> lines{ws.scriptinlist, ws.scriptoutlist};
  for (const CommandLayout& layout : kLayouts) {
    if (layout.use && !*layout.use) continue;
    lines.push_back(LineOf(layout));
    // Asterisks: a number that no run could read again.
    if (lines.back().find('*') != std::string::npos)
      return CannotWrite("Error writing script file",
                         "a number of " + std::string(layout.word) + " is too long for it");
  }
  LineWriter out(ScriptFile());
  if (!out.IsOpen()) return CannotWrite("Error opening script file", out.Reason());
  for (const std::string& line : lines) out.Write(TrimRight(line));
  if (!out.Close()) return CannotWrite("Error writing script file", out.Reason());
  return Outcome::Done;
}
