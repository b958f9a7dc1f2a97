// The Background menu and its dialogs.
#include "background/background.h"
#include "patternfiles/patternfiles.h"
#include "plot/beside.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/parameters.h"
#include "workspace/slots.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

using namespace controls;

enum SpecialButtons { ButtonSubtract = 1091, ButtonFit = 1110 };

constexpr const char* kScaling = "Scaling";
constexpr Control kAutosubtractControls[] = {
    Tip(Spin(1081, "Smoothing window", &ws.autosubwindow, 3, 501, "points"),
        "Wider than any peak, narrower than the humps of the background"),
    Spin(1082, "Smoothing cycles", &ws.autosubcycles, 1, 50),
    Choice(1085, "Minimum", kScaling, &ws.autosubscale),
    Choice(1086, "Scaled with maximum deviation", kScaling),
    Choice(1087, "Scaled in interval", kScaling),
    Number(1088, "Maximum deviation", &ws.autosubdev, "(f10.2)", "%"),
    Number(1089, "Interval start", &ws.fullstart, "(f10.2)", "deg."),
    Number(1090, "Interval end", &ws.fullstop, "(f10.2)", "deg."),
    Ok,
    Cancel,
    Press(ButtonSubtract, "Subtract"),
};
constexpr ParameterDialog kAutosubtract{
    .resource = {119, "Autosubtract options", kAutosubtractControls}, .special = ButtonSubtract};

constexpr Control kScaleControls[] = {
    Number(1093, "Scale factor", &ws.bgscale, "(f10.3)"),
    Ok,
    Cancel,
};
void ValidateScale() {
  if (!(ws.bgscale > 0)) ws.bgscale = 1.0f;
}
constexpr ParameterDialog kScale{.resource = {120, "Scale background", kScaleControls},
                                 .validate = ValidateScale};

constexpr Control kIntervalControls[] = {
    Number(1094, "Interval start", &ws.bgintstart, "(f10.2)", "deg."),
    Number(1095, "Interval end", &ws.bgintend, "(f10.2)", "deg."),
    Ok,
    Cancel,
};
constexpr ParameterDialog kInterval{.resource = {121, "Scale to interval", kIntervalControls}};

constexpr Control kCrystallinityControls[] = {
    Number(1096, "Start", &ws.cryststart, "(f10.2)", "deg."),
    Number(1097, "End", &ws.crystend, "(f10.2)", "deg."),
    Ok,
    Cancel,
};
constexpr ParameterDialog kCrystallinity{
    .resource = {122, "Crystallinity calculation", kCrystallinityControls}};

constexpr Control kHumpControls[] = {
    Number(1990, "Start", &ws.humpstart, "(f10.2)", "deg."),
    Number(1991, "End", &ws.humpend, "(f10.2)", "deg."),
    Ok,
    Cancel,
};
void ShowHumpRange() {
  if (ws.humpend > ws.humpstart) return;
  WDialogPutReal(1990, FirstTth(SlotInput));
  WDialogPutReal(1991, LastTth(SlotInput));
}
constexpr ParameterDialog kHump{.resource = {150, "Amorphous hump", kHumpControls},
                                .prepare = ShowHumpRange};

constexpr Control kManualControls[] = {
    Choice(1111, "Linear", "Curve", &ws.manualbgmode),
    Choice(1112, "Spline", "Curve"),
    Choice(1113, "Chebyshev", "Curve"),
    Ok,
    Cancel,
    Press(ButtonFit, "Fit"),
};
constexpr ParameterDialog kManual{.resource = {125, "Manuel background options", kManualControls},
                                  .special = ButtonFit};

Question AskUser() { return ws.batchmode == 1 ? Question() : AskOnPlot; }

Outcome AskFile(Arguments& arguments) {
  arguments.path = AskForPattern(ws.filetype);
  if (arguments.path.empty()) return Outcome::Cancelled;
  return ws.filetype == FileTypeAny ? AskScans(arguments.path, arguments.scans) : Outcome::Done;
}

Outcome AskSave(Arguments& arguments) {
  arguments.path = ws.patternstem + "_bkg.xy";
  WSelectFile("Background file|*.xy|", FileSave, arguments.path, "Save background file");
  return Answered(!arguments.path.empty());
}

Outcome FromFile(const Arguments& arguments) {
  return BackgroundFromFile(arguments.path, arguments.scans);
}
Outcome Save(const Arguments& arguments) { return SaveBackground(arguments.path); }
Outcome Subtract(const Arguments&) { return SubtractBackground(AskUser()); }
Outcome Estimate(const Arguments&) { return Autosubtract(AskUser()); }

// OK of the options only stores them.
Outcome AfterOptions(const Arguments& arguments) {
  return arguments.button == ButtonSubtract ? Estimate(arguments) : Outcome::Done;
}
Outcome AfterManualOptions(const Arguments& arguments) {
  return arguments.button == ButtonFit ? FitManualBackground() : Outcome::Done;
}

void TellCrystallinity() {
  if (!(ws.crystend > ws.cryststart)) return;  // nothing has been calculated
  MessageBoxInfo("Crystallinity",
                 "Crystallinity =" + LeftAlign(RealField(ws.crystallinity, 9, 2)) + " %");
}

constexpr int kPopup = 40069, kFiles = 40070;

constexpr Command File(int id, const char* text, int filetype) {
  return {.item = {id, text, kFiles},
          .title = "Background from file",
          .filetype = filetype,
          .viewmode = 1,
          .ask = AskFile,
          .run = FromFile,
          .redraw = Redraw::Full,
          .undo = true};
}

constexpr Command Curve(int id, const char* text, Outcome (*run)(const Arguments&),
                        const ParameterDialog* dialog = nullptr, const char* title = "",
                        void (*tell)() = nullptr) {
  return {.item = {id, text, kPopup},
          .title = title,
          .viewmode = 1,
          .dialog = dialog,
          .run = run,
          .tell = tell,
          .redraw = Redraw::Full,
          .undo = true};
}

constexpr Command kCommands[] = {
    {.item = {kPopup, "Background", 0, true}},
    {.item = {kFiles, "Background from file", kPopup, true}},
    File(MenuBackgroundAny, "Any format", FileTypeAny),
    File(40082, "*.xy (General)", 1),
    File(40080, "*.gdf (Huber)", 2),
    File(40081, "*.txt (Bruker)", 3),
    File(40083, "*.uxd (Bruker)", 4),
    File(40084, "*.cif (General)", 5),
    File(40085, "*.dat (General)", 6),
    File(40086, "*.xrdml (Panalytical)", 7),
    File(40087, "*.udf (Stoe)", 8),
    File(40143, "*.chi (Fit2D)", 9),
    Curve(40071, "Refined background", Plain<RefinedBackground>),
    Curve(40088, "Manual background", Plain<ManualBackgroundDialog>),
    {.item = {40018, "Options", kPopup},
     .title = "Manual background options",
     .dialog = &kManual,
     .run = AfterManualOptions,
     .redraw = Redraw::Keep,
     .undo = true},
    Curve(40072, "Scale background", Plain<ScaleBackground>, &kScale),
    Curve(40073, "Scale to interval", Plain<ScaleToInterval>, &kInterval),
    Curve(MenuSubtract, "Subtract background", Subtract),
    Curve(40075, "Crystallinity", Plain<Crystallinity>, &kCrystallinity, "", TellCrystallinity),
    {.item = {MenuSaveBackground, "Save background", kPopup},
     .ask = AskSave,
     .run = Save,
     .redraw = Redraw::Full},
    Curve(40077, "Clear background", Plain<ClearBackground>),
    Curve(MenuAutosubtract, "Autosubtract", Estimate),
    Curve(MenuAutosubtractOptions, "Options", AfterOptions, &kAutosubtract, "Autosubtract options"),
    Curve(MenuHump, "Amorphous hump...", Plain<MeasureHump>, &kHump),
};

}  // namespace

std::span<const Command> BackgroundCommands() { return kCommands; }
