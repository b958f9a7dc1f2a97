// The life of a command, the same for menu, keys and transcripts.
#include <algorithm>

#include "multi/structures.h"
#include "patternfiles/patternfiles.h"
#include "plot/dataposition.h"
#include "plot/plot.h"
#include "plot/zoomhistory.h"
#include "shell/history.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "workspace/menuids.h"
#include "workspace/parameters.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

void SetFields(const Command& command) {
  if (command.filetype != 0) ws.filetype = command.filetype;
  if (command.viewmode != 0) ws.viewmode = command.viewmode;
  if (command.plotmask != 0) ws.plotmask = command.plotmask;
}

// Whether the drawing of before may be looked at while or after a command changes something: it
// leaves it there, or asks.
bool CanBeLookedAt(const Command& command) {
  const bool sets = (command.viewmode != 0 && command.viewmode != ws.viewmode) ||
                    (command.plotmask != 0 && command.plotmask != ws.plotmask);
  return !command.undo || command.redraw == Redraw::None || command.dialog || command.ask || sets;
}

Outcome Ask(const Command& command, Arguments& arguments) {
  if (command.dialog) arguments.button = AskParameters(*command.dialog);
  if (arguments.button == 0) return Outcome::Cancelled;
  return command.ask ? command.ask(arguments) : Outcome::Done;
}

void Draw(Redraw redraw) {
  switch (redraw) {
    case Redraw::None:
      return;
    case Redraw::Same:
      DrawView();
      return;
    case Redraw::Quiet:
      return RefreshView();
    case Redraw::Keep:
      return RedrawView(0);
    case Redraw::Full:
      return RedrawView(1);
  }
}

bool IsZoom(const std::string& line) {
  static constexpr std::string_view kWords[] = {"band ", "key ", "wheel ", "pan ", "doubleclick "};
  return std::ranges::any_of(kWords, [&](std::string_view word) { return line.starts_with(word); });
}

// Notes a command and what was entered for it. A key, and a path that was known before, are entries
// that are commands themselves. Of what is not worth doing again the zooms remain.
void Note(const Command& command, bool picked, std::vector<std::string> entered) {
  if (!command.history)
    std::erase_if(entered, [](const std::string& line) { return !IsZoom(line); });
  else if (picked)
    entered.insert(entered.begin(),
                   "menu " + std::to_string(command.item.id) + "  # " + CommandTitle(command));
  // One entry that no line can hold takes the command with it.
  const auto cannot = [](const std::string& line) { return line.starts_with('#'); };
  if (std::ranges::any_of(entered, cannot))
    for (std::string& line : entered) line.insert(0, "# ");
  NoteHistory(entered);
}

// False if there is nothing to append.
bool Append(const std::vector<std::string>& more, std::vector<std::string>& lines) {
  lines.insert(lines.end(), more.begin(), more.end());
  return !more.empty();
}

// What the row has set goes back too, but not what the user has entered.
void PutBack(const Snapshot& entered, const PatternData& before) {
  RestoreSnapshot(entered);
  ws.filetype = before.filetype;
  ws.viewmode = before.viewmode;
  ws.plotmask = before.plotmask;
  FollowPattern();
  DrawView();
}

// Keys and the mouse leave on show what the last command has told.
void Tell(const Command& command, const Arguments& arguments, Outcome outcome) {
  if (command.item.id == 0) return;
  if (outcome == Outcome::Done) return WTell(WhatIsDone(command, arguments));
  WTell(outcome == Outcome::Failed ? OnOneLine(WFirstComplaint()) : "", false);
}

}  // namespace

std::string CommandTitle(const Command& command) {
  std::string title = *command.title ? command.title : command.item.text;
  std::erase(title, '&');
  return title;
}

Outcome RunCommand(const Command& command, Arguments arguments) {
  WCommandBegins();
  if (CanBeLookedAt(command)) IGrFinish();
  const bool picked = command.item.id != 0 && arguments.path.empty();
  if (!arguments.path.empty()) WJournal("open", arguments.path);
  const int viewmode = ws.viewmode;
  const ZoomHistory zooms = Zooms();
  Snapshot before = StateNow();
  const Indexing indexing = ws;
  // Changes between two steps, such as zooms, belong to the first of them.
  bool stepped = false;
  arguments.step = [&](const std::string& title) {
    Snapshot now = StateNow();
    if (!std::exchange(stepped, true) && now != before) KeepForUndo(CommandTitle(command), before);
    KeepForUndo(title, std::move(now));
  };
  arguments.number = command.number;
  SetFields(command);
  std::vector<std::string> lines = WTakeJournal();
  Outcome outcome = Ask(command, arguments);
  const bool answered = Append(WTakeJournal(), lines);
  const Snapshot entered = answered && outcome == Outcome::Done ? StateNow() : before;
  if (outcome == Outcome::Done && command.run) outcome = command.run(arguments);

  if (outcome == Outcome::Done && ws.patternpath != before.data.patternpath) FollowPattern();
  FollowPatternByStructures();
  if (outcome == Outcome::Done) Draw(command.redraw);
  if (outcome == Outcome::Idle) Draw(ws.viewmode == viewmode ? Redraw::Same : Redraw::Keep);
  Append(WTakeJournal(), lines);
  const bool happened = outcome == Outcome::Done || outcome == Outcome::Idle;
  if (!happened && command.undo) PutBack(entered, before.data);
  const bool changed = !IsAsIn(before);
  // What is saved cannot be taken back, and leaves its settings behind even when it fails.
  const bool lasting = happened || changed || indexing != static_cast<const Indexing&>(ws);
  if (lasting) Note(command, picked, std::move(lines));
  // The zooms are those of who does again what is noted.
  if (!lasting)
    PutZooms(zooms);
  else if (command.history)
    NoteZoom();
  if (changed && command.undo && !stepped) KeepForUndo(CommandTitle(command), std::move(before));
  ShowMenuState();
  RefreshWavelength();
  Tell(command, arguments, outcome);
  if (outcome == Outcome::Done && command.tell) command.tell();
  WCommandEnded(outcome == Outcome::Failed);
  return outcome;
}

void OnMenu(int id, int& quitflag) {
  const Command* command = FindCommand(id);
  if (!command || !command->IsBuilt()) return;
  Arguments arguments;
  const int recent = id - MenuRecent1 + 1;
  if (recent >= 1 && recent <= MaxRecent) arguments.path = ws.recentfiles(recent);
  RunCommand(*command, arguments);
  if (id == MenuExit) quitflag = 1;
}

void OpenFile(const std::string& path) {
  RunCommand(*FindCommand(MenuRecent1), {.path = IOsFullPath(path)});
}
