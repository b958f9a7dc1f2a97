// All commands in the order of the menu.
#include <algorithm>

#include "background/background.h"
#include "fit/fit.h"
#include "index/index.h"
#include "modify/modify.h"
#include "multi/multi.h"
#include "peaks/peaks.h"
#include "plot/plot.h"
#include "script/script.h"
#include "series/seriescommand.h"
#include "shell/shell.h"
#include "workspace/menuids.h"

namespace {

constexpr ToolRow kTools[] = {
    {MenuOpenAny, "open", "Open pattern"},
    {MenuSavePattern, "save", "Save pattern"},
    {},
    {MenuUndo, "undo"},
    {MenuRedo, "redo"},
    {},
    {MenuZoomBack, "zoomback"},
    {MenuFullPattern, "full"},
    {},
    {MenuAutosubtract, "background", "Autosubtract background"},
    {MenuPeakSearch, "search"},
    {MenuFitPeak, "peak"},
    {MenuFitPattern, "pattern", "Fit whole pattern"},
    {MenuFindCell, "index"},
};

constexpr int kContextItems[] = {MenuFullPattern, MenuZoomBack,
                                 MenuZoomForward, 0,
                                 MenuPopupXAxis,  MenuPopupYAxis,
                                 MenuLegend,      0,
                                 MenuFitPeak,     0,
                                 MenuCopyPicture, MenuCopyPoints};

std::vector<Command> AllCommands() {
  std::vector<Command> all;
  for (const std::span<const Command> menu :
       {FileCommands(), EditCommands(), SettingsCommands(), ScriptCommands(), ModifyCommands(),
        MultiCommands(), SeriesCommands(), BackgroundCommands(), PeakCommands(), FitCommands(),
        AnalysisCommands(), FitResultCommands(), IndexCommands(), PlotCommands(), HelpCommands()})
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
  WRegisterToolbar(kTools);
  WRegisterContextMenu(kContextItems);
}
