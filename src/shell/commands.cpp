// All commands in the order of the menu.
#include <algorithm>

#include "background/background.h"
#include "fit/fit.h"
#include "index/index.h"
#include "modify/modify.h"
#include "peaks/peaks.h"
#include "plot/plot.h"
#include "shell/shell.h"
#include "toolkit/controls.h"
#include "workspace/menuids.h"
#include "workspace/parameters.h"
#include "workspace/workspace.h"

namespace {

using namespace controls;

constexpr int kScript = 40132, kMulti = MenuPopupMulti, kOverlay = 40034,
              kClose = MenuPopupClosePattern;

constexpr Command kScriptCommands[] = {
    {.item = {kScript, "Script", 0, true}},    {.item = {40133, "Create script", kScript}},
    {.item = {40134, "Open script", kScript}}, {.item = {40135, "View script", kScript}},
    {.item = {40136, "Run script", kScript}},
};

constexpr Control kDisplaceControls[] = {
    Number(1018, "2-theta", &ws.displacex, "(f10.2)", "deg."),
    Number(1019, "Intensity", &ws.displacey, "(f10.0)", "counts"),
    Ok,
    Cancel,
};
constexpr ParameterDialog kDisplace{.resource = {105, "Displace patterns", kDisplaceControls}};

constexpr Command kMultiCommands[] = {
    {.item = {kMulti, "Multiple patterns", 0, true}},
    {.item = {kOverlay, "Open pattern", kMulti, true}},
    {.item = {40040, "*.xy (General)", kOverlay}},
    {.item = {40035, "*.gdf (Huber)", kOverlay}},
    {.item = {40039, "*.txt (Bruker", kOverlay}},
    {.item = {40041, "*.uxd (Bruker)", kOverlay}},
    {.item = {40042, "*.cif (General)", kOverlay}},
    {.item = {40043, "*.dat (General)", kOverlay}},
    {.item = {40044, "*.xrdml (Panalytical)", kOverlay}},
    {.item = {40045, "*.udf (Stoe)", kOverlay}},
    {.item = {40142, "*.chi (Fit2D)", kOverlay}},
    {.item = {kClose, "Close pattern", kMulti, true}},
    {.item = {40037, "All", kClose}},
    {.item = {40048, "Empty", kClose}},
    {.item = {40049, "Empty", kClose}},
    {.item = {40050, "Empty", kClose}},
    {.item = {40051, "Empty", kClose}},
    {.item = {MenuAddPatterns, "Add patterns", kMulti}},
    {.item = {MenuDisplacePatterns, "Displace patterns", kMulti},
     .viewmode = 1,
     .plotmask = PlotInput,
     .dialog = &kDisplace,
     .redraw = Redraw::Full,
     .undo = true},
    {.item = {MenuFitPatterns, "Fit patterns", kMulti}},
    {.item = {MenuSaveFitted, "Save fitted pattern", kMulti}},
    {.item = {MenuClearFit, "Clear fit", kMulti}},
};

std::vector<Command> AllCommands() {
  std::vector<Command> all;
  for (const std::span<const Command> menu :
       {FileCommands(), EditCommands(), SettingsCommands(),
        std::span<const Command>(kScriptCommands), ModifyCommands(),
        std::span<const Command>(kMultiCommands), BackgroundCommands(), PeakCommands(),
        FitCommands(), AnalysisCommands(), FitResultCommands(), IndexCommands(), PlotCommands(),
        HelpCommands()})
    all.insert(all.end(), menu.begin(), menu.end());
  return all;
}

}  // namespace

std::span<const Command> Commands() {
  static const std::vector<Command> all = AllCommands();
  return all;
}

const Command* FindCommand(int id) {
  const auto found =
      std::ranges::find(Commands(), id, [](const Command& command) { return command.item.id; });
  return found == Commands().end() ? nullptr : &*found;
}

void RegisterMenu() {
  std::vector<MenuRow> rows;
  for (const Command& command : Commands()) {
    rows.push_back(command.item);
    rows.back().enabled = command.item.popup || command.IsBuilt();
  }
  WRegisterMenu(MainMenu, rows);
}
