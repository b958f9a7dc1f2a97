// What the status bar tells of a command that is done.
#include <algorithm>

#include "patternfiles/patternfiles.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "workspace/menuids.h"
#include "workspace/slots.h"
#include "workspace/text.h"

namespace {

std::string NameOf(const std::string& path) { return path.substr(FileDirectory(path).size()); }

std::string Counted(int count, const char* what) {
  return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

std::string Short(float value, int decimals) { return LeftAlign(RealField(value, 12, decimals)); }

std::string Opened(const Arguments&) {
  return NameOf(ws.patternpath) + ": " + Counted(ws.npts(SlotInput), "point");
}

std::string SavedTo(const Arguments& arguments) { return "Saved " + NameOf(arguments.path); }

std::string PatternSaved(const Arguments& arguments) {
  return SavedTo(arguments) + ", " + Counted(PointsSaved(), "point");
}

std::string PeaksFound(const Arguments&) {
  const int count = std::min(ws.npeaks, MaxPeaks);
  return Counted(count, "peak") + " found" + (count > 0 ? "; next: Fit all peaks" : "");
}

std::string SavedPeaks(const Arguments& arguments) { return SavedTo(arguments) + ", for Index"; }

std::string PeaksInList(const Arguments&) {
  return Counted(std::min(ws.npeaks, MaxPeaks), "peak") + " in the list";
}

// OK of the options only stores them.
std::string SearchOptions(const Arguments& arguments) {
  return arguments.button == ButtonOk ? "Peak search options kept" : PeaksFound(arguments);
}

std::string Estimated(const Arguments&) {
  return "Autosubtract: scale " + Short(ws.estimatescale, 3) + ", " +
         Counted(ws.autosubcycles, "cycle") +
         (ws.viewmode == 1 && ws.plotmask & PlotNet ? "" : ", not subtracted");
}

std::string PointsLeft(const Arguments&) {
  return Counted(ws.npts(ActiveSlot()), "point") + ", " + Short(FirstTth(ActiveSlot()), 2) +
         " to " + Short(LastTth(ActiveSlot()), 2) + " degrees";
}

std::string OverlaysOpen(const Arguments&) { return Counted(ws.noverlay, "overlay"); }

std::string Undone(const Arguments&) { return "Undone: " + RedoTitle(); }
std::string Redone(const Arguments&) { return "Done again: " + UndoTitle(); }

// What stands in part 3 already.
std::string Nothing(const Arguments&) { return ""; }

constexpr struct {
  int first, last;  // items of the menu, or popups with all their items
  std::string (*text)(const Arguments& arguments);
} kTold[] = {
    {MenuPopupOpen, MenuPopupOpen, Opened},
    {MenuRecent1, MenuRecent1 + MaxRecent - 1, Opened},
    {MenuPopupOverlays, MenuPopupOverlays, OverlaysOpen},
    {MenuPopupClosePattern, MenuPopupClosePattern, OverlaysOpen},
    {MenuSavePattern, MenuSavePattern, PatternSaved},
    {MenuSaveBackground, MenuSaveBackground, SavedTo},
    {MenuSavePeaks, MenuSavePeaks, SavedPeaks},
    {MenuSaveFitted, MenuSaveFitted, SavedTo},
    {MenuSaveHistory, MenuSaveHistory, SavedTo},
    {MenuSavePng, MenuSavePdf, SavedTo},
    {MenuUndo, MenuUndo, Undone},
    {MenuRedo, MenuRedo, Redone},
    {MenuCopyPicture, MenuCopyPoints, Nothing},
    {MenuPeakSearch, MenuPeakSearch, PeaksFound},
    {MenuSearchOptions, MenuSearchOptions, SearchOptions},
    {MenuLoadPeaks, MenuLoadPeaks, PeaksInList},
    {MenuPeakTable, MenuPeakTable, PeaksInList},
    {MenuManualPeaks, MenuManualPeaks, PeaksInList},
    {MenuPeakTable, MenuPeakTable, PeaksInList},
    {MenuAutosubtract, MenuAutosubtract, Estimated},
    {MenuTruncate, MenuConvert, PointsLeft},
    {MenuFitPattern, MenuFitPattern, Nothing},
    {MenuFitPatterns, MenuFitPatterns, Nothing},
    {MenuFitAllPeaks, MenuFitAllPeaks, Nothing},
    {MenuAddSum, MenuAddSum, Nothing},
};

}  // namespace

std::string WhatIsDone(const Command& command, const Arguments& arguments) {
  const MenuRow& item = command.item;
  for (const auto& row : kTold)
    for (int id : {item.id, item.parent})
      if (id >= row.first && id <= row.last) return row.text(arguments);
  return command.undo && item.id != 0 ? CommandTitle(command) : "";
}
