// Processes of a series, and the pipes between them.
#pragma once

#include <sys/types.h>

#include <string>

namespace seriesrun {

struct Child {
  pid_t pid = 0;  // 0 in the new process
  int pipe = -1;  // its end for writing in the new process, that for reading in the old one
};

// A copy of this process with a pipe back to it. It dies with this one. Throws SeriesError.
Child Fork();

// Up to the end of a pipe, which is closed.
std::string ReadWhole(int pipe);
// False, with errno, if not all could be written.
bool WriteWhole(int file, const std::string& text);

// Waits for the end of a process and returns its status as waitpid tells it.
int WaitFor(pid_t pid);
// Whether a process was killed from outside, as for want of memory. Where everything is being
// killed the next signal is for this process: it waits for it a moment.
bool WasKilled(int status);
// "signal 11 (Segmentation fault)"
std::string HowItEnded(int status);

}  // namespace seriesrun
