// What a front end must do. An executable links exactly one; it holds no rule of the application.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "toolkit/displaylist.h"
#include "toolkit/resources.h"
#include "toolkit/toolkit.h"

struct GridRow {
  std::vector<std::string> cells;
  int foreground = 0x000000, background = 0xffffff;
};

struct GridState {
  int columns = 0;
  std::vector<std::string> heads;  // as many; none: those of the control's label
  std::vector<GridRow> rows;
  int changes = 0;          // of heads and rows, so that a mere pick is known as such
  int column = 0, row = 0;  // the cell picked last, from 1
  int order = 0;            // the column by which the rows are sorted; negative: falling
};

// State of a control of a loaded dialog, kept by the common part. A front end shows it and writes
// what the user enters back through the functions below.
struct FieldState {
  std::string text;      // as shown: number, string, or "on" and "off"
  double value = 0;      // exact value of an untouched number
  bool touched = false;  // the user has changed the text since it was put
  bool enabled = true;
  bool visible = true;
  GridState grid{};  // of a Grid only; its text is the cell picked, "COLUMN,ROW"
};

struct DialogState {
  const DialogResource* resource = nullptr;
  std::vector<FieldState> fields;  // in the order of resource->controls
  int button = 0;                  // that ended it, 0 while it stands
  bool modal = false;
  bool shown = false;
};

// For front ends: the user has entered `text` into control `index` (0-based). A decimal comma is
// accepted. Returns a complaint with the allowed range for text that cannot stand, else blank;
// the text of a number is kept in either case. A number outside the range of a control that passes
// it on is complained of as well, so that it can be marked, but keeps no dialog open. Radio buttons
// and check boxes take "on" and "off", a grid the cell picked as "COLUMN,ROW", a head in row 0.
std::string DialogEnter(DialogState& dialog, int index, const std::string& text);
// The same check without entering anything.
std::string DialogComplaint(const DialogState& dialog, int index, const std::string& text);
// For front ends: the user has pressed the button `id`, or closed the dialog (ButtonCancel).
// Returns the index of a field that holds a wrong number and so keeps all but Cancel closed, else
// -1.
int DialogPress(DialogState& dialog, int id);
// The button that Escape presses: Cancel, or the OK of a dialog that only tells something.
int EscapeButton(const DialogState& dialog);
// For front ends: what tells the program that the user has changed control `index` of a dialog
// beside the plot.
Message DialogChange(const DialogState& dialog, int index);

// Menu state as a front end shows it.
struct MenuItem {
  MenuRow row;
  std::string text;
  bool enabled = true;
  bool checked = false;
  std::string hint{};  // why it is disabled
};
const std::vector<MenuItem>& MenuItems();
const std::vector<ToolRow>& ToolRows();
const std::vector<int>& ContextItems();

namespace frontend {

// argc and argv as given to main; what the front end takes for itself is removed.
void Initialise(int& argc, char** argv);
SettingsUse Settings();
void ScreenSize(int& width, int& height);
void OpenWindow(int x, int y, int width, int height, const std::string& title);
void SetTitle(const std::string& title);
int OpenChildWindow(int width, int height, const std::string& title);
void CloseWindow(int handle);
void SetStatusParts(const std::vector<int>& widths);
void SetStatus(int part, const std::string& text);
// A text that a transcript does not show.
void Tell(int part, const std::string& text);
void MenuChanged(int id);
void ShowToolbar(bool shown);

// Blocks until the user has done something and posts at least one message.
void WaitEvent();
// Paints what needs painting without taking input.
void KeepAlive();
// A command begins to run or has ended, or waits for the user.
void SetBusy(bool busy);
// A long calculation reports: shows the text, paints, and takes nothing but the user's wish to
// stop, which makes it return false. `done`, from 0 to 1, where it is known. Called often.
bool Progress(int part, const std::string& text, std::optional<float> done);
// A command has ended, perhaps without doing what it was asked for.
void CommandEnded(bool failed);
void SetCursor(int shape);

// Boxes wait. Query returns true for OK.
enum class BoxKind { Error, Info, Query };
bool ShowBox(BoxKind kind, const std::string& caption, const std::string& text);
// For a front end whose boxes wait. Discard without a question if the process has to end.
SaveAnswer AskSave(const std::string& caption, const std::string& text);
// Whether a box keeps somebody waiting, so that those of a long row of operations are only
// collected.
bool BoxesWait();
// Absolute paths, or none when cancelled; more than one only with FileSeveral. `directory` is where
// to begin.
std::vector<std::string> SelectFiles(const std::string& filter, int flags, const std::string& name,
                                     const std::string& title, const std::string& directory);

// Shows a dialog from its state. Modal: returns when dialog.button is set, having called `changed`
// with the id of each control that the user changed. Otherwise returns at once and posts
// messages 3 and 10.
void ShowDialog(DialogState& dialog, const std::function<void(int)>& changed);
// The program has changed field `index` of a dialog on show.
void DialogChanged(DialogState& dialog, int index);
void HideDialog(DialogState& dialog);

// Size of the drawing area of the window in pixels.
void AreaPixels(int& width, int& height);
// The screen's list has changed: show it.
void Repaint();
// Whether somebody sees the screen; else its list is made when it is asked for.
bool IsWatched();
// Tracks the mouse from a press to the release of the button, in user units, drawing a box for a
// band. Tells `moved` of the places on the way. Leaves `place`, the start, as it is if the mouse
// has hardly moved. Returns the type of the ending message.
int TrackDrag(bool band, DrawPoint& place, const std::function<void(DrawPoint)>& moved);

// Asks for a printer; false when cancelled. Print sends a list to it, false when that failed.
bool PrintDialog(const std::string& job);
bool Print(const DisplayList& list, const std::string& job);
// The window's content in one of the formats .bmp, .jpg and .png; false for others, too.
bool SaveImage(const DisplayList& list, const std::string& path, const std::string& format);

// Puts a text where other programs can paste it from.
void CopyText(const std::string& text);
// The same for the window's content as a bitmap, and as SVG.
void CopyPicture(const DisplayList& list, const std::string& svg);

// Starts a child process; false when it could not be started.
bool StartProcess(const std::vector<std::string>& words);

}  // namespace frontend
