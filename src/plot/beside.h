// What commands ask while the user looks at the plot: questions, and dialogs that stand beside it.
#pragma once

#include <functional>
#include <string>

#include "plot/dataposition.h"
#include "toolkit/toolkit.h"

// Draws the view as it stands and asks with a query box; true for OK.
bool AskOnPlot(const std::string& caption, const std::string& text);

// Shows a loaded dialog beside the plot and hands on what happens to it and to the plot: buttons
// (MessageButton), changed fields (MessageFieldChanged) and clicks of the mouse (MessageMouseDown).
// The handler returns false when the dialog is to be closed; after true the view is drawn again.
// Read-outs, redraws and zooms need no handler: a drag is one, and so is a double click, whose
// first click is taken back before the handler hears of it (MessageDoubleClick). Returns the button
// that ended the dialog; ButtonCancel when the window is closed meanwhile, which the main loop then
// does.
int RunBeside(int dialog, const std::function<bool(const Message&)>& handler);

// How near a click beside a dialog must come to what it means: a two-hundredth of the view as it
// was when the dialog came or when it was zoomed last.
DataPoint PickReach();
