// What a user may enter into a dialog: numbers with their ranges, choices, buttons.
#include <algorithm>
#include <charconv>
#include <cmath>

#include "toolkit/common.h"
#include "toolkit/dialogs.h"

namespace {

std::string_view Stripped(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

template <class T>
std::optional<double> Parsed(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  T value{};
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (failure != std::errc() || end != text.data() + text.size()) return std::nullopt;
  if (!std::isfinite(static_cast<double>(value))) return std::nullopt;
  return value;
}

std::string Quoted(double bound) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, bound);
  return {buffer, result.ptr};
}

// "3 to 501", "at least 3", "at most 15", or blank without a limit.
std::string RangeText(const Control& control) {
  const bool low = control.lowest > -kNoLimit, high = control.highest < kNoLimit;
  if (low && high) return Quoted(control.lowest) + " to " + Quoted(control.highest);
  if (low) return "at least " + Quoted(control.lowest);
  return high ? "at most " + Quoted(control.highest) : "";
}

struct Cell {
  int column = 0, row = 0;
};

// "COLUMN,ROW" as a cell that the grid has, its heads included where they can be picked; 0,0 for
// anything else.
Cell PickedCell(const Control& control, const GridState& grid, std::string_view text) {
  const std::size_t comma = std::min(text.find(','), text.size());
  const auto number = [](std::string_view part) {
    return static_cast<int>(Parsed<int>(part).value_or(-1));
  };
  const Cell cell{number(text.substr(0, comma)),
                  number(text.substr(std::min(comma + 1, text.size())))};
  const bool there = cell.column >= 1 && cell.column <= grid.columns &&
                     cell.row >= (control.heads ? 0 : 1) &&
                     cell.row <= static_cast<int>(grid.rows.size());
  return there ? cell : Cell{};
}

bool InRange(const Control& control, double value) {
  return value >= control.lowest && value <= control.highest;
}

}  // namespace

bool IsNumber(const Control& control) {
  return control.kind == ControlKind::Real || control.kind == ControlKind::Integer;
}

std::optional<double> EnteredNumber(const Control& control, std::string_view text) {
  text = Stripped(text);
  if (text.empty()) return UndefinedNumber(control);
  if (control.kind == ControlKind::Integer) return Parsed<int>(text);
  std::string point(text);
  if (const std::size_t comma = point.find(','); comma != std::string::npos) point[comma] = '.';
  return Parsed<float>(point);
}

std::string DialogComplaint(const DialogState& dialog, int index, const std::string& text) {
  const Control& control = dialog.resource->controls[index];
  switch (control.kind) {
    case ControlKind::Text:
    case ControlKind::Button:
      return "This cannot be filled in";
    case ControlKind::Radio:
      if (text == "on" || text == dialog.fields[index].text) return "";
      return "A choice is turned off by another one";
    case ControlKind::Check:
      return text == "on" || text == "off" ? "" : "A check box is on or off";
    case ControlKind::String:
      return "";
    case ControlKind::Grid:
      return PickedCell(control, dialog.fields[index].grid, text).column
                 ? ""
                 : "There is no cell " + text;
    case ControlKind::Real:
    case ControlKind::Integer:
      break;
  }
  const std::optional<double> value = EnteredNumber(control, text);
  if (value && (Stripped(text).empty() || InRange(control, *value))) return "";
  const std::string range = RangeText(control);
  const char* number = control.kind == ControlKind::Integer ? "a whole number" : "a number";
  std::string complaint = "\"" + text + "\" is ";
  complaint += value ? "out of range" : std::string("not ") + number;
  return range.empty() ? complaint : complaint + ". Allowed: " + range;
}

bool DialogRefuses(const DialogState& dialog, int index, const std::string& text) {
  const Control& control = dialog.resource->controls[index];
  if (DialogComplaint(dialog, index, text).empty()) return false;
  return control.outside == OutOfRange::Refused || !IsNumber(control) ||
         !EnteredNumber(control, text);
}

std::string DialogEnter(DialogState& dialog, int index, const std::string& text) {
  const Control& control = dialog.resource->controls[index];
  const std::string complaint = DialogComplaint(dialog, index, text);
  if (!complaint.empty() && !IsNumber(control)) return complaint;
  FieldState& field = dialog.fields[index];
  // A number typed as it is shown is that number, not the longer one behind it.
  if (text == field.text && !IsNumber(control)) return complaint;
  if (control.kind == ControlKind::Radio) {
    SelectRadio(dialog, index);
    return "";
  }
  field.text = text;
  field.touched = true;
  if (control.kind == ControlKind::Grid) {
    const Cell cell = PickedCell(control, field.grid, text);
    field.grid.column = cell.column;
    field.grid.row = cell.row;
  }
  if (IsNumber(control)) field.value = EnteredNumber(control, text).value_or(field.value);
  return complaint;
}

Message DialogChange(const DialogState& dialog, int index) {
  const int id = dialog.resource->controls[index].id;
  const GridState& grid = dialog.fields[index].grid;
  return {.type = MessageFieldChanged,
          .value1 = id,
          .value2 = id,
          .x = static_cast<float>(grid.column),
          .y = static_cast<float>(grid.row),
          .window = RootWindow};
}

int DialogPress(DialogState& dialog, int id) {
  const int n = static_cast<int>(dialog.fields.size());
  for (int i = 0; i < n && id != ButtonCancel; ++i) {
    const FieldState& field = dialog.fields[i];
    const bool entered = field.touched && field.enabled && field.visible;
    if (entered && IsNumber(dialog.resource->controls[i]) && DialogRefuses(dialog, i, field.text))
      return i;
  }
  dialog.button = id;
  return -1;
}

int EscapeButton(const DialogState& dialog) {
  const bool cancels =
      ControlIndex(dialog, ButtonCancel) >= 0 || ControlIndex(dialog, ButtonOk) < 0;
  return cancels ? ButtonCancel : ButtonOk;
}
