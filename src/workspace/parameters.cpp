// Parameter dialogs: controls that stand for fields of the Workspace.
#include "workspace/parameters.h"

#include "toolkit/toolkit.h"
#include "workspace/text.h"

namespace {

template <class T>
T* VariableOf(const Control& control) {
  T* const* variable = std::get_if<T*>(&control.variable);
  return variable ? *variable : nullptr;
}

void Put(const Control& control) {
  if (control.opens == Opens::Initial) return;
  if (const float* real = VariableOf<float>(control)) WDialogPutReal(control.id, *real);
  if (const auto* text = VariableOf<std::string>(control)) WDialogPutString(control.id, *text);
  const int* whole = VariableOf<int>(control);
  if (!whole) return;
  if (control.kind == ControlKind::Integer) WDialogPutInteger(control.id, *whole);
  if (control.kind == ControlKind::Radio) WDialogPutRadioButton(control.id + *whole - 1);
  if (control.kind == ControlKind::Check) WDialogPutCheckBox(control.id, *whole);
}

void Get(const Control& control) {
  if (float* real = VariableOf<float>(control)) WDialogGetReal(control.id, *real);
  if (auto* text = VariableOf<std::string>(control)) {
    WDialogGetString(control.id, *text);
    *text = Field(*text);
  }
  int* whole = VariableOf<int>(control);
  if (!whole) return;
  if (control.kind == ControlKind::Integer) WDialogGetInteger(control.id, *whole);
  if (control.kind == ControlKind::Radio) WDialogGetRadioButton(control.id, *whole);
  if (control.kind == ControlKind::Check) WDialogGetCheckBox(control.id, *whole);
}

}  // namespace

void PutFields(const DialogResource& resource) {
  for (const Control& control : resource.controls) Put(control);
}

void GetFields(const DialogResource& resource) {
  for (const Control& control : resource.controls) Get(control);
}

int AskParameters(const ParameterDialog& dialog) {
  const DialogResource& resource = dialog.resource;
  WRegisterDialogs({&resource, 1});
  WDialogUndefined(0, 0, 0);
  WDialogLoad(resource.number);
  PutFields(resource);
  if (dialog.prepare) dialog.prepare();
  WDialogShow(-1, -1, 0, Modal, dialog.changed);
  const int button = WInfoDialog(4);
  const bool stores = button == ButtonOk || (button != 0 && button == dialog.special);
  if (stores) {
    GetFields(resource);
    if (dialog.validate) dialog.validate();
  }
  WDialogUnload();
  return stores ? button : 0;
}
