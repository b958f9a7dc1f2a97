// Running a script: its commands, in the order of their lines, for every file of the input list.
//
// The readers are called directly: what one file leaves in the Workspace is there for the next.
#include <algorithm>
#include <filesystem>
#include <memory>

#include "background/background.h"
#include "modify/modify.h"
#include "patternfiles/patternfiles.h"
#include "script/addup.h"
#include "script/script.h"
#include "script/scriptfile.h"
#include "script/scriptreport.h"
#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/paths.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr int kAddUp = 5;  // scriptoutfmt: one table of all files

using FileRoutine = int (*)(int slot, const std::string& path);
using WriteRoutine = int (*)(const std::string& path, int slot);

// By scriptinfmt and scriptoutfmt, from 1, which all other numbers stand for as well.
constexpr FileRoutine kReaders[] = {ReadGdf, ReadXy, ReadDat, ReadUdf, ReadTxt};
constexpr WriteRoutine kWriters[] = {WriteGdf, WriteXy, WriteCif, WriteDat};

template <class Routine, std::size_t N>
Routine RoutineOf(const Routine (&routines)[N], int format) {
  return routines[format >= 1 && format <= static_cast<int>(N) ? format - 1 : 0];
}

struct Run {
  std::vector<ScriptWord> commands;
  std::string inlist, outlist;  // their paths; the second is that of the table when adding up
  std::unique_ptr<LineReader> inputs, outputs;
  int files = 0;           // in the input list
  std::string line, path;  // the present one, as it stands in the list and in full
  int at = 0;              // its number
  bool there = false;      // slot 1 holds the pattern of the file that came last
  int shifted = 0;         // files that ZERO has seen
  AddUpTable table;
  std::optional<HoldBoxes> boxes;
  ScriptReport report;

  bool Holds(ScriptWord command) const { return std::ranges::count(commands, command) > 0; }
  bool AddsUp() const { return ws.scriptoutfmt == kAddUp; }
};

// ---- Before the first file ----

bool Refuse(const char* text, const std::string& path, const std::string& reason) {
  MessageBoxError("File Error", FileMessage(text, path, reason));
  return false;
}

bool NextLine(LineReader& list, std::string& line) { return list.Read(line, TextLength + 1); }

// Empty lines name no file.
bool NextFile(LineReader& list, std::string& line) {
  while (NextLine(list, line))
    if (!line.empty()) return true;
  return false;
}

int CountFiles(const std::string& list) {
  LineReader in(list);
  int count = 0;
  for (std::string line; NextFile(in, line);) ++count;
  return count;
}

// A table in the place of what the run is made of would cost the user the one or the other.
bool MayReplace(const std::string& table, const std::string& needed) {
  std::error_code failure;
  return !std::filesystem::equivalent(table, needed, failure);
}

bool OpenLists(Run& run) {
  run.inlist = FromFolderOf(ScriptFile(), ws.scriptinlist);
  run.outlist = FromFolderOf(ScriptFile(), ws.scriptoutlist);
  run.inputs = std::make_unique<LineReader>(run.inlist);
  if (!run.inputs->IsOpen())
    return Refuse("Error opening input file list file", run.inlist, run.inputs->Reason());
  run.files = CountFiles(run.inlist);
  if (run.AddsUp()) {
    if (MayReplace(run.outlist, run.inlist) && MayReplace(run.outlist, ScriptFile())) return true;
    return Refuse("Error opening sum file", run.outlist, "is read by the script");
  }
  run.outputs = std::make_unique<LineReader>(run.outlist);
  return run.outputs->IsOpen() ||
         Refuse("Error opening output file list file", run.outlist, run.outputs->Reason());
}

void TakeConvertLimits() {
  ws.savestart = ws.convstart;
  ws.savestop = ws.convstop;
  ws.savestep = ws.convstep;
}

// Up to the first file that is read, the limits of the pattern are those of the last line with any.
void PutFirstLimits(const Run& run) {
  const float start = ws.savestart, stop = ws.savestop;
  for (ScriptWord command : run.commands) {
    if (command == ScriptWord::Convert) TakeConvertLimits();
    if (command != ScriptWord::Truncate) continue;
    ws.savestart = start;
    ws.savestop = stop;
  }
}

// ---- One file ----

std::string Counted(int count, const char* one, const char* many) {
  return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

// Adds what boxes have said without a failure to what is told at the end.
void NoteBoxes(Run& run) {
  for (const std::string& text : run.boxes->Take()) run.report.notes.push_back(text);
}

bool WriteNext(Run& run, const std::string& name) {
  const std::string path = FromFolderOf(run.outlist, name);
  if (name.empty())
    MessageBoxError("File Error", FileMessage("Error opening output file", run.path,
                                              "has an empty line in the output file list"));
  if (!name.empty() && AcceptPath(path) &&
      RoutineOf(kWriters, ws.scriptoutfmt)(path, SlotInput) != 0)
    return true;
  run.report.Fail(name.empty() ? run.path : path, run.boxes->Take());
  return false;
}

// False if the output list has ended.
bool WriteFile(Run& run) {
  if (run.AddsUp()) {
    run.table.Store();
    NoteBoxes(run);
    return true;
  }
  std::string name;
  if (!NextLine(*run.outputs, name)) {
    run.report.notes.push_back(
        "the output list ended after " + Counted(run.outputs->LineNumber(), "line", "lines") +
        ": " + Counted(run.files - run.at + 1, "file was", "files were") + " not done");
    return false;
  }
  if (WriteNext(run, name)) ++run.report.written;
  return true;
}

// The lists go in pairs: a file that cannot be read leaves its lines of the output list unused.
void PassOutputs(Run& run, std::size_t command) {
  std::string unused;
  if (run.outputs)
    for (; command < run.commands.size(); ++command)
      if (run.commands[command] == ScriptWord::Write) NextLine(*run.outputs, unused);
}

bool ReadFile(Run& run) {
  run.there = AcceptPath(run.path) && RoutineOf(kReaders, ws.scriptinfmt)(SlotInput, run.path) != 0;
  if (!run.there) {
    run.report.Fail(run.path, run.boxes->Take());
    ++run.report.skipped;
    return false;
  }
  ws.patternpath = run.path;
  ws.savestart = FirstTth(SlotInput);
  ws.savestop = LastTth(SlotInput);
  ws.savestep = FirstStepOf(SlotInput);
  run.table.CountFile(run.line);
  ++run.report.read;
  return true;
}

// What a command does to the pattern; the count of SKIP has been the reader's.
void Change(Run& run, ScriptWord command) {
  switch (command) {
    case ScriptWord::Zero:
      ++run.shifted;
      ZeroShift();
      break;
    case ScriptWord::Truncate:
      Truncate();
      break;
    case ScriptWord::Scale:
      ScalePattern();
      break;
    case ScriptWord::Smooth:
      SmoothPattern();
      break;
    case ScriptWord::Golay:
      SavitzkyGolay();
      break;
    case ScriptWord::Background:
      Autosubtract();
      break;
    case ScriptWord::Convert:
      TakeConvertLimits();
      ConvertPattern();
      break;
    default:
      break;
  }
}

// False if the run is to end.
bool DoFile(Run& run) {
  for (std::size_t k = 0; k < run.commands.size(); ++k) {
    const ScriptWord command = run.commands[k];
    if (command == ScriptWord::Read) {
      if (ReadFile(run)) continue;
      PassOutputs(run, k);
      return true;
    }
    if (command == ScriptWord::Write && !WriteFile(run)) return false;
    Change(run, command);
  }
  return true;
}

// ---- All of them ----

bool Report(const Run& run) {
  const std::string count =
      " (" + std::to_string(run.at) + " of " + std::to_string(run.files) + ")";
  return WProgress(3, ws.stem20 + count,
                   static_cast<float>(run.at - 1) / static_cast<float>(run.files));
}

void DoFiles(Run& run) {
  while (NextFile(*run.inputs, run.line)) {
    ++run.at;
    run.path = FromFolderOf(run.inlist, run.line);
    ws.patternstem = Field(FileStem(run.line));
    ws.stem20 = Field(ws.patternstem, 20);
    ws.plotmask = PlotInput;
    run.report.stopped = !Report(run);
    if (run.report.stopped || !DoFile(run)) return;
  }
}

void WriteTable(Run& run) {
  if (!run.AddsUp() || !run.Holds(ScriptWord::Write)) return;
  if (run.table.Write(run.outlist))
    ++run.report.written;
  else
    run.report.Fail(run.outlist, run.boxes->Take());
}

// What the commands do otherwise than their names say.
void NoteOddities(Run& run, bool shifts) {
  const auto note = [&](bool occurred, const std::string& text) {
    if (occurred) run.report.notes.push_back(text);
  };
  const auto read = std::ranges::find(run.commands, ScriptWord::Read);
  const bool cuts = std::find(read, run.commands.end(), ScriptWord::Truncate) != run.commands.end();
  note(shifts && run.shifted > 1, "ZERO shifts only the first file of a list");
  note(cuts && run.report.read > 0,
       "TRUN behind INFM cuts nothing: every file brings limits of its own");
  note(run.Holds(ScriptWord::Background) && run.report.written > 0,
       "BKGR takes nothing off what is written");
  const int leftout = run.table.FilesLeftOut();
  note(run.AddsUp() && leftout > 0,
       "the table holds 100 files: " + Counted(leftout, "more is", "more are") + " not in it");
}

// The pattern of the last file as a load shows it. Two-theta stays what the commands have made of
// it in every slot.
void ShowLastFile() {
  for (int slot = SlotInput; slot <= SlotRefined; ++slot) ComputeSlotAxes(slot, ws.wavelen(1));
  ws.axiswave = ws.wavelen(1);
  ws.viewmode = 1;
  ws.patternloaded = 1;
}

}  // namespace

// Where no file has been read in the end, and behind a stop, the pattern of before comes back.
Outcome RunScript() {
  const auto commands = ReadScript();
  if (!commands) return Outcome::Failed;
  Run run;
  run.commands = *commands;
  if (!OpenLists(run)) return Outcome::Failed;
  PutFirstLimits(run);
  if (run.Holds(ScriptWord::Convert)) ws.origwavelength = ws.wavelen(1);
  const bool shifts = ws.zeroshift != 0;

  ws.batchmode = 1;
  run.boxes.emplace();
  DoFiles(run);
  WriteTable(run);
  run.boxes.reset();
  ws.batchmode = 0;

  NoteOddities(run, shifts);
  MessageBoxInfo("Script", run.report.Text(ScriptFile()));
  if (run.report.stopped) return Outcome::Cancelled;
  if (run.there) ShowLastFile();
  if (run.there) return Outcome::Done;
  return run.report.skipped > 0 ? Outcome::Failed : Outcome::Cancelled;
}
