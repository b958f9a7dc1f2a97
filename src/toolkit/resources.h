// Menus and dialogs as data: the tables from which a front end builds them.
#pragma once

#include <span>
#include <string>
#include <variant>

// A row of a menu. The rows of one popup stand in the order in which they are shown.
struct MenuRow {
  int id;
  const char* text;  // as in the resource, "&" in front of a mnemonic where it has one
  int parent;        // id of the popup, 0 for the menu bar
  bool popup = false;
  const char* accelerator = "";  // "Shift+G", "F1"; several parted by "|"
  bool enabled = true;
};

// A button of the toolbar: a row of the menu, the name of its icon, and what it says where the
// menu's text is too short to stand alone. An id of 0 parts groups.
struct ToolRow {
  int id = 0;
  const char* icon = "";
  const char* text = "";
};

enum class ControlKind {
  Text,     // a text that only the program changes
  Real,     // a number in a display format
  Integer,  // a spinner
  String,
  Radio,  // consecutive radio buttons with the same group are one choice
  Check,
  Button,
  Grid,  // a table whose cells can be picked; the label holds the column heads: "a|b|c"
};

// What may be typed into an Integer outside its range.
enum class OutOfRange {
  Refused,  // marked at the field, and OK stays closed to it
  Passed,   // marked at the field, and handed to the dialog's own validation
};

// The variable of the application that a control stands for, where it has one. A choice of radio
// buttons has it at its first button and counts from 1.
using Variable = std::variant<std::monostate, float*, int*, std::string*>;

enum class Opens { Last, Initial };  // with the variable as it was left, or with the initial value

inline constexpr double kNoLimit = 1e39;  // beyond all reals

struct Control {
  int id;
  ControlKind kind;
  const char* label;
  const char* format = "";  // display format of a Real, "(f10.3)"; of a String its width, "(a20)"
  double lowest = -kNoLimit, highest = kNoLimit;
  const char* initial = "";  // value until a routine puts another
  const char* group = "";    // title of the box around this and its neighbours of the same group
  const char* unit = "";
  OutOfRange outside = OutOfRange::Refused;
  Variable variable{};
  Opens opens = Opens::Last;
  bool beside = false;   // stands in the row of the control before
  int indent = 0;        // places left free in front of it, at the start of a row
  bool heads = false;    // of a Grid: its heads can be picked too, as cells of row 0
  bool narrow = false;   // of a Grid: at first it takes no more width than the other controls
  const char* key = "";  // of a Button: presses it too, "Ctrl+C"
  const char* tip = "";  // what an entry means, shown while it has the focus or the mouse
};

// Buttons that end a modal dialog by themselves; any other Button does so too.
inline constexpr int ButtonOk = 1;
inline constexpr int ButtonCancel = 2;

// OK and Cancel are rows of `controls` like all others, as not every dialog has both.
struct DialogResource {
  int number;
  const char* caption;
  std::span<const Control> controls;
  int focus = 0;  // control that has the focus at first; 0: the first that takes input
};
