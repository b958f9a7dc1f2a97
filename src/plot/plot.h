// The views of the main window.
#pragma once

#include <span>
#include <string>

#include "workspace/command.h"

// What a view has to say when it cannot be drawn as asked.
struct ViewComplaint {
  std::string caption, text;
  bool empty() const { return caption.empty() && text.empty(); }
};

// Works out limits, scales and page of what `viewmode` names and writes them into the Workspace; a
// pattern plot that has no range loses its `plotmask`, so that it does not complain at every
// redraw. Draws nothing.
ViewComplaint LayView();
// Draws what has been laid in place of the last drawing. Leaves the Workspace alone, so that a view
// is back as it was when its fields are.
ViewComplaint DrawView();
void ForgetZoom();
// Lays and draws, and shows the first complaint in a box; with 1 the zoom is forgotten first.
void RedrawView(int fullrange);
// The same at the present zoom for what is no command: a complaint stands in the status bar.
void RefreshView();
void ShowComplaint(const ViewComplaint& complaint);

// Sets the check marks of the Plot menu from `plotmask`.
void UpdatePlotMenu();
// Shows the check marks as they were set last.
void ShowPlotMarks();

// The rows of the Plot menu.
std::span<const Command> PlotCommands();
