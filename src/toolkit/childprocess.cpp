// A program that works for this one and is listened to.
#include "toolkit/childprocess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

#include "toolkit/common.h"

extern char** environ;

namespace {

std::string ReasonOf(int error) { return std::generic_category().message(error); }

// A file in memory that holds the text, to be read from its beginning; -1 if there is none to be
// had.
int FileOf(const std::string& text) {
  const int file = memfd_create("input", MFD_CLOEXEC);
  for (std::size_t done = 0; file >= 0 && done < text.size();) {
    const ssize_t count = write(file, text.data() + done, text.size() - done);
    if (count < 0) {
      close(file);
      return -1;
    }
    done += static_cast<std::size_t>(count);
  }
  if (file >= 0) lseek(file, 0, SEEK_SET);
  return file;
}

// What this program leaves to itself of the signals is nothing to another.
void SetSignals(posix_spawnattr_t& attributes) {
  sigset_t defaults;
  sigemptyset(&defaults);
  for (const int signal : {SIGCHLD, SIGPIPE, SIGINT, SIGTERM, SIGHUP}) sigaddset(&defaults, signal);
  posix_spawnattr_setsigdefault(&attributes, &defaults);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
}

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> words, const std::string& directory,
                           const std::string& input) {
  struct sigaction action {};
  sigaction(SIGCHLD, nullptr, &action);
  orphans_ = action.sa_handler == SIG_IGN;
  if (orphans_) std::signal(SIGCHLD, SIG_DFL);
  words.front() = FindProgram(words.front());
  const int file = FileOf(input);
  if (file < 0)
    failure_ = ReasonOf(errno);
  else
    Start(words, directory, file);
  if (file >= 0) close(file);
}

ChildProcess::~ChildProcess() {
  if (pid_ > 0) kill(pid_, SIGKILL);
  WaitForEnd();
  if (orphans_) std::signal(SIGCHLD, SIG_IGN);
}

void ChildProcess::Start(std::vector<std::string>& words, const std::string& directory, int input) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) {
    failure_ = ReasonOf(errno);
    return;
  }
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_adddup2(&files, ends[1], STDERR_FILENO);
  posix_spawn_file_actions_addchdir_np(&files, directory.c_str());
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  SetSignals(attributes);
  const int failed =
      posix_spawnp(&pid_, arguments[0], &files, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  close(ends[1]);
  pipe_ = ends[0];
  if (failed == 0) return;
  failure_ = ReasonOf(failed);
  pid_ = 0;
}

bool ChildProcess::Listen(int milliseconds, std::string& told) {
  if (pid_ == 0) return false;
  pollfd ready{pipe_, POLLIN, 0};
  if (poll(&ready, 1, milliseconds) <= 0) return true;
  char buffer[4096];
  const ssize_t count = read(pipe_, buffer, sizeof buffer);
  if (count < 0 && errno == EINTR) return true;
  if (count > 0) {
    told.append(buffer, static_cast<std::size_t>(count));
    return true;
  }
  WaitForEnd();
  return false;
}

void ChildProcess::Stop() const {
  if (pid_ > 0) kill(pid_, SIGTERM);
}

void ChildProcess::WaitForEnd() {
  if (pipe_ >= 0) close(pipe_);
  pipe_ = -1;
  if (pid_ == 0) return;
  int status = 0;
  while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
  }
  if (WIFEXITED(status)) status_ = WEXITSTATUS(status);
  pid_ = 0;
}
