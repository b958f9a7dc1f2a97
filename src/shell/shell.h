// The application shell: start-up, event loop, menu and dialog resources, configuration file.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "toolkit/resources.h"
#include "toolkit/toolkit.h"

inline constexpr int MainMenu = 30001;

// Makes the menu and all dialogs known to the toolkit.
void RegisterResources();
std::span<const MenuRow> MenuTable();
std::span<const DialogResource> DialogTable();

// Brings window, Workspace and menu to their start state and loads the pattern of the command line.
void StartProgram();
// Turns messages into calls until the user leaves, then closes the windows.
void RunProgram();
// Opens a pattern by its path as a file on the command line is opened.
void OpenFile(const std::string& path);

// Runs the command of a menu item; sets quitflag when it is the one that leaves.
void OnMenu(int id, int& quitflag);
// Enables or disables what needs a pattern. Items without a command stay disabled.
void SetMenuLoaded(int flag);

void OnKey(int key);
void OnMouse(const Message& message);
// Position on the plot in user units of a point in data coordinates.
std::pair<float, float> PlotPosition(float x, float y);

// Opens a graphics window and returns its handle; 0, with a message, when there are too many.
int OpenChild();
void CloseChild(int handle);

void PrintGraphics();
void SaveEps();
// The window's content beside the pattern, with this extension; nothing without a pattern.
void SaveImage(const char* extension);

void ReadConfiguration();
void UpdateRecentFiles();
// Puts the recent files into the menu.
void ShowRecentFiles();
void WriteInfoToConfiguration();

// Shows a parameter dialog by its number, stores what was entered and runs its operation.
void RunParameterDialog(int number);

// Values of a Workspace field, parted by tabs: "npts", "npts(1)", "xval(1,1,5:10)". Nothing for an
// unknown name or an index outside the field.
std::optional<std::string> FieldText(std::string_view name);
