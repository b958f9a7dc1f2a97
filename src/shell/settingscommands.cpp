// The menus "Edit", "Settings" and "Help".
#include <algorithm>

#include "patternfiles/patternfiles.h"
#include "shell/copytext.h"
#include "shell/history.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "toolkit/controls.h"
#include "workspace/menuids.h"
#include "workspace/parameters.h"
#include "workspace/workspace.h"

namespace {

using namespace controls;

// ---- Edit ----

Outcome Stepped(bool done) {
  if (!done) return Outcome::Idle;
  FollowPattern();
  return Outcome::Done;
}
Outcome UndoCommand(const Arguments&) { return Stepped(Undo()); }
Outcome RedoCommand(const Arguments&) { return Stepped(Redo()); }

Outcome AskHistoryName(Arguments& arguments) {
  arguments.path = (ws.patternstem.empty() ? "history" : ws.patternstem) + ".replay";
  WSelectFile("Transcript|*.replay|", FileSave, arguments.path, "Save history");
  return Answered(!arguments.path.empty());
}
Outcome SaveHistory(const Arguments& arguments) {
  return WriteHistory(arguments.path) ? Outcome::Done : Outcome::Failed;
}

Outcome AskRecipeName(Arguments& arguments) {
  arguments.path = ws.patternstem + ".recipe";
  WSelectFile("Recipe|*.recipe|", FileSave, arguments.path, "Save recipe");
  return Answered(!arguments.path.empty());
}
Outcome SaveRecipe(const Arguments& arguments) {
  return WriteRecipe(arguments.path) ? Outcome::Done : Outcome::Failed;
}

Outcome CopyPicture(const Arguments&) {
  WCopyPicture(ws.patternstem);
  WindowOutStatusBar(3, "Picture copied");
  return Outcome::Done;
}
// The first line tells the columns.
Outcome CopyRows(const std::string& text, const std::string& what) {
  const auto rows = std::ranges::count(text, '\n') - 1;
  if (rows > 0) WCopyText(text);
  WindowOutStatusBar(3, rows > 0 ? std::to_string(rows) + ' ' + what + " copied"
                                 : "There are no " + what + " in view");
  return rows > 0 ? Outcome::Done : Outcome::Idle;
}
Outcome CopyPeaks(const Arguments&) { return CopyRows(PeaksAsText(), "peaks"); }
Outcome CopyPoints(const Arguments&) { return CopyRows(PointsAsText(), "points"); }

// ---- Settings ----

constexpr Control kInfoControls[] = {
    Entry(1011, "Sample", &ws.sampleid),
    Entry(1012, "Department", &ws.infodepartment),
    Entry(1013, "Company", &ws.infocompany),
    Entry(1014, "Address", &ws.infoaddress),
    Entry(1015, "Diffractometer", &ws.instrument),
    Entry(1016, "Remarks", &ws.infoline),
    Ok,
    Cancel,
    Press(1017, "Update"),
};
constexpr ParameterDialog kInfo{.resource = {104, "Information", kInfoControls}, .special = 1017};
Outcome AfterInfo(const Arguments& arguments) {
  if (arguments.button == kInfo.special) WriteInfoToConfiguration();
  return Outcome::Done;
}

constexpr Control kWaveControls[] = {
    Number(1161, "Pattern, alpha1", &ws.wavelen.cells[0], "(f8.5)", "\u00c5"),
    Number(1162, "Pattern, alpha2", &ws.wavelen.cells[1], "(f8.5)", "\u00c5"),
    Number(1163, "Alpha 2/1 ratio", &ws.wavelen.cells[2], "(f8.5)"),
    Number(1165, "Multi-pattern 1", &ws.wavelen.cells[4], "(f8.5)", "\u00c5"),
    Number(1166, "Multi-pattern 2", &ws.wavelen.cells[5], "(f8.5)", "\u00c5"),
    Number(1167, "Multi-pattern 3", &ws.wavelen.cells[6], "(f8.5)", "\u00c5"),
    Number(1168, "Multi-pattern 4", &ws.wavelen.cells[7], "(f8.5)", "\u00c5"),
    Ok,
    Cancel,
};
void ShowWaves() {
  for (int k = 1; k <= MaxOverlays; ++k) WDialogFieldState(1164 + k, k <= ws.noverlay);
}
constexpr ParameterDialog kWaves{.resource = {136, "Wavelength(s)", kWaveControls},
                                 .prepare = ShowWaves};
// The zoom of a d or Q axis means another range afterwards; two-theta does not change.
Outcome TakeWaves(const Arguments&) {
  for (int k = 1; k <= 3; ++k) ws.scanwave(k) = ws.wavelen(k);
  ComputeXAxes();
  ws.statedwave = ws.axiswave;
  return ws.xaxismode == AxisTth ? Outcome::Idle : Outcome::Done;
}

Outcome ChooseXAxis(const Arguments& arguments) {
  ws.xaxismode = ws.xaxismark = arguments.number;
  return Outcome::Done;
}
Outcome ChooseYAxis(const Arguments& arguments) {
  ws.yaxismode = ws.yaxismark = arguments.number;
  return Outcome::Done;
}
Outcome FlipXGrid(const Arguments&) {
  ws.xgridmark = ws.xgrid = 1 - ws.xgrid;
  return Outcome::Done;
}
Outcome FlipYGrid(const Arguments&) {
  ws.ygridmark = ws.ygrid = 1 - ws.ygrid;
  return Outcome::Done;
}
Outcome FlipToolbar(const Arguments&) {
  ws.toolbar = ws.toolbar == 0;
  WShowToolbar(ws.toolbar);
  WriteToolbarToConfiguration();
  return Outcome::Done;
}
Outcome FlipDebug(const Arguments&) {
  ws.debugmode = 1 - ws.debugmode;
  return Outcome::Done;
}

// ---- Help ----

constexpr Control kAboutControls[] = {
    Label(1301, "Quillagram  Version " QUILLAGRAM_VERSION "  (2016-02-15)"),
    Label(1302, "A workbench for X-ray powder diffraction patterns."),
    Label(1303, "Reads xy, gdf, txt, uxd, cif, dat, xrdml, udf and chi files."),
    Label(1304, "Copyright (c) 2026 the Quillagram developers, MIT licence."),
    Ok,
};

// ---- The menus ----

constexpr int kSettings = 40027, kXAxis = MenuPopupXAxis, kYAxis = MenuPopupYAxis;

constexpr Command Axis(int id, const char* text, int parent, const char* title,
                       Outcome (*run)(const Arguments&), int mode) {
  return {.item = {id, text, parent},
          .title = title,
          .number = mode,
          .run = run,
          .redraw = Redraw::Full,
          .undo = true};
}

constexpr Command kEditCommands[] = {
    {.item = {MenuPopupEdit, "Edit", 0, true}},
    {.item = {MenuUndo, "Undo", MenuPopupEdit, false, "Ctrl+Z"},
     .run = UndoCommand,
     .redraw = Redraw::Same},
    {.item = {MenuRedo, "Redo", MenuPopupEdit, false, "Ctrl+Shift+Z"},
     .run = RedoCommand,
     .redraw = Redraw::Same},
    {.item = {MenuSaveHistory, "Save history...", MenuPopupEdit},
     .ask = AskHistoryName,
     .run = SaveHistory,
     .history = false},
    {.item = {MenuSaveRecipe, "Save as recipe...", MenuPopupEdit},
     .title = "Save recipe",
     .ask = AskRecipeName,
     .run = SaveRecipe,
     .history = false},
    {.item = {MenuCopyPicture, "Copy picture", MenuPopupEdit, false, "Ctrl+Shift+C"},
     .run = CopyPicture,
     .history = false},
    {.item = {MenuCopyPeaks, "Copy peaks", MenuPopupEdit}, .run = CopyPeaks, .history = false},
    {.item = {MenuCopyPoints, "Copy points in view", MenuPopupEdit},
     .run = CopyPoints,
     .history = false},
};

constexpr Command kSettingsCommands[] = {
    {.item = {kSettings, "Settings", 0, true}},
    {.item = {40038, "Info", kSettings}, .dialog = &kInfo, .run = AfterInfo, .undo = true},
    {.item = {40124, "Wavelength(s)", kSettings},
     .dialog = &kWaves,
     .run = TakeWaves,
     .redraw = Redraw::Full,
     .undo = true},
    {.item = {kXAxis, "x-axis", kSettings, true}},
    Axis(MenuAxisTth, "Twotheta", kXAxis, "x-axis", ChooseXAxis, AxisTth),
    Axis(MenuAxisD, "d-values", kXAxis, "x-axis", ChooseXAxis, AxisD),
    Axis(MenuAxisQ, "q-values", kXAxis, "x-axis", ChooseXAxis, AxisQ),
    {.item = {kYAxis, "y-axis", kSettings, true}},
    Axis(MenuAxisLinear, "Linear", kYAxis, "y-axis", ChooseYAxis, 1),
    Axis(MenuAxisLog, "Logarithmic", kYAxis, "y-axis", ChooseYAxis, 2),
    {.item = {MenuXGrid, "x-axis grid", kSettings},
     .run = FlipXGrid,
     .redraw = Redraw::Keep,
     .undo = true},
    {.item = {MenuYGrid, "y-axis grid", kSettings},
     .run = FlipYGrid,
     .redraw = Redraw::Keep,
     .undo = true},
    {.item = {MenuDebug, "Debug", kSettings}, .run = FlipDebug},
    {.item = {MenuToolbar, "Toolbar", kSettings}, .run = FlipToolbar, .history = false},
};

constexpr Command kHelpCommands[] = {
    {.item = {40007, "&Help", 0, true}},
    {.item = {40008, "&About", 40007}, .dialog = &AboutDialog, .history = false},
};

}  // namespace

constexpr ParameterDialog AboutDialog{.resource = {101, "About Quillagram", kAboutControls}};

std::span<const Command> EditCommands() { return kEditCommands; }
std::span<const Command> SettingsCommands() { return kSettingsCommands; }
std::span<const Command> HelpCommands() { return kHelpCommands; }
