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

// From its end, where most paths differ.
bool HasPath(const MenuItem& item, std::string_view path) {
  const std::string text = ItemText(item);
  if (!path.ends_with(text)) return false;
  path.remove_suffix(text.size());
  const MenuItem* parent = ItemById(item.row.parent);
  return parent ? path.ends_with('/') && HasPath(*parent, path.substr(0, path.size() - 1))
                : path.empty();
}

const MenuItem& ItemOf(const Word& word) {
  if (const MenuItem* item = ItemById(Number(word))) return *item;
  const std::string paths[] = {word.text, Shown(word.text), word.text + "..."};
  for (const MenuItem& item : MenuItems())
    for (const std::string& path : paths)
      if (HasPath(item, path)) return item;
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

// The words from the fifth on: "shift", "ctrl".
int ModifiersOf(const Words& words) {
  static constexpr std::pair<const char*, int> modifiers[] = {{"shift", ModifierShift},
                                                              {"ctrl", ModifierControl}};
  int sum = 0;
  for (std::size_t k = 4; k < words.size(); ++k) sum |= OneOf(words[k], modifiers);
  return sum;
}

Message MouseMessage(int type, int value, DrawPoint at, int modifiers = 0) {
  return {.type = type,
          .value1 = value,
          .x = at.x,
          .y = at.y,
          .window = RootWindow,
          .modifiers = modifiers};
}

// Moves the mouse to where something is done.
void Post(Situation& now, const Message& message) {
  PostMessage(MouseMessage(MessageMouseMove, 0, {message.x, message.y}));
  PostMessage(message);
  now.done = true;
}

// Presses, and leaves the release to whoever asks for it.
void Press(Situation& now, const Message& press, DrawPoint to, int ending = MessageMouseUp) {
  Post(now, press);
  PendingRelease() = {true, MouseMessage(ending, press.value1, to)};
}

void ClickAt(Situation& now, const Words& words, DrawPoint at) {
  Press(now, MouseMessage(MessageMouseDown, ButtonOf(words[1]), at, ModifiersOf(words)), at);
}

void Drag(Situation& now, int type, DrawPoint from, DrawPoint to, int ending = MessageMouseUp) {
  Press(now, MouseMessage(type, type == MessagePan ? MouseMiddle : MouseLeft, from), to, ending);
}

void Turn(Situation& now, const Words& words, DrawPoint at) {
  constexpr float most = 1000;
  const float notches = std::clamp(Coordinate(words[3]), -most, most);
  const int value = static_cast<int>(std::lround(notches * WheelNotch));
  Post(now, MouseMessage(MessageWheel, value, at, ModifiersOf(words)));
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

void CheckMenu(const Words& words) {
  const MenuItem& item = ItemOf(words[1]);
  if (item.row.popup) Fail("menu " + ItemPath(item) + " is not an item");
}

void PickMenu(Situation& now, const Words& words) {
  CheckMenu(words);
  const MenuItem& item = ItemOf(words[1]);
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

// Escape is the Cancel of a dialog beside the plot, and of no meaning without one.
void PressKey(Situation& now, const Words& words) {
  static constexpr std::pair<const char*, int> keys[] = {{"left", KeyLeft},
                                                         {"right", KeyRight},
                                                         {"up", KeyUp},
                                                         {"down", KeyDown},
                                                         {"home", KeyHome},
                                                         {"backspace", KeyBackspace},
                                                         {"shift+backspace", -KeyBackspace},
                                                         {"escape", KeyEscape}};
  const int key = OneOf(words[1], keys);
  if (key == KeyEscape && now.dialog) return PressEscape(now);
  PostMessage({.type = MessageKey,
               .value1 = std::abs(key),
               .window = RootWindow,
               .modifiers = key < 0 ? ModifierShift : 0});
  now.done = true;
}

void ClickAtData(Situation& now, const Words& words) {
  ClickAt(now, words, DataPlace(words[2], words[3]));
}

void Click(Situation& now, const Words& words) {
  ClickAt(now, words, UnitPlace(words[2], words[3]));
}

void DragAtData(Situation& now, const Words& words) {
  Drag(now, MessageMouseDown, DataPlace(words[1], words[2]), DataPlace(words[3], words[4]));
}

void PanAtData(Situation& now, const Words& words) {
  Drag(now, MessagePan, DataPlace(words[1], words[2]), DataPlace(words[3], words[4]));
}

namespace {

void DragInUnits(Situation& now, int type, const Words& words) {
  const DrawPoint from = UnitPlace(words[1], words[2]);
  if (words.size() == 4 && words[3].text == "escape")
    return Drag(now, type, from, from, MessageKey);
  if (words.size() == 4) Fail(words[0].text + " ends with X and Y or with escape");
  Drag(now, type, from, UnitPlace(words[3], words[4]));
}

}  // namespace

void Band(Situation& now, const Words& words) { DragInUnits(now, MessageMouseDown, words); }
void Pan(Situation& now, const Words& words) { DragInUnits(now, MessagePan, words); }

void WheelAtData(Situation& now, const Words& words) {
  Turn(now, words, DataPlace(words[1], words[2]));
}

void Wheel(Situation& now, const Words& words) { Turn(now, words, UnitPlace(words[1], words[2])); }

void DoubleClick(Situation& now, const Words& words) {
  Post(now, MouseMessage(MessageDoubleClick, MouseLeft, UnitPlace(words[1], words[2])));
}

}  // namespace replay
