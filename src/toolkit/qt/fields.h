// The widgets in which numbers and texts are typed.
#pragma once

#include <QAbstractSpinBox>
#include <QLineEdit>

#include "toolkit/resources.h"

// A whole number with arrows. The arrows stay inside the range; what is typed is kept as it is.
class IntegerField : public QAbstractSpinBox {
 public:
  explicit IntegerField(const Control& control);
  QLineEdit* Line() const { return lineEdit(); }
  void stepBy(int steps) override;
  QValidator::State validate(QString&, int&) const override { return QValidator::Acceptable; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  StepEnabled stepEnabled() const override;

 private:
  int Value(bool* isnumber = nullptr) const { return lineEdit()->text().trimmed().toInt(isnumber); }

  const Control& control_;
};

// A line for a number in a display format, or for a text.
class LineField : public QLineEdit {
 public:
  explicit LineField(const Control& control);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 private:
  int letters_;
};

// Shows that a field holds what cannot stand, or that it does not.
void MarkWrong(QWidget* field, QLineEdit* line, const QString& complaint);
