// Which scans of a file are wanted.
#include <algorithm>
#include <cmath>

#include "patternfiles/import/import.h"
#include "patternfiles/import/prepared.h"
#include "patternfiles/patternfiles.h"
#include "toolkit/controls.h"
#include "toolkit/toolkit.h"
#include "workspace/parameters.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

using namespace controls;

enum ScanDialog {
  DialogNumber = 147,
  Grid = 1881,
  FieldScans,
  ChoiceOverlays,
  ChoiceSum,
  FieldWavelength,
};

// What the dialog asks for while it is open.
struct Asked {
  std::string scans;
  int mode = 1;  // 1 one over the other, 2 their sum
  float wavelength = CuKalpha1;
};
Asked asked;
const MeasuredFile* shown = nullptr;

constexpr const char* kSeveral = "Of several";
constexpr Control kControls[] = {
    {Grid, ControlKind::Grid, "No.|Scan|From|To|Points|Maximum"},
    Tip(Entry(FieldScans, "Scans", &asked.scans), "such as 1-3, 5; the first is the pattern"),
    Choice(ChoiceOverlays, "The others over the first", kSeveral, &asked.mode),
    Choice(ChoiceSum, "Their sum", kSeveral),
    Within(Number(FieldWavelength, "Wavelength", &asked.wavelength, "(f10.5)", "angstrom",
                  "Positions in d or Q"),
           0.05, 30),
    Ok,
    Cancel,
};

std::string Fixed(double value, int decimals) {
  std::string text = LeftAlign(RealField(static_cast<float>(value), 15, decimals));
  if (text.ends_with('.')) text.pop_back();
  return text;
}

std::vector<std::string> RowOf(const MeasuredScan& scan, std::size_t number) {
  const auto [first, last] = std::ranges::minmax(scan.x);
  return {std::to_string(number),
          scan.label,
          Fixed(first, 3),
          Fixed(last, 3),
          std::to_string(scan.x.size()),
          Fixed(std::ranges::max(scan.counts), 0)};
}

void Show() {
  std::vector<std::vector<std::string>> rows;
  for (const MeasuredScan& scan : shown->scans) rows.push_back(RowOf(scan, rows.size() + 1));
  WGridPutRows(Grid, std::move(rows), 0);
  WGridPick(Grid, 1, 1);
  const bool several = shown->scans.size() > 1;
  for (int field : {FieldScans, ChoiceOverlays, ChoiceSum}) WDialogFieldState(field, several);
  WDialogFieldState(FieldWavelength, std::ranges::any_of(shown->scans, NeedsWavelength));
}

void Changed(int id) {
  if (id != Grid) return;
  int column = 0, row = 0;
  WGridPos(Grid, column, row);
  if (row > 0) WDialogPutString(FieldScans, std::to_string(row));
}

constexpr ParameterDialog kDialog{
    .resource = {DialogNumber, "Scans of the file", kControls, FieldScans},
    .prepare = Show,
    .changed = Changed};

}  // namespace

Outcome AskScans(const std::string& path, ScanChoice& choice) {
  choice.imported = std::make_shared<const Imported>(ImportFile(path));
  const MeasuredFile& file = choice.imported->file;
  if (file.scans.size() < 2 && !std::ranges::any_of(file.scans, NeedsWavelength))
    return Outcome::Done;
  asked = {.scans = "1"};
  shown = &file;
  const int button = AskParameters(kDialog);
  shown = nullptr;
  if (button == 0) return Outcome::Cancelled;
  choice.scans = ScanNumbers(asked.scans, file.scans.size());
  choice.sum = asked.mode == 2;
  choice.wavelength = asked.wavelength;
  if (!choice.scans.empty()) return Outcome::Done;
  MessageBoxError("Error", FileMessage("Scans of the file", path,
                                       "has scans 1 to " + std::to_string(file.scans.size()) +
                                           ", not \"" + asked.scans + "\""));
  return Outcome::Failed;
}
