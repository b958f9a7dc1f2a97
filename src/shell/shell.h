// The application shell: start-up, event loop, menu and dialog resources, configuration file.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "toolkit/toolkit.h"
#include "workspace/command.h"
#include "workspace/parameters.h"

inline constexpr int MainMenu = 30001;

// ---- Commands ---------------------------------------------------------------------------------

// All of them, in the order of the menu.
std::span<const Command> Commands();
const Command* FindCommand(int id);
std::span<const Command> FileCommands();
std::span<const Command> EditCommands();
std::span<const Command> SettingsCommands();
std::span<const Command> HelpCommands();
extern const ParameterDialog AboutDialog;

// Makes the menu known to the toolkit; items without an operation stay disabled.
void RegisterMenu();
// The one road of every command: sets the row's fields, asks, does, draws, and keeps what has been
// done for undo and history. A failed or cancelled command leaves all as it was. `arguments` hold
// what is known without asking.
Outcome RunCommand(const Command& command, Arguments arguments = {});

// A command's name without marks: what "Undo ..." says.
std::string CommandTitle(const Command& command);
// What the status bar tells when it is done; blank where it has told already, or has no name.
std::string WhatIsDone(const Command& command, const Arguments& arguments);

// Runs the command of a menu item; sets quitflag when it is the one that leaves.
void OnMenu(int id, int& quitflag);
// Shows in the menu what the Workspace says of its items.
void ShowMenuState();
// A pattern is there (1) or not (0), and so is what needs one.
void SetMenuLoaded(int flag);

// ---- The program ------------------------------------------------------------------------------

// Brings window, Workspace and menu to their start state and loads the pattern of the command line.
void StartProgram();
// Turns messages into calls until the user leaves, then closes the windows.
void RunProgram();
// Opens a pattern by its path as a file on the command line is opened.
void OpenFile(const std::string& path);

void OnKey(const Message& message);
void OnMouse(const Message& message);
// Position on the plot in user units of a point in data coordinates.
std::pair<float, float> PlotPosition(float x, float y);

// Opens a graphics window and returns its handle; 0, with a message, when there are too many.
int OpenChild();
void CloseChild(int handle);

Outcome PrintGraphics();
// The page about the measurement; the pattern is on show afterwards.
Outcome PrintReport();
Outcome SaveEps();
// The window's content beside the pattern, with this extension; nothing without a pattern.
Outcome SaveImage(const char* extension);
// Of the formats of "Save graphics" that ask for a name, by the row's number.
enum PictureFormat { PicturePng, PictureSvg, PicturePdf };
Outcome AskPictureName(Arguments& arguments);
Outcome SavePicture(const Arguments& arguments);

// What goes out as a table, by the row's number.
enum TableExport { ExportPeaks, ExportFitResults, ExportSolutions };
Outcome AskTableExport(Arguments& arguments);
Outcome ExportOneTable(const Arguments& arguments);

// Takes the fit's line off the status bar.
void ClearFitText();

void ReadConfiguration();
void UpdateRecentFiles();
// Puts the recent files into the menu.
void ShowRecentFiles();
void WriteInfoToConfiguration();
void WriteToolbarToConfiguration();

// Values of a Workspace field, parted by tabs: "npts", "npts(1)", "xval(1,1,5:10)". Nothing for an
// unknown name or an index outside the field.
std::optional<std::string> FieldText(std::string_view name);
