// Parameter dialogs: which control stands for which field, and what runs behind the buttons.
#include <algorithm>
#include <variant>

#include "background/background.h"
#include "modify/modify.h"
#include "patternfiles/patternfiles.h"
#include "peaks/peaks.h"
#include "plot/plot.h"
#include "shell/shell.h"
#include "workspace/slots.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

// A radio group is an int whose control is its first button; its value counts from 1.
struct RadioGroup {
  int* choice;
};
struct CheckBox {
  int* flag;
};
using FieldOf = std::variant<float*, int*, std::string*, RadioGroup, CheckBox>;

enum Shown { No, Yes };  // whether the dialog opens with the field or with the resource's value

struct Binding {
  int control;
  FieldOf field;
  Shown shown = Yes;
};

struct ParameterDialog {
  int number;
  std::span<const Binding> bindings;
  void (*operation)() = [] {};     // runs after OK
  int specialbutton = 0;           // a further button that stores as OK does
  void (*special)() = [] {};       // and what runs after it
  void (*validate)() = [] {};      // puts what was entered right
  void (*prepare)() = [] {};       // shows what is no plain field
  void (*changed)(int) = nullptr;  // the user has changed a control
};

void Put(const Binding& binding) {
  const int control = binding.control;
  if (auto real = std::get_if<float*>(&binding.field)) WDialogPutReal(control, **real);
  if (auto whole = std::get_if<int*>(&binding.field)) WDialogPutInteger(control, **whole);
  if (auto text = std::get_if<std::string*>(&binding.field)) WDialogPutString(control, **text);
  if (auto radio = std::get_if<RadioGroup>(&binding.field))
    WDialogPutRadioButton(control + *radio->choice - 1);
  if (auto check = std::get_if<CheckBox>(&binding.field)) WDialogPutCheckBox(control, *check->flag);
}

void Get(const Binding& binding) {
  const int control = binding.control;
  if (auto real = std::get_if<float*>(&binding.field)) WDialogGetReal(control, **real);
  if (auto whole = std::get_if<int*>(&binding.field)) WDialogGetInteger(control, **whole);
  if (auto text = std::get_if<std::string*>(&binding.field)) {
    WDialogGetString(control, **text);
    **text = Field(**text);
  }
  if (auto radio = std::get_if<RadioGroup>(&binding.field))
    WDialogGetRadioButton(control, *radio->choice);
  if (auto check = std::get_if<CheckBox>(&binding.field)) WDialogGetCheckBox(control, *check->flag);
}

constexpr Binding kLp[] = {{1061, RadioGroup{&ws.lpmode}, No}};

constexpr Binding kInfo[] = {
    {1011, &ws.sampleid},    {1012, &ws.infodepartment}, {1013, &ws.infocompany},
    {1014, &ws.infoaddress}, {1015, &ws.instrument},     {1016, &ws.infoline},
};

constexpr Binding kDisplace[] = {{1018, &ws.displacex}, {1019, &ws.displacey}};

constexpr Binding kPlate[] = {{1036, &ws.mut, No}, {1037, &ws.plateangle, No}};
void ValidatePlate() { ws.mut = std::max(ws.mut, 0.0f); }

constexpr Binding kScale[] = {{1032, &ws.scalefactor, No}};
void ValidateScale() {
  if (!(ws.scalefactor > 0)) ws.scalefactor = 1.0f;
}

constexpr Binding kZero[] = {{1020, &ws.zeroshift}, {1021, CheckBox{&ws.useorigsteps}}};

constexpr Binding kTruncate[] = {{1022, &ws.savestart, No}, {1023, &ws.savestop, No}};
void ShowTruncate() {
  WDialogPutReal(1022, FirstTth(SlotInput));
  WDialogPutReal(1023, LastTth(SlotInput));
}
void ValidateTruncate() {
  const float first = FirstTth(SlotInput), last = LastTth(SlotInput);
  if (ws.savestart < first || ws.savestart >= last) ws.savestart = first;
  if (ws.savestop <= first || ws.savestop > last) ws.savestop = last;
}

constexpr Binding kSmooth[] = {{1033, &ws.smoothwindow}};
void ValidateSmooth() {
  if (ws.smoothwindow <= 2) ws.smoothwindow = 1;
}

constexpr Binding kCylinder[] = {{1035, &ws.muR, No}};
void ValidateCylinder() { ws.muR = std::max(ws.muR, 0.0f); }

constexpr Binding kConvert[] = {
    {1038, &ws.origwavelength, No}, {1039, &ws.newwavelength, No}, {1040, &ws.savestart, No},
    {1041, &ws.savestop, No},       {1042, &ws.savestep, No},
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

constexpr Binding kPolynomial[] = {
    {1043, &ws.polycoef.cells[0]}, {1044, &ws.polycoef.cells[1]}, {1045, &ws.polycoef.cells[2]},
    {1046, &ws.polycoef.cells[3]}, {1047, &ws.polycoef.cells[4]},
};

constexpr Binding kChebyshev[] = {{1048, &ws.chebyorder, No}};

constexpr Binding kGolay[] = {{1049, &ws.sgwindow, No}};
void ValidateGolay() {
  if (ws.sgwindow < 2 || ws.sgwindow > 12) ws.sgwindow = 3;
}

constexpr Binding kAlpha2[] = {
    {1050, &ws.a2ratio, No},
    {1051, &ws.a2start, No},
    {1053, RadioGroup{&ws.a2steps}, No},
    {1060, RadioGroup{&ws.a2interp}, No},
};

constexpr Binding kAutosubtract[] = {
    {1081, &ws.autosubwindow}, {1082, &ws.autosubcycles}, {1085, RadioGroup{&ws.autosubscale}},
    {1088, &ws.autosubdev},    {1089, &ws.fullstart},     {1090, &ws.fullstop},
};

constexpr Binding kBackgroundScale[] = {{1093, &ws.bgscale}};
void ValidateBackgroundScale() {
  if (!(ws.bgscale > 0)) ws.bgscale = 1.0f;
}

constexpr Binding kInterval[] = {{1094, &ws.bgintstart}, {1095, &ws.bgintend}};

constexpr Binding kCrystal[] = {{1096, &ws.cryststart}, {1097, &ws.crystend}};

constexpr Binding kSave[] = {
    {1098, RadioGroup{&ws.savecontent}},
    {1103, RadioGroup{&ws.saveformat}},
    {1107, &ws.savestart},
    {1108, &ws.savestop},
    {1109, &ws.savestep},
};
constexpr int kAllPatterns = 4;  // savecontent
constexpr int kTabFile = 5;      // saveformat

// All three patterns go to a table, which knows neither other formats nor a step.
void EnableSaveFields(bool single) {
  for (int field : {1103, 1104, 1105, 1106, 1109}) WDialogFieldState(field, single);
}
// The limits of the pattern replace those of the last save as soon as the dialog opens.
void ShowSave() {
  ws.savestart = FirstTth(SlotInput);
  ws.savestop = LastTth(SlotInput);
  ws.savestep = FirstStepOf(SlotInput);
  WDialogPutReal(1107, ws.savestart);
  WDialogPutReal(1108, ws.savestop);
  WDialogPutReal(1109, ws.savestep);
  EnableSaveFields(ws.savecontent != kAllPatterns);
}
void SaveFieldChanged(int field) {
  if (field < 1098 || field > 1101) return;
  int content = 0;
  WDialogGetRadioButton(1098, content);
  EnableSaveFields(content != kAllPatterns);
}
void ValidateSave() {
  if (ws.savecontent == kAllPatterns) ws.saveformat = kTabFile;
}

constexpr Binding kManualOptions[] = {{1111, RadioGroup{&ws.manualbgmode}}};
void FitManualAndRedraw() {
  FitManualBackground();
  RedrawView(0);
}

constexpr Binding kSinglePeak[] = {
    {1121, &ws.spinitwidth}, {1122, &ws.spinithw}, {1123, &ws.spfinalhw},
    {1124, &ws.sphwtol},     {1125, &ws.spgeom},   {1126, RadioGroup{&ws.spmode}},
    {1128, &ws.spminhw},     {1129, &ws.spu},      {1130, &ws.spv},
    {1131, &ws.spw},
};

constexpr Binding kSearch[] = {
    {1141, &ws.pksmooth}, {1142, &ws.pkminfwhm}, {1143, &ws.pkmaxfwhm}, {1144, &ws.pksigma}};

constexpr Binding kWaves[] = {
    {1161, &ws.wavelen.cells[0]}, {1162, &ws.wavelen.cells[1]}, {1163, &ws.wavelen.cells[2]},
    {1165, &ws.wavelen.cells[4]}, {1166, &ws.wavelen.cells[5]}, {1167, &ws.wavelen.cells[6]},
    {1168, &ws.wavelen.cells[7]},
};
void ShowWaves() {
  for (int k = 1; k <= MaxOverlays; ++k) WDialogFieldState(1164 + k, k <= ws.noverlay);
}
void TakeWaves() {
  for (int k = 1; k <= 3; ++k) ws.scanwave(k) = ws.wavelen(k);
  ComputeXAxes();
  // The zoom of a d or Q axis means another range now; two-theta has not changed.
  if (ws.xaxismode != AxisTth) RedrawView(1);
}

const ParameterDialog kParameterDialogs[] = {
    {.number = 101, .bindings = {}},
    {.number = 102, .bindings = kLp, .operation = LpCorrect},
    {.number = 104, .bindings = kInfo, .specialbutton = 1017, .special = WriteInfoToConfiguration},
    {.number = 105, .bindings = kDisplace},
    {.number = 106, .bindings = kPlate, .operation = AbsorptionPlate, .validate = ValidatePlate},
    {.number = 107, .bindings = kScale, .operation = ScalePattern, .validate = ValidateScale},
    {.number = 108, .bindings = kZero, .operation = ZeroShift},
    {.number = 109,
     .bindings = kTruncate,
     .operation = Truncate,
     .validate = ValidateTruncate,
     .prepare = ShowTruncate},
    {.number = 110, .bindings = kSmooth, .operation = SmoothPattern, .validate = ValidateSmooth},
    {.number = 112,
     .bindings = kCylinder,
     .operation = AbsorptionCylinder,
     .validate = ValidateCylinder},
    {.number = 113,
     .bindings = kConvert,
     .operation = ConvertPattern,
     .validate = ValidateConvert,
     .prepare = ShowConvert},
    {.number = 114, .bindings = kPolynomial, .operation = AddPolynomial},
    {.number = 115, .bindings = kChebyshev, .operation = ChebyshevFit},
    {.number = 116, .bindings = kGolay, .operation = SavitzkyGolay, .validate = ValidateGolay},
    {.number = 117, .bindings = kAlpha2, .operation = Alpha2Strip},
    {.number = 119, .bindings = kAutosubtract, .specialbutton = 1091, .special = Autosubtract},
    {.number = 120,
     .bindings = kBackgroundScale,
     .operation = ScaleBackground,
     .validate = ValidateBackgroundScale},
    {.number = 121, .bindings = kInterval, .operation = ScaleToInterval},
    {.number = 122, .bindings = kCrystal, .operation = Crystallinity},
    {.number = 123,
     .bindings = kSave,
     .operation = SavePattern,
     .validate = ValidateSave,
     .prepare = ShowSave,
     .changed = SaveFieldChanged},
    {.number = 125,
     .bindings = kManualOptions,
     .specialbutton = 1110,
     .special = FitManualAndRedraw},
    {.number = 127, .bindings = kSinglePeak, .specialbutton = 1132, .special = SinglePeakFit},
    {.number = 132, .bindings = kSearch, .specialbutton = 1145, .special = OnPeakSearch},
    {.number = 136, .bindings = kWaves, .operation = TakeWaves, .prepare = ShowWaves},
};

}  // namespace

void RunParameterDialog(int number) {
  const auto* dialog = std::ranges::find(kParameterDialogs, number, &ParameterDialog::number);
  WDialogUndefined(0, 0, 0);
  WDialogLoad(number);
  for (const Binding& binding : dialog->bindings)
    if (binding.shown == Yes) Put(binding);
  dialog->prepare();
  WDialogShow(-1, -1, 0, Modal, dialog->changed);
  const int button = WInfoDialog(4);
  const bool accepted = button == ButtonOk || (button != 0 && button == dialog->specialbutton);
  if (accepted) {
    for (const Binding& binding : dialog->bindings) Get(binding);
    dialog->validate();
  }
  WDialogUnload();
  if (accepted) (button == ButtonOk ? dialog->operation : dialog->special)();
}
