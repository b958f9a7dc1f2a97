// The menu "Script".
#include "script/script.h"
#include "script/scriptfile.h"
#include "toolkit/toolkit.h"
#include "workspace/paths.h"
#include "workspace/workspace.h"

namespace {

// An existing script, which becomes that of the Workspace.
Outcome AskScriptFile(const std::string& filter) {
  std::string path = ws.scriptpath.empty() ? "*.scp" : ws.scriptpath;
  WSelectFile(filter, FileMustExist, path, "Open script file");
  if (path.empty() || path.front() == '*' || !AcceptPath(path)) return Outcome::Cancelled;
  ws.scriptpath = path;
  return Outcome::Done;
}

constexpr const char *kOpenFilter = "Script file *.scp|", *kViewFilter = "Script file|*.scp|";

Outcome AskNew(Arguments&) { return AskScript(); }

// One that cannot be read leaves the script of before, by its name as well.
Outcome AskOpen(Arguments&) {
  const std::string before = ws.scriptpath;
  if (AskScriptFile(kOpenFilter) != Outcome::Done) return Outcome::Cancelled;
  const auto commands = ReadScript();
  if (!commands) ws.scriptpath = before;
  if (!commands) return Outcome::Failed;
  SetScriptUse(*commands);
  return AskScript();
}

Outcome AskView(Arguments&) { return AskScriptFile(kViewFilter); }
Outcome View(const Arguments&) {
  IOsCommandOnFile(ws.editorpath, ws.scriptpath);
  return Outcome::Done;
}

Outcome AskRun(Arguments&) {
  return ws.scriptpath.empty() ? AskScriptFile(kOpenFilter) : Outcome::Done;
}

constexpr int kScript = 40132;

constexpr Command kScriptCommands[] = {
    {.item = {kScript, "Script", 0, true}},
    {.item = {40133, "Create script", kScript}, .ask = AskNew, .run = Plain<WriteScript>},
    {.item = {40134, "Open script", kScript}, .ask = AskOpen, .run = Plain<WriteScript>},
    {.item = {40135, "View script", kScript}, .ask = AskView, .run = View},
    {.item = {40136, "Run script", kScript},
     .ask = AskRun,
     .run = Plain<RunScript>,
     .redraw = Redraw::Full,
     .undo = true},
};

}  // namespace

std::span<const Command> ScriptCommands() { return kScriptCommands; }
