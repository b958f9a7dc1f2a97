// The Modify menu and its dialogs.
#include <algorithm>

#include "modify/modify.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/menuids.h"
#include "workspace/parameters.h"
#include "workspace/slots.h"

namespace {

using namespace controls;

constexpr const char* kIntensity = "Intensity";
constexpr Control kLpControls[] = {
    Fresh(Choice(1061, "*(1+cos2(2th))", kIntensity, &ws.lpmode)),
    Choice(1062, "/(1+cos2(2th))", kIntensity),
    Choice(1063, "*sin(th)", kIntensity),
    Choice(1064, "/sin(th)", kIntensity),
    Choice(1065, "*sin(th)*sin(2th)", kIntensity),
    Choice(1066, "/sin(th)*sin(2th)", kIntensity),
    Choice(1067, "*cos(2th - 45)", kIntensity),
    Choice(1068, "/cos(45 - 45)", kIntensity),
    Ok,
    Cancel,
};
constexpr ParameterDialog kLp{.resource = {102, "Lp-corrections", kLpControls}};

constexpr Control kPlateControls[] = {
    Fresh(Number(1036, "mu * thickness", &ws.mut, "(f10.2)")),
    Fresh(Number(1037, "Inclination angle", &ws.plateangle, "(f10.3)", "deg."), "45.000"),
    Ok,
    Cancel,
};
constexpr ParameterDialog kPlate{.resource = {106, "Plate correction", kPlateControls},
                                 .validate = [] { ws.mut = std::max(ws.mut, 0.0f); }};

constexpr Control kScaleControls[] = {
    Fresh(Number(1032, "Scale factor", &ws.scalefactor, "(f10.2)"), "1.00"),
    Ok,
    Cancel,
};
void ValidateScale() {
  if (!(ws.scalefactor > 0)) ws.scalefactor = 1.0f;
}
constexpr ParameterDialog kScale{.resource = {107, "Scale pattern", kScaleControls},
                                 .validate = ValidateScale};

constexpr Control kZeroControls[] = {
    Number(1020, "Zero shift", &ws.zeroshift, "(f10.4)", "deg."),
    Box(1021, "Use original steps", &ws.useorigsteps),
    Ok,
    Cancel,
};
constexpr ParameterDialog kZero{.resource = {108, "Zero shift", kZeroControls}};

constexpr Control kTruncateControls[] = {
    Fresh(Number(1022, "New start", &ws.savestart, "(f10.3)", "deg.")),
    Fresh(Number(1023, "New end", &ws.savestop, "(f10.3)", "deg.")),
    Ok,
    Cancel,
};
void ShowTruncate() {
  WDialogPutReal(1022, FirstTth(SlotInput));
  WDialogPutReal(1023, LastTth(SlotInput));
}
void ValidateTruncate() {
  const float first = FirstTth(SlotInput), last = LastTth(SlotInput);
  if (ws.savestart < first || ws.savestart >= last) ws.savestart = first;
  if (ws.savestop <= first || ws.savestop > last) ws.savestop = last;
}
constexpr ParameterDialog kTruncate{.resource = {109, "Truncate pattern", kTruncateControls},
                                    .validate = ValidateTruncate,
                                    .prepare = ShowTruncate};

constexpr Control kSmoothControls[] = {
    Spin(1033, "Window size", &ws.smoothwindow, 3, MostPoints, "points"),
    Ok,
    Cancel,
};
void ValidateSmooth() {
  if (ws.smoothwindow <= 2) ws.smoothwindow = 1;
}
constexpr ParameterDialog kSmooth{.resource = {110, "Smoothing", kSmoothControls},
                                  .validate = ValidateSmooth};

constexpr Control kCylinderControls[] = {
    Fresh(Number(1035, "mu * R", &ws.muR, "(f10.2)")),
    Ok,
    Cancel,
};
constexpr ParameterDialog kCylinder{.resource = {112, "Cylinder correction", kCylinderControls},
                                    .validate = [] { ws.muR = std::max(ws.muR, 0.0f); }};

constexpr Control kConvertControls[] = {
    Fresh(Number(1038, "Orig. wavelength", &ws.origwavelength, "(f10.5)", "\u00c5")),
    Fresh(Number(1039, "New wavelength", &ws.newwavelength, "(f10.5)", "\u00c5"), "1.54056"),
    Fresh(Number(1040, "Pattern start", &ws.savestart, "(f10.2)", "deg.")),
    Fresh(Number(1041, "Pattern stop", &ws.savestop, "(f10.2)", "deg.")),
    Fresh(Number(1042, "Pattern step", &ws.savestep, "(f10.2)", "deg.")),
    Ok,
    Cancel,
};
void ShowConvert() {
  // The slot has the number of the plot switches; their sum names a slot only while few are on.
  const int slot = ws.plotmask >= 1 && ws.plotmask <= MaxSlots ? ws.plotmask : ActiveSlot();
  WDialogPutReal(1038, ws.wavelen(slot));
  WDialogPutReal(1040, FirstTth(slot));
  WDialogPutReal(1041, LastTth(slot));
  WDialogPutReal(1042, FirstStepOf(slot));
}
void ValidateConvert() {
  if (!(ws.newwavelength > 0)) ws.newwavelength = ws.origwavelength;
}
constexpr ParameterDialog kConvert{.resource = {113, "Convert pattern", kConvertControls, 1039},
                                   .validate = ValidateConvert,
                                   .prepare = ShowConvert};

constexpr Control kPolynomialControls[] = {
    Number(1043, "Zeroth order", &ws.polycoef.cells[0], "(f10.3)"),
    Number(1044, "First order", &ws.polycoef.cells[1], "(f10.3)"),
    Number(1045, "Second order", &ws.polycoef.cells[2], "(f10.3)"),
    Number(1046, "Third order", &ws.polycoef.cells[3], "(f10.3)"),
    Number(1047, "Fourth order", &ws.polycoef.cells[4], "(f10.3)"),
    Ok,
    Cancel,
};
constexpr ParameterDialog kPolynomial{.resource = {114, "Add polynomial", kPolynomialControls}};

constexpr Control kChebyshevControls[] = {
    Fresh(Spin(1048, "Order (max. 15)", &ws.chebyorder, 1, 15), "1"),
    Ok,
    Cancel,
};
constexpr ParameterDialog kChebyshev{.resource = {115, "Chebyshev fit", kChebyshevControls}};

// A value typed outside the range goes to the validation, which has its own answer to it.
constexpr Control PassedOn(Control control) {
  control.outside = OutOfRange::Passed;
  return control;
}
constexpr Control kGolayControls[] = {
    PassedOn(Fresh(Spin(1049, "Window size (2-12)", &ws.sgwindow, 2, 12), "2")),
    Ok,
    Cancel,
};
void ValidateGolay() {
  if (ws.sgwindow < 2 || ws.sgwindow > 12) ws.sgwindow = 3;
}
constexpr ParameterDialog kGolay{.resource = {116, "Savitzky_Golay filtering", kGolayControls},
                                 .validate = ValidateGolay};

constexpr const char *kSteps = "Number of histogramming steps",
                     *kInterpolation = "Interpolation type";
constexpr Control kAlpha2Controls[] = {
    Fresh(Number(1050, "Alpha2 / alpha1 intensity ratio", &ws.a2ratio, "(f10.2)"), "0.50"),
    Fresh(Spin(1051, "Number of starting steps", &ws.a2start, 5, MostPoints), "5"),
    Fresh(Choice(1053, "3", kSteps, &ws.a2steps)),
    Choice(1054, "5", kSteps),
    Choice(1055, "7", kSteps),
    Choice(1056, "9", kSteps),
    Choice(1057, "15", kSteps),
    Choice(1058, "25", kSteps),
    Fresh(Choice(1060, "Linear", kInterpolation, &ws.a2interp)),
    Choice(1061, "Parabolic", kInterpolation),
    Choice(1062, "Spline", kInterpolation),
    Ok,
    Cancel,
};
constexpr ParameterDialog kAlpha2{.resource = {117, "Alpha2 stripping", kAlpha2Controls}};

// A pattern that changes takes the fit of an overlay with it; what is made of the fitted curve
// itself stays.
template <Outcome (*Operation)()>
Outcome Changing(const Arguments&) {
  const Outcome outcome = Operation();
  if (outcome != Outcome::Done) return outcome;
  if (ActiveSlot() == SlotRefined) ws.fitshown = 0;
  EndOverlayFit();
  return outcome;
}

constexpr int kPopup = 40030, kAbsorption = 40053;

// A correction or filter of the pattern.
constexpr Command Modify(int id, const char* text, const ParameterDialog* dialog,
                         Outcome (*run)(const Arguments&), Redraw redraw = Redraw::Full,
                         int parent = kPopup) {
  return {.item = {id, text, parent}, .dialog = dialog, .run = run, .redraw = redraw, .undo = true};
}

constexpr Command kCommands[] = {
    {.item = {kPopup, "Modify", 0, true}},
    Modify(40031, "Autodivergence", nullptr, Changing<Autodivergence>, Redraw::Keep),
    Modify(40052, "Alpha2 stripping", &kAlpha2, Changing<Alpha2Strip>, Redraw::Keep),
    {.item = {kAbsorption, "Absorption correction", kPopup, true}},
    Modify(40054, "Cylinder", &kCylinder, Changing<AbsorptionCylinder>, Redraw::Full, kAbsorption),
    Modify(40055, "Flat plate", &kPlate, Changing<AbsorptionPlate>, Redraw::Full, kAbsorption),
    Modify(40064, "Lp-corrections", &kLp, Changing<LpCorrect>),
    Modify(40056, "Zero shift", &kZero, Changing<ZeroShift>),
    Modify(MenuTruncate, "Truncate", &kTruncate, Changing<Truncate>),
    Modify(MenuConvert, "Convert", &kConvert, Changing<ConvertPattern>),
    Modify(40059, "Add polynomial", &kPolynomial, Changing<AddPolynomial>),
    Modify(40060, "Scale", &kScale, Changing<ScalePattern>),
    Modify(40061, "Smooth", &kSmooth, Changing<SmoothPattern>),
    Modify(40062, "Savitzky-Golay", &kGolay, Changing<SavitzkyGolay>),
    Modify(40063, "Chebyshev", &kChebyshev, Plain<ChebyshevFit>),
    {.item = {40032, "Edit data", kPopup}, .run = Plain<EditData>},
};

}  // namespace

std::span<const Command> ModifyCommands() { return kCommands; }
