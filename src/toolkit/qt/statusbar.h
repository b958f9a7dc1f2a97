// The parts of the status bar.
#pragma once

#include <QLabel>
#include <vector>

// A text too long for its part ends in dots and is whole in the tool tip.
class StatusPart : public QLabel {
 public:
  using QLabel::QLabel;
  void Show(const QString& text);
  // Width of the longest text since the part was blank.
  int Need() const { return need_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QString Shown() const;
  void ShowTip();

  int need_ = 0;
};

// The parts side by side. What their texts do not need is shared out by their shares; where there
// is not enough for all, the longest texts are cut.
class StatusParts : public QWidget {
 public:
  using QWidget::QWidget;
  void SetShares(const std::vector<int>& shares);
  void Show(int part, const QString& text);
  QSize sizeHint() const override;

  std::vector<StatusPart*> parts;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Arrange();

  std::vector<int> shares_;
};

// Widths that sum to `room` at most: each need is met if there is room for all of them, else none
// gets more than the shorter ones leave; what is left over evens the widths out to the shares.
std::vector<int> PartWidths(const std::vector<int>& needs, const std::vector<int>& shares,
                            int room);
