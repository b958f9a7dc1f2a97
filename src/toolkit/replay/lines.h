// The lines of a transcript that work the window itself, and what all lines share.
#pragma once

#include <vector>

#include "toolkit/replay/actions.h"
#include "toolkit/replay/transcript.h"

namespace replay {

using Words = std::vector<Word>;

// A whole number, or 0 for anything else: no menu item, control or field has that number.
int Number(const Word& word);

// Fails unless the line names an item of the menu.
void CheckMenu(const Words& words);
void PickMenu(Situation& now, const Words& words);
// The items with the keys Ctrl+Z and Ctrl+Shift+Z.
void Undo(Situation& now, const Words& words);
void Redo(Situation& now, const Words& words);
void PrintItem(Situation& now, const Words& words);
void PressKey(Situation& now, const Words& words);
// Escape in a dialog.
void PressEscape(Situation& now);
// mouse, drag, zoom and pull in data coordinates of the plot, click, band, wheel and pan in user
// units.
void ClickAtData(Situation& now, const Words& words);
void DragAtData(Situation& now, const Words& words);
void WheelAtData(Situation& now, const Words& words);
void PanAtData(Situation& now, const Words& words);
void Click(Situation& now, const Words& words);
void Band(Situation& now, const Words& words);
void Wheel(Situation& now, const Words& words);
void Pan(Situation& now, const Words& words);
void DoubleClick(Situation& now, const Words& words);

}  // namespace replay
