// The menu "Multiple patterns" and its dialogs.
#include "multi/multi.h"
#include "multi/structures.h"
#include "patternfiles/patternfiles.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/parameters.h"
#include "workspace/workspace.h"

namespace {

using namespace controls;

constexpr Control kDisplaceControls[] = {
    Number(1018, "2-theta", &ws.displacex, "(f10.2)", "deg."),
    Number(1019, "Intensity", &ws.displacey, "(f10.0)", "counts"),
    Ok,
    Cancel,
};
constexpr ParameterDialog kDisplace{.resource = {105, "Displace patterns", kDisplaceControls}};

constexpr int kButtonClear = 1221;
constexpr const char* kOrder = "Chebyshev background order";
constexpr Control kFitControls[] = {
    Choice(1201, "0", kOrder, &ws.fitbgorder),
    Choice(1202, "1", kOrder),
    Choice(1203, "2", kOrder),
    Choice(1204, "3", kOrder),
    Choice(1205, "4", kOrder),
    Choice(1206, "5", kOrder),
    Choice(1207, "6", kOrder),
    Choice(1208, "7", kOrder),
    Choice(1209, "8", kOrder),
    Choice(1210, "9", kOrder),
    Choice(1211, "10", kOrder),
    Choice(1212, "11", kOrder),
    Choice(1213, "12", kOrder),
    Choice(1214, "13", kOrder),
    Choice(1215, "14", kOrder),
    Number(1216, "Scale factor", &ws.fitscale, "(f12.4)"),
    Beside(Box(1217, "Refine", &ws.fitscalerefine)),
    Number(1218, "Two-theta zero", &ws.fitzero, "(f12.4)", "deg."),
    Beside(Box(1219, "Refine", &ws.fitzerorefine)),
    Ok,
    Press(kButtonClear, "Clear"),
    Cancel,
};
constexpr ParameterDialog kFit{.resource = {118, "Fit patterns", kFitControls, 1216},
                               .special = kButtonClear,
                               .prepare = [] { ws.fitpatmode = FitPatternsRun; }};

Outcome AskOverlays(Arguments& arguments) {
  arguments.paths = AskForPatterns(ws.filetype);
  if (ws.filetype == FileTypeAny && arguments.paths.size() == 1)
    return AskScans(arguments.paths[0], arguments.scans);
  return Answered(!arguments.paths.empty());
}

Outcome AskSave(Arguments& arguments) {
  if (!ws.fitshown) {
    MessageBoxError("Error", "There is no fit to save: run \"Fit patterns\" first");
    return Outcome::Failed;
  }
  arguments.path = ws.patternstem + "_fit.xy";
  WSelectFile("|*.xy|", FileSave, arguments.path, "Save pattern file");
  return Answered(!arguments.path.empty());
}

Outcome Open(const Arguments& arguments) {
  return OpenOverlay(arguments.paths, ws.filetype, arguments.scans);
}
Outcome CloseOne(const Arguments& arguments) { return CloseOverlay(arguments.number); }
// The view changes with the save only: a save cannot be taken back, but it can be cancelled.
Outcome Save(const Arguments& arguments) {
  ws.viewmode = 1;
  return SaveFittedPattern(arguments.path);
}

Outcome RunFit(const Arguments& arguments) {
  if (arguments.button == kButtonClear) ws.fitpatmode = FitPatternsClear;
  return FitPatterns();
}
Outcome ClearFit(const Arguments&) {
  ws.fitpatmode = FitPatternsClear;
  return FitPatterns();
}

Outcome AskStructures(Arguments& arguments) {
  arguments.paths =
      WSelectFiles("Crystal structures|*.cif|", FileMustExist, "*.cif", "Open structures");
  return Answered(!arguments.paths.empty());
}
Outcome Structures(const Arguments& arguments) { return OpenStructures(arguments.paths); }
Outcome CloseTheStructure(const Arguments& arguments) { return CloseStructure(arguments.number); }
Outcome UseCell(const Arguments& arguments) { return UseCellInFit(arguments.number); }
Outcome FlipScale(const Arguments&) {
  ws.structurescale = 1 - ws.structurescale;
  return Outcome::Done;
}

constexpr int kMulti = MenuPopupMulti, kOverlay = MenuPopupOverlays, kClose = MenuPopupClosePattern;

constexpr Command File(int id, const char* text, int filetype) {
  return {.item = {id, text, kOverlay},
          .title = "Open overlay",
          .filetype = filetype,
          .viewmode = 1,
          .ask = AskOverlays,
          .run = Open,
          .redraw = Redraw::Keep,
          .undo = true};
}

constexpr Command Close(int id, const char* text, int k, const char* title = "Close overlay") {
  return {.item = {id, text, kClose},
          .title = title,
          .viewmode = 1,
          .number = k,
          .run = CloseOne,
          .redraw = Redraw::Keep,
          .undo = true};
}

// A command about all patterns.
constexpr Command All(int id, const char* text, Outcome (*run)(const Arguments&),
                      const ParameterDialog* dialog = nullptr, int plotmask = PlotInput) {
  return {.item = {id, text, kMulti},
          .viewmode = 1,
          .plotmask = plotmask,
          .dialog = dialog,
          .run = run,
          .redraw = Redraw::Full,
          .undo = true};
}

constexpr Command CloseOf(int k, const char* text, const char* title = "Close structure") {
  return {.item = {MenuCloseStructures + k, text, MenuPopupCloseStructures},
          .title = title,
          .viewmode = 1,
          .number = k,
          .run = CloseTheStructure,
          .redraw = Redraw::Keep,
          .undo = true};
}

constexpr Command CellOf(int k, const char* text) {
  return {.item = {MenuPopupUseCell + k, text, MenuPopupUseCell},
          .title = "Use cell in fit",
          .number = k,
          .run = UseCell,
          .undo = true};
}

constexpr Command kMultiCommands[] = {
    {.item = {kMulti, "Multiple patterns", 0, true}},
    {.item = {kOverlay, "Open pattern", kMulti, true}},
    File(MenuOverlayAny, "Any format", FileTypeAny),
    File(40040, "*.xy (General)", 1),
    File(40035, "*.gdf (Huber)", 2),
    File(40039, "*.txt (Bruker", 3),
    File(40041, "*.uxd (Bruker)", 4),
    File(40042, "*.cif (General)", 5),
    File(40043, "*.dat (General)", 6),
    File(40044, "*.xrdml (Panalytical)", 7),
    File(40045, "*.udf (Stoe)", 8),
    File(40142, "*.chi (Fit2D)", 9),
    {.item = {kClose, "Close pattern", kMulti, true}},
    Close(40037, "All", 0, "Close all overlays"),
    Close(MenuCloseOverlay1, "Empty", 1),
    Close(40049, "Empty", 2),
    Close(40050, "Empty", 3),
    Close(40051, "Empty", 4),
    All(MenuAddPatterns, "Add patterns", Plain<AddPatterns>),
    All(MenuDisplacePatterns, "Displace patterns", nullptr, &kDisplace),
    All(MenuFitPatterns, "Fit patterns", RunFit, &kFit, 0),
    {.item = {MenuSaveFitted, "Save fitted pattern", kMulti},
     .ask = AskSave,
     .run = Save,
     .redraw = Redraw::Full},
    All(MenuClearFit, "Clear fit", ClearFit),
    {.item = {MenuOpenStructures, "Structure (CIF)...", kMulti},
     .title = "Open structures",
     .viewmode = 1,
     .ask = AskStructures,
     .run = Structures,
     .redraw = Redraw::Keep,
     .undo = true},
    {.item = {MenuScaleStructures, "Scale to pattern", kMulti},
     .viewmode = 1,
     .run = FlipScale,
     .redraw = Redraw::Keep,
     .undo = true},
    {.item = {MenuPopupUseCell, "Use cell in fit", kMulti, true}},
    CellOf(1, "1 Empty"),
    CellOf(2, "2 Empty"),
    CellOf(3, "3 Empty"),
    CellOf(4, "4 Empty"),
    CellOf(5, "5 Empty"),
    CellOf(6, "6 Empty"),
    CellOf(7, "7 Empty"),
    CellOf(8, "8 Empty"),
    {.item = {MenuPopupCloseStructures, "Close structures", kMulti, true}},
    CloseOf(0, "All", "Close all structures"),
    CloseOf(1, "1 Empty"),
    CloseOf(2, "2 Empty"),
    CloseOf(3, "3 Empty"),
    CloseOf(4, "4 Empty"),
    CloseOf(5, "5 Empty"),
    CloseOf(6, "6 Empty"),
    CloseOf(7, "7 Empty"),
    CloseOf(8, "8 Empty"),
};

}  // namespace

std::span<const Command> MultiCommands() { return kMultiCommands; }
