// A window of the text editor.
#pragma once

#include <QLineEdit>
#include <QMainWindow>
#include <QPlainTextEdit>

#include "toolkit/qt/edit/textfile.h"

class Editor : public QMainWindow {
 public:
  Editor();
  // Shows a file; one that is not there yet is empty. False, after a box, if it cannot be read.
  bool Load(const QString& path);
  bool Save();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void MakeMenus();
  void MakeFindBar();
  void Open();
  bool SaveAs();
  bool MayDiscard();
  void Find(bool forward);
  void ShowName(const QString& path);
  void Complain(const QString& what, const QString& path, const QString& why);

  QPlainTextEdit* text_;
  QWidget* findbar_;
  QLineEdit* pattern_;
  QString path_;
  TextFile file_;
};
