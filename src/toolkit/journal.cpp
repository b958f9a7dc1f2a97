// What the user enters, as lines of a transcript.
#include "toolkit/journal.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "toolkit/common.h"
#include "toolkit/dialogs.h"

namespace {

std::vector<std::string> lines;
const DialogState* changeddialog = nullptr;  // of the last line, if it is a change of a control
int changedindex = 0;

// A line end cannot stand inside a line: what holds one is only told.
void Keep(std::string line) {
  const auto ends = [](char c) { return c == '\n' || c == '\r'; };
  if (std::ranges::any_of(line, ends)) {
    std::ranges::replace_if(line, ends, ' ');
    line = "# " + line;
  }
  lines.push_back(std::move(line));
  changeddialog = nullptr;
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

// Nine digits give back the same bits.
std::string Digits(float value) {
  char digits[32];
  const auto end =
      std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 9);
  return ' ' + std::string(digits, end.ptr);
}

std::string Place(float x, float y) { return Digits(x) + Digits(y); }

void KeepKey(const Message& key) {
  static constexpr const char* names[] = {"left", "right", "up", "down", "home", "backspace"};
  if (key.value1 < KeyLeft || key.value1 > KeyBackspace) return;
  const char* shift = key.modifiers & ModifierShift ? "shift+" : "";
  Keep(std::string("key ") + shift + names[key.value1 - KeyLeft]);
}

std::string Modifiers(const Message& mouse) {
  std::string text;
  if (mouse.modifiers & ModifierShift) text += " shift";
  if (mouse.modifiers & ModifierControl) text += " ctrl";
  return text;
}

void KeepClick(const Message& mouse) {
  const char* button = mouse.value1 == MouseRight ? "right" : "left";
  Keep(std::string("click ") + button + Place(mouse.x, mouse.y) + Modifiers(mouse));
}

void KeepTurn(const Message& wheel) {
  const std::string notches = Digits(static_cast<float>(wheel.value1) / WheelNotch);
  Keep("wheel" + Place(wheel.x, wheel.y) + notches + Modifiers(wheel));
}

// What has been entered into a control.
void KeepEntry(const DialogState& dialog, int index, const std::string& text) {
  if (DialogRefuses(dialog, index, text)) return;
  // Where heads can be picked, a pick means what the rows are at that moment.
  const bool replaced = !dialog.resource->controls[index].heads;
  if (replaced && changeddialog == &dialog && changedindex == index) lines.pop_back();
  Keep("set " + std::to_string(dialog.resource->controls[index].id) + ' ' + Quoted(text));
  changeddialog = &dialog;
  changedindex = index;
}

// Of a grid the cell that the message tells: it may show another one by now.
void KeepDialogMessage(const DialogState& dialog, const Message& message) {
  if (message.type == MessageMouseDown) return KeepClick(message);
  const int index = ControlIndex(dialog, message.value1);
  if (index < 0) return;
  if (message.type == MessageButton) JournalPress(message.value1);
  if (message.type != MessageFieldChanged) return;
  if (dialog.resource->controls[index].kind != ControlKind::Grid)
    return JournalField(dialog, index);
  KeepEntry(dialog, index,
            std::to_string(static_cast<int>(message.x)) + "," +
                std::to_string(static_cast<int>(message.y)));
}

}  // namespace

void JournalField(const DialogState& dialog, int index) {
  KeepEntry(dialog, index, dialog.fields[index].text);
}

void JournalPress(int button) { Keep("press " + std::to_string(button)); }

void JournalFiles(std::span<const std::string> paths) {
  std::string line = "file";
  for (const std::string& path : paths) line += ' ' + Quoted(path);
  Keep(std::move(line));
}

void JournalMessage(const Message& message) {
  if (message.type == MessageKey) KeepKey(message);
  if (message.type == MessageWheel) KeepTurn(message);
  if (message.type == MessageDoubleClick) Keep("doubleclick" + Place(message.x, message.y));
  if (const DialogState* dialog = DialogBeside()) KeepDialogMessage(*dialog, message);
}

// Beside a dialog the press that began a band has been taken for a click. Alone, a click is a band
// without extent.
void JournalDrag(bool band, bool done, DrawPoint from, DrawPoint to) {
  const bool click = done && from.x == to.x && from.y == to.y;
  if (click && (!band || DialogBeside())) return;
  if (band && !lines.empty() && lines.back().starts_with("click ")) lines.pop_back();
  if (done) Keep((band ? "band" : "pan") + Place(from.x, from.y) + Place(to.x, to.y));
}

void WJournal(const std::string& word, const std::string& text) { Keep(word + ' ' + Quoted(text)); }

// It must be known before what it stops.
void JournalStop(int report) {
  if (lines.empty()) return;
  lines.insert(lines.end() - 1, "stop " + std::to_string(report));
}

std::vector<std::string> WTakeJournal() {
  changeddialog = nullptr;
  return std::exchange(lines, {});
}
