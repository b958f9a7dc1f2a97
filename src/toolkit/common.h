// What the files of the toolkit's common part share with each other and with the front ends.
#pragma once

#include <span>
#include <string>

#include "toolkit/displaylist.h"
#include "toolkit/frontend.h"

// While the program waits for the user inside a command it is not busy.
class PauseBusy {
 public:
  PauseBusy();
  ~PauseBusy();
  PauseBusy(const PauseBusy&) = delete;
  PauseBusy& operator=(const PauseBusy&) = delete;

 private:
  bool was_;
};

// Hands the screen's list to the front end if it has changed since the last time.
void ShowDrawing();

// The list of the hardcopy in the making.
const DisplayList& PaperList();

// Size of a hardcopy page in millimetres, and of its drawing in points.
inline constexpr float PaperWidth = 180, PaperHeight = 254;
inline constexpr float PointsPerMillimetre = 72 / 25.4f;

// Lengths of dash, gap, dash, ... of a line type in thin lines; empty for a solid line.
std::span<const float> DashPattern(int linetype);

// Makes a registered menu that of the window.
void UseMenu(int number);

// The screen as a picture in the format of the extension; false if it could not be written.
bool SaveScreen(const std::string& file);

// True if the text would keep the dialog from being closed by OK.
bool DialogRefuses(const DialogState& dialog, int index, const std::string& text);

// Remembers the directory of a file that the user has picked, for the next file selector.
void RememberDirectory(const std::string& path);

// What a part of the status bar shows from now on.
void ForgetComplaint();
void KeepStatusText(int part, const std::string& text, bool progress = false);

// Why the file written last could not be written; blank when it was.
void KeepFileReason(const std::string& reason);
std::string FileReason();

// Takes down the command line and the directory in which the program was started.
void KeepArguments(int argc, char** argv);

// Where a program is that is named without a directory: beside this one, by the name it was started
// under and then where that links to, else as it was given, for the system to search.
std::string FindProgram(const std::string& name);
