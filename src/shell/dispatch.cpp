// From menu item to action: one row a command.
#include <algorithm>
#include <iterator>

#include "background/background.h"
#include "modify/modify.h"
#include "patternfiles/patternfiles.h"
#include "peaks/peaks.h"
#include "plot/plot.h"
#include "shell/shell.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

enum class Redraw { None, Keep, Full };

// What is set before the operation runs; 0 leaves a field as it is.
struct MenuAction {
  int id;
  int filetype;
  int viewmode;
  int plotmask;
  void (*operation)();
  Redraw redraw;
};

template <int Number>
void Dialog() {
  RunParameterDialog(Number);
}

template <int Mode>
void Open() {
  OpenPattern(Mode);
}

void CheckOneOf(std::initializer_list<int> items, int chosen) {
  for (int id : items) WMenuSetState(id, MenuChecked, id == chosen);
}

template <int Mode>
void ChooseXAxis() {
  ws.xaxismode = Mode;
  CheckOneOf({MenuAxisTth, MenuAxisD, MenuAxisQ}, MenuAxisTth + Mode - 1);
}

template <int Mode>
void ChooseYAxis() {
  ws.yaxismode = Mode;
  CheckOneOf({MenuAxisLinear, MenuAxisLog}, MenuAxisLinear + Mode - 1);
}

void Flip(int& flag, int id) {
  flag = flag == 1 ? 0 : 1;
  WMenuSetState(id, MenuChecked, flag);
}

template <int Switch>
void FlipPlotSwitch() {
  ws.plotmask ^= Switch;
  UpdatePlotMenu();
}

template <int Kind>
void ChooseAnalysis() {
  ws.analysiskind = Kind;
}

void OpenAnyFormat() {
  std::string patterns, path = "*";
  for (const PatternFormat& format : PatternFormats())
    patterns += (patterns.empty() ? "*." : ";*.") + std::string(format.extension);
  WSelectFile("Pattern files|" + patterns + "|", FileMustExist, path, "Open pattern file");
  if (!path.empty()) OpenFile(path);
}

constexpr MenuAction kActions[] = {
    // File
    {40201, 0, 0, 0, OpenAnyFormat, Redraw::None},
    {40011, 1, 1, 1, Open<0>, Redraw::None},
    {40004, 2, 1, 1, Open<0>, Redraw::None},
    {40010, 3, 1, 1, Open<0>, Redraw::None},
    {40012, 4, 1, 1, Open<0>, Redraw::None},
    {40013, 5, 1, 1, Open<0>, Redraw::None},
    {40014, 5, 1, 1, Open<0>, Redraw::None},  // asks for *.cif files, as it always has
    {40015, 7, 1, 1, Open<0>, Redraw::None},
    {40016, 8, 1, 1, Open<0>, Redraw::None},
    {40141, 9, 1, 1, Open<0>, Redraw::None},
    {40003, 0, 0, 0, Dialog<123>, Redraw::None},
    {40005, 0, 0, 0, PrintGraphics, Redraw::Keep},
    {40138, 0, 0, 0, [] { SaveImage(".jpg"); }, Redraw::None},
    {40139, 0, 0, 0, [] { SaveImage(".bmp"); }, Redraw::None},
    {40140, 0, 0, 0, SaveEps, Redraw::Keep},
    {40026, 0, 0, 0, Dialog<101>, Redraw::None},
    {40006, 0, 0, 0, [] {}, Redraw::None},
    {40022, 0, 1, 1, Open<1>, Redraw::None},
    {40023, 0, 1, 1, Open<2>, Redraw::None},
    {40024, 0, 1, 1, Open<3>, Redraw::None},
    {40025, 0, 1, 1, Open<4>, Redraw::None},
    // Settings, Help
    {40038, 0, 0, 0, Dialog<104>, Redraw::None},
    {40124, 0, 0, 0, Dialog<136>, Redraw::None},
    {40126, 0, 0, 0, ChooseXAxis<AxisTth>, Redraw::Full},
    {40127, 0, 0, 0, ChooseXAxis<AxisD>, Redraw::Full},
    {40128, 0, 0, 0, ChooseXAxis<AxisQ>, Redraw::Full},
    {40130, 0, 0, 0, ChooseYAxis<1>, Redraw::Full},
    {40131, 0, 0, 0, ChooseYAxis<2>, Redraw::Full},
    {40100, 0, 0, 0, [] { Flip(ws.xgrid, MenuXGrid); }, Redraw::Keep},
    {40101, 0, 0, 0, [] { Flip(ws.ygrid, MenuYGrid); }, Redraw::Keep},
    {40028, 0, 0, 0, [] { Flip(ws.debugmode, MenuDebug); }, Redraw::None},
    {40008, 0, 0, 0, Dialog<101>, Redraw::None},
    // Modify
    {40031, 0, 0, 0, Autodivergence, Redraw::None},
    {40052, 0, 0, 0, Dialog<117>, Redraw::None},
    {40054, 0, 0, 0, Dialog<112>, Redraw::None},
    {40055, 0, 0, 0, Dialog<106>, Redraw::None},
    {40064, 0, 0, 0, Dialog<102>, Redraw::None},
    {40056, 0, 0, 0, Dialog<108>, Redraw::None},
    {40057, 0, 0, 0, Dialog<109>, Redraw::None},
    {40058, 0, 0, 0, Dialog<113>, Redraw::None},
    {40059, 0, 0, 0, Dialog<114>, Redraw::None},
    {40060, 0, 0, 0, Dialog<107>, Redraw::None},
    {40061, 0, 0, 0, Dialog<110>, Redraw::None},
    {40062, 0, 0, 0, Dialog<116>, Redraw::None},
    {40063, 0, 0, 0, Dialog<115>, Redraw::None},
    {40032, 0, 0, 0, EditData, Redraw::None},
    // Multiple patterns
    {40047, 0, 1, 1, Dialog<105>, Redraw::Full},
    // Background
    {40082, 1, 1, 0, BackgroundFromFile, Redraw::Full},
    {40080, 2, 1, 0, BackgroundFromFile, Redraw::Full},
    {40081, 3, 1, 0, BackgroundFromFile, Redraw::Full},
    {40083, 4, 1, 0, BackgroundFromFile, Redraw::Full},
    {40084, 5, 1, 0, BackgroundFromFile, Redraw::Full},
    {40085, 6, 1, 0, BackgroundFromFile, Redraw::Full},
    {40086, 7, 1, 0, BackgroundFromFile, Redraw::Full},
    {40087, 8, 1, 0, BackgroundFromFile, Redraw::Full},
    {40143, 9, 1, 0, BackgroundFromFile, Redraw::Full},
    {40071, 0, 1, 0, RefinedBackground, Redraw::Full},
    {40088, 0, 1, 0, ManualBackgroundDialog, Redraw::Full},
    {40018, 0, 0, 0, Dialog<125>, Redraw::None},
    {40072, 0, 1, 0, Dialog<120>, Redraw::Full},
    {40073, 0, 1, 0, Dialog<121>, Redraw::Full},
    {40074, 0, 1, 0, SubtractBackground, Redraw::Full},
    {40075, 0, 1, 0, Dialog<122>, Redraw::Full},
    {40076, 0, 0, 0, SaveBackground, Redraw::Full},
    {40077, 0, 1, 0, ClearBackground, Redraw::Full},
    {40078, 0, 1, 0, Autosubtract, Redraw::Full},
    {40079, 0, 1, 0, Dialog<119>, Redraw::Full},
    // Peak search
    {40105, 0, 0, 0, OnPeakSearch, Redraw::Full},
    {40111, 0, 0, 0, Dialog<132>, Redraw::Full},
    {40106, 0, 0, 0, ManualPeakSearch, Redraw::Full},
    {40094, 0, 0, 0, SavePeaks, Redraw::Full},
    {40103, 0, 0, 0, LoadPeaks, Redraw::Full},
    {40104, 0, 0, 0, EditPeaks, Redraw::Full},
    {40095, 0, 0, 0, [] { ClearPeaks(), ws.plotmask = ws.viewmode = 1; }, Redraw::Full},
    // Peak fit
    {40020, 0, 0, 0, SinglePeakFit, Redraw::Keep},
    {40093, 0, 0, 0, Dialog<127>, Redraw::Keep},
    {40096, 0, 3, 0, ChooseAnalysis<1>, Redraw::Keep},
    {40097, 0, 3, 0, ChooseAnalysis<2>, Redraw::Keep},
    {40098, 0, 4, 0, ChooseAnalysis<1>, Redraw::Keep},
    {40099, 0, 4, 0, ChooseAnalysis<2>, Redraw::Keep},
    // Plot
    {40089, 0, 0, 0, FlipPlotSwitch<PlotInput>, Redraw::Full},
    {40065, 0, 0, 0, FlipPlotSwitch<PlotBackground>, Redraw::Full},
    {40090, 0, 0, 0, FlipPlotSwitch<PlotRefined>, Redraw::Full},
    {40091, 0, 0, 0, FlipPlotSwitch<PlotNet>, Redraw::Full},
    {40092, 0, 0, 0, FlipPlotSwitch<PlotResidual>, Redraw::Full},
    {40017, 0, 0, 0, FlipPlotSwitch<PlotPeaks>, Redraw::Full},
    {40029, 0, 1, 0, [] {}, Redraw::Full},
};

const MenuAction* FindAction(int id) {
  const auto* found = std::ranges::find(kActions, id, &MenuAction::id);
  return found == std::end(kActions) ? nullptr : found;
}

void DisableUnbuiltItems() {
  for (const MenuRow& row : MenuTable())
    if (!row.popup && !FindAction(row.id)) WMenuSetState(row.id, MenuEnabled, 0);
}

}  // namespace

void OnMenu(int id, int& quitflag) {
  const MenuAction* action = FindAction(id);
  if (!action) return;
  if (action->filetype != 0) ws.filetype = action->filetype;
  if (action->viewmode != 0) ws.viewmode = action->viewmode;
  if (action->plotmask != 0) ws.plotmask = action->plotmask;
  action->operation();
  if (id == MenuExit) quitflag = 1;
  if (action->redraw != Redraw::None) RedrawView(action->redraw == Redraw::Full);
}

void SetMenuLoaded(int flag) {
  for (int id :
       {MenuPopupModify, MenuPopupMulti, MenuPopupBackground, MenuPopupPeakSearch, MenuPopupPeakFit,
        MenuPopupIndex, MenuPopupPlot, MenuSavePattern, MenuPrintGraphics, MenuPrintReport})
    WMenuSetState(id, MenuEnabled, flag);
  DisableUnbuiltItems();
  if (flag == 0) {
    WMenuSetState(MenuAxisTth, MenuChecked, 1);
    WMenuSetState(MenuAxisLinear, MenuChecked, 1);
  }
}
