// Undo and redo: what stood before each command that changed something.
#include "shell/undo.h"

#include <deque>

namespace {

// With every slot full they take less than 150 MB.
constexpr std::size_t kMostStates = 50;

struct State {
  std::string title;  // of the command between this state and the next one
  Snapshot snapshot;
};

std::deque<State> undone, done;  // the last one is the next to come back
// The snapshot taken last, from which the next one takes what has not changed.
Snapshot latest;

// Puts the last state of a list back, and the present one at the end of the other list.
bool Step(std::deque<State>& from, std::deque<State>& to) {
  if (from.empty()) return false;
  State state = std::move(from.back());
  from.pop_back();
  to.push_back({state.title, StateNow()});
  RestoreSnapshot(state.snapshot);
  latest = std::move(state.snapshot);
  return true;
}

std::string TitleOf(const std::deque<State>& states) {
  return states.empty() ? "" : states.back().title;
}

}  // namespace

Snapshot StateNow() {
  latest = TakeSnapshot(latest.structures ? &latest : nullptr);
  return latest;
}

void KeepForUndo(const std::string& title, Snapshot before) {
  undone.clear();
  done.push_back({title, std::move(before)});
  if (done.size() > kMostStates) done.pop_front();
}

bool Undo() { return Step(done, undone); }
bool Redo() { return Step(undone, done); }
std::string UndoTitle() { return TitleOf(done); }
std::string RedoTitle() { return TitleOf(undone); }

void ForgetUndo() {
  done.clear();
  undone.clear();
  latest = {};
}
