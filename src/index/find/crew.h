// Work done by several threads, while the calling one tells the user and listens.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>

class Crew {
 public:
  // Threads: 0 stands for as many as there are processors. `tell` is called by the thread that
  // waits, every tenth of a second; false stops all work.
  Crew(int threads, std::function<bool()> tell);

  bool Stopped() const { return stopped_; }
  // The share that is done of all pieces of work that have been expected so far.
  double Done() const;
  void Expect(std::size_t pieces) { expected_ += pieces; }

  // Runs work(0) to work(n - 1) in any order; those that have not begun when it is stopped are
  // left out.
  void Each(std::size_t n, const std::function<void(std::size_t)>& work);

 private:
  std::function<bool()> tell_;
  std::size_t threads_;
  std::size_t expected_ = 0;
  std::atomic<std::size_t> done_ = 0;
  std::atomic<bool> stopped_ = false;
  std::mutex mutex_;
  std::condition_variable ended_;
};
