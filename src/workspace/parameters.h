// Parameter dialogs: controls that stand for fields of the Workspace.
#pragma once

#include "toolkit/resources.h"

struct ParameterDialog {
  DialogResource resource;
  int special = 0;                    // a further button that stores as OK does
  void (*validate)() = nullptr;       // puts what was entered right
  void (*prepare)() = nullptr;        // shows what is no plain field
  void (*changed)(int id) = nullptr;  // the user has changed a control
};

// Between the controls of the current dialog and the fields behind them.
void PutFields(const DialogResource& resource);
void GetFields(const DialogResource& resource);

// Shows a dialog with the fields behind its controls and waits. OK and the special button store
// what was entered. Returns the button that has stored, or 0 when the dialog was cancelled.
int AskParameters(const ParameterDialog& dialog);
