// What the menu and the title show of the Workspace.
#include <span>

#include "plot/guestview.h"
#include "plot/plot.h"
#include "shell/copytext.h"
#include "shell/history.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "workspace/menuids.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr int kNeedPattern[] = {MenuPopupModify,     MenuPopupOverlays,   MenuOpenStructures,
                                MenuPopupBackground, MenuPopupPeakSearch, MenuPopupPeakFit,
                                MenuPopupIndex,      MenuPopupPlot,       MenuSavePattern,
                                MenuPrintReport,     MenuPopupExport};
constexpr int kNeedView[] = {MenuPrintGraphics, MenuPopupGraphics, MenuCopyPicture};
constexpr int kNeedOverlay[] = {MenuPopupClosePattern, MenuAddPatterns, MenuDisplacePatterns,
                                MenuFitPatterns,       MenuSaveFitted,  MenuClearFit};
constexpr const char* kNeedStructure = "Needs a structure: Multiple patterns > Structure (CIF)...";
constexpr int kNeedSum[] = {MenuAddSum, MenuEditSum, MenuCloseSum};

// Enables an item, or tells what it waits for.
void Enable(int id, bool on, const char* need) {
  WMenuSetState(id, MenuEnabled, on);
  WMenuSetHint(id, on ? "" : need);
}

void EnableAll(std::span<const int> ids, bool on, const char* need) {
  for (int id : ids) Enable(id, on, need);
}

void Check(int id, bool on) { WMenuSetState(id, MenuChecked, on); }

void CheckOneOf(int first, int last, int chosen) {
  for (int id = first; id <= last; ++id) Check(id, id == first + chosen - 1);
}

// "Undo Smooth"
void ShowStep(int id, const char* word, const std::string& title, const char* need) {
  Enable(id, !title.empty(), need);
  WMenuSetString(id, title.empty() ? word : word + (" " + title));
}

// A free place is blank, once there has been an overlay.
void ShowOverlays() {
  const char* free = ws.overlayname(1).empty() ? "Empty" : "";
  for (int k = 1; k <= MaxOverlays; ++k) {
    const bool open = k <= ws.noverlay;
    Enable(MenuCloseOverlay1 + k - 1, open, "No pattern has this place");
    WMenuSetString(MenuCloseOverlay1 + k - 1, open ? ws.overlayname(k) : free);
  }
}

// By number and name, in both popups: names may be the same.
void ShowStructures() {
  for (const int popup : {MenuPopupCloseStructures, MenuPopupUseCell})
    Enable(popup, ws.nstructure > 0, kNeedStructure);
  Enable(MenuCloseStructures, ws.nstructure > 0, kNeedStructure);
  Enable(MenuScaleStructures, ws.nstructure > 0, kNeedStructure);
  for (int k = 1; k <= MaxStructures; ++k)
    for (const int first : {MenuCloseStructure1, MenuUseCell1}) {
      const bool open = k <= ws.nstructure;
      Enable(first + k - 1, open, "No structure has this place");
      WMenuSetString(first + k - 1,
                     std::to_string(k) + " " + (open ? ws.structurename(k) : "Empty"));
    }
  Check(MenuScaleStructures, ws.structurescale);
}

}  // namespace

void ShowMenuState() {
  EnableAll(kNeedPattern, ws.patternloaded, "Needs a pattern: open one first");
  EnableAll(kNeedView, ws.patternloaded || Guest(), "Needs a pattern: open one first");
  EnableAll(kNeedOverlay, ws.overlayitems, "Needs an overlay: Multiple patterns > Open pattern");
  ShowOverlays();
  ShowStructures();
  Enable(MenuOpenSum, !ws.sumopen, "A summary file is open: close it first");
  EnableAll(kNeedSum, ws.sumopen, "Needs a summary file: File > Open sum file");
  Enable(MenuAlpha2Strip, ws.alpha2enabled, "Has been done to this pattern");
  Enable(MenuAutodivergence, ws.divergenceenabled, "Has been done to this pattern");
  ShowPlotMarks();
  CheckOneOf(MenuAxisTth, MenuAxisQ, ws.xaxismark);
  CheckOneOf(MenuAxisLinear, MenuAxisLog, ws.yaxismark);
  Check(MenuXGrid, ws.xgridmark);
  Check(MenuYGrid, ws.ygridmark);
  Check(MenuDebug, ws.debugmode);
  Check(MenuToolbar, ws.toolbar);
  ShowStep(MenuUndo, "Undo", UndoTitle(), "Nothing has been done that could be taken back");
  ShowStep(MenuRedo, "Redo", RedoTitle(), "Nothing has been taken back");
  Enable(MenuSaveHistory, HasHistory(), "Nothing has been done yet");
  Enable(MenuSaveRecipe, ws.patternloaded != 0, "Needs a pattern, and what has been done to it");
  for (const int id : {MenuCopyPeaks, MenuExportPeaks})
    Enable(id, ws.npeaks > 0, "Needs peaks: search or pick them first");
  Enable(MenuCopyPoints, HasPointsInView(), "Needs the pattern on show: Plot > Full pattern");
  for (const int id : {MenuFitResults, MenuExportFit})
    Enable(id, ws.fitnpar > 0, "Needs a refinement: Peak fit > General peak fit");
  Enable(MenuExportSolutions, ws.nsolutions > 0, "Needs solutions: Index > Plot ITO solutions");
}

void SetMenuLoaded(int flag) {
  ws.patternloaded = flag;
  if (flag == 0) ws.xaxismark = ws.yaxismark = 1;
  ShowMenuState();
}
