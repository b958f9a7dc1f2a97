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
constexpr Control Choice(int id, const char* label, const char* group, int* variable = nullptr) {
  Control control{.id = id, .kind = ControlKind::Radio, .label = label, .group = group};
  if (variable) control.variable = variable;
  return control;
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

// A control that always opens with the same value instead of the one last entered.
constexpr Control Fresh(Control control, const char* initial = "") {
  control.initial = initial;
  control.opens = Opens::Initial;
  return control;
}

inline constexpr int MostPoints = 20000;  // no window is wider than a pattern can be

}  // namespace controls
