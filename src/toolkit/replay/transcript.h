// A transcript: where its lines come from and where the events go.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace replay {

struct Word {
  std::string text;
  bool quoted = false;
};

// Takes lines from a file or, for a blank path, from standard input; false if it cannot be read.
bool OpenTranscript(const std::string& path);
// Puts lines at the end of those that wait; they come before those of a file.
void FeedLines(const std::string& lines);
// The same for one line, which keeps the line ends inside its quotes.
void FeedLine(const std::string& line);
// Takes no lines but those that will be fed; forgets those that wait.
void NoInput();
// The words of the next line that has any; false at the end of the transcript.
bool NextLine(std::vector<Word>& words);
// The words of a line, without its comment.
std::vector<Word> WordsOf(const std::string& line);

// Puts out one event: its kind and what belongs to it.
void Emit(const std::vector<std::string>& fields);
// Reports that the present line cannot be done, and ends the run.
[[noreturn]] void Fail(const std::string& reason);

// Where events go instead of standard output, and what ends a run instead of an exit. `end` must
// not return.
void Redirect(std::function<void(const std::string&)> event, std::function<void()> end);

}  // namespace replay
