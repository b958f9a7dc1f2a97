// A program that works for this one and is listened to.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

class ChildProcess {
 public:
  // Starts the program of the first word, which IOsCommand would find too, in a directory. It reads
  // `input`; its standard output goes nowhere.
  ChildProcess(std::vector<std::string> words, const std::string& directory,
               const std::string& input);
  // One that still runs is killed.
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // Why it could not be started; blank if it was.
  const std::string& Failure() const { return failure_; }
  // Waits at most so long for what it writes to its standard error, and adds that to `told`. False
  // when it has ended.
  bool Listen(int milliseconds, std::string& told);
  // Asks it to end; it is listened to until it has.
  void Stop() const;
  // Once it has ended; -1 if a signal has ended it.
  int ExitStatus() const { return status_; }

 private:
  void Start(std::vector<std::string>& words, const std::string& directory, int input);
  void WaitForEnd();

  std::string failure_;
  pid_t pid_ = 0;  // 0: none that runs
  int pipe_ = -1;  // of its standard error
  int status_ = -1;
  bool orphans_ = false;  // what ends was to leave no status behind
};
