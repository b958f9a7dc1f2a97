// Running a script: its commands, in the order of their lines, for every file of the input list.
//
// The readers are called directly: what one file leaves in the Workspace is there for the next.
#include <algorithm>

#include "background/background.h"
#include "modify/modify.h"
#include "patternfiles/patternfiles.h"
#include "script/addup.h"
#include "script/filelists.h"
#include "script/script.h"
#include "script/scriptfile.h"
#include "script/scriptreport.h"
#include "toolkit/toolkit.h"
#include "workspace/paths.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

constexpr int kAddUp = 5;  // scriptoutfmt: one table of all files

using FileRoutine = int (*)(int slot, const std::string& path);
using WriteRoutine = int (*)(const std::string& path, int slot);

// By scriptinfmt and scriptoutfmt, from 1, which all other numbers stand for as well.
constexpr FileRoutine kReaders[] = {ReadGdf, ReadXy, ReadDat, ReadUdf, ReadTxt, ReadAny};
constexpr WriteRoutine kWriters[] = {WriteGdf, WriteXy, WriteCif, WriteDat};

template <class Routine, std::size_t N>
Routine RoutineOf(const Routine (&routines)[N], int format) {
  return routines[format >= 1 && format <= static_cast<int>(N) ? format - 1 : 0];
}

struct Run {
  std::vector<ScriptWord> commands;
  FileLists lists;
  std::string line, path;  // the present file, as it stands in the list and in full
  int at = 0;              // its number
  bool there = false;      // slot 1 holds the pattern of the file that came last
  int shifted = 0;         // files that ZERO has seen
  AddUpTable table;
  std::optional<HoldBoxes> boxes;
  ScriptReport report;

  bool Holds(ScriptWord command) const { return std::ranges::count(commands, command) > 0; }
};

bool AddsUp() { return ws.scriptoutfmt == kAddUp; }

// ---- Limits ----

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

// False, after a box, if there is no such file now.
bool WriteNext(Run& run, const std::string& name) {
  const std::string path = FromFolderOf(run.lists.out, name);
  if (name.empty())
    MessageBoxError("File Error", FileMessage("Error opening output file", run.path,
                                              "has an empty line in the output file list"));
  if (!name.empty() && AcceptPath(path) &&
      RoutineOf(kWriters, ws.scriptoutfmt)(path, SlotInput) != 0) {
    NotePointsKept(path);
    return true;
  }
  run.report.Fail(name.empty() ? run.path : path, run.boxes->Take());
  return false;
}

// How a command of a file has ended.
enum class Step { GoOn, NextFile, End };

Step WriteFile(Run& run) {
  if (AddsUp()) {
    run.table.Store();
    NoteBoxes(run);
    return Step::GoOn;
  }
  std::string name;
  if (run.lists.NextOutput(name)) {
    if (!WriteNext(run, name)) return Step::NextFile;
    ++run.report.written;
    return Step::GoOn;
  }
  const int left = run.lists.files - run.at + 1;
  run.report.notes.push_back("the output list ended after " +
                             Counted(run.lists.OutputsTaken(), "line", "lines") + ": " +
                             Counted(left, "file was", "files were") + " not done");
  return Step::End;
}

// The lists go in pairs: where a file ends early, its further lines of the output list are unused.
void PassOutputs(Run& run, std::size_t command) {
  std::string unused;
  for (; command < run.commands.size(); ++command)
    if (run.commands[command] == ScriptWord::Write) run.lists.NextOutput(unused);
}

Step ReadFile(Run& run) {
  run.there = AcceptPath(run.path) && RoutineOf(kReaders, ws.scriptinfmt)(SlotInput, run.path) != 0;
  if (!run.there) {
    run.report.Fail(run.path, run.boxes->Take());
    ++run.report.skipped;
    return Step::NextFile;
  }
  ws.patternpath = run.path;
  NotePointsKept(run.path);
  ws.savestart = FirstTth(SlotInput);
  ws.savestop = LastTth(SlotInput);
  ws.savestep = FirstStepOf(SlotInput);
  run.table.CountFile(run.line);
  ++run.report.read;
  return Step::GoOn;
}

// A count of SKIP has been the reader's.
Step Do(Run& run, ScriptWord command) {
  switch (command) {
    case ScriptWord::Read:
      return ReadFile(run);
    case ScriptWord::Write:
      return WriteFile(run);
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
    case ScriptWord::Skip:
      break;
  }
  return Step::GoOn;
}

// False if the run is to end.
bool DoFile(Run& run) {
  for (std::size_t k = 0; k < run.commands.size(); ++k) {
    const Step step = Do(run, run.commands[k]);
    if (step == Step::GoOn) continue;
    PassOutputs(run, k + 1);
    return step == Step::NextFile;
  }
  return true;
}

// ---- All of them ----

bool Report(const Run& run) {
  const std::string count =
      " (" + std::to_string(run.at) + " of " + std::to_string(run.lists.files) + ")";
  return WProgress(3, ws.stem20 + count,
                   static_cast<float>(run.at - 1) / static_cast<float>(run.lists.files));
}

void DoFiles(Run& run) {
  while (run.lists.NextInput(run.line)) {
    ++run.at;
    run.path = FromFolderOf(run.lists.in, run.line);
    ws.patternstem = Field(FileStem(run.line));
    ws.stem20 = Field(ws.patternstem, 20);
    ws.plotmask = PlotInput;
    run.report.stopped = !Report(run);
    if (run.report.stopped || !DoFile(run)) return;
  }
}

void WriteTable(Run& run) {
  if (!AddsUp() || !run.Holds(ScriptWord::Write)) return;
  if (run.table.Write(run.lists.out))
    ++run.report.written;
  else
    run.report.Fail(run.lists.out, run.boxes->Take());
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
  note(AddsUp() && leftout > 0,
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
  if (!run.lists.Open(AddsUp())) return Outcome::Failed;
  PutFirstLimits(run);
  if (run.Holds(ScriptWord::Convert)) ws.origwavelength = ws.wavelen(1);
  const bool shifts = ws.zeroshift != 0;

  EndOverlayFit();
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
