// Menu bar and toolbar: building, texts with mnemonics, enabled states, check marks.
#include "toolkit/qt/menus.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QToolTip>
#include <algorithm>

#include "toolkit/frontend.h"
#include "toolkit/qt/events.h"
#include "toolkit/qt/icons.h"
#include "toolkit/qt/mnemonics.h"

namespace {

constexpr const char* kLocked = "Close the dialog beside the plot first";
constexpr int kLongestText = 60;  // letters of average width; longer texts are paths

const MenuItem* Find(int id) {
  const std::vector<MenuItem>& items = MenuItems();
  const auto at = std::find_if(items.begin(), items.end(),
                               [id](const MenuItem& item) { return item.row.id == id; });
  return at == items.end() ? nullptr : &*at;
}

// The item itself, or the outermost popup on the way to it, that is disabled; null if there is
// none.
const MenuItem* Barrier(const MenuItem& item) {
  const MenuItem* popup = Find(item.row.parent);
  const MenuItem* outer = popup ? Barrier(*popup) : nullptr;
  return outer || item.enabled ? outer : &item;
}

// Whether the popups on the way to an item can be opened.
bool CanBeReached(const MenuItem& item) {
  const MenuItem* popup = Find(item.row.parent);
  return !popup || !Barrier(*popup);
}

// A text that the program has put, such as a path; one of the table may hold a mark.
bool IsLiteral(const MenuItem& item) { return item.text != item.row.text; }

MnemonicText TextOf(const MenuItem& item, const QFontMetrics& metrics) {
  const QString text = QString::fromStdString(item.text).replace('\t', ' ');
  if (!IsLiteral(item)) return {text, text.contains('&')};
  return {metrics.elidedText(text, Qt::ElideMiddle, kLongestText * metrics.averageCharWidth())};
}

QList<QKeySequence> ShortcutsOf(const MenuRow& row) {
  QList<QKeySequence> keys;
  for (const QString& key : QString(row.accelerator).split('|', Qt::SkipEmptyParts))
    keys.append(QKeySequence(key, QKeySequence::PortableText));
  return keys;
}

}  // namespace

void Menus::Build(QMenuBar* bar, QToolBar* tools) {
  bar_ = bar;
  bar->installEventFilter(this);
  toolbar_ = tools;
  context_ = new QMenu(bar);
  context_->setObjectName("context");
  context_->setToolTipsVisible(true);
  BuildMenu();
  BuildTools();
  for (const MenuItem& item : MenuItems()) Update(item.row.id);
}

void Menus::BuildMenu() {
  bar_->clear();
  actions_.clear();
  std::map<int, QMenu*> popups;
  for (const MenuItem& item : MenuItems()) {
    const int id = item.row.id;
    const auto parent = popups.find(item.row.parent);
    QWidget* owner = parent == popups.end() ? static_cast<QWidget*>(bar_) : parent->second;
    if (item.row.popup) {
      popups[id] = new QMenu(owner);
      popups[id]->setToolTipsVisible(true);
      actions_[id] = popups[id]->menuAction();
    } else {
      actions_[id] = new QAction(owner);
      actions_[id]->setShortcuts(ShortcutsOf(item.row));
      QObject::connect(actions_[id], &QAction::triggered, bar_, [this, id] { Picked(id); });
    }
    actions_[id]->setObjectName(QString("menu%1").arg(id));
    owner->addAction(actions_[id]);
  }
  Label(0);
  for (const auto& [id, popup] : popups) Label(id);
}

void Menus::BuildTools() {
  toolbar_->clear();
  tools_.clear();
  for (const ToolRow& row : ToolRows()) {
    const int id = row.id;
    if (id == 0) {
      toolbar_->addSeparator();
      continue;
    }
    QAction* tool = tools_[id] = toolbar_->addAction(ToolIcon(row.icon), row.text);
    tool->setObjectName(QString("tool%1").arg(id));
    QObject::connect(tool, &QAction::triggered, toolbar_, [this, id] { Picked(id); });
  }
}

// The actions are those of the menu itself; separators at the ends are not shown.
void Menus::PopUp(QPoint place) {
  context_->clear();
  for (const int id : ContextItems()) {
    if (id == 0)
      context_->addSeparator();
    else if (const MenuItem* item = Find(id); item && CanBeReached(*item))
      context_->addAction(actions_.at(id));
  }
  context_->popup(place);
}

// What the item does, or waits for.
QString Menus::ToolTipOf(const MenuItem& item) {
  const QString text = QString::fromStdString(item.text);
  if (!item.hint.empty()) return QString::fromStdString(item.hint);
  return IsLiteral(item) ? text : QString(text).remove('&');
}

// The title of a popup has no tool tip of its own in a menu bar.
bool Menus::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QObject::eventFilter(object, event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const QAction* action = bar_->actionAt(help->pos());
  QString tip = action && !action->isEnabled() ? action->toolTip() : QString();
  if (locked_) tip = kLocked;
  QToolTip::showText(help->globalPos(), tip, bar_);
  return true;
}

// What the button does in words, and the keys that do the same.
void Menus::UpdateTool(int id) {
  const auto found = tools_.find(id);
  const MenuItem* item = Find(id);
  if (found == tools_.end() || !item) return;
  QString text = found->second->text();
  if (text.isEmpty()) text = QString::fromStdString(item->text).remove('&');
  const QList<QKeySequence> keys = ShortcutsOf(item->row);
  if (!keys.isEmpty()) text += " (" + keys.front().toString(QKeySequence::NativeText) + ")";
  const MenuItem* barrier = Barrier(*item);
  const std::string hint = locked_ ? kLocked : barrier ? barrier->hint : "";
  if (!hint.empty()) text += "\n" + QString::fromStdString(hint);
  found->second->setToolTip(text);
  found->second->setEnabled(!barrier);
}

void Menus::UpdateTools() {
  for (const auto& [id, tool] : tools_) UpdateTool(id);
}

void Menus::Picked(int id) {
  Update(id);  // the mark is the program's, not the click's
  if (!locked_) Post({.type = MessageMenu, .value1 = id, .window = RootWindow});
}

void Menus::Label(int parent) {
  const QFontMetrics metrics(bar_->font());
  std::vector<QAction*> actions;
  std::vector<MnemonicText> texts;
  for (const MenuItem& item : MenuItems()) {
    if (item.row.parent != parent) continue;
    actions.push_back(actions_.at(item.row.id));
    actions.back()->setData(QString::fromStdString(item.text));
    texts.push_back(TextOf(item, metrics));
  }
  const std::vector<QString> shown = WithMnemonics(texts);
  for (std::size_t i = 0; i < actions.size(); ++i) actions[i]->setText(shown[i]);
}

void Menus::Update(int id) {
  const MenuItem* item = Find(id);
  const auto found = actions_.find(id);
  if (!item || found == actions_.end()) return;
  QAction* action = found->second;
  if (action->data().toString() != QString::fromStdString(item->text)) Label(item->row.parent);
  item->row.popup ? UpdateTools() : UpdateTool(id);
  action->setToolTip(ToolTipOf(*item));
  action->setEnabled(item->enabled);
  if (item->checked) action->setCheckable(true);
  action->setChecked(item->checked);
}

void Menus::SetLocked(bool locked) {
  locked_ = locked;
  UpdateTools();
  bar_->setEnabled(!locked);
  toolbar_->setEnabled(!locked);
  // A bar that is enabled again enables all of its popups.
  for (const MenuItem& item : MenuItems()) Update(item.row.id);
}
