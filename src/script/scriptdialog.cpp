// The dialog "Create Script".
#include "plot/beside.h"
#include "script/script.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/parameters.h"
#include "workspace/paths.h"
#include "workspace/slots.h"

namespace {

using namespace controls;

enum Controls {
  FieldScript = 1252,
  FieldInputs,
  FieldOutputs,
  ButtonScript,
  ButtonInputs,
  ButtonOutputs,
  FieldLow = 1259,
  FieldHigh,
  FieldConvertStart = 1265,
  FieldConvertStop,
  FieldConvertStep,
  FieldType = 1271,
  FieldFrom,
  FieldTo,
};

constexpr const char *kInput = "Input format", *kOutput = "Output format", *kDeg = "deg.",
                     *kAngstrom = "\u00c5";
constexpr int kLargest = 99999;  // an integer has five columns
constexpr int kNumbered = 3;     // type of SCAL that goes by numbers

// In ten columns with four or five decimals.
constexpr Control Angle(int id, const char* label, float* variable) {
  return Within(Number(id, label, variable, "(f10.4)", kDeg), -9999, 99999);
}
constexpr Control Fine(int id, const char* label, float* variable, const char* unit) {
  return Within(Number(id, label, variable, "(f10.5)", unit), -999, 9999);
}

constexpr Control kControls[] = {
    Entry(FieldScript, "Script file", &ws.scriptpath),
    Beside(Press(ButtonScript, "Browse")),
    Entry(FieldInputs, "Input file list file", &ws.scriptinlist),
    Beside(Press(ButtonInputs, "Browse")),
    Entry(FieldOutputs, "Output file list file", &ws.scriptoutlist),
    Beside(Press(ButtonOutputs, "Browse")),
    Choice(1001, "gdf", kInput, &ws.scriptinfmt),
    Beside(Choice(1002, "xy", kInput)),
    Beside(Choice(1275, "dat", kInput)),
    Beside(Choice(1004, "udf", kInput)),
    Beside(Choice(1274, "txt", kInput)),
    Beside(Choice(1280, "any", kInput)),
    Choice(1006, "gdf", kOutput, &ws.scriptoutfmt),
    Beside(Choice(1007, "xy", kOutput)),
    Beside(Choice(1277, "cif", kOutput)),
    Beside(Choice(1276, "dat", kOutput)),
    Beside(Choice(1010, "Add-up", kOutput)),
    Box(1011, "Zero shift:", &ws.scriptusezero),
    Beside(Angle(1258, "Shift", &ws.zeroshift)),
    Box(1012, "Truncate:", &ws.scriptusetrun),
    Beside(Angle(FieldLow, "Low", &ws.savestart)),
    Beside(Angle(FieldHigh, "High", &ws.savestop)),
    Box(1016, "Scale:", &ws.scriptusescal),
    Beside(Within(Number(1270, "Factor", &ws.scalefactor, "(f10.4)"), 0.0001, 99999)),
    Beside(Spin(FieldType, "Type", &ws.scaletype, 0, kLargest)),
    Below(Spin(FieldFrom, "No.", &ws.scalefrom, 0, kLargest)),
    Beside(Spin(FieldTo, "-", &ws.scaleto, 0, kLargest)),
    Box(1013, "Smooth:", &ws.scriptusesmoo),
    Beside(Spin(1262, "Smoothing factor", &ws.smoothwindow, 1, MostPoints)),
    Box(1014, "Savitsky-Golay filtering:", &ws.scriptusesago),
    Beside(Spin(1261, "Factor (5-25)", &ws.sgwindow, 2, 25)),
    Box(1015, "Convert:", &ws.scriptuseconv),
    Beside(Fine(1263, "Old", &ws.wavelen.cells[0], kAngstrom)),
    Beside(Fine(1264, "New", &ws.newwavelength, kAngstrom)),
    Below(Fine(FieldConvertStart, "Start", &ws.convstart, kDeg)),
    Beside(Fine(FieldConvertStop, "Stop", &ws.convstop, kDeg)),
    Below(Fine(FieldConvertStep, "Step", &ws.convstep, kDeg)),
    Box(1017, "Background subtraction:", &ws.scriptusebkgr),
    Beside(Spin(1268, "Smoothing factor", &ws.autosubwindow, 1, MostPoints)),
    Box(1018, "Skip lines:", &ws.scriptuseskip),
    Beside(Spin(1269, "No. lines", &ws.headerskip, 0, kLargest)),
    Ok,
    Cancel,
};
constexpr DialogResource kDialog{137, "Create Script", kControls, FieldScript};

// The buttons of a choice, whose numbers are not in a row.
constexpr int kInputButtons[] = {1001, 1002, 1275, 1004, 1274, 1280};
constexpr int kOutputButtons[] = {1006, 1007, 1277, 1276, 1010};

// What is none of the formats is the first, as in a run.
template <std::size_t N>
void PutFormat(const int (&buttons)[N], int format) {
  WDialogPutRadioButton(buttons[format >= 1 && format <= static_cast<int>(N) ? format - 1 : 0]);
}

// What is not in use yet opens with the pattern on show.
void ProposeLimits() {
  if (!ws.patternloaded) return;
  if (!ws.scriptusetrun) {
    WDialogPutReal(FieldLow, FirstTth(SlotInput));
    WDialogPutReal(FieldHigh, LastTth(SlotInput));
  }
  if (!ws.scriptuseconv) {
    WDialogPutReal(FieldConvertStart, FirstTth(SlotInput));
    WDialogPutReal(FieldConvertStop, LastTth(SlotInput));
    WDialogPutReal(FieldConvertStep, FirstStepOf(SlotInput));
  }
}

// Fields take input where the box in front of them is ticked.
void EnableFields() {
  int ticked = 1;
  for (const Control& control : kControls) {
    if (control.kind == ControlKind::Check) WDialogGetCheckBox(control.id, ticked);
    const bool number = control.kind == ControlKind::Real || control.kind == ControlKind::Integer;
    if (number) WDialogFieldState(control.id, ticked);
  }
  int scaled = 0, type = 0;
  WDialogGetCheckBox(1016, scaled);
  WDialogGetInteger(FieldType, type);
  for (int field : {FieldFrom, FieldTo}) WDialogFieldState(field, scaled && type == kNumbered);
}

constexpr struct {
  int button, field, flags;
  const char *filter, *name, *title;
} kBrowsers[] = {
    {ButtonScript, FieldScript, FileSave, "Script file|*.scp|", "*.scp", "Open script file"},
    {ButtonInputs, FieldInputs, FileMustExist, "File list file|*.mlt|", "*.mlt",
     "Open input file list file"},
    {ButtonOutputs, FieldOutputs, 0, "File list file|*.mlt|", "*.mlt",
     "Open output file list file"},
};

// True for a button that asks for a file.
bool Browse(int button) {
  for (const auto& row : kBrowsers) {
    if (row.button != button) continue;
    std::string path = row.name;
    WSelectFile(row.filter, row.flags, path, row.title);
    if (!path.empty() && path.front() != '*' && AcceptPath(path)) WDialogPutString(row.field, path);
    return true;
  }
  return false;
}

// Without a name there would be no script, and a name that its field would cut names another file.
bool AcceptEntries() {
  for (int field : {FieldScript, FieldInputs, FieldOutputs}) {
    std::string path;
    WDialogGetString(field, path);
    if (field == FieldScript && path.find_first_not_of(' ') == std::string::npos) {
      MessageBoxError("File Error", "The script file needs a name");
      return false;
    }
    if (!AcceptPath(path)) return false;
  }
  return true;
}

// True while the dialog stays.
bool OnMessage(const Message& message) {
  if (message.type == MessageFieldChanged) EnableFields();
  if (message.type != MessageButton) return true;
  return Browse(message.value1) || (message.value1 == ButtonOk && !AcceptEntries());
}

}  // namespace

Outcome AskScript() {
  WRegisterDialogs({&kDialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(kDialog.number);
  PutFields(kDialog);
  PutFormat(kInputButtons, ws.scriptinfmt);
  PutFormat(kOutputButtons, ws.scriptoutfmt);
  ProposeLimits();
  EnableFields();
  const int button = RunBeside(kDialog.number, OnMessage);
  if (button == ButtonOk) GetFields(kDialog);
  WDialogUnload();
  return Answered(button == ButtonOk);
}
