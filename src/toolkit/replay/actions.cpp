// What each line of a transcript does.
#include "toolkit/replay/actions.h"

#include <algorithm>
#include <limits>

#include "toolkit/common.h"
#include "toolkit/replay/lines.h"

namespace replay {
namespace {

// ---- Dialogs ----

// Index of the control that a word names by number or label.
int ControlIndex(const DialogState& dialog, const Word& word, bool button) {
  const int n = static_cast<int>(dialog.fields.size()), id = Number(word);
  for (int i = 0; i < n; ++i) {
    const Control& control = dialog.resource->controls[i];
    if ((control.kind == ControlKind::Button) != button) continue;
    if (id ? control.id == id : Shown(control.label) == Shown(word.text)) return i;
  }
  Fail((button ? "no button " : "no field ") + word.text);
}

int UsableControl(const DialogState& dialog, const Word& word, bool button) {
  const int index = ControlIndex(dialog, word, button);
  const FieldState& field = dialog.fields[index];
  if (!field.enabled || !field.visible) Fail(word.text + " is disabled");
  return index;
}

void SetField(Situation& now, const Words& words) {
  DialogState& dialog = *now.dialog;
  const int index = UsableControl(dialog, words[1], false);
  const std::string before = dialog.fields[index].text, &text = words[2].text;
  const double value = dialog.fields[index].value;
  const std::string complaint = DialogEnter(dialog, index, text);
  const ControlKind kind = dialog.resource->controls[index].kind;
  const bool entry = kind != ControlKind::Text;
  if (!complaint.empty() && (!entry || DialogRefuses(dialog, index, text))) Fail(complaint);
  const bool same = dialog.fields[index].text == before && dialog.fields[index].value == value;
  if (same && kind != ControlKind::Grid) return;  // a cell can be picked once more
  if (now.changed && *now.changed) (*now.changed)(dialog.resource->controls[index].id);
  if (now.place != Place::Beside) return;
  PostMessage(DialogChange(dialog, index));
  now.done = true;
}

void PressQueryButton(Situation& now, const Word& word) {
  const int id = Number(word);
  if (id != ButtonOk && id != ButtonCancel && word.text != "OK" && word.text != "Cancel")
    Fail("no button " + word.text);
  now.accepted = id == ButtonOk || word.text == "OK";
  now.done = true;
}

void PressButton(Situation& now, const Words& words) {
  if (now.place == Place::Query) return PressQueryButton(now, words[1]);
  DialogState& dialog = *now.dialog;
  const int index = UsableControl(dialog, words[1], true);
  const int id = dialog.resource->controls[index].id;
  if (const int wrong = DialogPress(dialog, id); wrong >= 0)
    Fail(DialogComplaint(dialog, wrong, dialog.fields[wrong].text));
  if (now.place == Place::Beside)
    PostMessage({.type = MessageButton, .value1 = id, .window = RootWindow});
  now.done = true;
}

}  // namespace

void PressEscape(Situation& now) {
  const int button = EscapeButton(*now.dialog);
  PressButton(now, {{"press"}, {std::to_string(button)}});
}

namespace {

// ---- Files and fields ----

void OpenPattern(Situation& now, const Words& words) {
  PostFileDropped(IOsFullPath(words[1].text));
  now.done = true;
}

void AnswerSelector(Situation& now, const Words& words) {
  if (words.size() > 2 && !now.several) Fail("only one file is asked for");
  for (std::size_t k = 1; k < words.size(); ++k) now.paths.push_back(IOsFullPath(words[k].text));
  now.done = true;
}

std::vector<std::string> ValuesOf(const Word& field) {
  const auto text = Hooks().field ? Hooks().field(field.text) : std::nullopt;
  if (!text) Fail("no field " + field.text);
  std::vector<std::string> values;
  for (std::size_t begin = 0; begin <= text->size();) {
    const std::size_t end = std::min(text->find('\t', begin), text->size());
    values.push_back(text->substr(begin, end - begin));
    begin = end + 1;
  }
  return values;
}

std::vector<std::string> ColumnsFor(const Words& words, std::size_t values) {
  const bool named = words.size() > 2;
  if (named && (words[2].text != "as" || words.size() == 3))
    Fail("behind the field stands \"as\" with names");
  const Words names(words.begin() + (named ? 3 : 1), words.end());
  std::vector<std::string> columns;
  for (const Word& name : names) columns.push_back(name.text);
  if (columns.size() == values) return columns;
  if (columns.size() > 1)
    Fail(words[1].text + " has " + std::to_string(values) + " values for " +
         std::to_string(columns.size()) + " names");
  const std::string name = columns.front();
  columns.clear();
  for (std::size_t k = 1; k <= values; ++k) columns.push_back(name + ' ' + std::to_string(k));
  return columns;
}

void CheckField(const Words& words) { ColumnsOf(words); }

// With names each value is an event of its own.
void PrintField(Situation&, const Words& words) {
  std::vector<std::string> values = ValuesOf(words[1]);
  const std::vector<std::string> columns = ColumnsFor(words, values.size());
  if (words.size() > 2) {
    for (std::size_t k = 0; k < values.size(); ++k) Emit({"value", columns[k], values[k]});
    return;
  }
  values.insert(values.begin(), {"value", words[1].text});
  Emit(values);
}

void StopAtReport(Situation&, const Words& words) {
  const int report = Number(words[1]);
  if (report < 1) Fail("\"" + words[1].text + "\" is not the number of a report");
  ReportsToStop() = report;
}

void WritePlot(Situation&, const Words& words) {
  const std::string path = IOsFullPath(words[1].text);
  if (!SaveScreen(path)) Fail("cannot write " + path);
}

// ---- The table of lines ----

constexpr unsigned In(Place place) { return 1u << static_cast<unsigned>(place); }
constexpr unsigned InWindow = In(Place::Window);
constexpr unsigned InPlot = InWindow | In(Place::Beside);
constexpr unsigned InDialog = In(Place::Beside) | In(Place::Modal);
constexpr unsigned Anywhere = ~0u;
constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

struct Action {
  const char* name;
  std::size_t fewest, most;  // words behind the name
  unsigned places;
  const char* missing;  // what a place lacks where the line cannot be done
  void (*run)(Situation&, const Words&);
  void (*check)(const Words&) = nullptr;  // of what is known in front of all lines
};

constexpr Action Actions[] = {
    {"open", 1, 1, InWindow, "", OpenPattern},
    {"menu", 1, 1, InWindow, "", PickMenu, CheckMenu},
    {"undo", 0, 0, InWindow, "", Undo},
    {"redo", 0, 0, InWindow, "", Redo},
    {"key", 1, 1, InPlot, "", PressKey},
    {"mouse", 3, 5, InPlot, "", ClickAtData},
    {"drag", 4, 4, InPlot, "", DragAtData},
    {"zoom", 3, 4, InPlot, "", WheelAtData},
    {"pull", 4, 4, InPlot, "", PanAtData},
    {"click", 3, 5, InPlot, "", Click},
    {"band", 3, 4, InPlot, "", Band},
    {"wheel", 3, 4, InPlot, "", Wheel},
    {"pan", 3, 4, InPlot, "", Pan},
    {"doubleclick", 2, 2, InPlot, "", DoubleClick},
    {"set", 2, 2, InDialog, "no dialog is on show", SetField},
    {"press", 1, 1, InDialog | In(Place::Query), "no dialog is on show", PressButton},
    {"file", 0, kAnyNumber, In(Place::Selector), "no file selector is on show", AnswerSelector},
    {"stop", 1, 1, Anywhere, "", StopAtReport},
    {"get", 1, kAnyNumber, Anywhere, "", PrintField, CheckField},
    {"item", 1, 1, Anywhere, "", PrintItem},
    {"plot", 1, 1, Anywhere, "", WritePlot},
};

// What stands in the way: "dialog 108".
std::string OnShow(const Situation& now) {
  if (now.dialog) return "dialog " + std::to_string(now.dialog->resource->number);
  if (now.place == Place::Query) return "a query box";
  return now.place == Place::Selector ? "a file selector" : "the window";
}

const Action& ActionOf(const Words& words) {
  const std::string& name = words[0].text;
  const auto action =
      std::ranges::find_if(Actions, [&](const Action& a) { return name == a.name; });
  if (action == std::end(Actions)) Fail("unknown line " + name);
  return *action;
}

void CountWords(const Action& action, const Words& words) {
  const std::size_t count = words.size() - 1;
  if (count < action.fewest || count > action.most)
    Fail(words[0].text + (count < action.fewest ? " needs more words" : " has too many words"));
}

void RunLine(Situation& now, const Words& words) {
  const Action& action = ActionOf(words);
  if (!(action.places & In(now.place)))
    Fail(now.place == Place::Window
             ? action.missing
             : words[0].text + " cannot be done while " + OnShow(now) + " is open");
  CountWords(action, words);
  action.run(now, words);
}

}  // namespace

int& ReportsToStop() {
  static int reports = 0;
  return reports;
}

void CheckLine(const std::vector<Word>& words) {
  const Action& action = ActionOf(words);
  CountWords(action, words);
  if (action.check) action.check(words);
}

std::vector<std::string> ColumnsOf(const std::vector<Word>& words) {
  return ColumnsFor(words, ValuesOf(words[1]).size());
}

std::string Shown(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '&' && i + 1 < text.size()) ++i;
    out += text[i];
  }
  return out;
}

bool Perform(Situation& situation) {
  Words words;
  while (!situation.done) {
    if (!NextLine(words)) {
      if (situation.place != Place::Window) Fail(OnShow(situation) + " is still open at the end");
      return false;
    }
    RunLine(situation, words);
  }
  return true;
}

}  // namespace replay
