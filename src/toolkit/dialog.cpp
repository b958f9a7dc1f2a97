// Dialogs: loading, showing, and the values of their controls.
#include <algorithm>
#include <charconv>
#include <map>
#include <memory>

#include "toolkit/common.h"
#include "toolkit/dialogs.h"
#include "toolkit/journal.h"

namespace {

const DialogResource kNoResource{};  // of a dialog that is not known, or not there
std::map<int, const DialogResource*> resources;
// The last one is the current dialog. A number can be there twice while a dialog stands over
// another.
std::vector<std::unique_ptr<DialogState>> loaded;
int lastbutton = 0;
int undefinedinteger = 0;
double undefinedreal = 0;
constexpr int kMaxGridRows = 10000;

// "(f10.3)": three decimals. Widths do not matter on a form.
std::string FormattedReal(float value, std::string_view format) {
  int decimals = 3;
  if (const std::size_t point = format.find('.'); point != std::string_view::npos)
    std::from_chars(format.data() + point + 1, format.data() + format.size(), decimals);
  char buffer[128];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  const std::string_view text(buffer, result.ptr - buffer);
  const bool zero = text.find_first_of("123456789in") == std::string_view::npos;
  return std::string(zero && text.starts_with('-') ? text.substr(1) : text);
}

bool SameGroup(const Control& a, const Control& b) {
  return a.kind == ControlKind::Radio && b.kind == ControlKind::Radio &&
         std::string_view(a.group) == b.group;
}

// Controls [first, last) of the choice to which radio button `index` belongs.
std::pair<int, int> RadioGroup(const DialogState& dialog, int index) {
  const auto controls = dialog.resource->controls;
  int first = index, last = index + 1;
  while (first > 0 && SameGroup(controls[first - 1], controls[index])) --first;
  while (last < static_cast<int>(controls.size()) && SameGroup(controls[last], controls[index]))
    ++last;
  return {first, last};
}

FieldState InitialField(const Control& control) {
  FieldState field{.text = control.initial};
  if (control.kind == ControlKind::Radio || control.kind == ControlKind::Check)
    field.text = field.text == "on" ? "on" : "off";
  if (control.kind == ControlKind::Grid)
    field.grid.columns =
        1 + static_cast<int>(std::ranges::count(std::string_view(control.label), '|'));
  if (IsNumber(control)) field.value = EnteredNumber(control, field.text).value_or(0);
  return field;
}

// The state of a freshly loaded dialog; every choice has a button that is on.
std::unique_ptr<DialogState> InitialState(const DialogResource& resource) {
  auto state = std::make_unique<DialogState>();
  state->resource = &resource;
  for (const Control& control : resource.controls) state->fields.push_back(InitialField(control));
  const int n = static_cast<int>(state->fields.size());
  for (int i = 0; i < n; ++i) {
    if (resource.controls[i].kind != ControlKind::Radio) continue;
    const auto [first, last] = RadioGroup(*state, i);
    const auto on = [&](const FieldState& field) { return field.text == "on"; };
    if (std::none_of(&state->fields[first], &state->fields[first] + (last - first), on))
      state->fields[first].text = "on";
    i = last - 1;
  }
  return state;
}

DialogState& Current() {
  if (loaded.empty()) loaded.push_back(InitialState(kNoResource));
  return *loaded.back();
}

int IndexOf(int field) { return ControlIndex(Current(), field); }

FieldState* FindField(int field) {
  const int index = IndexOf(field);
  return index < 0 ? nullptr : &Current().fields[index];
}

void ShowChange(int index) {
  if (Current().shown) frontend::DialogChanged(Current(), index);
}

void Put(int field, const std::string& text, double value = 0) {
  const int index = IndexOf(field);
  if (index < 0) return;
  FieldState& state = Current().fields[index];
  state.text = text;
  state.value = value;
  state.touched = false;
  ShowChange(index);
}

// Row of a grid of the current dialog, with all rows above it; nothing where there can be none.
GridRow* GridRowOf(int field, int column, int row) {
  FieldState* const state = FindField(field);
  if (!state || column < 1 || column > state->grid.columns || row < 1 || row > kMaxGridRows)
    return nullptr;
  GridState& grid = state->grid;
  while (static_cast<int>(grid.rows.size()) < row)
    grid.rows.push_back({.cells = std::vector<std::string>(grid.columns)});
  return &grid.rows[row - 1];
}

// Of heads or rows of a grid.
void ShowGridChange(int field) {
  ++FindField(field)->grid.changes;
  ShowChange(IndexOf(field));
}

void PutCell(int field, int column, int row, const std::string& text) {
  GridRow* const cells = GridRowOf(field, column, row);
  if (!cells) return;
  cells->cells[column - 1] = text;
  ShowGridChange(field);
}

}  // namespace

int ControlIndex(const DialogState& dialog, int id) {
  const auto controls = dialog.resource->controls;
  const auto found = std::ranges::find(controls, id, &Control::id);
  return found == controls.end() ? -1 : static_cast<int>(found - controls.begin());
}

const DialogState* DialogBeside() {
  const auto found = std::find_if(loaded.rbegin(), loaded.rend(), [](const auto& dialog) {
    return dialog->shown && !dialog->modal;
  });
  return found == loaded.rend() ? nullptr : found->get();
}

double UndefinedNumber(const Control& control) {
  return control.kind == ControlKind::Integer ? undefinedinteger : undefinedreal;
}

void SelectRadio(DialogState& dialog, int index) {
  const auto [first, last] = RadioGroup(dialog, index);
  for (int i = first; i < last; ++i) dialog.fields[i].text = i == index ? "on" : "off";
}

void WRegisterDialogs(std::span<const DialogResource> given) {
  for (const DialogResource& resource : given) resources[resource.number] = &resource;
}

void WDialogLoad(int number) {
  const auto found = resources.find(number);
  std::erase_if(loaded, [&](const auto& dialog) {
    return dialog->resource->number == number && !dialog->shown;
  });
  loaded.push_back(InitialState(found == resources.end() ? kNoResource : *found->second));
}

void WDialogSelect(int number) {
  const auto found = std::find_if(loaded.rbegin(), loaded.rend(), [&](const auto& dialog) {
    return dialog->resource->number == number;
  });
  if (found != loaded.rend()) std::rotate(found.base() - 1, found.base(), loaded.end());
}

void WDialogShow(int, int, int, int mode, const std::function<void(int field)>& changed) {
  DialogState& dialog = Current();
  dialog.button = 0;
  dialog.modal = mode == Modal;
  dialog.shown = true;
  ShowDrawing();
  if (!dialog.modal) return frontend::ShowDialog(dialog, changed);
  const auto told = [&](int field) {
    JournalField(dialog, ControlIndex(dialog, field));
    const PauseBusy idleagain;  // after what the program does about the change
    if (changed) changed(field);
  };
  {
    const PauseBusy pause;
    frontend::ShowDialog(dialog, told);
  }
  dialog.shown = false;
  lastbutton = dialog.button;
  JournalPress(lastbutton);
}

void WDialogHide() {
  DialogState& dialog = Current();
  if (!dialog.shown) return;
  dialog.shown = false;
  lastbutton = dialog.button;
  frontend::HideDialog(dialog);
}

void WDialogUnload() {
  WDialogHide();
  loaded.pop_back();
}

void SetInfoDialog(int button) { lastbutton = button; }
int WInfoDialog(int n) { return n == 4 ? lastbutton : 0; }

void WDialogFieldState(int field, int state) {
  const int index = IndexOf(field);
  if (index < 0) return;
  Current().fields[index].enabled = state == 1;
  Current().fields[index].visible = state != 2;
  ShowChange(index);
}

void WDialogPutReal(int field, float value, const std::string& format) {
  const int index = IndexOf(field);
  if (index < 0) return;
  const std::string own = Current().resource->controls[index].format;
  Put(field, FormattedReal(value, format.empty() ? own : format), value);
}

void WDialogGetReal(int field, float& value) {
  if (const FieldState* state = FindField(field)) value = static_cast<float>(state->value);
}

void WDialogPutInteger(int field, int value) { Put(field, std::to_string(value), value); }

void WDialogGetInteger(int field, int& value) {
  if (const FieldState* state = FindField(field)) value = static_cast<int>(state->value);
}

void WDialogPutString(int field, const std::string& text) { Put(field, text); }

void WDialogGetString(int field, std::string& text) {
  if (const FieldState* state = FindField(field)) text = state->text;
}

void WDialogPutRadioButton(int field) {
  const int index = IndexOf(field);
  if (index < 0 || Current().resource->controls[index].kind != ControlKind::Radio) return;
  SelectRadio(Current(), index);
  const auto [first, last] = RadioGroup(Current(), index);
  for (int i = first; i < last; ++i) ShowChange(i);
}

void WDialogGetRadioButton(int firstfield, int& index) {
  const int begin = IndexOf(firstfield);
  if (begin < 0) return;
  index = 0;
  const int last = RadioGroup(Current(), begin).second;
  for (int i = begin; i < last; ++i)
    if (Current().fields[i].text == "on") index = i - begin + 1;
}

void WDialogPutCheckBox(int field, int value) { Put(field, value ? "on" : "off", value); }

void WDialogGetCheckBox(int field, int& value) {
  if (const FieldState* state = FindField(field)) value = state->text == "on" ? 1 : 0;
}

void WDialogUndefined(int i, float r, double) {
  undefinedinteger = i;
  undefinedreal = r;
}

void WGridPutCellReal(int field, int column, int row, float value, const std::string& format) {
  PutCell(field, column, row, FormattedReal(value, format));
}

void WGridPutCellInteger(int field, int column, int row, int value) {
  PutCell(field, column, row, std::to_string(value));
}

void WGridPutRows(int field, std::vector<std::vector<std::string>> rows, int order) {
  FieldState* const state = FindField(field);
  if (!state) return;
  GridState& grid = state->grid;
  rows.resize(std::min<std::size_t>(rows.size(), kMaxGridRows));
  grid.rows.clear();
  for (std::vector<std::string>& cells : rows) {
    cells.resize(grid.columns);
    grid.rows.push_back({.cells = std::move(cells)});
  }
  grid.order = order;
  ++grid.changes;
  WGridPick(field, grid.column, 0);
}

void WGridPutHeads(int field, std::vector<std::string> heads) {
  FieldState* const state = FindField(field);
  if (!state) return;
  GridState& grid = state->grid;
  grid.columns = static_cast<int>(heads.size());
  grid.heads = std::move(heads);
  grid.column = 0;
  WGridPutRows(field, {}, 0);
}

void WGridPick(int field, int column, int row) {
  FieldState* const state = FindField(field);
  if (!state) return;
  state->grid.column = column;
  state->grid.row = row;
  state->text = row > 0 ? std::to_string(column) + "," + std::to_string(row) : "";
  ShowChange(IndexOf(field));
}

void WGridColourRow(int field, int row, int foreground, int background) {
  WGridColourRows(field, {&row, 1}, foreground, background);
}

void WGridColourRows(int field, std::span<const int> rows, int foreground, int background) {
  for (const int row : rows) {
    GridRow* const cells = GridRowOf(field, 1, row);
    if (!cells) return;
    cells->foreground = foreground;
    cells->background = background;
  }
  if (!rows.empty()) ShowGridChange(field);
}

void WGridPos(int field, int& column, int& row) {
  const FieldState* const state = FindField(field);
  column = state ? state->grid.column : 0;
  row = state ? state->grid.row : 0;
}
