// What both windowed programs do before their first window.
#pragma once

#include <QApplication>
#include <functional>

struct ProgramInfo {
  const char* name;
  const char* usage;      // all that --help prints
  const char* nodisplay;  // advice when there is no display
};

// Obeys --help and --version and refuses unknown options, which all end the process and need no
// display; then brings Qt up. Options are gone from argv afterwards. Without a display the process
// ends with a message and exit status 1. The caller deletes the application before main returns.
QApplication* StartQt(int& argc, char** argv, const ProgramInfo& program);

// Calls `ended` from the event loop when the process is asked to end. A second request kills.
void WatchSignals(const std::function<void()>& ended);
