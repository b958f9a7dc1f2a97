// A dialog on the screen, laid out from its table of controls.
#pragma once

#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <functional>
#include <vector>

#include "toolkit/frontend.h"

class GridField;

class DialogView : public QDialog {
 public:
  DialogView(DialogState& state, std::function<void(int)> changed, QWidget* parent);
  // Shows the present state of a field.
  void Update(int index);
  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* field, QEvent* event) override;

 private:
  // The widgets of one control; those that it does not need are null.
  struct Row {
    QLabel* label = nullptr;
    QWidget* field = nullptr;
    QLineEdit* line = nullptr;  // within the field, if it can be typed in
    QLabel* unit = nullptr;
  };
  struct Section {
    QWidget* box;
    int controls;
  };

  const Control& ControlAt(int index) const { return state_.resource->controls[index]; }
  int Count() const { return static_cast<int>(rows_.size()); }
  int IndexOf(int id) const;
  GridField* GridAt(int index) const;  // null for another kind of control
  QString ShownText(int index) const;

  void LabelControls();
  void MakeRow(int index);
  QWidget* MakeSection(int first, int last);
  void PlaceRow(QGridLayout* grid, int index, int row, int column);
  QWidget* ArrangeSections();
  QWidget* MakeButtons();
  void OrderTabs();
  void SetFirstFocus();

  void Entered(int index, const QString& text);
  void Chosen(int index, bool on);
  void Finished(int index);
  void Press(int id);
  void ShowComplaint(int index);
  void ShowMessage();

  DialogState& state_;
  std::function<void(int)> changed_;
  std::vector<Row> rows_;
  std::vector<QString> labels_;  // with mnemonics
  std::vector<QString> complaints_;
  QLabel* message_ = nullptr;
  int unreported_ = -1;  // a field typed in whose change has not been told yet
};

// Escape for the dialog that stands beside the plot, if there is one.
void RejectBeside();
