// Entry widgets of dialogs.
#include "toolkit/qt/fields.h"

#include <QStyleOptionSpinBox>
#include <algorithm>
#include <cmath>
#include <string_view>

namespace {

constexpr int kIntegerLetters = 8;
constexpr int kTextLetters = 32;
constexpr int kLongestText = 256;

// "(f10.3)": ten letters.
int LettersOf(const Control& control) {
  if (control.kind == ControlKind::String && !*control.format) return kTextLetters;
  int letters = 0;
  for (const char c : std::string_view(control.format)) {
    if (c == '.') break;
    if (c >= '0' && c <= '9') letters = 10 * letters + (c - '0');
  }
  return std::clamp(letters, 10, kTextLetters);
}

int WidthOf(const QWidget* widget, int letters) {
  return widget->fontMetrics().horizontalAdvance(QLatin1Char('0')) * (letters + 2);
}

int Bounded(double bound) {
  return static_cast<int>(std::clamp(bound, -2147483648.0, 2147483647.0));
}

}  // namespace

IntegerField::IntegerField(const Control& control) : control_(control) {
  setAlignment(Qt::AlignRight);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize IntegerField::sizeHint() const {
  const int arrows = QAbstractSpinBox::sizeHint().width() - lineEdit()->minimumSizeHint().width();
  return {WidthOf(this, kIntegerLetters) + std::max(arrows, 0),
          QAbstractSpinBox::sizeHint().height()};
}

void IntegerField::stepBy(int steps) {
  const double stepped = double(Value()) + steps;
  const int value = Bounded(std::clamp(stepped, control_.lowest, control_.highest));
  lineEdit()->setText(QString::number(value));
  lineEdit()->selectAll();
  emit lineEdit()->textEdited(lineEdit()->text());
  emit editingFinished();
}

QAbstractSpinBox::StepEnabled IntegerField::stepEnabled() const {
  bool isnumber = false;
  const int value = Value(&isnumber);
  StepEnabled enabled = StepNone;
  if (!isnumber || value < control_.highest) enabled |= StepUpEnabled;
  if (!isnumber || value > control_.lowest) enabled |= StepDownEnabled;
  return enabled;
}

LineField::LineField(const Control& control) : letters_(LettersOf(control)) {
  setMaxLength(kLongestText);
  if (control.kind == ControlKind::String) return;
  setAlignment(Qt::AlignRight);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize LineField::sizeHint() const {
  return {WidthOf(this, letters_), QLineEdit::sizeHint().height()};
}

void MarkWrong(QWidget* field, QLineEdit* line, const QString& complaint) {
  line->setProperty("wrong", !complaint.isEmpty());
  // Red mixed into the field's own colour leaves its text readable, on light desktops and dark.
  QPalette palette;
  if (!complaint.isEmpty()) {
    const QColor base = palette.color(QPalette::Base);
    const auto mixed = [](int part, int red) { return (2 * part + red) / 3; };
    palette.setColor(QPalette::Base,
                     QColor(mixed(base.red(), 255), mixed(base.green(), 0), mixed(base.blue(), 0)));
  }
  field->setPalette(palette);
  line->setPalette(palette);
}
