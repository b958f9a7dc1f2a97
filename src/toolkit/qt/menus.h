// The menu bar, built from the menu rows and kept in step with their state.
#pragma once

#include <QAction>
#include <QMenuBar>
#include <map>

class Menus {
 public:
  void Build(QMenuBar* bar);
  // Shows the present state of an item.
  void Update(int id);
  // While a dialog stays open beside the plot, no command can be given.
  void SetLocked(bool locked);
  bool Locked() const { return locked_; }

 private:
  void Label(int parent);
  void Picked(int id);

  QMenuBar* bar_ = nullptr;
  std::map<int, QAction*> actions_;  // a popup's is the one that opens it
  bool locked_ = false;
};
