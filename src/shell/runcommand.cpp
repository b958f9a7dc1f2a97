// The life of a command, the same for menu, keys and transcripts.
#include <optional>

#include "plot/plot.h"
#include "shell/history.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "workspace/menuids.h"
#include "workspace/parameters.h"
#include "workspace/workspace.h"

namespace {

void SetFields(const Command& command) {
  if (command.filetype != 0) ws.filetype = command.filetype;
  if (command.viewmode != 0) ws.viewmode = command.viewmode;
  if (command.plotmask != 0) ws.plotmask = command.plotmask;
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

std::string TitleOf(const Command& command) {
  std::string title = *command.title ? command.title : command.item.text;
  std::erase(title, '&');
  return title;
}

// Keeps what a command has done for undo and history, unless it has left everything as it was.
void Keep(const Command& command, const std::vector<std::string>& entered,
          std::optional<Snapshot> before) {
  if (before && StateNow() == *before) return;
  if (before) KeepForUndo(TitleOf(command), std::move(*before));
  if (!command.history) return;
  // For a key or a known path the line that was entered is all.
  const bool picked =
      entered.empty() || !(entered[0].starts_with("key ") || entered[0].starts_with("open "));
  if (picked) NoteHistory({"menu " + std::to_string(command.item.id) + "  # " + TitleOf(command)});
  NoteHistory(entered);
}

void PutBack(const Snapshot& before) {
  RestoreSnapshot(before);
  FollowPattern();
  DrawView();
}

}  // namespace

Outcome RunCommand(const Command& command, Arguments arguments) {
  if (!arguments.path.empty()) WJournal("open", arguments.path);
  const int viewmode = ws.viewmode;
  std::optional<Snapshot> before;
  if (command.undo) before = StateNow();
  arguments.number = command.number;
  SetFields(command);
  Outcome outcome = Ask(command, arguments);
  if (outcome == Outcome::Done && command.run) outcome = command.run(arguments);

  if (outcome == Outcome::Done) Draw(command.redraw);
  if (outcome == Outcome::Idle && ws.viewmode != viewmode) RedrawView(0);
  const std::vector<std::string> entered = WTakeJournal();
  if (outcome == Outcome::Done || outcome == Outcome::Idle)
    Keep(command, entered, std::move(before));
  else if (before)
    PutBack(*before);
  ShowMenuState();
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
