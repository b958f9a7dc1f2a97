// What the menu and the title show of the Workspace.
#include "plot/plot.h"
#include "shell/history.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "workspace/menuids.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr int kNeedPattern[] = {MenuPopupModify,     MenuPopupMulti,   MenuPopupBackground,
                                MenuPopupPeakSearch, MenuPopupPeakFit, MenuPopupIndex,
                                MenuPopupPlot,       MenuSavePattern,  MenuPrintGraphics,
                                MenuPrintReport,     MenuPopupGraphics};
constexpr int kNeedOverlay[] = {MenuPopupClosePattern, MenuAddPatterns, MenuDisplacePatterns,
                                MenuFitPatterns,       MenuSaveFitted,  MenuClearFit};
constexpr int kNeedSum[] = {MenuAddSum, MenuEditSum, MenuCloseSum};

void Enable(int id, bool on) {
  const Command* command = FindCommand(id);
  if (command && (command->item.popup || command->IsBuilt())) WMenuSetState(id, MenuEnabled, on);
}

void Check(int id, bool on) { WMenuSetState(id, MenuChecked, on); }

void CheckOneOf(int first, int last, int chosen) {
  for (int id = first; id <= last; ++id) Check(id, id == first + chosen - 1);
}

// "Undo Smooth"
void ShowStep(int id, const char* word, const std::string& title) {
  Enable(id, !title.empty());
  WMenuSetString(id, title.empty() ? word : word + (" " + title));
}

// A free place is blank, once there has been an overlay.
void ShowOverlays() {
  const char* free = ws.overlayname(1).empty() ? "Empty" : "";
  for (int k = 1; k <= MaxOverlays; ++k) {
    const bool open = k <= ws.noverlay;
    Enable(MenuCloseOverlay1 + k - 1, open);
    WMenuSetString(MenuCloseOverlay1 + k - 1, open ? ws.overlayname(k) : free);
  }
}

}  // namespace

void ShowMenuState() {
  for (int id : kNeedPattern) Enable(id, ws.patternloaded);
  for (int id : kNeedOverlay) Enable(id, ws.overlayitems);
  ShowOverlays();
  Enable(MenuOpenSum, !ws.sumopen);
  for (int id : kNeedSum) Enable(id, ws.sumopen);
  Enable(MenuAlpha2Strip, ws.alpha2enabled);
  Enable(MenuAutodivergence, ws.divergenceenabled);
  ShowPlotMarks();
  CheckOneOf(MenuAxisTth, MenuAxisQ, ws.xaxismark);
  CheckOneOf(MenuAxisLinear, MenuAxisLog, ws.yaxismark);
  Check(MenuXGrid, ws.xgridmark);
  Check(MenuYGrid, ws.ygridmark);
  Check(MenuDebug, ws.debugmode);
  Check(MenuToolbar, ws.toolbar);
  ShowStep(MenuUndo, "Undo", UndoTitle());
  ShowStep(MenuRedo, "Redo", RedoTitle());
  Enable(MenuSaveHistory, HasHistory());
  Enable(MenuFitResults, ws.fitnpar > 0);
}

void SetMenuLoaded(int flag) {
  ws.patternloaded = flag;
  if (flag == 0) ws.xaxismark = ws.yaxismark = 1;
  ShowMenuState();
}

void FollowPattern() {
  const std::string directory = FileDirectory(ws.patternpath);
  IOsDirChange(directory.empty() ? ws.startdir : directory);
  WindowTitle(ws.patternloaded ? ws.patternstem + " - " + ProgramTitle : ProgramTitle);
}
