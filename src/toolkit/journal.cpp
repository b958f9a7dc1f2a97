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
std::string Place(float x, float y) {
  std::string text;
  for (const float value : {x, y}) {
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 9);
    text += ' ' + std::string(digits, end.ptr);
  }
  return text;
}

void KeepKey(int key) {
  static constexpr const char* names[] = {"left", "right", "up", "down"};
  if (key >= KeyLeft && key <= KeyDown) Keep(std::string("key ") + names[key - KeyLeft]);
}

void KeepClick(const Message& mouse) {
  const char* button = mouse.value1 == MouseRight ? "right" : "left";
  Keep(std::string("click ") + button + Place(mouse.x, mouse.y));
}

void KeepDialogMessage(const DialogState& dialog, const Message& message) {
  if (message.type == MessageMouseDown) return KeepClick(message);
  const int index = ControlIndex(dialog, message.value1);
  if (index < 0) return;
  if (message.type == MessageButton) JournalPress(message.value1);
  if (message.type == MessageFieldChanged) JournalField(dialog, index);
}

}  // namespace

void JournalField(const DialogState& dialog, int index) {
  const std::string& text = dialog.fields[index].text;
  if (DialogRefuses(dialog, index, text)) return;
  if (changeddialog == &dialog && changedindex == index) lines.pop_back();
  Keep("set " + std::to_string(dialog.resource->controls[index].id) + ' ' + Quoted(text));
  changeddialog = &dialog;
  changedindex = index;
}

void JournalPress(int button) { Keep("press " + std::to_string(button)); }

void JournalFiles(std::span<const std::string> paths) {
  std::string line = "file";
  for (const std::string& path : paths) line += ' ' + Quoted(path);
  Keep(std::move(line));
}

void JournalMessage(const Message& message) {
  if (message.type == MessageKey) KeepKey(message.value1);
  if (const DialogState* dialog = DialogBeside()) KeepDialogMessage(*dialog, message);
}

// Beside a dialog the press that began it has been taken for a click.
void JournalBrokenBand() {
  if (!lines.empty() && lines.back().starts_with("click ")) lines.pop_back();
}

void JournalBand(DrawPoint from, DrawPoint to) {
  JournalBrokenBand();
  Keep("band" + Place(from.x, from.y) + Place(to.x, to.y));
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
