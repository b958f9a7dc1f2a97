// What commands ask while the user looks at the plot: questions, and dialogs that stand beside it.
#pragma once

#include <functional>
#include <string>

#include "toolkit/toolkit.h"

// Draws the view as it stands and asks with a query box; true for OK.
bool AskOnPlot(const std::string& caption, const std::string& text);

// Shows a loaded dialog beside the plot and hands on what happens to it and to the plot: buttons
// (MessageButton), changed fields (MessageFieldChanged) and presses of the mouse
// (MessageMouseDown). The handler returns false when the dialog is to be closed; after true the
// view is drawn again. Read-outs and redraws need no handler. Returns the button that ended the
// dialog; ButtonCancel when the window is closed meanwhile, which the main loop then does.
int RunBeside(int dialog, const std::function<bool(const Message&)>& handler);
