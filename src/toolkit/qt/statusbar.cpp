// Showing the parts of the status bar, and how wide each may be.
#include "toolkit/qt/statusbar.h"

#include <QPainter>
#include <QStyle>
#include <algorithm>
#include <numeric>

namespace {

constexpr int kGap = 12;  // pixels between two texts

// The largest whole number up to `most` for which the sum of the widths stays within the room.
template <class Width>
int Largest(int most, std::size_t n, int room, Width width) {
  int low = 0, high = most + 1;
  while (high - low > 1) {
    const int middle = low + (high - low) / 2;
    int sum = 0;
    for (std::size_t i = 0; i < n; ++i) sum += width(i, middle);
    (sum <= room ? low : high) = middle;
  }
  return low;
}

}  // namespace

std::vector<int> PartWidths(const std::vector<int>& needs, const std::vector<int>& shares,
                            int room) {
  const auto capped = [&](std::size_t i, int cap) { return std::min(needs[i], cap); };
  const int total = std::accumulate(shares.begin(), shares.end(), 0);
  const auto filled = [&](std::size_t i, int level) {
    return std::max(needs[i], static_cast<int>(static_cast<long long>(shares[i]) * level / total));
  };
  std::vector<int> widths(needs.size());
  const bool fits = std::accumulate(needs.begin(), needs.end(), 0) <= room;
  const int bound =
      fits ? Largest(room, needs.size(), room, filled) : Largest(room, needs.size(), room, capped);
  for (std::size_t i = 0; i < needs.size(); ++i)
    widths[i] = fits ? filled(i, bound) : capped(i, bound);
  return widths;
}

void StatusPart::Show(const QString& text) {
  const int width = fontMetrics().horizontalAdvance(text) + kGap;
  need_ = text.isEmpty() ? 0 : std::max(need_, width);
  setText(text);
  ShowTip();
}

QString StatusPart::Shown() const {
  return fontMetrics().elidedText(text(), Qt::ElideRight, width() - kGap / 2);
}

void StatusPart::ShowTip() { setToolTip(Shown() == text() ? QString() : text()); }

void StatusPart::resizeEvent(QResizeEvent*) { ShowTip(); }

void StatusPart::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter, palette(),
                        isEnabled(), Shown(), foregroundRole());
}

void StatusParts::SetShares(const std::vector<int>& shares) {
  qDeleteAll(parts);
  parts.clear();
  shares_ = shares;
  for (std::size_t i = 1; i <= shares.size(); ++i) {
    parts.push_back(new StatusPart(this));
    parts.back()->setTextFormat(Qt::PlainText);
    parts.back()->setObjectName(QString("status%1").arg(i));
    parts.back()->show();
  }
  Arrange();
}

void StatusParts::Show(int part, const QString& text) {
  if (part < 1 || part > static_cast<int>(parts.size())) return;
  const int need = parts[part - 1]->Need();
  parts[part - 1]->Show(text);
  if (parts[part - 1]->Need() != need) Arrange();
}

QSize StatusParts::sizeHint() const { return {0, fontMetrics().height()}; }

void StatusParts::resizeEvent(QResizeEvent*) { Arrange(); }

void StatusParts::Arrange() {
  std::vector<int> needs;
  for (const StatusPart* part : parts) needs.push_back(part->Need());
  const std::vector<int> widths = PartWidths(needs, shares_, width());
  int left = 0;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    parts[i]->setGeometry(left, 0, widths[i], height());
    left += widths[i];
  }
}
