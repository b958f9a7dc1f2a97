// Controls of dialogs in few words, for the tables of dialogs.
#pragma once

#include "toolkit/resources.h"

namespace controls {

inline constexpr Control Ok{ButtonOk, ControlKind::Button, "OK"};
inline constexpr Control Cancel{ButtonCancel, ControlKind::Button, "Cancel"};

constexpr Control Press(int id, const char* label) { return {id, ControlKind::Button, label}; }

constexpr Control Number(int id, const char* label, float* variable, const char* format,
                         const char* unit = "", const char* group = "") {
  return {.id = id,
          .kind = ControlKind::Real,
          .label = label,
          .format = format,
          .group = group,
          .unit = unit,
          .variable = variable};
}

constexpr Control Spin(int id, const char* label, int* variable, int lowest, int highest,
                       const char* unit = "") {
  return {.id = id,
          .kind = ControlKind::Integer,
          .label = label,
          .lowest = double(lowest),
          .highest = double(highest),
          .unit = unit,
          .variable = variable};
}

// The first button of a choice has its variable.
constexpr Control Choice(int id, const char* label, const char* group) {
  return {.id = id, .kind = ControlKind::Radio, .label = label, .group = group};
}
constexpr Control Choice(int id, const char* label, const char* group, int* variable) {
  return {
      .id = id, .kind = ControlKind::Radio, .label = label, .group = group, .variable = variable};
}

constexpr Control Box(int id, const char* label, int* variable) {
  return {.id = id, .kind = ControlKind::Check, .label = label, .variable = variable};
}

constexpr Control Entry(int id, const char* label, std::string* variable) {
  return {.id = id, .kind = ControlKind::String, .label = label, .variable = variable};
}

constexpr Control Label(int id, const char* label, const char* unit = "") {
  return {.id = id, .kind = ControlKind::Text, .label = label, .unit = unit};
}

// A button that a key presses too.
constexpr Control Press(int id, const char* label, const char* key) {
  return {.id = id, .kind = ControlKind::Button, .label = label, .key = key};
}

// A control that always opens with the same value instead of the one last entered.
constexpr Control Fresh(Control control, const char* initial = "") {
  control.initial = initial;
  control.opens = Opens::Initial;
  return control;
}

// A control with a word of advice.
constexpr Control Tip(Control control, const char* tip) {
  control.tip = tip;
  return control;
}

// A control in the row of the one before.
constexpr Control Beside(Control control) {
  control.beside = true;
  return control;
}

// A control that begins a row below the second of the row above.
constexpr Control Below(Control control) {
  control.indent = 1;
  return control;
}

// A number that must lie in a range; one outside is marked and keeps the dialog open.
constexpr Control Within(Control control, double lowest, double highest) {
  control.lowest = lowest;
  control.highest = highest;
  return control;
}

inline constexpr int MostPoints = 20000;  // no window is wider than a pattern can be

}  // namespace controls
