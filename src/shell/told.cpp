// What the status bar tells of a command that is done.
#include <algorithm>

#include "patternfiles/export/export.h"
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

std::string PatternExported(const Arguments& arguments) {
  return SavedTo(arguments) + ", " + Counted(ws.npts(SlotInput), "point") +
         ExportRemark(arguments.number);
}

std::string PeaksFound(const Arguments&) {
  const int count = std::min(ws.npeaks, MaxPeaks);
  return Counted(count, "peak") + " found" + (count > 0 ? "; next: Fit all peaks" : "");
}

// Images are not asked a name for.
std::string JpegSaved(const Arguments&) { return "Saved " + ws.patternstem + ".jpg"; }
std::string BitmapSaved(const Arguments&) { return "Saved " + ws.patternstem + ".bmp"; }
std::string EpsSaved(const Arguments&) { return "EPS file saved"; }
std::string Printed(const Arguments&) { return "Printed " + ws.patternstem; }

std::string SavedPeaks(const Arguments& arguments) { return SavedTo(arguments) + ", for Index"; }

std::string PeaksInList(const Arguments&) {
  return Counted(std::min(ws.npeaks, MaxPeaks), "peak") + " in the list";
}

// Cancel of the results takes the difference off the plot with the peak.
std::string PeakKept(const Arguments&) {
  if (!(ws.plotmask & PlotResidual)) return "The fitted peak is not kept";
  return "Fitted peak at " + Short(ws.spposition, 3) + " kept in the list";
}

std::string HumpMeasured(const Arguments&) {
  if (ws.humpposition == 0) return "No hump above the line between the ends";
  return "Hump of " + Short(ws.humparea, 1) + " counts deg. about " + Short(ws.humpposition, 2) +
         " degrees";
}

bool IsSubtracted() { return ws.viewmode == 1 && ws.plotmask & PlotNet; }

std::string Subtracted(const Arguments&) {
  return IsSubtracted() ? "Background subtracted" : "Background not subtracted";
}

std::string Estimated(const Arguments&) {
  return "Autosubtract: scale " + Short(ws.estimatescale, 3) + ", " +
         Counted(ws.autosubcycles, "cycle") + (IsSubtracted() ? "" : ", not subtracted");
}

// OK of the options only stores them.
std::string SearchOptions(const Arguments& arguments) {
  return arguments.button == ButtonOk ? "Peak search options kept" : PeaksFound(arguments);
}
std::string PeakFitOptions(const Arguments& arguments) {
  return arguments.button == ButtonOk ? "Peak fit options kept" : PeakKept(arguments);
}
std::string AutosubtractOptions(const Arguments& arguments) {
  return arguments.button == ButtonOk ? "Autosubtract options kept" : Estimated(arguments);
}

std::string PointsLeft(const Arguments&) {
  return Counted(ws.npts(ActiveSlot()), "point") + ", " + Short(FirstTth(ActiveSlot()), 2) +
         " to " + Short(LastTth(ActiveSlot()), 2) + " degrees";
}

std::string OverlaysOpen(const Arguments&) { return Counted(ws.noverlay, "overlay"); }

std::string StructuresOpen(const Arguments&) { return Counted(ws.nstructure, "structure"); }

std::string SeriesLookedAt(const Arguments&) {
  return Counted(ws.nseriesfile, "file") + ", " + Counted(ws.nseries, "row") + " in the table";
}

std::string Undone(const Arguments&) { return "Undone: " + RedoTitle(); }
std::string Redone(const Arguments&) { return "Done again: " + UndoTitle(); }
std::string CellTaken(const Arguments&) {
  return "Cell " + std::to_string(ws.selfindcell) + " of " + std::to_string(ws.nfindcell) +
         " goes to Peak fit: " + ws.findlattice(ws.selfindcell);
}

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
    {MenuExportCsv, MenuExportPdCif, PatternExported},
    {MenuExportPeaks, MenuExportSolutions, SavedTo},
    {MenuSaveBackground, MenuSaveBackground, SavedTo},
    {MenuSavePeaks, MenuSavePeaks, SavedPeaks},
    {MenuSaveFitted, MenuSaveFitted, SavedTo},
    {MenuSaveFit, MenuSaveFit, SavedTo},
    {MenuSaveHistory, MenuSaveHistory, SavedTo},
    {MenuSaveRecipe, MenuSaveRecipe, SavedTo},
    {MenuSavePng, MenuSavePdf, SavedTo},
    {MenuSaveJpeg, MenuSaveJpeg, JpegSaved},
    {MenuSaveBitmap, MenuSaveBitmap, BitmapSaved},
    {MenuSaveEps, MenuSaveEps, EpsSaved},
    {MenuPrintGraphics, MenuPrintGraphics, Printed},
    {MenuPrintReport, MenuPrintReport, Printed},
    {MenuUndo, MenuUndo, Undone},
    {MenuRedo, MenuRedo, Redone},
    {MenuCopyPicture, MenuCopyPoints, Nothing},
    {MenuPeakSearch, MenuPeakSearch, PeaksFound},
    {MenuSearchOptions, MenuSearchOptions, SearchOptions},
    {MenuLoadPeaks, MenuLoadPeaks, PeaksInList},
    {MenuPeakTable, MenuPeakTable, PeaksInList},
    {MenuManualPeaks, MenuManualPeaks, PeaksInList},
    {MenuFitPeak, MenuFitPeak, PeakKept},
    {MenuFitPeakOptions, MenuFitPeakOptions, PeakFitOptions},
    {MenuSubtract, MenuSubtract, Subtracted},
    {MenuAutosubtract, MenuAutosubtract, Estimated},
    {MenuAutosubtractOptions, MenuAutosubtractOptions, AutosubtractOptions},
    {MenuHump, MenuHump, HumpMeasured},
    {MenuTruncate, MenuConvert, PointsLeft},
    {MenuFitPattern, MenuFitPattern, Nothing},
    {MenuFitPatterns, MenuFitPatterns, Nothing},
    {MenuFitAllPeaks, MenuFitAllPeaks, Nothing},
    {MenuAddSum, MenuAddSum, Nothing},
    {MenuFindCell, MenuFindCell, CellTaken},
    {MenuOpenStructures, MenuOpenStructures, Nothing},
    {MenuPopupUseCell, MenuPopupUseCell, Nothing},
    {MenuPopupCloseStructures, MenuPopupCloseStructures, StructuresOpen},
    {MenuSeries, MenuSeries, SeriesLookedAt},
};

}  // namespace

std::string WhatIsDone(const Command& command, const Arguments& arguments) {
  const MenuRow& item = command.item;
  for (const auto& row : kTold)
    for (int id : {item.id, item.parent})
      if (id >= row.first && id <= row.last) return row.text(arguments);
  return command.undo && item.id != 0 ? CommandTitle(command) : "";
}
