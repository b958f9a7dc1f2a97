// What the status bar shows of a long calculation: that it goes on, and a way to stop it.
#pragma once

#include <QElapsedTimer>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <optional>

class ProgressBar : public QWidget {
 public:
  explicit ProgressBar(QStatusBar* status);
  // A command begins to work, or it ends or waits for the user.
  void SetBusy(bool busy);
  // True if it is time to paint again.
  bool Due() const;
  // How much of the work is done, from 0 to 1; without a value no end is known.
  void ShowDone(std::optional<float> done);
  // Paints the windows and takes a click on Stop or Escape; any other input is dropped.
  void TakeStop();
  bool Stopped() const { return stopped_; }

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  QProgressBar* bar_;
  QPushButton* stop_;
  QElapsedTimer begun_, painted_;
  bool stopped_ = false;
};
