// Undo and redo: what stood before each command that changed something.
#pragma once

#include <string>

#include "workspace/snapshot.h"

// The state as it is now, to be kept with KeepForUndo or to be put back.
Snapshot StateNow();
// A command of this title has changed the state of `before`; nothing can be redone any more. Of
// more than 50 states the oldest one goes.
void KeepForUndo(const std::string& title, Snapshot before);
// Takes back the last command, or does again what was taken back last. False if there is none.
bool Undo();
bool Redo();
// Titles of the commands that the next of these would concern; blank for none.
std::string UndoTitle();
std::string RedoTitle();
void ForgetUndo();
