// What a dialog does with what the user enters.
#include "toolkit/qt/dialogview.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QShowEvent>
#include <algorithm>

#include "toolkit/qt/events.h"
#include "toolkit/qt/fields.h"
#include "toolkit/qt/gridfield.h"
#include "toolkit/qt/window.h"

int DialogView::IndexOf(int id) const {
  const auto controls = state_.resource->controls;
  const auto at = std::find_if(controls.begin(), controls.end(),
                               [id](const Control& control) { return control.id == id; });
  return at == controls.end() ? -1 : static_cast<int>(at - controls.begin());
}

GridField* DialogView::GridAt(int index) const {
  return ControlAt(index).kind == ControlKind::Grid ? static_cast<GridField*>(rows_[index].field)
                                                    : nullptr;
}

// Label, value and unit of a text, as far as they have no column of their own.
QString DialogView::ShownText(int index) const {
  QString value = QString::fromStdString(state_.fields[index].text);
  if (*ControlAt(index).unit) value += ' ' + QString::fromUtf8(ControlAt(index).unit);
  return rows_[index].label ? value : (labels_[index] + ' ' + value).trimmed();
}

void DialogView::Update(int index) {
  const FieldState& field = state_.fields[index];
  const Row& row = rows_[index];
  const QString text = QString::fromStdString(field.text);
  if (row.line) {
    if (row.line->text() != text) row.line->setText(text);
    if (!field.touched) complaints_[index].clear();
    ShowComplaint(index);
  } else if (auto* button = qobject_cast<QAbstractButton*>(row.field)) {
    if (button->isCheckable() && button->isChecked() != (field.text == "on"))
      button->setChecked(field.text == "on");
  } else if (GridField* grid = GridAt(index)) {
    grid->ShowCells(field.grid);
  } else if (auto* label = qobject_cast<QLabel*>(row.field)) {
    label->setText(ShownText(index));
  }
  // A button that goes out of use would hand the focus to its neighbour, as often as not Cancel.
  const bool losesfocus =
      !field.enabled && state_.resource->focus != 0 && focusWidget() == row.field;
  for (QWidget* widget :
       {static_cast<QWidget*>(row.label), row.field, static_cast<QWidget*>(row.unit)}) {
    if (!widget) continue;
    widget->setEnabled(field.enabled);
    widget->setVisible(field.visible);
  }
  if (losesfocus) SetFirstFocus();
}

void DialogView::Entered(int index, const QString& text) {
  complaints_[index] = QString::fromStdString(DialogEnter(state_, index, text.toStdString()));
  ShowComplaint(index);
  unreported_ = index;
}

void DialogView::Chosen(int index, bool on) {
  const bool radio = ControlAt(index).kind == ControlKind::Radio;
  if (radio && !on) return;
  if ((state_.fields[index].text == "on") == on) return;  // shown by the program
  DialogEnter(state_, index, on ? "on" : "off");
  Finished(index);
}

// Tells the program of a change, when a number is whole rather than at each of its digits.
void DialogView::Finished(int index) {
  unreported_ = -1;
  if (!state_.modal)
    Post(DialogChange(state_, index));
  else if (changed_)
    changed_(ControlAt(index).id);
}

void DialogView::ShowComplaint(int index) {
  const Row& row = rows_[index];
  const QString& complaint = complaints_[index];
  MarkWrong(row.field, row.line, complaint);
  row.field->setToolTip(complaint.isEmpty() ? QString::fromUtf8(ControlAt(index).tip) : complaint);
  ShowMessage();
}

bool DialogView::eventFilter(QObject* field, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) ShowMessage();
  return QDialog::eventFilter(field, event);
}

// What is wrong, or else what the entry with the focus means.
void DialogView::ShowMessage() {
  if (!message_) return;
  QString text, tip;
  for (int i = 0; i < Count() && text.isEmpty(); ++i) {
    if (!complaints_[i].isEmpty())
      text = QString::fromUtf8(ControlAt(i).label) + ": " + complaints_[i];
    if (rows_[i].line && rows_[i].field->hasFocus()) tip = QString::fromUtf8(ControlAt(i).tip);
  }
  message_->setText(text.isEmpty() ? tip : text);
}

void DialogView::Press(int id) {
  if (unreported_ >= 0) Finished(unreported_);
  if (const int wrong = DialogPress(state_, id); wrong >= 0) {
    rows_[wrong].field->setFocus();
    rows_[wrong].line->selectAll();
  } else if (state_.modal) {
    done(Accepted);
  } else {
    Post({.type = MessageButton, .value1 = id, .window = RootWindow});
  }
}

// Escape and the close button.
void DialogView::reject() {
  unreported_ = -1;
  Press(EscapeButton(state_));
}

// What no field has use for goes through the zooms of the plot that the dialog stands beside.
void DialogView::keyPressEvent(QKeyEvent* event) {
  const bool zooms = event->key() == Qt::Key_Home || event->key() == Qt::Key_Backspace;
  if (zooms && !state_.modal && Root())
    QApplication::sendEvent(Root(), event);
  else
    QDialog::keyPressEvent(event);
}

void DialogView::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (!event->spontaneous()) SetFirstFocus();
}
