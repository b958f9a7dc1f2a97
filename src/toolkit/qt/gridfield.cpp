// The table of a dialog.
#include "toolkit/qt/gridfield.h"

#include <QHeaderView>

namespace {

constexpr int kLettersOfColumn = 10, kRowsSeen = 12;

QColor ColourOf(int colour) { return {colour & 255, colour >> 8 & 255, colour >> 16 & 255}; }

// Black on white is what a row has that was never coloured: it follows the desktop.
bool IsColoured(const GridRow& row) { return row.foreground != 0 || row.background != 0xffffff; }

}  // namespace

GridField::GridField(const Control& control, std::function<void()> picked,
                     std::function<void()> accepted)
    : picked_(std::move(picked)) {
  const QStringList heads = QString::fromUtf8(control.label).split('|');
  setColumnCount(static_cast<int>(heads.size()));
  setHorizontalHeaderLabels(heads);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(SingleSelection);
  setSelectionBehavior(SelectRows);
  setTabKeyNavigation(false);
  horizontalHeader()->setHighlightSections(false);
  if (heads.first() == "No.") verticalHeader()->hide();  // the rows tell their numbers themselves
  const QFontMetrics letters = fontMetrics();
  for (int column = 0; column < columnCount(); ++column)
    setColumnWidth(column, kLettersOfColumn * letters.horizontalAdvance('0'));
  const int rowheight = verticalHeader()->defaultSectionSize();
  setMinimumSize((columnCount() * kLettersOfColumn + 8) * letters.horizontalAdvance('0'),
                 kRowsSeen * rowheight + horizontalHeader()->sizeHint().height());
  connect(this, &QTableWidget::cellClicked, this, [this] { picked_(); });
  connect(this, &QTableWidget::cellDoubleClicked, this, std::move(accepted));
}

void GridField::ShowCell(int row, int column, const GridRow& shown) {
  QTableWidgetItem* cell = item(row, column);
  if (!cell) {
    setItem(row, column, cell = new QTableWidgetItem);
    cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
  const std::size_t at = static_cast<std::size_t>(column);
  const QString text =
      at < shown.cells.size() ? QString::fromStdString(shown.cells[at]) : QString();
  if (cell->text() != text) cell->setText(text);
  const bool coloured = IsColoured(shown);
  const QBrush back = coloured ? QBrush(ColourOf(shown.background)) : QBrush();
  if (cell->background() == back) return;
  cell->setBackground(back);
  cell->setForeground(coloured ? QBrush(ColourOf(shown.foreground)) : QBrush());
}

void GridField::ShowCells(const GridState& state) {
  const int rows = static_cast<int>(state.rows.size());
  if (rowCount() != rows) setRowCount(rows);
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < columnCount(); ++column) ShowCell(row, column, state.rows[row]);
  // The arrow keys lead on from the first row.
  if (currentRow() < 0) setCurrentCell(0, 0);
}

QString GridField::Picked() const {
  return QString("%1,%2").arg(currentColumn() + 1).arg(currentRow() + 1);
}

void GridField::keyPressEvent(QKeyEvent* event) {
  const QString before = Picked();
  QTableWidget::keyPressEvent(event);
  if (Picked() != before) picked_();
}
