// What tests share: temporary directories, transcripts in a process of their own and in this one.
#pragma once

#include <functional>
#include <string>
#include <vector>

// A directory of its own that goes away with the object.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& path() const { return path_; }
  // Path of a file in it.
  std::string file(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

void WriteFile(const std::string& path, const std::string& content);
// Content of a file, empty if it cannot be read.
std::string ReadFile(const std::string& path);
std::vector<std::string> LinesOf(const std::string& text);

// With `to` for every `from`, of which there has to be one.
std::string Replaced(std::string text, const std::string& from, const std::string& to);
// With the mark of the byte order in front.
std::string Utf16(const std::string& ascii, bool bigendian = false);

struct ReplayRun {
  int status = -1;                 // exit status, -1 if a signal ended it
  std::vector<std::string> lines;  // of the standard output
};

// Runs a transcript in the replay program, in `workdir`. `options` stand in front of the
// transcript's file. The configuration file lies in `home`, a fresh directory when none is given.
ReplayRun RunReplay(const std::string& transcript, const std::string& workdir,
                    const std::vector<std::string>& options = {}, const std::string& home = "");

// In this process: queues lines that answer the boxes, selectors and dialogs to come. A line that
// cannot be done, and a wait without a line, throw std::runtime_error.
void Answer(const std::string& transcriptlines);
// The events since the last call, as lines: "box\tError\tnstep = 0".
std::vector<std::string> Events();
// The Workspace as at the start of the program, menu and dialogs registered, an empty plot.
void FreshWorkspace();
// What a disabled menu item needs, blank for an enabled one.
std::string HintOf(int id);
// n points of y(x) on an even grid of two-theta.
void PutGrid(int slot, float first, float step, int n, const std::function<double(double)>& y);
// Picks a menu item and answers what it asks.
void RunMenu(int id, const std::string& answers = "");
