// The lines of a transcript, done one after the other.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "toolkit/frontend.h"
#include "toolkit/replay/transcript.h"

namespace replay {

// What stands in front of the user and takes the lines.
enum class Place { Window, Beside, Modal, Query, Selector };

struct Situation {
  Place place = Place::Window;
  DialogState* dialog = nullptr;  // of Beside and Modal
  const std::function<void(int)>* changed = nullptr;
  bool several = false;              // a selector takes more than one file
  bool done = false;                 // what the situation waits for has come
  bool accepted = false;             // answer to a query
  std::vector<std::string> paths{};  // answer to a selector
};

// Fails for a line that can be done in no state of the program: one that is unknown or has too many
// or too few words, or asks for a menu item or a field that is not there.
void CheckLine(const std::vector<Word>& words);

// The columns of a table that a line `get NAME [as COLUMN ...]` fills, one for each value: the
// given ones, or one name with the numbers of the values behind it if there are several. Fails
// where names and values do not go together.
std::vector<std::string> ColumnsOf(const std::vector<Word>& words);

// Does lines until the situation is done. Fails at the end of the transcript, except in the window.
// False if the transcript has ended.
bool Perform(Situation& situation);

// End of the mouse movement of the last press of a button, in user units: a release, or Escape in
// the middle of a rubber band.
struct Release {
  bool pending = false;
  Message message;
};
Release& PendingRelease();

// Reports of a long calculation until the user wants to stop; 0 for a user who waits.
int& ReportsToStop();

// A text as shown, without the marks in front of mnemonics.
std::string Shown(const std::string& text);

}  // namespace replay
