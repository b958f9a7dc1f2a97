// All that the application asks of a screen, a printer and a user.
//
// A small procedural toolkit: one current window, one drawing area with units of its own, one pen,
// one current dialog, one queue of numbered messages. The common part is written once, in this
// folder; a front end (frontend.h) shows it. Nothing here knows of patterns.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "toolkit/displaylist.h"
#include "toolkit/resources.h"

// ---- Messages ---------------------------------------------------------------------------------

enum MessageType {
  MessageKey = 1,
  MessageMenu = 2,
  MessageButton = 3,  // a button of a semi-modeless dialog: value1 is the control
  MessageMouseDown = 4,
  MessageMouseUp = 5,
  MessageMouseMove = 6,
  MessageExpose = 7,
  MessageResize = 8,
  MessageClose = 9,
  MessageFieldChanged =
      10,  // value1 and value2 are the control; of a grid, x and y the cell picked
  MessageMouseOther = 16,
  MessageFileDropped = 17,  // a file to open: its path is WInfoDroppedFile()
  MessageWheel = 18,        // value1 is how far it was turned; away from the user is positive
  MessageDoubleClick = 19,  // of the left button; the first click has come as such
  MessagePan = 20,          // a press that begins to pull the drawing along
};

enum Key { KeyLeft = 1, KeyRight, KeyUp, KeyDown, KeyHome, KeyBackspace, KeyEscape };
enum MouseButton { MouseLeft = 1, MouseMiddle = 2, MouseRight = 3 };
enum Modifier { ModifierShift = 1, ModifierControl = 2 };
inline constexpr float WheelNotch = 120;  // a notch in value1 of a turn of the wheel

struct Message {
  int type = 0;
  int value1 = 0;  // key code, menu id, mouse button, control or turn of the wheel
  int value2 = 0;
  float x = 0, y = 0;  // user units of the window's drawing area, or column and row of a grid
  int window = 0;
  int modifiers = 0;  // of keys and mouse: a sum of Modifier
};

inline constexpr int RootWindow = 1;

// Brings the toolkit up. `arguments` are those of main, the program's path first; options that a
// front end takes for itself are gone from IOsArgument afterwards.
void WInitialise(int argc, char** argv);
// Waits for the next message and fills `data`; returns its type too.
int WMessage(Message& data);
// Turns on (1) or off (0) a type. Off at first are 5 and 6, all others are on.
void WMessageEnable(int type, int on);
// Puts a message at the end of the queue, as a front end does.
void PostMessage(const Message& message);
// Queues the request to open a file, as dropping it on the window does.
void PostFileDropped(const std::string& path);
std::string WInfoDroppedFile();
// Lets the window paint itself and nothing else; for long calculations.
void WKeepAlive();
// A report of a long calculation: writes `text` to a part of the status bar and lets the window
// paint. Where it is known how much of the work is done, from 0 to 1, that is shown too. Cheap to
// call often. False when the user wants to stop, from then on until the command ends; whoever hears
// it gives up.
bool WProgress(int part, const std::string& text, std::optional<float> done = {});
// To be called when a command begins and when it has ended; a failed one ends a strict transcript.
void WCommandBegins();
void WCommandEnded(bool failed);

// What the user has entered since the last call, as lines of a transcript that enter the same
// again: set and press of dialogs and query boxes, file of selectors, key, click on the plot beside
// a dialog, band, wheel, pan, doubleclick. The lines are forgotten. Menu items and files opened are
// the application's own.
std::vector<std::string> WTakeJournal();
// Notes a line of the application: a word, and a text in quotes behind it.
void WJournal(const std::string& word, const std::string& text);

// ---- Windows ----------------------------------------------------------------------------------

// Screen width (1) or height (2) in pixels.
int WInfoScreen(int which);
// Opens the root window with its top left corner and its size in pixels.
void WindowOpen(int x, int y, int width, int height, int menu, const std::string& title);
void WindowTitle(const std::string& title);
// A child window; returns its handle. Width and height are ten-thousandths of the root window's
// area.
int WindowOpenChild(int width, int height, int options, const std::string& title);
void WindowCloseChild(int handle);
void WindowSelect(int handle);
void WindowClose();
// `widths` are thousandths of the window's width.
void WindowStatusBarParts(int n, std::span<const int> widths);
// part counts from 1. Appears at once, in the middle of a calculation too.
void WindowOutStatusBar(int part, const std::string& text);
// Tells whoever sits in front of a window what the last command has done, or why it failed, and
// takes away what an earlier one has left in the parts for that; a transcript shows it otherwise.
// Progress that was not `done` to its end goes, too.
void WTell(const std::string& text, bool done = true);
// The text of the first error box since the last command has ended, which names file and reason
// where others tell what came of it; blank if there was none.
std::string WFirstComplaint();
// What a part shows.
std::string WStatusText(int part);

// Error box with OK, and a box with OK and Cancel (1 for OK, 0 otherwise). Both wait.
void MessageBoxError(const std::string& caption, const std::string& text);
void MessageBoxInfo(const std::string& caption, const std::string& text);
int MessageBoxQuery(const std::string& caption, const std::string& text);

enum class SaveAnswer { Save, Discard, Cancel };
// What to do with unsaved work before it goes. Nobody is asked where nobody waits in front of the
// window, or where it has to close: that discards.
SaveAnswer MessageBoxSave(const std::string& caption, const std::string& text);

// Boxes of a long row of operations, which shall not wait for the user at every one: as long as the
// object lives, error and info boxes are kept here, and only a front end in front of which nobody
// waits shows them all the same.
class HoldBoxes {
 public:
  HoldBoxes();
  ~HoldBoxes();
  HoldBoxes(const HoldBoxes&) = delete;
  HoldBoxes& operator=(const HoldBoxes&) = delete;
  // Their texts since the last call, in order.
  std::vector<std::string> Take();
};

// Error and info boxes of a trial whose failure means nothing: as long as the object lives, nobody
// sees them.
class DropBoxes {
 public:
  DropBoxes();
  ~DropBoxes();
  DropBoxes(const DropBoxes&) = delete;
  DropBoxes& operator=(const DropBoxes&) = delete;
};

// Puts a text where other programs can paste it from.
void WCopyText(const std::string& text);
// The same for the present content of the window, as a bitmap and as SVG under a title.
void WCopyPicture(const std::string& title);

enum FileFlags { FileMustExist = 1, FileSave = 2, FileSeveral = 4, FileMayBeNew = 8 };
// The file selector. `filter` is "description|*.ext|"; `path` comes in as the default name and goes
// out as the absolute path picked, or blank when cancelled. On saving, which asks
// before a file is replaced, and for one that may be new, which does not, the filter's extension is
// added to a name without one. Starts in the directory last used.
void WSelectFile(const std::string& filter, int flags, std::string& path, const std::string& title);
// The same for several files that are there, in the order picked; none when cancelled.
std::vector<std::string> WSelectFiles(const std::string& filter, int flags, const std::string& name,
                                      const std::string& title);

// ---- Menu -------------------------------------------------------------------------------------

enum MenuOption { MenuEnabled = 1, MenuChecked = 2 };

// Makes a menu known under its resource number, before WindowOpen.
void WRegisterMenu(int number, std::span<const MenuRow> rows);
// The buttons of the toolbar, before WindowOpen; each does and shows what its menu item does.
void WRegisterToolbar(std::span<const ToolRow> rows);
void WShowToolbar(bool shown);
// The items and popups of the menu that the drawing offers where the user asks for a menu; 0 parts
// groups.
void WRegisterContextMenu(std::span<const int> ids);
void WMenuSetState(int id, int option, int value);
void WMenuSetString(int id, const std::string& text);
// What an item that is disabled waits for, in words.
void WMenuSetHint(int id, const std::string& hint);
int WMenuGetState(int id, int option);
std::string WMenuGetString(int id);

// ---- Dialogs ----------------------------------------------------------------------------------

enum DialogMode { Modal = 1, SemiModeless = 2 };

// Makes dialog resources known, before they are loaded.
void WRegisterDialogs(std::span<const DialogResource> resources);
// Loads a resource with its initial values and selects it. Also drops what an earlier load left.
void WDialogLoad(int number);
void WDialogSelect(int number);
// Modal: waits, and leaves the pressed button to WInfoDialog(4); `changed` is called with a control
// whose value the user has changed. Semi-modeless: returns at once; buttons and changes arrive as
// messages 3 and 10. x and y below 0: in the middle of the window.
void WDialogShow(int x, int y, int button, int mode,
                 const std::function<void(int field)>& changed = {});
void WDialogHide();
void WDialogUnload();
// 4: the button that ended the last dialog (or hardcopy dialog), 1 being OK.
int WInfoDialog(int n);
// 0 disabled, 1 enabled, 2 hidden.
void WDialogFieldState(int field, int state);
// Shows a real in a display format such as "(f10.2)", or the resource's format when none is given.
// A value that the user leaves alone comes back exactly as it was put; a typed one as typed.
void WDialogPutReal(int field, float value, const std::string& format = "");
void WDialogGetReal(int field, float& value);
void WDialogPutInteger(int field, int value);
void WDialogGetInteger(int field, int& value);
void WDialogPutString(int field, const std::string& text);
void WDialogGetString(int field, std::string& text);
void WDialogPutRadioButton(int field);
// 1-based index of the selected button in the group that begins with `firstfield`.
void WDialogGetRadioButton(int firstfield, int& index);
void WDialogPutCheckBox(int field, int value);
void WDialogGetCheckBox(int field, int& value);
// The values that stand for an empty numeric field.
void WDialogUndefined(int i, float r, double d);

// Grids: columns and rows count from 1, and rows appear as they are filled in.
void WGridPutCellReal(int field, int column, int row, float value, const std::string& format);
void WGridPutCellInteger(int field, int column, int row, int value);
// Replaces all rows at once, which may be more or fewer than before; none of them is picked.
// `order` is the column by which they are sorted, negative for falling values, or 0.
void WGridPutRows(int field, std::vector<std::vector<std::string>> rows, int order);
// Gives it other columns than those of its label, and takes all rows away.
void WGridPutHeads(int field, std::vector<std::string> heads);
// Picks a cell as the user does, and shows it; with row 0 none is picked.
void WGridPick(int field, int column, int row);
// Colours of a row as in IGrColourN, and of many.
void WGridColourRow(int field, int row, int foreground, int background);
void WGridColourRows(int field, std::span<const int> rows, int foreground, int background);
// The cell picked last; 0 and 0 before. Row 0 is the head of a column.
void WGridPos(int field, int& column, int& row);

// ---- Drawing ----------------------------------------------------------------------------------

void IGrInit(const std::string& mode);  // "H": hardcopy, blank: the screen
void IGrSelect(int kind, int id);
// Area as fractions of the target, and the user units of its corners.
void IGrArea(float x1, float y1, float x2, float y2);
void IGrUnits(float x1, float y1, float x2, float y2);
// Turns the user units by a multiple of 90 degrees against the way the target feeds its pages.
void IGrUnitsRotate(int degrees);
void IGrAreaClear();
// Clears the area for what `draw` draws, or will draw: as long as nobody looks at the screen of a
// front end that only writes about it, nothing is drawn, and most of it never. IGrFinish draws what
// waits: for whoever changes what `draw` goes by and leaves the drawing as it is.
void IGrShow(void (*draw)());
void IGrFinish();
void IGrColourModel(int n);
void IGrLineType(int n);  // 0 solid, 1 to 4 dashes
void IGrLineWidth(float w);
void IGrColour(const std::string& name);
void IGrColourN(int n);  // red + 256 green + 65536 blue in colour model 24
void IGrMoveTo(float x, float y);
void IGrLineTo(float x, float y);
// Fills a place with cells in the colours of their levels, as far as the window shows them. In
// units that have not been turned.
void IGrRaster(std::shared_ptr<const RasterCells> cells, const LevelColours& colours,
               const DrawRect& place, const DrawRect& window);
void WGrTextFont(int font, int style, float height);
void WGrTextOrientation(int alignment, float angle);
void WGrTextString(float x, float y, const std::string& text);

enum GraphicsInfo {
  GraphicsGlyphX = 1,  // user units in x that look as long as one unit of a letter's height
  GraphicsGlyphY = 2,  // the same in y
  GraphicsPixels = 4,  // pixels of the screen for a unit of a letter's height; 0 on paper
  GraphicsPaper = 3,   // 1 if drawing goes to a hardcopy, 0 for the screen
};
// About the graphics state. A unit of letter height is the smaller of the two user units as they
// appear on the target, so that letters and markers keep their shape in an area of any shape and
// never need more room than the units give.
float WInfoGrReal(int n);

enum GraphicsInput { GraphicsBand = 3, GraphicsPan = 4 };
// Follows the mouse from a press at (x, y) until the button is released, with a rubber band or
// without one; gives the end, in user units, and the type of the ending message. A press that
// hardly moves ends where it began. `moved` hears of the places on the way and may draw.
void WGrInput(int mode, float x, float y, float& endx, float& endy, int& ending,
              const std::function<void(float x, float y)>& moved = {});
void WCursorShape(int n);  // 0 the arrow, 1 busy

// ---- Hardcopy ---------------------------------------------------------------------------------

enum HardcopyDriver { DriverEps = 2, DriverPrinter = 10 };

void IGrHardcopySelect(int n, int driver);
void IGrHardcopyOptions(int option, float value);
// Mode 3: the printer dialog, or for a file driver the file selector with `file` as default name.
// The button that ended it is WInfoDialog(4).
void WHardcopyOptions(int mode, const std::string& file = "");
// Starts a hardcopy under a job name, or ends it with "S", when it is written out; false, after a
// box, if that failed.
bool IGrHardcopy(const std::string& name);
// Present content of the window to a file in one of the formats .bmp, .jpg, .png, .eps, .svg and
// .pdf; a blank one is that of the file's extension. A file that cannot be written gives an "Error"
// box that names it; returns false then.
bool IGrSaveImage(const std::string& file, const std::string& format = "");

// ---- Operating system -------------------------------------------------------------------------

int IOsArgumentCount();          // without the program's path
std::string IOsArgument(int n);  // 0: the program's path
void IOsDirChange(const std::string& path);
// Absolute form of a path that the user gave, taken from the directory of the program's start.
std::string IOsFullPath(const std::string& path);
// Starts a program without a shell and without waiting. `text` is split into words at blanks
// outside double quotes. One that cannot be started gives an "Error" box that names the command.
void IOsCommand(const std::string& text, int flags = 0);
// The same for a command followed by a file, which stays one word whatever its name holds.
void IOsCommandOnFile(const std::string& command, const std::string& file);
void IOsCopyFile(const std::string& from, const std::string& to);
void IOsDeleteFile(const std::string& file);
enum class SettingsUse { None, Read, Write };
// What the program may do with its configuration file: a window reads and writes it, a transcript
// reads it unless told otherwise.
SettingsUse WSettings();
// How the last of the operations on directories and files above ended: 0, or a code of the failure.
int WInfoError(int n);
int IOsDate();  // yyyymmdd
int IOsTime();  // hhmmss

// ---- What a front end may ask of the application ----------------------------------------------

// Set once by main; the replay front end needs them for `get` and for positions on the plot, the
// window for the end of a desktop's session.
struct ApplicationHooks {
  // Values of a field by name, or nothing for an unknown one.
  std::function<std::optional<std::string>(std::string_view name)> field;
  // Data coordinates of the plot to user units.
  std::function<std::pair<float, float>(float x, float y)> tounits;
  // Whether the program may end; it asks what to do with unsaved work.
  std::function<bool()> mayend{};
};
void SetApplicationHooks(ApplicationHooks hooks);
const ApplicationHooks& Hooks();
