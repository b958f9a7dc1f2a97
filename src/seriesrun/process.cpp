// Processes of a series, and the pipes between them.
#include "seriesrun/process.h"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "series/seriestable.h"
#include "workspace/lines.h"

namespace seriesrun {

Child Fork() {
  int ends[2];
  if (pipe(ends) != 0) throw SeriesError{"no pipe to be had: " + SystemReason()};
  const pid_t parent = getpid();
  const pid_t pid = fork();
  if (pid < 0) {
    const std::string reason = SystemReason();
    close(ends[0]);
    close(ends[1]);
    throw SeriesError{"no process to be had: " + reason};
  }
  close(ends[pid == 0 ? 0 : 1]);
  if (pid != 0) return {pid, ends[0]};
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);  // it died in between
  // What stops a run is often sent to all its processes. The first one decides: it must not take
  // the end of another for a crash.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_IGN);
  return {0, ends[1]};
}

std::string ReadWhole(int pipe) {
  std::string text;
  char buffer[65536];
  for (;;) {
    const ssize_t count = read(pipe, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) break;
    text.append(buffer, static_cast<std::size_t>(count));
  }
  close(pipe);
  return text;
}

bool WriteWhole(int file, const std::string& text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t count = write(file, text.data() + done, text.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

int WaitFor(pid_t pid) {
  int status = 0;
  while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

bool WasKilled(int status) {
  if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGKILL) return false;
  sleep(1);
  return true;
}

std::string HowItEnded(int status) {
  if (!WIFSIGNALED(status)) return "exit status " + std::to_string(WEXITSTATUS(status));
  const int signal = WTERMSIG(status);
  return "signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

}  // namespace seriesrun
