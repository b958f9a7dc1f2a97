// The table of a dialog.
#include "toolkit/qt/gridfield.h"

#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

constexpr int kLettersOfColumn = 5;                // at least
constexpr int kLettersSeen = 30;                   // of the narrowest table
constexpr int kFewestRows = 12, kMostRows = 24;    // to be seen at once
constexpr double kWidest = 0.55, kHighest = 0.55;  // of the screen

QColor ColourOf(int colour) { return {colour & 255, colour >> 8 & 255, colour >> 16 & 255}; }

// Black on white is what a row has that was never coloured: it follows the desktop.
bool IsColoured(const GridRow& row) { return row.foreground != 0 || row.background != 0xffffff; }

std::string CellName(int column, int row) {
  return std::to_string(column) + "," + std::to_string(row);
}

}  // namespace

GridField::GridField(const Control& control, std::function<void(const std::string&)> picked,
                     std::function<void()> accepted)
    : picked_(std::move(picked)), narrow_(control.narrow) {
  ShowHeads(QString::fromUtf8(control.label).split('|'));
  setEditTriggers(NoEditTriggers);
  setSelectionMode(SingleSelection);
  setSelectionBehavior(SelectRows);
  setTabKeyNavigation(false);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsClickable(control.heads);
  FitColumns();
  connect(this, &QTableWidget::cellClicked, this, [this] { PickCurrent(); });
  connect(this, &QTableWidget::cellDoubleClicked, this, std::move(accepted));
  if (control.heads)
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this](int column) { picked_(CellName(column + 1, 0)); });
}

// Rows that tell their numbers themselves need no other.
void GridField::ShowHeads(const QStringList& heads) {
  setColumnCount(static_cast<int>(heads.size()));
  setHorizontalHeaderLabels(heads);
  verticalHeader()->setVisible(heads.first() != "No.");
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

// The arrow keys lead on from the cell picked last, or from the first row.
void GridField::ShowPlace(const GridState& state) {
  if (state.row > 0) {
    if (currentRow() != state.row - 1 || currentColumn() != state.column - 1 ||
        selectedItems().isEmpty())
      setCurrentCell(state.row - 1, state.column - 1);
  } else {
    clearSelection();
    if (currentRow() < 0) setCurrentCell(0, 0, QItemSelectionModel::NoUpdate);
  }
}

void GridField::ShowCells(const GridState& state) {
  if (std::exchange(changes_, state.changes) == state.changes) return ShowPlace(state);
  const int rows = static_cast<int>(state.rows.size());
  const bool fresh = rowCount() == 0 && rows > 0;
  setUpdatesEnabled(false);
  if (heads_ != state.heads) {
    QStringList heads;
    for (const std::string& head : heads_ = state.heads) heads += QString::fromStdString(head);
    ShowHeads(heads);
  }
  if (rowCount() != rows) setRowCount(rows);
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < columnCount(); ++column) ShowCell(row, column, state.rows[row]);
  QHeaderView* heads = horizontalHeader();
  heads->setSortIndicatorShown(state.order != 0);
  if (state.order != 0)
    heads->setSortIndicator(std::abs(state.order) - 1,
                            state.order > 0 ? Qt::AscendingOrder : Qt::DescendingOrder);
  fresh ? FitColumns() : WidenColumns();
  ShowPlace(state);
  setUpdatesEnabled(true);
}

// A column has room for its head and its longest cell.
void GridField::FitColumns() {
  const int letter = fontMetrics().horizontalAdvance('0');
  resizeColumnsToContents();
  for (int column = 0; column < columnCount(); ++column)
    setColumnWidth(column, std::max(columnWidth(column) + letter, kLettersOfColumn * letter));
  updateGeometry();
}

// Cells may have become longer; what the user has made wider stays so.
void GridField::WidenColumns() {
  const int letter = fontMetrics().horizontalAdvance('0');
  for (int column = 0; column < columnCount(); ++column)
    if (const int needed = sizeHintForColumn(column); needed > columnWidth(column))
      setColumnWidth(column, needed + letter);
}

QSize GridField::SizeFor(int width, int rows) const {
  return {width + verticalScrollBar()->sizeHint().width() + 2 * frameWidth(),
          rows * verticalHeader()->defaultSectionSize() + horizontalHeader()->sizeHint().height() +
              2 * frameWidth()};
}

QSize GridField::sizeHint() const {
  const int rows = std::clamp(rowCount(), kFewestRows, kMostRows);
  const int side = verticalHeader()->isHidden() ? 0 : verticalHeader()->sizeHint().width();
  const QSize room = screen()->availableGeometry().size();
  return SizeFor(narrow_ ? 0 : horizontalHeader()->length() + side, rows)
      .boundedTo(QSize(static_cast<int>(kWidest * room.width()),
                       static_cast<int>(kHighest * room.height())))
      .expandedTo(minimumSizeHint());
}

QSize GridField::minimumSizeHint() const {
  return SizeFor(kLettersSeen * fontMetrics().horizontalAdvance('0'), kFewestRows / 2);
}

void GridField::PickCurrent() { picked_(CellName(currentColumn() + 1, currentRow() + 1)); }

void GridField::keyPressEvent(QKeyEvent* event) {
  const int column = currentColumn(), row = currentRow();
  QTableWidget::keyPressEvent(event);
  if (currentColumn() != column || currentRow() != row) PickCurrent();
}
