// A command of the program: one row tells its place in the menu, what is asked for it, what it does
// and what is drawn afterwards.
//
// Operations work on the Workspace and say how they ended; they ask nothing and redraw nothing.
// What they need to know stands in the Workspace or comes as arguments, so that the same operation
// serves the menu, a transcript and a batch run.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "toolkit/resources.h"

enum class Outcome {
  Failed,     // a box has told why; the state of before comes back
  Cancelled,  // by the user, or stopped; the state of before comes back
  Idle,       // there was nothing to do, and there is nothing to draw
  Done,
};

enum class Redraw {
  None,
  Same,   // as it was laid before
  Keep,   // at the present zoom
  Quiet,  // the same, without a box for what cannot be drawn
  Full,   // forgets the zoom
};

struct ParameterDialog;

// Called by a command before it changes something that is to be an undo step of its own.
using UndoStep = std::function<void(const std::string& title)>;

struct Imported;  // patternfiles/import/import.h

// What has been asked for a pattern file that leaves a choice.
struct ScanChoice {
  std::vector<std::size_t> scans{1};  // in their order in the file
  bool sum = false;                   // all of them are one pattern
  float wavelength = 0;               // of positions in d or Q, where the file states none; 0: Cu
  // What the file held when the question came up; without it the file is read.
  std::shared_ptr<const Imported> imported{};
};

// What has been asked for a command.
struct Arguments {
  int number = 0;         // of the row, for operations that stand in several
  int button = ButtonOk;  // that ended the row's dialog
  std::string path{};
  std::vector<std::string> paths{};  // where several files are asked for
  ScanChoice scans{};
  UndoStep step{};  // a batch run has none
};

// A question with the caption and text of a query box; true for OK. A batch run has none.
using Question = std::function<bool(const std::string& caption, const std::string& text)>;

struct Command {
  MenuRow item;
  const char* title = "";  // in "Undo ..."; blank: the item's text
  // What is set before anything else; 0 leaves a field as it is.
  int filetype = 0, viewmode = 0, plotmask = 0;
  int number = 0;                           // for the arguments
  const ParameterDialog* dialog = nullptr;  // shown first
  Outcome (*ask)(Arguments&) = nullptr;     // then this asks for more
  Outcome (*run)(const Arguments&) = nullptr;
  void (*tell)() = nullptr;  // what a result has to say, once it is drawn
  Redraw redraw = Redraw::None;
  bool undo = false;    // changes the pattern, what belongs to it, or how it is shown
  bool history = true;  // is worth doing again

  // An item without an operation is not built and stays disabled.
  bool IsBuilt() const { return run || dialog; }
};

// How a question ended that was answered or not.
constexpr Outcome Answered(bool answered) { return answered ? Outcome::Done : Outcome::Cancelled; }

// An operation that takes no arguments, as a row holds it.
template <Outcome (*Operation)()>
Outcome Plain(const Arguments&) {
  return Operation();
}
