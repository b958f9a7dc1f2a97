// The menu bar and the toolbar, built from the rows of both and kept in step with their state.
#pragma once

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <map>

struct MenuItem;

class Menus : public QObject {
 public:
  void Build(QMenuBar* bar, QToolBar* tools);
  // Shows the present state of an item.
  void Update(int id);
  // While a dialog stays open beside the plot, no command can be given.
  void SetLocked(bool locked);
  bool Locked() const { return locked_; }
  // Offers the drawing's own items, as far as their popups can be opened.
  void PopUp(QPoint place);
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void BuildMenu();
  void BuildTools();
  void UpdateTool(int id);
  void UpdateTools();
  static QString ToolTipOf(const MenuItem& item);
  void Label(int parent);
  void Picked(int id);

  QMenuBar* bar_ = nullptr;
  QToolBar* toolbar_ = nullptr;
  QMenu* context_ = nullptr;
  std::map<int, QAction*> actions_;  // a popup's is the one that opens it
  std::map<int, QAction*> tools_;
  bool locked_ = false;
};
