// The dialogs "Peak fit", "Enter Laue class and centering" and "Wavelength(s)".
#include <algorithm>
#include <array>

#include "crystal/laue.h"
#include "fit/fit.h"
#include "plot/beside.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/parameters.h"
#include "workspace/slots.h"

namespace {

using namespace controls;

// ---- Laue class and centering ----

constexpr const char *kClass = "Laue class", *kCentering = "Centering";
constexpr Control kLaueControls[] = {
    Choice(1511, "1bar", kClass, &ws.laueclass),
    Choice(1512, "2/m-a", kClass),
    Choice(1513, "2/m-b", kClass),
    Choice(1514, "2/m-c", kClass),
    Choice(1515, "mmm", kClass),
    Choice(1516, "3barH", kClass),
    Choice(1517, "3barR", kClass),
    Choice(1518, "3m1H", kClass),
    Choice(1519, "31mH", kClass),
    Choice(1520, "3mR", kClass),
    Choice(1521, "4/m", kClass),
    Choice(1522, "4/mmm", kClass),
    Choice(1523, "6/m", kClass),
    Choice(1524, "6/mmm", kClass),
    Choice(1525, "m3", kClass),
    Choice(1526, "m3m", kClass),
    Choice(1531, "P", kCentering, &ws.centering),
    Choice(1532, "A", kCentering),
    Choice(1533, "B", kCentering),
    Choice(1534, "C", kCentering),
    Choice(1535, "I", kCentering),
    Choice(1536, "F", kCentering),
    Choice(1537, "R", kCentering),
    Ok,
    Cancel,
};
constexpr ParameterDialog kLaue{.resource = {111, "Enter Laue class and centering", kLaueControls}};

// ---- Wavelengths ----

constexpr Control kWaveControls[] = {
    Within(Number(1171, "K(alpha)1", &ws.scanwave.cells[0], "(f10.5)", "\u00c5"), 0.01, 99),
    Within(Number(1172, "K(alpha)2", &ws.scanwave.cells[1], "(f10.5)", "\u00c5"), 0, 99),
    Within(Number(1173, "2/1 ratio", &ws.scanwave.cells[2], "(f10.3)"), 0, 10),
    Ok,
    Cancel,
};
constexpr ParameterDialog kWaves{.resource = {135, "Wavelength(s)", kWaveControls}};

// ---- Peak fit ----

enum Controls {
  FieldCell = 1401,
  BoxCell = 1411,
  FieldClass = 1407,
  FieldLeftWidth = 1421,
  FieldRightWidth = 1424,
  BoxWidth = 1431,
  TieWidth = 1441,
  FieldLeftShape = 1451,
  FieldRightShape = 1454,
  BoxShape = 1461,
  TieShape = 1471,
  FirstPosition = 1493,
  FirstWidthMode = 1495,
  ButtonLaue = 1497,
  ButtonWaves,
  ButtonDefault,
  ButtonRefine,
  ButtonCalculate,
};

constexpr const char *kCell = "Unit cell", *kProfile = "FWHM and peak shape",
                     *kOther = "Background, zero, range", *kCycles = "Refinement",
                     *kPositions = "Positions", *kLaws = "Widths";

constexpr Control InGroup(Control control, const char* group) {
  control.group = group;
  return control;
}
constexpr Control Edge(int k, const char* label) {
  return Within(Number(FieldCell + k, label, &ws.cell.cells[k], "(f10.5)", "\u00c5", kCell), 0.1,
                999);
}
constexpr Control Angle(int k, const char* label) {
  return Within(Number(FieldCell + k, label, &ws.cell.cells[k], "(f10.4)", "deg.", kCell), 1, 179);
}
constexpr Control RefineBox(int id, int* flag, const char* group) {
  return Beside(InGroup(Box(id, "refine", flag), group));
}

// The law of the widths or of the shapes: three coefficients of either half of a profile, each
// refined by itself or both as one, and where they stand in the dialog.
struct Law {
  Table<float, 3>*left, *right;
  Table<int, 6>* refine;
  Table<int, 3>* tie;
  int leftfield, rightfield, box, tiebox;
  const char* labels[3][2];
};

constexpr Law kProfileLaws[] = {
    {&ws.fwhmleft,
     &ws.fwhmright,
     &ws.fwhmrefine,
     &ws.fwhmtie,
     FieldLeftWidth,
     FieldRightWidth,
     BoxWidth,
     TieWidth,
     {{"Left   U", "Right U"}, {"V", "V"}, {"W", "W"}}},
    {&ws.shapeleft,
     &ws.shaperight,
     &ws.shaperefine,
     &ws.shapetie,
     FieldLeftShape,
     FieldRightShape,
     BoxShape,
     TieShape,
     {{"Left   g1", "Right g1"}, {"g2", "g2"}, {"g3", "g3"}}},
};

constexpr const char* kCellLabels[] = {"a", "b", "c", "al", "be", "ga"};

constexpr Control kSettings[] = {
    InGroup(Spin(1481, "Background (max 15)", &ws.bgorder, 0, MaxChebyshev), kOther),
    Number(1482, "Two-theta zero", &ws.tthzero, "(f10.4)", "deg.", kOther),
    RefineBox(1483, &ws.tthzerorefine, kOther),
    Number(1491, "Min two.theta", &ws.fitmin2th, "(f10.3)", "deg.", kOther),
    Number(1492, "Max two-theta", &ws.fitmax2th, "(f10.3)", "deg.", kOther),
    InGroup(Spin(1484, "No. of cycles", &ws.ncycles, 0, 10000), kCycles),
    InGroup(Spin(1485, "No. of bkgr cycles", &ws.nbkgcycles, 0, 2), kCycles),
    Within(Number(1486, "Max shift/e.s.d.", &ws.maxshift, "(f10.3)", "", kCycles), 0, 1000),
    InGroup(Spin(1487, "No. of FWHM in peak", &ws.nfwhmpeak, 1, 1000), kCycles),
    Within(Number(1488, "Diagonal damping", &ws.diagdamp, "(f10.3)", "", kCycles), 0, 1000),
    InGroup(Spin(1489, "Refine every n:th point", &ws.everynth, 1, MostPoints), kCycles),
    Within(Number(1490, "Min FWHM separation", &ws.minfwhmsep, "(f10.3)", "", kCycles), 0, 1000),
    Choice(FirstPosition, "Individual fit", kPositions),
    Beside(Choice(FirstPosition + 1, "Unit cell fit", kPositions)),
    Choice(FirstWidthMode, "Individual fit", kLaws),
    Beside(Choice(FirstWidthMode + 1, "Cagliotti", kLaws)),
    Press(ButtonRefine, "Refine"),
    Press(ButtonCalculate, "Calculate"),
    Press(ButtonLaue, "Laue class"),
    Press(ButtonWaves, "Wavelength(s)"),
    Press(ButtonDefault, "Default"),
    Cancel,
};

constexpr auto kFitControls = [] {
  std::array<Control, 3 * 4 + 1 + std::size(kProfileLaws) * 3 * 5 + std::size(kSettings)> all{};
  auto next = all.begin();
  for (int k = 0; k < 3; ++k) {
    *next++ = Edge(k, kCellLabels[k]);
    *next++ = RefineBox(BoxCell + k, &ws.cellrefine.cells[k], kCell);
    *next++ = Beside(Angle(3 + k, kCellLabels[3 + k]));
    *next++ = RefineBox(BoxCell + 3 + k, &ws.cellrefine.cells[3 + k], kCell);
  }
  *next++ = InGroup(Label(FieldClass, ""), kCell);
  for (const Law& law : kProfileLaws)
    for (int k = 0; k < 3; ++k) {
      const auto coefficient = [&](int field, const char* label, float* value) {
        return Number(field + k, label, value, "(f10.6)", "", kProfile);
      };
      *next++ = coefficient(law.leftfield, law.labels[k][0], &law.left->cells[k]);
      *next++ = RefineBox(law.box + k, &law.refine->cells[k], kProfile);
      *next++ = Beside(InGroup(Box(law.tiebox + k, "left = right", &law.tie->cells[k]), kProfile));
      *next++ = Beside(coefficient(law.rightfield, law.labels[k][1], &law.right->cells[k]));
      *next++ = RefineBox(law.box + 3 + k, &law.refine->cells[3 + k], kProfile);
    }
  std::copy(std::begin(kSettings), std::end(kSettings), next);
  return all;
}();
constexpr DialogResource kFit{124, "Peak fit", kFitControls, FieldCell};

// The cell as it stands in the dialog.
UnitCell EnteredCell() {
  UnitCell cell;
  for (int k = 0; k < 6; ++k) WDialogGetReal(FieldCell + k, cell.cells[k]);
  return cell;
}

// Shows what the class makes of the cell; what it fixes or lets follow cannot be entered or
// refined.
void ShowForcedCell() {
  UnitCell cell = EnteredCell();
  ForceCell(cell, ws.laueclass);
  const LaueClass& laue = LaueClassOf(ws.laueclass);
  for (int k = 0; k < 6; ++k) {
    const bool free = laue.master[k] == k;
    WDialogFieldState(FieldCell + k, free);
    WDialogFieldState(BoxCell + k, free);
    if (free) continue;
    WDialogPutReal(FieldCell + k, cell.cells[k]);
    WDialogPutCheckBox(BoxCell + k, 0);
  }
  WDialogPutString(FieldClass, "Laue class " + std::to_string(ws.laueclass) + " (" + laue.label +
                                   ", " + CenteringOf(ws.centering).label + ")");
}

// A tied quantity is refined by its tie alone.
void ShowTie(int tie, int box) {
  int tied = 0;
  WDialogGetCheckBox(tie, tied);
  for (int half : {box, box + 3}) {
    if (tied) WDialogPutCheckBox(half, 0);
    WDialogFieldState(half, !tied);
  }
}

void ShowTies() {
  for (int k = 0; k < 3; ++k) {
    ShowTie(TieWidth + k, BoxWidth + k);
    ShowTie(TieShape + k, BoxShape + k);
  }
}

void PutDefaults() {
  for (int k = 0; k < 3; ++k) {
    for (int field : {FieldLeftWidth, FieldRightWidth})
      WDialogPutReal(field + k, ws.caglmin.cells[k]);
    for (int field : {FieldLeftShape, FieldRightShape})
      WDialogPutReal(field + k, ws.shapemin.cells[k]);
    for (int tie : {TieWidth, TieShape}) WDialogPutCheckBox(tie + k, 0);
  }
  for (int k = 0; k < 6; ++k)
    for (int box : {BoxWidth, BoxShape}) WDialogPutCheckBox(box + k, 0);
  ShowTies();
}

// Only a fit file can choose the other mode of these.
void ShowModes() {
  const auto show = [](int first, int mode) {
    WDialogPutRadioButton(first + mode - 1);
    WDialogFieldState(first + 2 - mode, 0);
  };
  show(FirstPosition, ws.fitposmode);
  show(FirstWidthMode, ws.fitfwhmmode);
}

void AskWaves() {
  if (AskParameters(kWaves) == 0) return;
  for (int k = 1; k <= 3; ++k) ws.wavelen(k) = ws.scanwave(k);
  ComputeXAxes();
  ws.statedwave = ws.axiswave;
}

void OnFieldChanged(int field) {
  if (field >= FieldCell && field < FieldCell + 6) ShowForcedCell();
  if ((field >= TieWidth && field < TieWidth + 3) || (field >= TieShape && field < TieShape + 3))
    ShowTies();
}

// False for the buttons that close the dialog.
bool OnButton(int button) {
  if (button == ButtonLaue && AskParameters(kLaue) != 0) ShowForcedCell();
  if (button == ButtonWaves) AskWaves();
  if (button == ButtonDefault) PutDefaults();
  return button == ButtonLaue || button == ButtonWaves || button == ButtonDefault;
}

}  // namespace

Outcome AskFit(Arguments& arguments) {
  WRegisterDialogs({&kFit, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(kFit.number);
  PutFields(kFit);
  ShowForcedCell();
  ShowTies();
  ShowModes();
  arguments.button = RunBeside(kFit.number, [](const Message& message) {
    if (message.type == MessageFieldChanged) OnFieldChanged(message.value1);
    return message.type != MessageButton || OnButton(message.value1);
  });
  const bool runs = arguments.button == ButtonRefine || arguments.button == ButtonCalculate;
  if (runs) {
    GetFields(kFit);
    ws.fitmin2th = std::max(ws.fitmin2th, FirstTth(SlotInput));
    ws.fitmax2th = std::min(ws.fitmax2th, LastTth(SlotInput));
    static_cast<FitResults&>(ws) = {};
    ws.fitrun = arguments.button == ButtonRefine ? 1 : 2;
  }
  WDialogUnload();
  return Answered(runs);
}
