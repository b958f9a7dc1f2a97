// What the two files of the dialogs share.
#pragma once

#include <optional>
#include <string_view>

#include "toolkit/frontend.h"

bool IsNumber(const Control& control);
// Index of the control with this number, -1 if the dialog has none.
int ControlIndex(const DialogState& dialog, int id);
// The dialog that stands beside the plot, or null.
const DialogState* DialogBeside();
// The number of an entered text; the undefined value for an empty one, nothing for a wrong one.
std::optional<double> EnteredNumber(const Control& control, std::string_view text);
double UndefinedNumber(const Control& control);
// Turns a radio button on and the others of its group off.
void SelectRadio(DialogState& dialog, int index);
// What WInfoDialog(4) answers from now on, for dialogs that have no resource.
void SetInfoDialog(int button);
