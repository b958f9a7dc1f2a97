// The lines of a transcript that work the window itself: menu, keys and mouse.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "toolkit/replay/lines.h"

namespace replay {
namespace {

float Coordinate(const Word& word) {
  float value = 0;
  const char* end = word.text.data() + word.text.size();
  const auto result = std::from_chars(word.text.data(), end, value);
  if (result.ptr != end || result.ec != std::errc() || !std::isfinite(value))
    Fail("\"" + word.text + "\" is not a number");
  return value;
}

template <std::size_t N>
int OneOf(const Word& word, const std::pair<const char*, int> (&known)[N]) {
  for (const auto& [name, value] : known)
    if (word.text == name) return value;
  Fail("\"" + word.text + "\" is not known here");
}

int ButtonOf(const Word& word) {
  static constexpr std::pair<const char*, int> buttons[] = {{"left", MouseLeft},
                                                            {"right", MouseRight}};
  return OneOf(word, buttons);
}

// ---- Menu ----

const MenuItem* ItemById(int id) {
  const auto& items = MenuItems();
  const auto found = std::ranges::find(items, id, [](const MenuItem& item) { return item.row.id; });
  return found == items.end() ? nullptr : &*found;
}

// Texts given by the program, such as file names, stand as they are.
std::string ItemText(const MenuItem& item) {
  return item.text == item.row.text ? Shown(item.text) : item.text;
}

// "Peak search/Auto peak search"
std::string ItemPath(const MenuItem& item) {
  const MenuItem* parent = ItemById(item.row.parent);
  return (parent ? ItemPath(*parent) + "/" : "") + ItemText(item);
}

const MenuItem& ItemOf(const Word& word) {
  if (const MenuItem* item = ItemById(Number(word))) return *item;
  for (const MenuItem& item : MenuItems())
    if (ItemPath(item) == word.text || ItemPath(item) == Shown(word.text)) return item;
  Fail("no menu item " + word.text);
}

bool Reachable(const MenuItem& item) {
  const MenuItem* parent = ItemById(item.row.parent);
  return item.enabled && (!parent || Reachable(*parent));
}

// "Ctrl+Z" is one of the item's keys.
bool HasKey(const MenuItem& item, std::string_view key) {
  const std::string keys = "|" + std::string(item.row.accelerator) + "|";
  return keys.find("|" + std::string(key) + "|") != std::string::npos;
}

void Pick(Situation& now, const MenuItem& item) {
  PostMessage({.type = MessageMenu, .value1 = item.row.id, .window = RootWindow});
  now.done = true;
}

void PickByKey(Situation& now, const std::string& what, std::string_view key) {
  const auto& items = MenuItems();
  const auto item = std::ranges::find_if(items, [&](const auto& one) { return HasKey(one, key); });
  if (item == items.end()) Fail("there is no " + what);
  if (!Reachable(*item)) Fail("nothing to " + what);
  Pick(now, *item);
}

// ---- Mouse ----

DrawPoint DataPlace(const Word& x, const Word& y) {
  float px = Coordinate(x), py = Coordinate(y);
  if (Hooks().tounits) std::tie(px, py) = Hooks().tounits(px, py);
  if (!std::isfinite(px) || !std::isfinite(py)) Fail("there is no plot");
  return {px, py};
}

DrawPoint UnitPlace(const Word& x, const Word& y) { return {Coordinate(x), Coordinate(y)}; }

Message MouseMessage(int type, int button, DrawPoint at) {
  return {.type = type, .value1 = button, .x = at.x, .y = at.y, .window = RootWindow};
}

// Moves to the start, presses, and leaves the release to whoever asks for it.
void Press(Situation& now, int button, DrawPoint from, DrawPoint to, int ending = MessageMouseUp) {
  PostMessage(MouseMessage(MessageMouseMove, 0, from));
  PostMessage(MouseMessage(MessageMouseDown, button, from));
  PendingRelease() = {true, MouseMessage(ending, button, to)};
  now.done = true;
}

}  // namespace

int Number(const Word& word) {
  int number = 0;
  const char* end = word.text.data() + word.text.size();
  if (word.quoted || std::from_chars(word.text.data(), end, number).ptr != end) return 0;
  return number;
}

Release& PendingRelease() {
  static Release release;
  return release;
}

void PickMenu(Situation& now, const Words& words) {
  const MenuItem& item = ItemOf(words[1]);
  if (item.row.popup) Fail("menu " + ItemPath(item) + " is not an item");
  if (!Reachable(item)) Fail("menu item " + ItemPath(item) + " is disabled");
  Pick(now, item);
}

void Undo(Situation& now, const Words&) { PickByKey(now, "undo", "Ctrl+Z"); }
void Redo(Situation& now, const Words&) { PickByKey(now, "redo", "Ctrl+Shift+Z"); }

// The item's own state; the popups above it have theirs.
void PrintItem(Situation&, const Words& words) {
  const MenuItem& item = ItemOf(words[1]);
  Emit({"item", std::to_string(item.row.id), ItemText(item), item.enabled ? "1" : "0",
        item.checked ? "1" : "0"});
}

void PressKey(Situation& now, const Words& words) {
  static constexpr std::pair<const char*, int> keys[] = {
      {"left", KeyLeft}, {"right", KeyRight}, {"up", KeyUp}, {"down", KeyDown}};
  PostMessage({.type = MessageKey, .value1 = OneOf(words[1], keys), .window = RootWindow});
  now.done = true;
}

void ClickAtData(Situation& now, const Words& words) {
  const DrawPoint at = DataPlace(words[2], words[3]);
  Press(now, ButtonOf(words[1]), at, at);
}

void Click(Situation& now, const Words& words) {
  const DrawPoint at = UnitPlace(words[2], words[3]);
  Press(now, ButtonOf(words[1]), at, at);
}

void DragAtData(Situation& now, const Words& words) {
  Press(now, MouseLeft, DataPlace(words[1], words[2]), DataPlace(words[3], words[4]));
}

void Band(Situation& now, const Words& words) {
  const DrawPoint from = UnitPlace(words[1], words[2]);
  if (words.size() == 4 && words[3].text == "escape")
    return Press(now, MouseLeft, from, from, MessageKey);
  if (words.size() == 4) Fail("band ends with X and Y or with escape");
  Press(now, MouseLeft, from, UnitPlace(words[3], words[4]));
}

}  // namespace replay
