// What the user enters, kept as lines of a transcript that enters the same again.
#pragma once

#include <span>
#include <string>

#include "toolkit/frontend.h"

// The user has changed control `index` of a dialog. A text that the dialog would not take is no
// line; changes of one control that follow each other are one line.
void JournalField(const DialogState& dialog, int index);
// A button of a dialog or query box.
void JournalPress(int button);
// The answer to a file selector; no files when it was cancelled.
void JournalFiles(std::span<const std::string> paths);
// A message that the program takes: a key, a turn of the wheel, a double click, or what has
// happened to a dialog beside the plot. A press on the plot alone is no line: it begins a drag,
// which is.
void JournalMessage(const Message& message);
// The user has stopped a calculation at a report, counted from the entry that began it.
void JournalStop(int report);
// The drag that a press has begun: a rubber band, or the drawing pulled along. One that was broken
// off leaves no line, nor does one that ends where it began: it was a click.
void JournalDrag(bool band, bool done, DrawPoint from, DrawPoint to);
