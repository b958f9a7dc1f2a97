// How a dialog is laid out: sections of labels, fields and units in columns, buttons below.
#include <QButtonGroup>
#include <QCheckBox>
#include <QFontDatabase>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <numeric>
#include <string_view>

#include "toolkit/qt/dialogview.h"
#include "toolkit/qt/fields.h"
#include "toolkit/qt/gridfield.h"
#include "toolkit/qt/mnemonics.h"

namespace {

// Rows of a section before it takes a further column.
constexpr int kRadioRows = 8, kFieldRows = 14;
constexpr int kGridColumns = 4;                    // label, field, unit, gap
constexpr int kComplaintLetters = 44;              // of each of the two lines kept for a complaint
constexpr int kCaptionMargin = 9;                  // lines, for icon and buttons beside a caption
constexpr double kHighest = 0.65, kWidest = 0.95;  // of the screen
constexpr double kHighestTable = 0.8;              // a column with a table, which may be low

using enum ControlKind;

bool IsNumber(const Control& control) { return control.kind == Real || control.kind == Integer; }
bool IsEntry(const Control& control) { return IsNumber(control) || control.kind == String; }

// Buttons stand in the bar below, except those beside what they belong to.
bool StandsInBar(const Control& control) { return control.kind == Button && !control.beside; }

bool SameBox(const Control& a, const Control& b) {
  return !StandsInBar(a) && !StandsInBar(b) && std::string_view(a.group) == b.group;
}

bool HoldsTable(const QWidget* section) { return section->findChild<QTableWidget*>(); }

// Of a table, which takes what is left, as few rows as it can do with.
int HeightOf(const QWidget* section) {
  return (HoldsTable(section) ? section->minimumSizeHint() : section->sizeHint()).height();
}

// Sections in columns of about a height; a column takes one that reaches beyond by less than half.
std::vector<std::vector<QWidget*>> InColumns(const std::vector<QWidget*>& sections, int height) {
  std::vector<std::vector<QWidget*>> columns;
  int filled = 0;
  for (QWidget* section : sections) {
    const int own = HeightOf(section);
    if (columns.empty() || filled + own / 2 > height) {
      columns.emplace_back();
      filled = 0;
    }
    columns.back().push_back(section);
    filled += own;
  }
  return columns;
}

int WidthOf(const std::vector<std::vector<QWidget*>>& columns) {
  int width = 0;
  for (const std::vector<QWidget*>& column : columns) {
    int widest = 0;
    for (const QWidget* section : column) widest = std::max(widest, section->sizeHint().width());
    width += widest;
  }
  return width;
}

// The widget, or an area to scroll it in when the screen is too small for it.
QWidget* FitsIn(QSize room, QWidget* all) {
  const QSize wanted(all->sizeHint().width(), HeightOf(all));
  if (wanted.height() <= 0.8 * room.height() && wanted.width() <= kWidest * room.width())
    return all;
  auto* scroll = new QScrollArea;
  scroll->setWidget(all);
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  const QSize seen(wanted.width() + 2 * all->fontMetrics().height(), wanted.height());
  scroll->setMinimumSize(seen.boundedTo(QSize(kWidest * room.width(), 0.75 * room.height())));
  return scroll;
}

// While a dialog stands beside the plot, its keys hold in the main window too.
void AddKey(QPushButton* button, const char* key) {
  const QKeySequence keys = QKeySequence::fromString(key);
  auto* shortcut = new QShortcut(keys, button, nullptr, nullptr, Qt::ApplicationShortcut);
  QObject::connect(shortcut, &QShortcut::activated, button, &QPushButton::click);
  button->setToolTip(keys.toString(QKeySequence::NativeText));
}

bool SameChoice(const Control& a, const Control& b) {
  return a.kind == Radio && b.kind == Radio && std::string_view(a.group) == b.group;
}

}  // namespace

DialogView::DialogView(DialogState& state, std::function<void(int)> changed, QWidget* parent)
    : QDialog(parent), state_(state), changed_(std::move(changed)) {
  const DialogResource& resource = *state.resource;
  setObjectName(QString("dialog%1").arg(resource.number));
  setWindowTitle(QString::fromUtf8(resource.caption));
  setModal(state.modal);

  const int n = static_cast<int>(resource.controls.size());
  rows_.resize(n);
  complaints_.resize(n);
  LabelControls();
  for (int i = 0; i < n; ++i) MakeRow(i);

  const QFontMetrics letters = fontMetrics();
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(ArrangeSections(), 1);
  if (std::any_of(resource.controls.begin(), resource.controls.end(), IsNumber)) {
    message_ = new QLabel;
    message_->setObjectName("complaint");
    message_->setTextFormat(Qt::PlainText);
    message_->setWordWrap(true);
    message_->setMinimumSize(kComplaintLetters * letters.averageCharWidth(),
                             2 * letters.lineSpacing());
    layout->addWidget(message_);
  }
  layout->addWidget(MakeButtons());
  // The caption is seen whole, and captions are bold more often than not.
  const int caption = letters.horizontalAdvance(windowTitle()) * 6 / 5;
  layout->addStrut(caption + kCaptionMargin * letters.height());
  for (int i = 0; i < n; ++i) Update(i);
  OrderTabs();
}

// Letters go to the buttons first. A text takes no focus, a table has no label of its own, and a
// box beside a field is one Tab away: no letter leads there.
void DialogView::LabelControls() {
  std::vector<int> order(Count());
  std::iota(order.begin(), order.end(), 0);
  std::stable_partition(order.begin(), order.end(),
                        [this](int i) { return ControlAt(i).kind == Button; });
  std::vector<MnemonicText> texts;
  for (const int i : order) {
    const Control& control = ControlAt(i);
    const bool letterless =
        control.kind == Text || control.kind == Grid || (control.kind == Check && control.beside);
    texts.push_back({letterless ? QString() : QString::fromUtf8(control.label)});
  }
  const std::vector<QString> labels = WithMnemonics(texts);
  labels_.resize(Count());
  for (int k = 0; k < Count(); ++k)
    labels_[order[k]] =
        texts[k].text.isEmpty() ? QString::fromUtf8(ControlAt(order[k]).label) : labels[k];
}

void DialogView::MakeRow(int index) {
  const Control& control = ControlAt(index);
  Row& row = rows_[index];
  const QString label = labels_[index];
  if (control.kind == Radio || control.kind == Check) {
    QAbstractButton* button = control.kind == Radio
                                  ? static_cast<QAbstractButton*>(new QRadioButton(label))
                                  : new QCheckBox(label);
    button->setAutoExclusive(false);
    row.field = button;
    connect(button, &QAbstractButton::toggled, this, [this, index](bool on) { Chosen(index, on); });
  } else if (control.kind == Button) {
    auto* button = new QPushButton(label);
    row.field = button;
    connect(button, &QPushButton::clicked, this, [this, id = control.id] { Press(id); });
    if (*control.key) AddKey(button, control.key);
  } else if (control.kind == Text) {
    auto* value = new QLabel;
    value->setTextFormat(Qt::PlainText);
    row.field = value;
  } else if (control.kind == Grid) {
    row.field = new GridField(
        control,
        [this, index](const std::string& cell) {
          DialogEnter(state_, index, cell);
          Finished(index);
        },
        [this] {
          if (IndexOf(ButtonOk) >= 0) Press(ButtonOk);
        });
  } else if (control.kind == Integer) {
    auto* field = new IntegerField(control);
    row.field = field;
    row.line = field->Line();
    connect(field, &IntegerField::editingFinished, this, [this, index] {
      if (unreported_ == index) Finished(index);
    });
  } else {
    row.field = row.line = new LineField(control);
    connect(row.line, &QLineEdit::editingFinished, this, [this, index] {
      if (unreported_ == index) Finished(index);
    });
  }
  if (row.line)
    connect(row.line, &QLineEdit::textEdited, this,
            [this, index](const QString& text) { Entered(index, text); });
  row.field->setObjectName(
      QString(control.kind == Button ? "button%1" : "field%1").arg(control.id));
  row.field->installEventFilter(this);
  row.field->setAccessibleName(QString::fromUtf8(control.label));
  const bool tells = *control.unit || !state_.fields[index].text.empty();
  if (*control.label && (IsEntry(control) || (control.kind == Text && tells))) {
    row.label = new QLabel(labels_[index]);
    if (row.line) row.label->setBuddy(row.field);
    row.label->setToolTip(QString::fromUtf8(control.tip));
  }
  // Before the sections are measured.
  if (control.kind == Grid) GridAt(index)->ShowCells(state_.fields[index].grid);
  if (control.kind == Text) static_cast<QLabel*>(row.field)->setText(ShownText(index));
  if (control.kind == Text && tells) {
    // Values may stand in columns.
    row.field->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  } else if (*control.unit) {
    row.unit = new QLabel(QString::fromUtf8(control.unit));
  }
}

void DialogView::PlaceRow(QGridLayout* grid, int index, int row, int column) {
  const Row& widgets = rows_[index];
  const int beside = widgets.label ? 1 : 0;
  if (widgets.label) grid->addWidget(widgets.label, row, column);
  grid->addWidget(widgets.field, row, column + beside, 1, widgets.unit ? 1 : 3 - beside);
  if (widgets.unit) grid->addWidget(widgets.unit, row, column + 2);
}

QWidget* DialogView::MakeSection(int first, int last) {
  const QString title = QString::fromUtf8(ControlAt(first).group).replace("&", "&&");
  QWidget* box = title.isEmpty() ? new QWidget : new QGroupBox(title);
  auto* grid = new QGridLayout(box);
  if (title.isEmpty()) grid->setContentsMargins(0, 0, 0, 0);

  const bool choice = SameChoice(ControlAt(first), ControlAt(last - 1));
  const int most = choice ? kRadioRows : kFieldRows;
  // A line is a control with those that stand beside it.
  int lines = 0, longest = 1;
  for (int i = first, length = 0; i < last; ++i) {
    length = ControlAt(i).beside ? length + 1 : 1 + ControlAt(i).indent;
    lines += !ControlAt(i).beside;
    longest = std::max(longest, length);
  }
  const int columns = (lines + most - 1) / most * longest;
  const int rows = (lines * longest + columns - 1) / columns;
  QButtonGroup* group = nullptr;
  for (int i = first, line = -1, place = 0; i < last; ++i) {
    place = ControlAt(i).beside ? place + 1 : ControlAt(i).indent;
    line += !ControlAt(i).beside;
    PlaceRow(grid, i, line % rows, (line / rows * longest + place) * kGridColumns);
    if (ControlAt(i).kind != Radio) continue;
    if (i == first || !SameChoice(ControlAt(i - 1), ControlAt(i))) group = new QButtonGroup(box);
    group->addButton(static_cast<QAbstractButton*>(rows_[i].field));
  }
  int widest = 0;
  for (int i = first; i < last; ++i)
    if (IsNumber(ControlAt(i))) widest = std::max(widest, rows_[i].field->sizeHint().width());
  for (int i = first; i < last; ++i)
    if (IsNumber(ControlAt(i))) rows_[i].field->setFixedWidth(widest);
  for (int column = 1; column < columns; ++column)
    grid->setColumnMinimumWidth(column * kGridColumns - 1, 2 * fontMetrics().averageCharWidth());
  const bool texts = std::any_of(&rows_[first], &rows_[first] + (last - first), [](const Row& row) {
    return row.line && row.field->sizePolicy().horizontalPolicy() != QSizePolicy::Fixed;
  });
  // Room to spare goes to a table or a text, else behind everything.
  const bool table = HoldsTable(box);
  grid->setColumnStretch(texts || table ? 1 : columns * kGridColumns, 1);
  if (!table) grid->setRowStretch(rows, 1);
  return box;
}

// Sections stand below each other, or in further columns when they would be too high and there is
// room for them.
QWidget* DialogView::ArrangeSections() {
  std::vector<QWidget*> sections;
  for (int first = 0, last; first < Count(); first = last) {
    last = first + 1;
    if (StandsInBar(ControlAt(first))) continue;
    while (last < Count() && SameBox(ControlAt(first), ControlAt(last))) ++last;
    sections.push_back(MakeSection(first, last));
  }
  const QSize room = screen()->availableGeometry().size();
  int total = 0;
  for (const QWidget* section : sections) total += HeightOf(section);
  const double highest = std::ranges::any_of(sections, HoldsTable) ? kHighestTable : kHighest;
  int wanted = std::clamp<int>(std::ceil(total / (highest * room.height())), 1, 4);
  auto columns = InColumns(sections, total / wanted);
  while (wanted > 1 && WidthOf(columns) > kWidest * room.width())
    columns = InColumns(sections, total / --wanted);

  auto* all = new QWidget;
  auto* across = new QHBoxLayout(all);
  across->setContentsMargins(0, 0, 0, 0);
  for (const std::vector<QWidget*>& column : columns) {
    auto* down = new QVBoxLayout;
    across->addLayout(down, 1);
    for (QWidget* section : column) down->addWidget(section, HoldsTable(section));
    if (std::ranges::none_of(column, HoldsTable)) down->addStretch(1);
  }
  return FitsIn(room, all);
}

QWidget* DialogView::MakeButtons() {
  auto* bar = new QWidget(this);  // a default button is asked for its dialog
  auto* row = new QHBoxLayout(bar);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch(1);
  QPushButton* first = nullptr;
  for (int i = 0; i < Count(); ++i) {
    if (!StandsInBar(ControlAt(i))) continue;
    auto* button = static_cast<QPushButton*>(rows_[i].field);
    row->addWidget(button);
    if (!first || ControlAt(i).id == ButtonOk) first = button;
  }
  if (first) first->setDefault(true);
  return bar;
}

void DialogView::OrderTabs() {
  QWidget* before = nullptr;
  for (const Row& row : rows_) {
    if (row.field->focusPolicy() == Qt::NoFocus) continue;
    if (before) setTabOrder(before, row.field);
    before = row.field;
  }
}

void DialogView::SetFirstFocus() {
  int first = IndexOf(state_.resource->focus);
  for (int i = 0; i < Count() && first < 0; ++i) {
    const ControlKind kind = ControlAt(i).kind;
    const bool chosen = kind != Radio || state_.fields[i].text == "on";
    const bool takes = kind != Text && kind != Button && chosen;
    if (takes && rows_[i].field->isEnabled() && rows_[i].field->isVisible()) first = i;
  }
  if (first < 0) first = IndexOf(ButtonOk);  // Return is to end the dialog, not to page
  if (first < 0) return;
  rows_[first].field->setFocus();
  if (rows_[first].line) rows_[first].line->selectAll();
}
