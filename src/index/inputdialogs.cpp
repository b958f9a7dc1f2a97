// The dialogs "ITO Input" and "TREOR90 Input".
#include "index/inputdialogs.h"

#include <filesystem>

#include "index/driver.h"
#include "plot/beside.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/parameters.h"
#include "workspace/paths.h"
#include "workspace/text.h"

namespace {

using namespace controls;

constexpr const char *kForm = "Input form", *kDeg = "deg.", *kAngstrom = "\u00c5";

constexpr Control PeakFile = Tip(Entry(FieldPeakFile, "Peak file", &ws.peakfilename),
                                 "As Peak search > Save peaks writes it");

constexpr Control Run(const char* label) { return {ButtonOk, ControlKind::Button, label}; }

constexpr Control kItoControls[] = {
    Choice(1711, "sinsq(th)", kForm, &ws.itoform),
    Choice(1712, "1/dsq", kForm),
    Choice(1713, "theta", kForm),
    Choice(1714, "2theta", kForm),
    Choice(1715, "d", kForm),
    PeakFile,
    Number(1716, "Wavelength", &ws.itowave, "(f10.5)", kAngstrom),
    Tip(Number(1717, "Zero shift", &ws.itozero, "(f10.4)", kDeg), "Added to all lines"),
    Tip(Spin(1718, "Max lines", &ws.itomaxlines, 1, 1000),
        "The engine needs 20 and takes 40 at most"),
    Tip(Number(1719, "Tolerance d1", &ws.itotol1, "(f10.2)"), "Of the trial constants of zones"),
    Tip(Number(1720, "Tolerance d2", &ws.itotol2, "(f10.2)"), "Of the trial constants of lattices"),
    Tip(Spin(1721, "Required FOM", &ws.itofom, 1, 9999), "Hardly read: the engine keeps to 4"),
    Tip(Spin(1722, "Indexed lines", &ws.itolines, 1, 9999), "Hardly read: the engine keeps to 14"),
    Run("Run ITO"),
    Press(ButtonBrowse, "Browse"),
    Cancel,
};

constexpr Control kTreorControls[] = {
    Choice(1731, "sinsq(th)", kForm, &ws.treform),
    Choice(1732, "1/dsq", kForm),
    Choice(1733, "theta", kForm),
    Choice(1734, "2theta", kForm),
    Choice(1735, "d", kForm),
    PeakFile,
    Tip(Number(1736, "Wavelength", &ws.trewave, "(f10.5)", kAngstrom),
        "Of copper at first, whatever the pattern has"),
    Tip(Number(1737, "Max volume", &ws.trevol, "(f10.0)", "\u00c5^3"),
        "Negative: in steps, with monoclinic and triclinic cells"),
    Tip(Number(1738, "Max cell edge", &ws.treedge, "(f10.2)", kAngstrom),
        "Not handed on: the engine keeps to 25 \u00c5"),
    Tip(Number(1739, "Tolerance d1", &ws.tred1, "(f10.5)"), "Of sin\u00b2\u03b8 at low angles"),
    Tip(Number(1740, "Tolerance d2", &ws.tred2, "(f10.5)"), "Of sin\u00b2\u03b8 at high angles"),
    Tip(Spin(1741, "Required FOM", &ws.tremerit, 1, 999),
        "Least figure of merit; one of 20 is nearly always right"),
    Tip(Spin(1742, "Unindexed lines", &ws.trenix, 0, 99), "The most that a solution may leave"),
    Run("Run TREOR90"),
    Press(ButtonBrowse, "Browse"),
    Cancel,
};

template <class T>
void Default(T& field, T value) {
  if (!(field > 0)) field = value;
}

// The file that "Save peaks" proposes, if it is there.
void ProposePeakFile() {
  const std::string name = ws.patternstem + ".pks";
  std::error_code failure;
  if (ws.peakfilename.empty() && std::filesystem::is_regular_file(name, failure))
    ws.peakfilename = Field(name);
}

void Browse() {
  std::string path = "*.pks";
  WSelectFile("Peak file|*.pks|", FileMustExist, path, "Open peaks file");
  if (path.empty() || path.front() == '*' || !AcceptPath(path)) return;
  ws.peakfilename = path;
  WDialogPutString(FieldPeakFile, path);
}

// A name that its field would cut names another file.
bool AcceptEntry() {
  std::string path;
  WDialogGetString(FieldPeakFile, path);
  return AcceptPath(path);
}

}  // namespace

constexpr DialogResource kItoDialog{129, "ITO Input", kItoControls, FieldPeakFile};
constexpr DialogResource kTreorDialog{131, "TREOR90 Input", kTreorControls, FieldPeakFile};

void PutItoDefaults(Indexing& p) {
  Default(p.itoform, 4);
  Default(p.itowave, float{ws.wavelen(1)});
  Default(p.itomaxlines, 30);
  Default(p.itotol1, 3.0f);
  Default(p.itotol2, 4.5f);
  Default(p.itofom, 4);
  Default(p.itolines, 14);
}

void PutTreorDefaults(Indexing& p) {
  Default(p.treform, 4);
  Default(p.trewave, CuKalpha1);
  if (p.trevol == 0) p.trevol = -2000;
  Default(p.treedge, 100.0f);
  Default(p.tred1, 0.0002f);
  Default(p.tred2, 0.0004f);
  Default(p.tremerit, 10);
  if (p.trenix < 0) p.trenix = 1;
}

Outcome AskEngineInput(const IndexingEngine& engine) {
  engine.putdefaults(ws);
  ProposePeakFile();
  WRegisterDialogs({&engine.dialog, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(engine.dialog.number);
  PutFields(engine.dialog);
  const int button = RunBeside(engine.dialog.number, [](const Message& message) {
    if (message.type != MessageButton) return true;
    if (message.value1 == ButtonBrowse) Browse();
    return message.value1 == ButtonBrowse || (message.value1 == ButtonOk && !AcceptEntry());
  });
  if (button == ButtonOk) GetFields(engine.dialog);
  WDialogUnload();
  return Answered(button == ButtonOk);
}
