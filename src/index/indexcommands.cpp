// The menu "Index".
#include "index/driver.h"
#include "index/findcommand.h"
#include "index/index.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"

namespace {

Outcome AskInput(Arguments& arguments) { return AskEngineInput(EngineOf(arguments.number)); }
Outcome Run(const Arguments& arguments) { return RunEngine(EngineOf(arguments.number)); }
Outcome Ask(Arguments& arguments) { return AskSolution(EngineOf(arguments.number)); }
Outcome Apply(const Arguments& arguments) { return ApplySolution(EngineOf(arguments.number)); }

Outcome AskView(Arguments&) { return AskListing("Open indexing output file"); }
Outcome View(const Arguments&) {
  IOsCommandOnFile(ws.editorpath, ws.indexoutfile);
  return Outcome::Done;
}

constexpr int kPopup = MenuPopupIndex;

constexpr Command RunRow(int id, const char* text, EngineNumber engine) {
  return {.item = {id, text, kPopup}, .number = engine, .ask = AskInput, .run = Run};
}
constexpr Command PlotRow(int id, const char* text, EngineNumber engine) {
  return {.item = {id, text, kPopup},
          .number = engine,
          .ask = Ask,
          .run = Apply,
          .tell = TellSolution,
          .redraw = Redraw::Full,
          .undo = true};
}

constexpr Command kCommands[] = {
    {.item = {kPopup, "Index", 0, true}},
    {.item = {MenuFindCell, "Find cell...", kPopup},
     .title = "Find cell",
     .viewmode = 1,
     .ask = AskFoundCell,
     .run = Plain<ApplyFoundCell>,
     .redraw = Redraw::Keep,
     .undo = true},
    RunRow(40119, "TREOR90", EngineTreor),
    RunRow(40120, "ITO", EngineIto),
    {.item = {40121, "View output", kPopup}, .ask = AskView, .run = View},
    PlotRow(40122, "Plot TREOR solutions", EngineTreor),
    PlotRow(40123, "Plot ITO solutions", EngineIto),
};

}  // namespace

std::span<const Command> IndexCommands() { return kCommands; }
