// The menu's items with their states and texts.
#include <algorithm>
#include <map>

#include "toolkit/common.h"

namespace {

std::map<int, std::vector<MenuItem>> menus;
std::vector<MenuItem>* current = nullptr;

std::vector<ToolRow> tools;
std::vector<int> contextitems;

MenuItem* FindItem(int id) {
  if (!current) return nullptr;
  const auto found = std::ranges::find(*current, id, [](const MenuItem& m) { return m.row.id; });
  return found == current->end() ? nullptr : &*found;
}

}  // namespace

void WRegisterMenu(int number, std::span<const MenuRow> rows) {
  std::vector<MenuItem>& items = menus[number];
  items.clear();
  for (const MenuRow& row : rows)
    items.push_back({.row = row, .text = row.text, .enabled = row.enabled});
  if (!current) current = &items;
}

void WRegisterToolbar(std::span<const ToolRow> rows) { tools.assign(rows.begin(), rows.end()); }
void WShowToolbar(bool shown) { frontend::ShowToolbar(shown); }
const std::vector<ToolRow>& ToolRows() { return tools; }

void WRegisterContextMenu(std::span<const int> ids) { contextitems.assign(ids.begin(), ids.end()); }
const std::vector<int>& ContextItems() { return contextitems; }

void UseMenu(int number) {
  if (const auto found = menus.find(number); found != menus.end()) current = &found->second;
}

const std::vector<MenuItem>& MenuItems() {
  static const std::vector<MenuItem> none;
  return current ? *current : none;
}

void WMenuSetState(int id, int option, int value) {
  MenuItem* item = FindItem(id);
  if (!item) return;
  bool& state = option == MenuChecked ? item->checked : item->enabled;
  if (state == (value != 0)) return;
  state = value != 0;
  frontend::MenuChanged(id);
}

void WMenuSetString(int id, const std::string& text) {
  MenuItem* item = FindItem(id);
  if (!item || item->text == text) return;
  item->text = text;
  frontend::MenuChanged(id);
}

void WMenuSetHint(int id, const std::string& hint) {
  MenuItem* item = FindItem(id);
  if (!item || item->hint == hint) return;
  item->hint = hint;
  frontend::MenuChanged(id);
}

int WMenuGetState(int id, int option) {
  const MenuItem* item = FindItem(id);
  return item && (option == MenuChecked ? item->checked : item->enabled) ? 1 : 0;
}

std::string WMenuGetString(int id) {
  const MenuItem* item = FindItem(id);
  return item ? item->text : "";
}
