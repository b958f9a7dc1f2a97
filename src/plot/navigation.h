// Mouse and keys on the pattern plot: read-outs and zooms, the same with a dialog beside it.
#pragma once

#include "toolkit/toolkit.h"

// Draws the rubber band that begins with this press, and zooms to it. A press that is let go where
// it was is a click: where clicks `pick` it does nothing, and false says so. A band that is broken
// off leaves all as it was.
bool DrawBand(const Message& press, bool pick);
// Does what wheel, pan, double click and the keys Home and Backspace ask for; true if the message
// was one of these. A move of the mouse shows the read-outs.
bool Navigate(const Message& message);
// The whole pattern again.
void ShowFullPattern();
