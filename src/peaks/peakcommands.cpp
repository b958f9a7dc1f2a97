// The menus "Peak search" and "Peak fit" and their dialogs.
#include "peaks/peaks.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/parameters.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

using namespace controls;

enum SpecialButtons { ButtonFit = 1132, ButtonSearch = 1145 };

constexpr Control kSearchControls[] = {
    Tip(Spin(1141, "Smoothing factor", &ws.pksmooth, 3, MostPoints, "points"),
        "About the points across a narrow peak; more pass over noise"),
    Tip(Number(1142, "Min FWHM", &ws.pkminfwhm, "(f7.3)", "deg."),
        "What is narrower is taken for noise"),
    Tip(Number(1143, "Max FWHM", &ws.pkmaxfwhm, "(f7.3)", "deg."),
        "What is broader is taken for background"),
    Tip(Number(1144, "Sigma factor", &ws.pksigma, "(f6.3)"),
        "Least height in sigmas of the background; 5 to 10 pass over noise"),
    Ok,
    Cancel,
    Press(ButtonSearch, "Search"),
};
constexpr ParameterDialog kSearch{.resource = {132, "Peak search options", kSearchControls},
                                  .special = ButtonSearch};

constexpr const char* kInstrument = "Instrumental width";
constexpr Control kFitControls[] = {
    Number(1121, "Initial peak width (deg.)", &ws.spinitwidth, "(f8.2)"),
    Spin(1122, "Initial no. of halfwidths", &ws.spinithw, 1, 1000),
    Spin(1123, "Final no. of halfwidths", &ws.spfinalhw, 1, 1000),
    Number(1124, "HW tolerance for update", &ws.sphwtol, "(f8.2)"),
    Number(1125, "Geometric factor", &ws.spgeom, "(f8.2)"),
    Choice(1126, "Minimum halfwidth", kInstrument, &ws.spmode),
    Choice(1127, "Cagliotti", kInstrument),
    Number(1128, "Halfwidth", &ws.spminhw, "(f10.2)", "deg.", kInstrument),
    Number(1129, "U", &ws.spu, "(f8.4)", "", kInstrument),
    Number(1130, "V", &ws.spv, "(f8.4)", "", kInstrument),
    Number(1131, "W", &ws.spw, "(f8.4)", "", kInstrument),
    Ok,
    Cancel,
    Press(ButtonFit, "Fit"),
};
constexpr ParameterDialog kFit{.resource = {127, "Single peak fit options", kFitControls},
                               .special = ButtonFit};

bool AskFor(Arguments& arguments, const char* filter, const std::string& name) {
  std::string& path = arguments.path = name;
  WSelectFile(filter, FileMustExist, path, "Open peak file");
  return !path.empty() && path.front() != '*';
}

Outcome AskEdit(Arguments& arguments) {
  if (!ws.peakfilename.empty()) return Outcome::Done;
  if (!AskFor(arguments, "Peak file|*.pks|", "*.pks")) return Outcome::Cancelled;
  ws.peakfilename = Field(arguments.path);
  return Outcome::Done;
}

Outcome AskSave(Arguments& arguments) {
  if (ws.npeaks < 1) {
    MessageBoxError("Error", "No peaks in list");
    return Outcome::Failed;
  }
  arguments.path = ws.patternstem + ".pks";
  WSelectFile("Peaks file|*.pks|", FileSave, arguments.path, "Save peak positions");
  return Answered(!arguments.path.empty());
}

Outcome Save(const Arguments& arguments) { return SavePeaks(arguments.path); }
Outcome Load(const Arguments& arguments) { return LoadPeaks(arguments.path); }
Outcome Table(const Arguments& arguments) { return ShowPeakTable(arguments.step); }
Outcome Fit(const Arguments&) { return SinglePeakFit(AcceptPeakFit); }

// OK of the options only stores them.
Outcome AfterSearchOptions(const Arguments& arguments) {
  return arguments.button == ButtonSearch ? OnPeakSearch() : Outcome::Done;
}
Outcome AfterFitOptions(const Arguments& arguments) {
  return arguments.button == ButtonFit ? Fit(arguments) : Outcome::Done;
}

Outcome ChooseAnalysis(const Arguments& arguments) {
  ws.analysiskind = arguments.number;
  return Outcome::Done;
}

constexpr int kPopup = 40102, kFitPopup = 40019;

constexpr Command Analysis(int id, const char* text, int viewmode, int kind) {
  return {.item = {id, text, kFitPopup},
          .viewmode = viewmode,
          .number = kind,
          .run = ChooseAnalysis,
          .redraw = Redraw::Keep,
          .undo = true};
}

constexpr Command kCommands[] = {
    {.item = {kPopup, "Peak search", 0, true}},
    {.item = {40105, "Auto peak search", kPopup},
     .run = Plain<OnPeakSearch>,
     .redraw = Redraw::Full,
     .undo = true},
    {.item = {MenuSearchOptions, "Search options", kPopup},
     .title = "Peak search options",
     .dialog = &kSearch,
     .run = AfterSearchOptions,
     .redraw = Redraw::Full,
     .undo = true},
    {.item = {MenuManualPeaks, "Manual peak search", kPopup},
     .run = Plain<ManualPeakSearch>,
     .redraw = Redraw::Full,
     .undo = true},
    {.item = {MenuSavePeaks, "Save peaks", kPopup},
     .ask = AskSave,
     .run = Save,
     .redraw = Redraw::Full},
    {.item = {MenuLoadPeaks, "Load peaks", kPopup},
     .ask = AskPeakFile,
     .run = Load,
     .redraw = Redraw::Full,
     .undo = true},
    {.item = {40104, "Edit peaks", kPopup},
     .ask = AskEdit,
     .run = Plain<EditPeaks>,
     .redraw = Redraw::Full},
    {.item = {40095, "Clear peaks", kPopup},
     .run = Plain<ClearPeaks>,
     .redraw = Redraw::Full,
     .undo = true},
    {.item = {MenuPeakTable, "Peak table", kPopup},
     .viewmode = 1,
     .run = Table,
     .redraw = Redraw::Keep,
     .undo = true},

    {.item = {kFitPopup, "Peak fit", 0, true}},
    {.item = {MenuFitPeak, "Fit single peak", kFitPopup},
     .run = Fit,
     .redraw = Redraw::Keep,
     .undo = true},
    {.item = {MenuFitPeakOptions, "Options", kFitPopup},
     .title = "Single peak fit options",
     .dialog = &kFit,
     .run = AfterFitOptions,
     .redraw = Redraw::Keep,
     .undo = true},
};

constexpr Command kAnalysisCommands[] = {
    Analysis(40096, "Plot FWHM", 3, 1),
    Analysis(40097, "Plot peak shape", 3, 2),
    Analysis(40098, "Plot particle size", 4, 1),
    Analysis(40099, "Williamson-Hall plot", 4, 2),
    {.item = {MenuFitAllPeaks, "Fit all peaks", kFitPopup},
     .run = Plain<FitAllPeaks>,
     .redraw = Redraw::Keep,
     .undo = true},
};

}  // namespace

Outcome AskPeakFile(Arguments& arguments) {
  return Answered(
      AskFor(arguments, "Peaks file|*.pks|", ws.peakfilename.empty() ? "*.pks" : ws.peakfilename));
}

std::span<const Command> PeakCommands() { return kCommands; }
std::span<const Command> AnalysisCommands() { return kAnalysisCommands; }
